// A failure of the file system that names the file that it concerns. The converters of pages work on several files, and
// their messages name the one that failed.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/failure.h"

namespace kavo {

class file_failure : public failure {
 public:
  // `description` is the system's own wording.
  file_failure(std::u16string_view path, std::u16string description)
      : failure(FailureNumber::kPathFileAccess, std::move(description)), path_(path) {}
  const std::u16string& path() const noexcept { return path_; }

 private:
  std::u16string path_;
};

// Runs `action` and returns its result. Rethrows its `failure` as file_failure about `path`. A file_failure that
// already names another file passes through, and so does an `interruption`.
template <class Action>
decltype(auto) about_file(std::u16string_view path, Action&& action) {
  try {
    return action();
  } catch (const file_failure&) {
    throw;
  } catch (const failure& reason) {
    throw file_failure(path, reason.description());
  }
}

}  // namespace kavo
