#include "html/scripts/script_restorer.h"

#include <algorithm>

#include "common/byte_scan.h"
#include "formats/html/script_marker.h"
#include "html/file_trouble.h"

namespace kavo {

void ScriptRestorer::run(BlockReader& input, std::u16string_view input_name, ProgressEvent& progress) {
  std::size_t done = 0;
  do {
    about_file(input_name, [&] { return input.more(); });
    if (input.bytes_read() != 0) progress.report(input.percent());
    begin_ = run_ = input.window().data();
    begin_position_ = input.position();
    end_ = begin_ + input.window().size();
    last_ = input.exhausted();
    const char* p = scan(begin_ + done);
    // An attribute name or a quote at the end may belong to a placeholder that follows.
    const auto held = last_ ? 0 : static_cast<std::ptrdiff_t>(html::placeholder::kAttribute.size());
    if (p - run_ > held) flush(p - held);
    done = static_cast<std::size_t>(p - run_);
    input.consume(static_cast<std::size_t>(run_ - begin_));
  } while (!last_);
}

const char* ScriptRestorer::scan(const char* p) {
  for (;;) {
    // Line ends matter only while an escaped marker is open.
    p = escapes_ == 0 ? find_any<'<', '&'>(p, end_) : find_any<'<', '&', '\r', '\n'>(p, end_);
    if (p == end_) return p;
    if (html::placeholder::is_line_end(*p)) {
      escapes_ = 0;
      ++p;
      continue;
    }
    if (wants_more(p, html::placeholder::kLongestToken)) return p;
    const char* next = p + 1;
    if (*p == '&')
      next = ampersand(p);
    else if (std::string_view(p, end_).starts_with(html::placeholder::kMarker))
      next = marker(p, html::placeholder::kMarker.size());
    if (next == p) return p;
    p = next;
  }
}

const char* ScriptRestorer::ampersand(const char* p) {
  if (begins_with_ignoring_case(p, end_, html::placeholder::kEscapedMarker)) {
    ++escapes_;
    const char* next = marker(p, html::placeholder::kEscapedMarker.size());
    if (next == p) --escapes_;  // this place is read again with more bytes
    return next;
  }
  if (escapes_ == 0 || !begins_with_ignoring_case(p, end_, html::placeholder::kEscapedBracket)) return p + 1;
  if (!std::string_view(run_, p).ends_with("--")) return p + 1;
  --escapes_;
  flush(p);
  write(">");
  return run_ = p + html::placeholder::kEscapedBracket.size();
}

// Called at a marker of this length. The escaped marker is the longer of the two.
const char* ScriptRestorer::marker(const char* p, std::size_t length) {
  const std::size_t escapes = escapes_;
  text_ = html::placeholder::kMarker;
  const char* behind = p + length;
  switch (read_placeholder(behind)) {
    case Found::kPlaceholder:
      restore(p, behind);
      return run_;
    case Found::kNone:
      escapes_ = escapes;
      return plain_marker(p, length);
    case Found::kCut:
      escapes_ = escapes;
      return p;
  }
  return p;
}

// Called for a marker that does not begin a placeholder. It stays, but loses its escaping.
const char* ScriptRestorer::plain_marker(const char* p, std::size_t length) {
  if (length == html::placeholder::kMarker.size()) return p + length;
  flush(p);
  write(html::placeholder::kMarker);
  return run_ = p + length;
}

ScriptRestorer::Found ScriptRestorer::read_placeholder(const char*& p) {
  while (text_.size() < html::placeholder::kLongestPlaceholder) {
    if (wants_more(p, html::placeholder::kLongestToken)) return Found::kCut;
    if (p == end_ || html::placeholder::is_line_end(*p)) return Found::kNone;
    const bool may_end = text_.ends_with("--");
    if (may_end && *p == '>') {
      ++p;
    } else if (may_end && escapes_ > 0 && begins_with_ignoring_case(p, end_, html::placeholder::kEscapedBracket)) {
      p += html::placeholder::kEscapedBracket.size();
      --escapes_;
    } else if (begins_with_ignoring_case(p, end_, html::placeholder::kEscapedMarker)) {
      p += html::placeholder::kEscapedMarker.size();
      ++escapes_;
      text_ += html::placeholder::kMarker;
      continue;
    } else {
      text_ += *p++;
      continue;
    }
    text_ += '>';
    return Found::kPlaceholder;
  }
  return Found::kNone;
}

// Writes the block of the placeholder in text_, which reaches from p to `behind` in the page. Drops what protection
// added around it.
void ScriptRestorer::restore(const char* p, const char* behind) {
  const std::string_view before(run_, p);
  if (std::string_view(text_).ends_with(html::placeholder::kWrappedEnd) && behind != end_ && *behind == '"') {
    if (before.ends_with(html::placeholder::kAttribute)) {
      p -= html::placeholder::kAttribute.size();
      ++behind;
    } else if (before.ends_with('"')) {
      --p;
      ++behind;
    }
  }
  flush(p);
  run_ = behind;
  if (!about_file(script_name_, [&] { return script_.find(text_); })) {
    if (missing_.count++ == 0) {
      missing_.position = begin_position_ + static_cast<std::uint64_t>(p - begin_);
      missing_.placeholder = text_;
    }
    return;
  }
  about_file(script_name_, [&] { script_.read_block([this](std::string_view bytes) { write(bytes); }); });
}

void ScriptRestorer::flush(const char* p) {
  if (p != run_) write({run_, p});
  run_ = p;
}

void ScriptRestorer::write(std::string_view bytes) {
  about_file(page_.final_path(), [&] { page_.write(bytes); });
}

}  // namespace kavo
