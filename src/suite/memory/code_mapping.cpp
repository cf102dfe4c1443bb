#include "suite/memory/code_mapping.h"

#include <charconv>
#include <map>
#include <vector>

#include "suite/document/coded_text.h"

namespace kavo {
namespace {

bool has_code(std::string_view coded) { return coded.find_first_of("\x01\x02\x03") != coded.npos; }

// The ids of a text in the order in which their codes begin.
std::vector<std::string_view> ids_of(std::string_view source) {
  std::vector<std::string_view> ids;
  CodedTextReader reader(source);
  for (CodedPart part; reader.next(part);)
    if (part.is_code && part.kind != CodeKind::kClose) ids.push_back(part.text);
  return ids;
}

template <class Rename>
std::string renamed(std::string_view coded, Rename&& rename) {
  std::string result;
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);) {
    if (!part.is_code)
      result += part.text;
    else
      rename(part, result);
  }
  return result;
}

}  // namespace

PlainPair with_plain_numbers(std::string_view source, std::string_view target) {
  if (!has_code(source)) return {std::string(source), has_code(target) ? plain_text(target) : std::string(target)};
  std::map<std::string_view, std::uint32_t> numbers;
  for (const std::string_view id : ids_of(source))
    numbers.try_emplace(id, static_cast<std::uint32_t>(numbers.size() + 1));
  const auto rename = [&](const CodedPart& part, std::string& result) {
    if (const auto found = numbers.find(part.text); found != numbers.end())
      append_code(result, part.kind, found->second);
  };
  return {renamed(source, rename), renamed(target, rename)};
}

bool has_same_codes(std::string_view source, std::string_view other) {
  const auto kinds = [](std::string_view coded) {
    std::string result;
    CodedTextReader reader(coded);
    for (CodedPart part; reader.next(part);)
      if (part.is_code) result += static_cast<char>(part.kind);
    return result;
  };
  return kinds(source) == kinds(other);
}

std::string with_codes_of(std::string_view source, std::string_view plain_target) {
  if (!has_code(plain_target)) return std::string(plain_target);
  const std::vector<std::string_view> ids = ids_of(source);
  return renamed(plain_target, [&](const CodedPart& part, std::string& result) {
    std::size_t number = 0;
    std::from_chars(part.text.data(), part.text.data() + part.text.size(), number);
    if (number >= 1 && number <= ids.size()) append_code(result, part.kind, ids[number - 1]);
  });
}

}  // namespace kavo
