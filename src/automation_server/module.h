// The module (DLL) that this code is linked into.
#pragma once

#include <windows.h>

#include <string>

namespace kavo {

// Full path of the module's file. Throws `failure`.
std::wstring module_path();

// Whether the module is still needed: living objects and locks of the server are counted together.
void add_module_reference() noexcept;
void release_module_reference() noexcept;
bool module_in_use() noexcept;

// Counts an object for as long as it lives.
class ModuleReference {
 public:
  ModuleReference() noexcept { add_module_reference(); }
  ~ModuleReference() { release_module_reference(); }
  ModuleReference(const ModuleReference&) = delete;
  ModuleReference& operator=(const ModuleReference&) = delete;
};

}  // namespace kavo
