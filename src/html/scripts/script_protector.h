// Cuts the script blocks out of a page: the scanner behind clsASP2HTML::ASP2HTML.
//
// The page keeps a numbered placeholder for each block, the script file gets the placeholder and the block's text.
// Everything else of the page passes through byte by byte.
//
// Restoring finds placeholders by their text alone, so text of the page that looks like one would be lost. It is
// protected as well, in the same formats: a comment "<!-- ASP2HTML ..." of the page becomes blocks of its own, and so
// do an escaped one ("&lt;!-- ASP2HTML") and a line of script that begins as a placeholder does. No block's text in the
// script file therefore has a line that begins with the marker, which is what ends a block there.
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
  // One of the two files that are made, both borrowed and not committed; `trail` may be missing.
  struct Output {
    PendingFile& file;
    CopyTrail* trail;
    std::uint64_t size = 0;  // bytes written
  };
  ScriptProtector(Output page, Output script) : page_(page), script_(script) {}

  // Scans the whole page. Throws FileTrouble; what the progress event throws passes through. `input_name` is the
  // page's name for the former.
  void run(BlockReader& input, std::u16string_view input_name, ProgressEvent& progress);
  // Whether the page that was scanned ends inside a block.
  bool ends_in_script() const { return block_ != Block::kNone; }

 private:
  // The comment block is a page's own comment that looks like a placeholder.
  enum class Block { kNone, kAsp, kPhp, kScript, kComment };

  // Each works on from a place in the window and returns the place to go on from.
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

  // The window: bytes before the scanned place are kept as far as anything looks back.
  const char* begin_ = nullptr;
  std::uint64_t begin_position_ = 0;  // of begin_ in the page
  const char* end_ = nullptr;
  const char* run_ = nullptr;  // first byte not written yet
  bool last_ = false;          // the window reaches to the end of the page

  Block block_ = Block::kNone;
  bool in_comment_ = false;
  bool in_tag_ = false;
  bool in_quotes_ = false;
  bool wrapped_ = false;        // the open block's placeholder stands for an attribute value
  char quote_ = 0;              // stays set, deliberately, when a script element ends inside quotes
  char carried_non_blank_ = 0;  // last non-blank byte before begin_
  std::int64_t tag_depth_ = 0;  // wide, so that no page can make it overflow
  std::uint64_t count_ = 0;
};

}  // namespace kavo
