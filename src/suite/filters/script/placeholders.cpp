#include "suite/filters/script/placeholders.h"

#include <algorithm>

#include "formats/script/token.h"

namespace kavo::script {
namespace {

constexpr std::size_t kLongestName = 64;  // bytes

bool is_name(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return is_letter(c) || is_digit(c) || c == '_' || c == '.' || c == '-';
  });
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

std::size_t in_braces(std::string_view text, std::string_view open, std::string_view close) {
  if (!text.starts_with(open)) return 0;
  const std::size_t end = text.substr(0, kLongestName).find(close, open.size());
  if (end == std::string_view::npos || !is_name(trimmed(text.substr(open.size(), end - open.size())))) return 0;
  return end + close.size();
}

// "%s", "%1$d", "%05.2f", "%1"
std::size_t in_percent(std::string_view text) {
  std::size_t at = 1;
  const auto current = [&] { return at < text.size() ? text[at] : '\0'; };
  while (is_digit(current())) ++at;
  const bool is_numbered = at > 1;
  if (is_numbered && current() == '$') ++at;
  while (current() == '0' || current() == '-' || current() == '+' || current() == '.' || is_digit(current())) ++at;
  const bool is_end = at + 1 >= text.size() || !is_letter(text[at + 1]);
  if (std::string_view("sdifuxXcbeEgG").find(current()) != std::string_view::npos && current() != '\0' && is_end)
    return at + 1;
  return 0;
}

std::size_t address(std::string_view text) {
  const bool is_link = text.starts_with("http://") || text.starts_with("https://") || text.starts_with("ftp://") ||
                       text.starts_with("mailto:");
  if (!is_link) return 0;
  const std::size_t end = std::min(text.find_first_of(" \t\r\n<>\"'()[]{}\x1A"), text.size());
  std::size_t size = end;
  while (size > 0 && std::string_view(".,;:!?").find(text[size - 1]) != std::string_view::npos) --size;
  return size;
}

}  // namespace

std::size_t placeholder_length(std::string_view text) {
  switch (text.front()) {
    case '{': {
      const std::size_t doubled = in_braces(text, "{{", "}}");
      return doubled != 0 ? doubled : in_braces(text, "{", "}");
    }
    case '$':
      return in_braces(text, "${", "}");
    case '%':
      return in_percent(text);
    case 'h':
    case 'f':
    case 'm':
      return address(text);
    default:
      return 0;
  }
}

}  // namespace kavo::script
