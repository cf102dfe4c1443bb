// Runs the built command in a process of its own.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/temp_folder.h"

namespace kavo::test {

struct Ran {
  int code = -1;
  std::string output;
  std::string errors;
};

// The arguments after the program's name, in UTF-8; the command's own folder is the working folder when given. Waits
// for the end.
Ran run_kavo(const std::vector<std::string>& arguments, const TempFolder* working_folder = nullptr);

// The same, with these lines as standard input. Natively only: elsewhere nothing reads from there.
Ran run_kavo_typing(const std::vector<std::string>& arguments, std::string_view lines,
                    const TempFolder& working_folder);

// The same, with another temporary folder of the system's for the command alone. Natively only.
Ran run_kavo_with_temporary_folder(const std::vector<std::string>& arguments, const std::string& temporary_folder,
                                   const TempFolder& working_folder);

// The same, and presses Ctrl+C when `wait` returns. Nothing where a test cannot do that.
std::optional<Ran> run_kavo_interrupted(const std::vector<std::string>& arguments, const std::function<void()>& wait);

}  // namespace kavo::test
