#include "platform/command_line.h"

#include <algorithm>

#include "platform/case_fold.h"
#include "platform/failure.h"

namespace kavo {
namespace {

bool is_blank(char16_t unit) { return unit == u' ' || unit == u'\t'; }

void skip_blanks(std::u16string_view& line) {
  while (!line.empty() && is_blank(line.front())) line.remove_prefix(1);
}

std::size_t leading(std::u16string_view line, char16_t unit) {
  const std::size_t count = line.find_first_not_of(unit);
  return count == std::u16string_view::npos ? line.size() : count;
}

std::u16string take_argument(std::u16string_view& line) {
  std::u16string argument;
  bool quoted = false;
  while (!line.empty() && (quoted || !is_blank(line.front()))) {
    const std::size_t backslashes = leading(line, u'\\');
    const bool before_quote = backslashes < line.size() && line[backslashes] == u'"';
    argument.append(before_quote ? backslashes / 2 : backslashes, u'\\');
    line.remove_prefix(backslashes);
    if (!before_quote) {
      if (backslashes > 0) continue;
      argument += line.front();
    } else if (backslashes % 2 == 1) {
      argument += u'"';
    } else if (quoted && line.size() > 1 && line[1] == u'"') {
      argument += u'"';
      line.remove_prefix(1);
    } else {
      quoted = !quoted;
    }
    line.remove_prefix(1);
  }
  return argument;
}

// True when a word needs no quotes, whether a program or the command interpreter reads it.
bool is_plain(std::u16string_view word) {
  return !word.empty() && std::ranges::none_of(word, [](char16_t unit) {
    return unit <= u' ' || std::u16string_view(u"\"&|<>^()%!,;=").find(unit) != std::u16string_view::npos;
  });
}

std::u16string in_quotes(std::u16string_view argument) {
  std::u16string quoted = u"\"";
  std::size_t backslashes = 0;
  for (const char16_t unit : argument) {
    // Backslashes before a quote count half, so they are doubled; one more makes the quote an ordinary character.
    if (unit == u'"') quoted.append(backslashes + 1, u'\\');
    backslashes = unit == u'\\' ? backslashes + 1 : 0;
    quoted += unit;
  }
  quoted.append(backslashes, u'\\');
  return quoted += u'"';
}

bool is_batch_file(std::u16string_view program) {
  const std::size_t dot = program.rfind(u'.');
  if (dot == std::u16string_view::npos) return false;
  const std::u16string_view extension = program.substr(dot);
  return equal_ignoring_case(extension, u".bat") || equal_ignoring_case(extension, u".cmd");
}

}  // namespace

std::vector<std::u16string> split_arguments(std::u16string_view line) {
  std::vector<std::u16string> arguments;
  for (skip_blanks(line); !line.empty(); skip_blanks(line)) arguments.push_back(take_argument(line));
  return arguments;
}

std::vector<std::u16string> split_command_line(std::u16string_view line) {
  skip_blanks(line);
  if (line.empty()) return {};
  const bool quoted = line.front() == u'"';
  if (quoted) line.remove_prefix(1);
  const std::size_t end = std::min(quoted ? line.find(u'"') : line.find_first_of(u" \t"), line.size());
  std::vector<std::u16string> parts = {std::u16string(line.substr(0, end))};
  line.remove_prefix(std::min(line.size(), end + 1));
  for (std::u16string& argument : split_arguments(line)) parts.push_back(std::move(argument));
  return parts;
}

std::u16string joined_command_line(std::u16string_view program, std::span<const std::u16string> arguments) {
  if (program.find(u'"') != std::u16string_view::npos)
    throw failure(FailureNumber::kInvalidCall,
                  std::u16string(program) + u" cannot be the name of a program: it contains a quotation mark");
  const bool is_batch = is_batch_file(program);
  std::u16string line = u"\"";
  (line += program) += u'"';
  for (const std::u16string& argument : arguments) {
    if (is_batch && argument.find_first_of(u"\"%\r\n") != std::u16string::npos)
      throw failure(FailureNumber::kInvalidCall,
                    argument + u" cannot be passed to a batch file: it contains a quotation mark, \"%\" or a line end");
    (line += u' ') += is_plain(argument) ? argument : in_quotes(argument);
  }
  return line;
}

}  // namespace kavo
