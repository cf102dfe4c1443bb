#include "suite/editor_launcher.h"

#include <vector>

#include "common/program_settings.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::u16string_view kApplication = u"KAVO";
constexpr std::u16string_view kSection = u"Editor";
constexpr std::u16string_view kKey = u"Command";

// A result of the shell up to this one is a failure.
constexpr int kLastShellFailure = 31;

bool is_blank(char16_t c) { return c == u' ' || c == u'\t'; }

// The words of a line, quotes kept: blanks between quotes do not part.
std::vector<std::u16string> words_of(std::u16string_view line) {
  std::vector<std::u16string> words;
  bool is_quoted = false;
  bool in_word = false;
  for (const char16_t c : line) {
    if (!is_quoted && is_blank(c)) {
      in_word = false;
      continue;
    }
    if (!in_word) words.emplace_back();
    in_word = true;
    if (c == u'"') is_quoted = !is_quoted;
    words.back() += c;
  }
  return words;
}

// Puts a path in the place of a mark; a word that then holds blanks and no quotes gets some.
void replace_mark(std::u16string& word, std::u16string_view mark, const std::u16string& path) {
  const bool has_quotes = word.find(u'"') != std::u16string::npos;
  for (std::size_t at = 0; (at = word.find(mark, at)) != std::u16string::npos; at += path.size())
    word.replace(at, mark.size(), path);
  if (!has_quotes) word = u"\"" + word + u"\"";
}

}  // namespace

EditorRequest editor_request_of(std::span<const std::string> arguments) {
  EditorRequest request;
  for (const std::string& argument : arguments) {
    const bool is_memory = argument.starts_with("/t") || argument.starts_with("/T");
    if (is_memory)
      request.memory = to_utf16(std::string_view(argument).substr(2));
    else
      request.document = to_utf16(argument);
  }
  return request;
}

std::u16string editor_command_line(std::u16string_view command, const EditorRequest& request) {
  std::u16string line;
  bool names_document = false;
  const auto add = [&](std::u16string_view word) { (line += line.empty() ? u"" : u" ") += word; };
  for (std::u16string& word : words_of(command)) {
    const bool holds_document = word.find(u"%1") != std::u16string::npos;
    const bool holds_memory = word.find(u"%2") != std::u16string::npos;
    names_document = names_document || holds_document;
    if ((holds_document && request.document.empty()) || (holds_memory && request.memory.empty())) continue;
    if (holds_document) replace_mark(word, u"%1", request.document);
    if (holds_memory) replace_mark(word, u"%2", request.memory);
    add(word);
  }
  if (!names_document && !request.document.empty()) add(u"\"" + request.document + u"\"");
  return line;
}

std::u16string editor_command() { return get_setting(kApplication, kSection, kKey, u""); }
void editor_command(std::u16string_view command) { save_setting(kApplication, kSection, kKey, command); }

void start_editor(const EditorRequest& request) {
  Ports& system = ports();
  if (!request.document.empty() && !system.files->info(request.document))
    throw failure(FailureNumber::kFileNotFound, request.document + u": there is no such document");
  if (const std::u16string command = editor_command(); !command.empty()) {
    system.shell->start(editor_command_line(command, request));
    return;
  }
  if (!request.document.empty()) {
    if (system.shell->open_as(request.document, u".xlf") > kLastShellFailure) return;
    if (system.shell->open_as(request.document, u".xliff") > kLastShellFailure) return;
    if (system.shell->open(request.document, u"") > kLastShellFailure) return;
  }
  throw failure(FailureNumber::kFileNotFound,
                u"No editor for XLIFF documents is known. Name one with: kavo settings editor.command=...");
}

}  // namespace kavo
