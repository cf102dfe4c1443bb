// Puts script blocks back in the place of their placeholders: the scanner behind clsASP2HTML::HTML2ASP.
//
// Restored script is not searched for placeholders: it may hold text that looks like one, even its own placeholder. A
// comment that does not end on its line, or is longer than any placeholder, is not a placeholder and stays as it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "common/pending_file.h"
#include "common/progress_event.h"
#include "html/scripts/script_file.h"

namespace kavo {

class ScriptRestorer {
 public:
  // Borrows `script` and `page`; does not commit the page. `script_name` is the script file's name for file_failure.
  ScriptRestorer(ScriptFile& script, std::u16string_view script_name, PendingFile& page)
      : script_(script), script_name_(script_name), page_(page) {}

  // Scans the whole page. Throws file_failure and what the progress event throws.
  void run(BlockReader& input, std::u16string_view input_name, ProgressEvent& progress);
  // Placeholders that were taken out because the script file has no block of their number.
  struct Missing {
    std::uint64_t count = 0;
    std::uint64_t position = 0;  // of the first one in the page, in bytes from 0
    std::string placeholder;     // the text of the first one
  };
  const Missing& missing() const { return missing_; }

 private:
  // Each begins at a place in the window and returns the place where the scan continues. It returns the same place when
  // the bytes there can only be judged together with those that follow.
  const char* scan(const char* p);
  const char* ampersand(const char* p);
  const char* marker(const char* p, std::size_t length);
  const char* plain_marker(const char* p, std::size_t length);

  enum class Found { kPlaceholder, kNone, kCut };
  // Reads from `p` to the end of the comment whose start is in text_, and moves `p` past it.
  Found read_placeholder(const char*& p);
  void restore(const char* p, const char* behind);

  void flush(const char* p);
  void write(std::string_view bytes);
  bool wants_more(const char* p, std::size_t count) const {
    return !last_ && static_cast<std::size_t>(end_ - p) < count;
  }

  ScriptFile& script_;
  std::u16string script_name_;
  PendingFile& page_;

  // The window. Bytes that were scanned but not written yet are kept as far as a placeholder looks back.
  const char* begin_ = nullptr;
  std::uint64_t begin_position_ = 0;  // of begin_ in the page
  const char* end_ = nullptr;
  const char* run_ = nullptr;  // first byte not written yet
  bool last_ = false;          // the window reaches to the end of the page

  std::size_t escapes_ = 0;  // escaped markers of this line whose escaped end has not come yet
  std::string text_;         // the placeholder being read, its escaping undone
  Missing missing_;
};

}  // namespace kavo
