// A failure of the file system together with the file that it concerns. The converters of pages work on several files,
// and their messages name the one that failed.
#pragma once

#include <string>
#include <string_view>

#include "platform/failure.h"

namespace kavo {

struct FileTrouble {
  std::u16string path;
  std::u16string description;  // as the system words it
};

// Runs `action` and returns its result. Rethrows its `failure` as FileTrouble about `path`; an `interruption` passes
// through.
template <class Action>
decltype(auto) about_file(std::u16string_view path, Action&& action) {
  try {
    return action();
  } catch (const failure& reason) {
    throw FileTrouble{std::u16string(path), reason.description()};
  }
}

}  // namespace kavo
