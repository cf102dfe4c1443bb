#include "suite/document/segment.h"

#include <algorithm>
#include <cstdio>

#include "suite/document/blank_text.h"

namespace kavo {
namespace {

// Marks, in the text that is being built, where a reference to a code will be once the code's id is known.
constexpr char kPlace = static_cast<char>(CodeKind::kStandalone);

// How many open codes a closing one looks through for its opening: enough for any nesting that people write, and a
// bound for a document that opens thousands and closes others.
constexpr std::size_t kDeepestNesting = 64;

// What is shown of a long code: enough to recognise it.
constexpr std::size_t kLongestShown = 200;  // bytes

// "[81 9F]": what cannot be shown as a character.
std::string in_hexadecimal(std::string_view bytes) {
  std::string shown = "[";
  for (const char byte : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    if (shown.size() > 1) shown += ' ';
    shown += digits;
  }
  return shown += ']';
}

// Well-formed UTF-8 with only characters that XML has, shortened if it is longer than `limit` bytes.
std::string presentable(std::string_view shown, std::size_t limit = kLongestShown) {
  std::string result;
  while (!shown.empty() && result.size() < limit) {
    const std::size_t length = utf8_character_length(shown);
    const bool fits = length != 0 && is_xml_character(utf8_code_point(shown.substr(0, length)));
    result += fits ? std::string(shown.substr(0, length)) : in_hexadecimal(shown.substr(0, 1));
    shown.remove_prefix(fits ? length : 1);
  }
  if (!shown.empty()) result += "...";
  return result;
}

// What a document calls its parts may hold anything.
void make_presentable(std::string& text) {
  if (std::ranges::all_of(text, [](char c) { return c >= ' ' && c < 0x7F; })) return;
  text = presentable(text, std::string::npos);
}

}  // namespace

void SegmentBuilder::start(std::int64_t line, std::int64_t column) {
  segment_.text.clear();
  segment_.original.clear();
  segment_.codes.clear();
  segment_.nested.clear();
  segment_.context.clear();
  segment_.name.clear();
  segment_.note.clear();
  segment_.comment.clear();
  segment_.element.clear();
  segment_.line = line;
  segment_.column = column;
  segment_.author_line = 0;
  segment_.locked = false;
  has_text_ = false;
}

void SegmentBuilder::add_text(std::string_view original) {
  while (!original.empty()) {
    const std::size_t before = segment_.text.size();
    const std::size_t length = coding_.decode_run(original, segment_.text);
    has_text_ = has_text_ || !is_blank_text(std::string_view(segment_.text).substr(before));
    segment_.original += original.substr(0, length);
    original.remove_prefix(length);
    if (original.empty()) return;
    std::string character;
    bool valid = false;
    const std::size_t bad = coding_.decode_one(original, character, valid);
    add_code(CodeKind::kStandalone, valid ? "x-control" : "x-byte", in_hexadecimal(original.substr(0, bad)),
             original.substr(0, bad));
    original.remove_prefix(bad);
  }
}

void SegmentBuilder::add_text(std::string_view text, std::string_view original) {
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t length = utf8_character_length(rest);
    if (length == 0 || !is_xml_character(utf8_code_point(rest.substr(0, length)))) {
      add_code(CodeKind::kStandalone, "x-control", in_hexadecimal(text), original);
      return;
    }
    rest.remove_prefix(length);
  }
  segment_.text += text;
  segment_.original += original;
  has_text_ = has_text_ || !is_blank_text(text);
}

void SegmentBuilder::add_hidden(std::string_view original) { segment_.original += original; }

void SegmentBuilder::add_code(CodeKind kind, std::string_view type, std::string_view shown, std::string_view original,
                              bool required) {
  begin_code(kind, type, shown, required);
  code_bytes(original);
  end_code();
}

void SegmentBuilder::begin_code(CodeKind kind, std::string_view type, std::string_view shown, bool required) {
  InlineCode code;
  code.kind = kind;
  code.required = required;
  code.type = type;
  code.shown = presentable(shown);
  code.begin = segment_.original.size();
  segment_.codes.push_back(std::move(code));
  segment_.text += kPlace;
}

void SegmentBuilder::nested(std::uint32_t number, std::string_view original) {
  const std::size_t begin = segment_.original.size();
  segment_.original += original;
  segment_.nested.push_back({begin, segment_.original.size(), number});
}

void SegmentBuilder::equivalent(std::string_view value) { segment_.codes.back().equivalent = presentable(value); }

void SegmentBuilder::end_code() { segment_.codes.back().end = segment_.original.size(); }

const Segment& SegmentBuilder::finish() {
  for (std::string* const text : {&segment_.name, &segment_.note, &segment_.comment, &segment_.element})
    make_presentable(*text);
  if (segment_.codes.empty()) return segment_;
  pair_codes();
  std::string text;
  text.reserve(segment_.text.size() + segment_.codes.size() * 3);
  std::size_t code = 0;
  for (std::size_t at = 0; at < segment_.text.size();) {
    const std::size_t place = std::min(segment_.text.find(kPlace, at), segment_.text.size());
    text.append(segment_.text, at, place - at);
    if (place < segment_.text.size()) {
      append_code(text, segment_.codes[code].kind, segment_.codes[code].id);
      ++code;
    }
    at = place + 1;
  }
  segment_.text = std::move(text);
  return segment_;
}

void SegmentBuilder::pair_codes() {
  std::vector<InlineCode>& codes = segment_.codes;
  std::vector<std::size_t> open;
  std::vector<std::size_t> partner(codes.size(), codes.size());
  for (std::size_t i = 0; i < codes.size(); ++i) {
    if (codes[i].kind == CodeKind::kOpen) open.push_back(i);
    if (codes[i].kind != CodeKind::kClose) continue;
    for (std::size_t back = 1; back <= open.size() && back <= kDeepestNesting; ++back) {
      const std::size_t candidate = open[open.size() - back];
      if (codes[candidate].type != codes[i].type) continue;
      partner[candidate] = i;
      partner[i] = candidate;
      open.resize(open.size() - back);
      break;
    }
  }
  std::uint32_t next_id = 1;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    if (partner[i] == codes.size()) codes[i].kind = CodeKind::kStandalone;
    codes[i].id = codes[i].kind == CodeKind::kClose ? codes[partner[i]].id : next_id++;
  }
}

}  // namespace kavo
