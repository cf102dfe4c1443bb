#include "html/scripts/script_protector.h"

#include <algorithm>
#include <charconv>

#include "common/byte_scan.h"
#include "formats/html/script_marker.h"
#include "html/file_trouble.h"

namespace kavo {
namespace {

// Nothing looks back further than the name of a wrapping attribute.
constexpr std::size_t kLookBack = 16;

bool begins_with(const char* p, const char* end, std::string_view text) {
  return static_cast<std::size_t>(end - p) >= text.size() && std::memcmp(p, text.data(), text.size()) == 0;
}

bool starts_tag(char c) { return c == '/' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

void ScriptProtector::run(BlockReader& input, std::u16string_view input_name, ProgressEvent& progress) {
  write(script_, html::placeholder::kLineEnd);
  std::size_t done = 0;
  do {
    about_file(input_name, [&] { return input.more(); });
    if (input.bytes_read() != 0) progress.report(input.percent());
    begin_ = input.window().data();
    begin_position_ = input.position();
    end_ = begin_ + input.window().size();
    last_ = input.exhausted();
    run_ = begin_ + done;
    const char* p = scan(run_);
    flush(p);
    const auto scanned = static_cast<std::size_t>(p - begin_);
    const std::size_t dropped = scanned > kLookBack ? scanned - kLookBack : 0;
    carried_non_blank_ = previous_non_blank(begin_ + dropped);
    input.consume(dropped);
    done = scanned - dropped;
  } while (!last_);
  if (ends_in_script()) write(script_, html::placeholder::kLineEnd);
}

const char* ScriptProtector::scan(const char* p) {
  for (;;) {
    p = next_event(p);
    if (p == end_) return p;
    const bool may_be_cut =
        (*p == '<' || *p == '&') && static_cast<std::size_t>(end_ - p) < html::placeholder::kLongestToken;
    if (may_be_cut && !last_) return p;
    p = block_ == Block::kNone ? page_event(p) : block_event(p);
  }
}

const char* ScriptProtector::next_event(const char* p) const {
  if (block_ != Block::kNone) return find_any<'<', '>'>(p, end_);
  if (in_comment_) return find_any<'<', '&', '>'>(p, end_);
  if (!in_tag_) return find_any<'<', '&'>(p, end_);
  if (!in_quotes_) return find_any<'<', '&', '>', '"', '\''>(p, end_);
  return quote_ == '"' ? find_any<'<', '&', '"'>(p, end_) : find_any<'<', '&', '\''>(p, end_);
}

const char* ScriptProtector::page_event(const char* p) {
  switch (*p) {
    case '<':
      return page_bracket(p);
    case '&':
      return page_escape(p);
    case '>':
      closing_bracket(p);
      return p + 1;
    default:
      quote(*p);
      return p + 1;
  }
}

const char* ScriptProtector::page_bracket(const char* p) {
  if (begins_with(p, end_, html::placeholder::kMarker)) return begin_comment_block(p);
  if (in_comment_) return p + 1;
  if (const Block opened = block_opened_at(p); opened != Block::kNone) return begin_block(opened, p);
  if (begins_with(p, end_, "<!--")) {
    in_comment_ = true;
  } else if (!in_quotes_ && end_ - p > 1 && starts_tag(p[1])) {
    in_tag_ = true;
    ++tag_depth_;
  }
  return p + 1;
}

const char* ScriptProtector::page_escape(const char* p) {
  if (!begins_with_ignoring_case(p, end_, html::placeholder::kEscapedMarker)) return p + 1;
  begin_block(Block::kComment, p);
  // Inside a comment the block includes the rest of the comment, because a placeholder ends with the end of a comment.
  return in_comment_ ? p + 1 : end_block(p + html::placeholder::kEscapedMarker.size());
}

// A ">" that ends a comment inside a tag also counts for the tag, deliberately: earlier versions prepared pages that
// way.
void ScriptProtector::closing_bracket(const char* p) {
  if (in_comment_) in_comment_ = !ends_comment(p);
  if (!in_comment_ && in_tag_ && !in_quotes_ && --tag_depth_ == 0) in_tag_ = false;
}

void ScriptProtector::quote(char c) {
  if (c == quote_) {
    in_quotes_ = false;
    quote_ = 0;
  } else {
    in_quotes_ = true;
    quote_ = c;
  }
}

const char* ScriptProtector::block_event(const char* p) {
  if (*p == '<') return block_bracket(p);
  const bool comment_ends = in_comment_ && ends_comment(p);
  if (comment_ends) in_comment_ = false;
  const bool block_ends = (block_ == Block::kAsp && p[-1] == '%') || (block_ == Block::kPhp && p[-1] == '?') ||
                          (block_ == Block::kComment && comment_ends);
  return block_ends ? end_block(p + 1) : p + 1;
}

const char* ScriptProtector::block_bracket(const char* p) {
  if (block_ == Block::kScript) {
    for (const std::string_view closing : {std::string_view("</script>"), std::string_view("</java>")})
      if (begins_with_ignoring_case(p, end_, closing)) return end_block(p + closing.size());
  }
  if (!in_comment_) {
    if (block_opened_at(p) == block_) {
      flush(p);
      write(script_, html::placeholder::kLineEnd);
      return begin_block(block_, p);
    }
    in_comment_ = begins_with(p, end_, "<!--");
  }
  return starts_line_with_marker(p) ? split_block(p) : p + 1;
}

// The kind of block that the "<" at p opens. Inside an open block that can only be one of the same kind.
ScriptProtector::Block ScriptProtector::block_opened_at(const char* p) const {
  if (end_ - p < 2) return Block::kNone;
  switch (p[1]) {
    case '%':
      return Block::kAsp;
    case '?':
      return begins_with_ignoring_case(p, end_, "<?php") ? Block::kPhp : Block::kNone;
    case 's':
    case 'S':
      return begins_with_ignoring_case(p, end_, "<script") ? Block::kScript : Block::kNone;
    case 'j':
    case 'J':
      return begins_with_ignoring_case(p, end_, "<java") ? Block::kScript : Block::kNone;
    default:
      return Block::kNone;
  }
}

const char* ScriptProtector::begin_block(Block block, const char* p) {
  flush(p);
  wrapped_ = block != Block::kScript && in_tag_ && !in_quotes_ && !in_comment_;
  write_placeholder(p);
  block_ = block;
  return p + 1;
}

// A comment of the page that looks like a placeholder: its "<" is one block, the rest up to its end another, so that
// neither begins with the marker.
const char* ScriptProtector::begin_comment_block(const char* p) {
  begin_block(Block::kComment, p);
  in_comment_ = true;
  return split_block(p);
}

// Begins a new block after the "<" at p.
const char* ScriptProtector::split_block(const char* p) {
  flush(p + 1);
  write(script_, html::placeholder::kLineEnd);
  write_placeholder(p + 1);
  return p + 1;
}

const char* ScriptProtector::end_block(const char* p) {
  flush(p);
  write(script_, html::placeholder::kLineEnd);
  // The tag depth stays as it is, deliberately: earlier versions prepared pages that way.
  if (block_ == Block::kScript) in_quotes_ = in_tag_ = false;
  block_ = Block::kNone;
  return p;
}

void ScriptProtector::write_placeholder(const char* p) {
  char digits[20];
  const auto number = std::to_chars(digits, digits + sizeof digits, ++count_);
  char text[64];
  char* out = text;
  const auto put = [&out](std::string_view piece) { out += piece.copy(out, piece.size()); };
  put(html::placeholder::kMarker);
  put(" ");
  put({digits, static_cast<std::size_t>(number.ptr - digits)});
  put(wrapped_ ? " Q -->" : " -->");
  const std::string_view placeholder(text, static_cast<std::size_t>(out - text));

  if (wrapped_) {
    if (needs_attribute_name(p)) write(page_, html::placeholder::kAttributeName);
    write(page_, "\"");
  }
  write(page_, placeholder);
  if (wrapped_) write(page_, "\"");
  write(script_, placeholder);
  write(script_, html::placeholder::kLineEnd);
}

// True when a block at p, in a tag and outside quotes, is in the place of an attribute, not of a value.
bool ScriptProtector::needs_attribute_name(const char* p) const {
  const auto back = [&](std::size_t count) {
    return std::string_view(p - std::min<std::size_t>(count, static_cast<std::size_t>(p - begin_)), p);
  };
  if (block_ == Block::kNone) {
    // Restoring would take the page's own "ASP2HTML=" for the added name. A name of our own keeps the two apart.
    if (back(html::placeholder::kAttributeName.size()) == html::placeholder::kAttributeName) return true;
    // After "&lt;!-- " the name would form an escaped placeholder.
    const std::string_view start = back(html::placeholder::kEscapedMarkerStart.size());
    if (begins_with_ignoring_case(start.data(), start.data() + start.size(), html::placeholder::kEscapedMarkerStart))
      return false;
  }
  return previous_non_blank(p) != '=';
}

char ScriptProtector::previous_non_blank(const char* p) const {
  while (p != begin_)
    if (*--p != ' ') return *p;
  return carried_non_blank_;
}

bool ScriptProtector::ends_comment(const char* p) const { return p - begin_ >= 2 && p[-1] == '-' && p[-2] == '-'; }

bool ScriptProtector::starts_line_with_marker(const char* p) const {
  return p != begin_ && html::placeholder::is_line_end(p[-1]) && begins_with(p, end_, html::placeholder::kMarker);
}

void ScriptProtector::flush(const char* p) {
  if (p == run_) return;
  const std::string_view bytes(run_, p);
  Output& output = block_ == Block::kNone ? page_ : script_;
  if (output.trail)
    output.trail->copied(begin_position_ + static_cast<std::uint64_t>(run_ - begin_), output.size, bytes.size());
  run_ = p;
  write(output, bytes);
}

void ScriptProtector::write(Output& output, std::string_view bytes) {
  about_file(output.file.final_path(), [&] { output.file.write(bytes); });
  output.size += bytes.size();
}

}  // namespace kavo
