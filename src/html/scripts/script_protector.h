// Cuts the script blocks out of a page: the scanner behind clsASP2HTML::ASP2HTML.
//
// The page keeps a numbered placeholder for each block, the script file gets the placeholder and the block's text.
// Everything else in the page passes through unchanged.
//
// Restoring finds placeholders by their text alone, so text of the page that looks like one would be lost. Such text is
// protected as well, in the same formats. A comment "<!-- ASP2HTML ..." becomes blocks of its own, and so do its
// escaped form ("&lt;!-- ASP2HTML") and a line of script that begins like a placeholder. The marker at the start of a
// line ends a block of the script file, so no line of a block's text may begin with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/block_reader.h"
#include "common/copy_trail.h"
#include "common/pending_file.h"
#include "common/progress_event.h"

namespace kavo {

class ScriptProtector {
 public:
  // One of the two outputs. Both files are borrowed and not committed; `trail` may be null.
  struct Output {
    PendingFile& file;
    CopyTrail* trail;
    std::uint64_t size = 0;  // bytes written
  };
  ScriptProtector(Output page, Output script) : page_(page), script_(script) {}

  // Scans the whole page. Throws file_failure, which names the page `input_name`, and what the progress event throws.
  void run(BlockReader& input, std::u16string_view input_name, ProgressEvent& progress);
  // Whether the page that was scanned ends inside a block.
  bool ends_in_script() const { return block_ != Block::kNone; }

 private:
  // kComment: a comment of the page itself that looks like a placeholder.
  enum class Block { kNone, kAsp, kPhp, kScript, kComment };

  // Each begins at a place in the window and returns the place where the scan continues.
  const char* scan(const char* p);
  const char* next_event(const char* p) const;
  const char* page_event(const char* p);
  const char* page_bracket(const char* p);
  const char* page_escape(const char* p);
  const char* block_event(const char* p);
  const char* block_bracket(const char* p);
  void closing_bracket(const char* p);
  void quote(char c);

  const char* begin_block(Block block, const char* p);
  const char* begin_comment_block(const char* p);
  const char* split_block(const char* p);
  const char* end_block(const char* p);
  void write_placeholder(const char* p);

  Block block_opened_at(const char* p) const;
  bool ends_comment(const char* p) const;
  bool starts_line_with_marker(const char* p) const;
  char previous_non_blank(const char* p) const;
  bool needs_attribute_name(const char* p) const;

  void flush(const char* p);
  static void write(Output& output, std::string_view bytes);

  Output page_;
  Output script_;

  // The window. Bytes before the scanned place are kept as far as any check looks back.
  const char* begin_ = nullptr;
  std::uint64_t begin_position_ = 0;  // of begin_ in the page
  const char* end_ = nullptr;
  const char* run_ = nullptr;  // first byte not written yet
  bool last_ = false;          // the window reaches to the end of the page

  Block block_ = Block::kNone;
  bool in_comment_ = false;
  bool in_tag_ = false;
  bool in_quotes_ = false;
  bool wrapped_ = false;        // the open block's placeholder was given quotes
  char quote_ = 0;              // stays set, deliberately, when a script element ends inside quotes
  char carried_non_blank_ = 0;  // last non-blank byte before begin_
  std::int64_t tag_depth_ = 0;  // wide, so that no page can make it overflow
  std::uint64_t count_ = 0;
};

}  // namespace kavo
