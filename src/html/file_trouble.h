// A file system failure together with the name of the file that it concerns, for converters that work on several
// files and whose messages name the one that failed.
#pragma once

#include <string>
#include <string_view>

#include "platform/failure.h"

namespace kavo {

struct FileTrouble {
  std::u16string path;
  std::u16string description;  // the system's own
};

// Runs `action` and throws its `failure` on as FileTrouble about `path`.
template <class Action>
decltype(auto) about_file(std::u16string_view path, Action&& action) {
  try {
    return action();
  } catch (const failure& reason) {
    throw FileTrouble{std::u16string(path), reason.description()};
  }
}

}  // namespace kavo
