// What tests must know about the system they run on.
#pragma once

#include <filesystem>
#include <string_view>
#include <type_traits>

namespace kavo::test {

// True in the native build, false in the Windows build (under Wine too).
constexpr bool is_native() { return std::is_same_v<std::filesystem::path::value_type, char>; }

// The standard library's form of a core path, for what no port does (folders, links). On the host the path is taken as
// written, case included.
std::filesystem::path to_filesystem_path(std::u16string_view path);

// Holds for the whole test program: the console shows UTF-8, and settings go to a folder of the program's own.
class TestProcess {
 public:
  TestProcess();
  ~TestProcess();
  TestProcess(const TestProcess&) = delete;
  TestProcess& operator=(const TestProcess&) = delete;

 private:
  std::filesystem::path settings_folder_;
};

}  // namespace kavo::test
