// What a library of automation components consists of. The exports, the class factory and the registration serve any
// such library; a library defines component_library() and nothing else.
#pragma once

#include <span>
#include <string_view>

#include "platform/win32/owners.h"

namespace kavo {

// One creatable class.
struct ComponentClass {
  CLSID class_id;
  std::u16string_view programmatic_identifier;
  std::u16string_view description;
  // A new object; throws `failure`.
  unique_interface<IUnknown> (*create)(const ComponentClass& row);
};

struct ComponentLibrary {
  std::span<const ComponentClass> classes;
  // The library's type library (resource 1 of the module), null when it has none.
  const GUID* type_library_id;
};

const ComponentLibrary& component_library();

}  // namespace kavo
