#include "suite/document/coded_text.h"

#include <algorithm>
#include <charconv>
#include <map>

#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr char kReferenceEnd = '\x04';

bool is_reference(char byte) { return byte >= '\x01' && byte <= '\x03'; }

[[noreturn]] void throw_no_tag(std::u16string_view rest) {
  throw failure(FailureNumber::kInvalidCall, u"Not a valid code: " + std::u16string(rest.substr(0, 20)));
}

}  // namespace

bool CodedTextReader::next(CodedPart& part) {
  if (rest_.empty()) return false;
  part.is_code = is_reference(rest_.front());
  if (part.is_code) {
    part.kind = static_cast<CodeKind>(rest_.front());
    const std::size_t end = std::min(rest_.find(kReferenceEnd), rest_.size());
    part.text = rest_.substr(1, end - 1);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
  } else {
    const auto end = std::find_if(rest_.begin(), rest_.end(), is_reference);
    part.text = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
    rest_.remove_prefix(part.text.size());
  }
  return true;
}

void append_code(std::string& coded, CodeKind kind, std::string_view id) {
  coded += static_cast<char>(kind);
  coded += id;
  coded += kReferenceEnd;
}

void append_code(std::string& coded, CodeKind kind, std::uint32_t id) {
  char digits[10];
  const auto end = std::to_chars(digits, digits + sizeof digits, id).ptr;
  append_code(coded, kind, std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

std::string plain_text(std::string_view coded) {
  std::string text;
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);)
    if (!part.is_code) text += part.text;
  return text;
}

std::string code_problem(std::string_view source, std::string_view target, bool may_miss) {
  struct Count {
    int wanted = 0;
    int opened = 0;
    int closed = 0;
  };
  std::map<std::string_view, Count> counts;
  CodedTextReader source_reader(source);
  for (CodedPart part; source_reader.next(part);)
    if (part.is_code && part.kind != CodeKind::kClose) ++counts[part.text].wanted;

  const auto tell = [](std::string_view id, const char* what) { return "code " + std::string(id) + what; };
  std::vector<std::string_view> open;
  CodedTextReader target_reader(target);
  for (CodedPart part; target_reader.next(part);) {
    if (!part.is_code) continue;
    const auto found = counts.find(part.text);
    if (found == counts.end()) return tell(part.text, " is not in the source text");
    Count& count = found->second;
    if (part.kind == CodeKind::kClose) {
      if (count.opened == count.closed) return tell(part.text, " is closed before it is opened");
      if (open.empty() || open.back() != part.text) return tell(part.text, " crosses another one");
      open.pop_back();
      ++count.closed;
      continue;
    }
    if (++count.opened > count.wanted) return tell(part.text, " is doubled");
    if (part.kind == CodeKind::kOpen) open.push_back(part.text);
  }
  if (!open.empty()) return tell(open.back(), " is never closed");
  if (may_miss) return {};
  for (const auto& [id, count] : counts)
    if (count.opened < count.wanted) return tell(id, " is missing");
  return {};
}

std::u16string to_host_text(std::string_view coded) {
  std::string text;
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code) {
      text += part.kind == CodeKind::kClose ? "</" : "<";
      text += part.text;
      text += part.kind == CodeKind::kStandalone ? "/>" : ">";
      continue;
    }
    for (std::string_view rest = part.text; !rest.empty();) {
      const std::size_t end = rest.find('<');
      text += rest.substr(0, end);
      if (end == std::string_view::npos) break;
      text += "<<";
      rest.remove_prefix(end + 1);
    }
  }
  return to_utf16(text);
}

std::string from_host_text(std::u16string_view text) {
  std::string coded;
  while (!text.empty()) {
    const std::size_t tag = std::min(text.find(u'<'), text.size());
    coded += to_utf8(text.substr(0, tag));
    text.remove_prefix(tag);
    if (text.empty()) break;
    if (text.starts_with(u"<<")) {
      coded += '<';
      text.remove_prefix(2);
      continue;
    }
    const std::size_t end = text.find(u'>');
    if (end == std::u16string_view::npos) throw_no_tag(text);
    std::u16string_view id = text.substr(1, end - 1);
    CodeKind kind = CodeKind::kOpen;
    if (id.starts_with(u"/")) {
      kind = CodeKind::kClose;
      id.remove_prefix(1);
    } else if (id.ends_with(u"/")) {
      kind = CodeKind::kStandalone;
      id.remove_suffix(1);
    }
    const bool is_word =
        !id.empty() && std::all_of(id.begin(), id.end(), [](char16_t c) { return c > u' ' && c != u'<' && c != u'/'; });
    if (!is_word) throw_no_tag(text);
    append_code(coded, kind, to_utf8(id));
    text.remove_prefix(end + 1);
  }
  return coded;
}

}  // namespace kavo
