#include "suite/filters/text_patterns.h"

#include <algorithm>
#include <iterator>

#include "formats/text/ascii.h"
#include "formats/text/text_coding.h"

namespace kavo {
namespace {

constexpr std::string_view kPlaceholder = "x-placeholder";
constexpr std::string_view kAddress = "x-address";

// Longer names do not count, so that only a bounded number of bytes is looked at twice.
constexpr std::size_t kLongestName = 64;
constexpr std::size_t kLongestExpression = 128;
constexpr std::size_t kLongestHost = 255;

bool is_word(char c) { return is_letter(c) || is_digit(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80; }
bool is_name(char c) { return is_letter(c) || is_digit(c) || c == '_' || c == '.' || c == '-'; }
bool is_ascii_word(char c) { return is_letter(c) || is_digit(c); }

// "{name}", "{0}", "{ name }" after `open` up to `close`.
std::size_t in_braces(std::string_view text, std::string_view open, std::string_view close) {
  if (!text.starts_with(open)) return 0;
  std::size_t at = open.size();
  while (at < text.size() && text[at] == ' ') ++at;
  const std::size_t name = at;
  while (at < text.size() && at < kLongestName && is_name(text[at])) ++at;
  const bool has_name = at > name;
  while (at < text.size() && at < kLongestName && text[at] == ' ') ++at;
  return has_name && text.substr(at).starts_with(close) ? at + close.size() : 0;
}

// "{{ name | upper }}": an expression of a template, on one line.
std::size_t in_double_braces(std::string_view text) {
  if (!text.starts_with("{{")) return 0;
  for (std::size_t at = 2; at + 1 < std::min(text.size(), kLongestExpression); ++at) {
    if (text[at] == '{' || text[at] == '\r' || text[at] == '\n' || text[at] == '<') return 0;
    if (text[at] == '}') return text[at + 1] == '}' && at > 2 ? at + 2 : 0;
  }
  return 0;
}

// "%s", "%1$d", "%05.2f", "%ld", "%@". No blank is a flag: "100 % sure" is prose.
std::size_t in_percent(std::string_view text) {
  std::size_t at = 1;
  const auto current = [&] { return at < text.size() ? text[at] : '\0'; };
  while (is_digit(current()) && at < kLongestName) ++at;
  if (at > 1 && current() == '$') ++at;
  while ((current() == '-' || current() == '+' || current() == '.' || current() == '#' || is_digit(current())) &&
         at < kLongestName)
    ++at;
  while ((current() == 'l' || current() == 'h') && at < kLongestName) ++at;
  if (current() == '\0' || std::string_view("@sdifuxXcbeEgG").find(current()) == std::string_view::npos) return 0;
  ++at;
  return is_word(current()) ? 0 : at;
}

bool begins_with(std::string_view text, std::string_view small) {
  return text.size() >= small.size() && std::equal(small.begin(), small.end(), text.begin(), [](char a, char b) {
           return a == (b >= 'A' && b <= 'Z' ? static_cast<char>(b + 32) : b);
         });
}

// The address without the punctuation of the sentence around it, and without a bracket that closes one before it.
std::size_t without_sentence_end(std::string_view address) {
  std::size_t size = address.size();
  const bool has_bracket = address.find('(') != std::string_view::npos;
  for (; size > 0; --size) {
    const char last = address[size - 1];
    if (last == ')' && has_bracket) break;
    if (std::string_view(".,;:!?)'*_").find(last) == std::string_view::npos) break;
  }
  return size;
}

// The length of a host with a dot, and of the port and the path after it; 0 for none.
std::size_t host_length(std::string_view text) {
  std::size_t at = 0;
  for (; at < text.size() && at < kLongestHost && (is_ascii_word(text[at]) || text[at] == '-' || text[at] == '.'); ++at)
    if (text[at] == '.' && (at == 0 || text[at - 1] == '.')) break;
  while (at > 0 && (text[at - 1] == '.' || text[at - 1] == '-')) --at;
  const std::size_t last_dot = text.substr(0, at).rfind('.');
  if (last_dot == std::string_view::npos || at - last_dot < 3) return 0;
  const std::string_view top = text.substr(last_dot + 1, at - last_dot - 1);
  return std::all_of(top.begin(), top.end(), is_letter) ? at : 0;
}

// Where an address ends: at the first character that it cannot contain, or at a reference other than "&amp;".
std::size_t address_end(std::string_view text) {
  std::size_t at = 0;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (static_cast<unsigned char>(c) <= ' ' || static_cast<unsigned char>(c) >= 0x7F) break;
    if (std::string_view("<>\"{}|\\^`[]").find(c) != std::string_view::npos) break;
    if (c != '&' || begins_with(text.substr(at), "&amp;")) continue;
    std::size_t name = at + 1;
    while (name < text.size() && name - at < kLongestName && (is_ascii_word(text[name]) || text[name] == '#')) ++name;
    if (name < text.size() && text[name] == ';') break;
  }
  return without_sentence_end(text.substr(0, at));
}

// Finds the mail address around an "@".
PatternMatch mail_around(std::string_view text, std::size_t sign, std::size_t from) {
  const auto is_local = [](char c) { return is_ascii_word(c) || c == '.' || c == '_' || c == '+' || c == '-'; };
  std::size_t begin = sign;
  while (begin > from && sign - begin < kLongestName && is_local(text[begin - 1])) --begin;
  while (begin < sign && !is_ascii_word(text[begin])) ++begin;
  if (begin == sign || text[sign - 1] == '.') return {};
  if (begin > 0 && static_cast<unsigned char>(text[begin - 1]) >= 0x80) return {};
  const std::size_t host = host_length(text.substr(sign + 1));
  if (host == 0) return {};
  return {begin, sign + 1 + host - begin, kAddress};
}

std::size_t address_length(std::string_view text) {
  for (const std::string_view scheme : {"http://", "https://", "ftp://"})
    if (begins_with(text, scheme))
      return text.size() > scheme.size() && is_ascii_word(text[scheme.size()]) ? address_end(text) : 0;
  if (begins_with(text, "mailto:")) {
    const std::size_t sign = text.substr(0, kLongestName).find('@');
    if (sign == std::string_view::npos || mail_around(text, sign, 7).begin != 7) return 0;
    return address_end(text);
  }
  if (begins_with(text, "www.") && host_length(text) > 6) return address_end(text);
  return 0;
}

// Signs, arrows, currencies and pictures are not letters.
struct Range {
  char32_t first;
  char32_t last;
};
constexpr Range kSigns[] = {{0xA0, 0xA9},     {0xAB, 0xB4},     {0xB6, 0xB9},     {0xBB, 0xBF},     {0xD7, 0xD7},
                            {0xF7, 0xF7},     {0x2000, 0x2BFF}, {0x3000, 0x3004}, {0x3008, 0x3020}, {0xFE00, 0xFE0F},
                            {0xFE30, 0xFE6F}, {0xFEFF, 0xFEFF}, {0xFF01, 0xFF20}, {0xFFE0, 0xFFFF}, {0x1F000, 0x1FAFF}};

}  // namespace

TextPatterns::TextPatterns(std::vector<std::string> own) : own_(std::move(own)) {
  std::erase_if(own_, [](const std::string& pattern) { return pattern.empty() || pattern.front() == '*'; });
  for (const char c : std::string_view("{$%@hHfFmMwW")) begins_[static_cast<unsigned char>(c)] = true;
  for (const std::string& pattern : own_) begins_[static_cast<unsigned char>(pattern.front())] = true;
}

PatternMatch TextPatterns::find(std::string_view text, std::size_t from) const {
  for (std::size_t place = from; place < text.size(); ++place) {
    if (!begins_[static_cast<unsigned char>(text[place])]) continue;
    if (const PatternMatch found = at(text, place, from); found.size != 0) return found;
  }
  return {};
}

PatternMatch TextPatterns::at(std::string_view text, std::size_t place, std::size_t from) const {
  const std::string_view rest = text.substr(place);
  if (const std::size_t own = own_length(rest); own != 0) return {place, own, kPlaceholder};
  const bool follows_word = place > from && is_word(text[place - 1]);
  std::size_t size = 0;
  switch (text[place]) {
    case '{':
      size = in_double_braces(rest);
      if (size == 0) size = in_braces(rest, "{", "}");
      return {place, size, kPlaceholder};
    case '$':
      return {place, in_braces(rest, "${", "}"), kPlaceholder};
    case '%':
      return {place, follows_word ? 0 : in_percent(rest), kPlaceholder};
    case '@':
      return mail_around(text, place, from);
    default:
      return {place, follows_word ? 0 : address_length(rest), kAddress};
  }
}

std::size_t TextPatterns::own_length(std::string_view text) const {
  for (const std::string& pattern : own_) {
    if (pattern.front() != text.front()) continue;
    std::string_view left = pattern;
    std::size_t at = 0;
    bool fits = true;
    while (fits && !left.empty()) {
      const std::size_t star = left.find('*');
      const std::string_view literal = left.substr(0, star);
      const bool is_first = left.size() == pattern.size();
      if (is_first) {
        fits = text.starts_with(literal);
        at = literal.size();
      } else {
        const std::string_view near = text.substr(at, kLongestExpression);
        const std::string_view line = near.substr(0, near.find_first_of("\r\n"));
        const std::size_t found = literal.empty() ? line.size() : line.find(literal, 1);
        fits = found != std::string_view::npos && found != 0;
        at += fits ? found + literal.size() : 0;
      }
      if (star == std::string_view::npos) break;
      left.remove_prefix(star + 1);
      if (left.empty()) {
        // A star at the end takes the word that follows.
        const std::size_t word = at;
        while (at < text.size() && at - word < kLongestExpression && is_word(text[at])) ++at;
        fits = fits && at > word;
      }
    }
    if (fits && at != 0) return at;
  }
  return 0;
}

bool has_letter(std::string_view text) {
  while (!text.empty()) {
    if (is_letter(text.front())) return true;
    const std::size_t length = std::max<std::size_t>(utf8_character_length(text), 1);
    if (length > 1) {
      const char32_t c = utf8_code_point(text.substr(0, length));
      if (std::none_of(std::begin(kSigns), std::end(kSigns),
                       [&](const Range& range) { return range.first <= c && c <= range.last; }))
        return true;
    }
    text.remove_prefix(length);
  }
  return false;
}

}  // namespace kavo
