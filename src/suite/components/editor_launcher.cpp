#include "suite/components/editor_launcher.h"

#include <optional>
#include <utility>

#include "common/program_settings.h"
#include "platform/command_line.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::u16string_view kKey = u"Command";
constexpr std::u16string_view kDocumentMark = u"%1";
constexpr std::u16string_view kMemoryMark = u"%2";
constexpr std::u16string_view kAdvice = u". Name an editor with: kavo settings editor.command=...";

// Results of the shell up to this one are failures.
constexpr int kLastShellFailure = 31;

std::u16string host_text(const std::u16string& path) { return to_utf16(path_to_host(path)); }

// An argument of the setting with the names in the place of its marks. Nothing when a name is missing.
std::optional<std::u16string> with_names(std::u16string_view argument, const EditorRequest& request) {
  std::u16string text;
  while (!argument.empty()) {
    const bool is_document = argument.starts_with(kDocumentMark);
    if (!is_document && !argument.starts_with(kMemoryMark)) {
      text += argument.front();
      argument.remove_prefix(1);
      continue;
    }
    const std::u16string& path = is_document ? request.document : request.memory;
    if (path.empty()) return std::nullopt;
    text += host_text(path);
    argument.remove_prefix(kDocumentMark.size());
  }
  return text;
}

}  // namespace

EditorRequest editor_request_of(std::span<const std::string> arguments) {
  EditorRequest request;
  for (const std::string& argument : arguments) {
    const bool is_memory = argument.starts_with("/t") || argument.starts_with("/T");
    std::u16string& name = is_memory ? request.memory : request.document;
    if (!name.empty())
      throw failure(FailureNumber::kInvalidCall, u"One document and one memory can be opened at a time");
    name = to_utf16(std::string_view(argument).substr(is_memory ? 2 : 0));
  }
  return request;
}

std::vector<std::u16string> editor_words(std::u16string_view command, const EditorRequest& request) {
  std::vector<std::u16string> words;
  bool names_document = false;
  for (std::u16string& word : split_command_line(command)) {
    names_document = names_document || word.find(kDocumentMark) != std::u16string::npos;
    // The first word is the program. Marks in it have no meaning.
    if (std::optional<std::u16string> named = words.empty() ? std::move(word) : with_names(word, request))
      words.push_back(*std::move(named));
  }
  if (!words.empty() && !names_document && !request.document.empty()) words.push_back(host_text(request.document));
  return words;
}

std::u16string editor_command() { return kEditorSettings.get(kKey); }
void editor_command(std::u16string_view command) { kEditorSettings.save(kKey, command); }

void start_editor(const EditorRequest& request) {
  Ports& system = ports();
  if (!request.document.empty() && !system.files->info(request.document))
    throw failure(FailureNumber::kFileNotFound, host_text(request.document) + u": there is no such document");
  if (const std::vector<std::u16string> words = editor_words(editor_command(), request); !words.empty()) {
    try {
      system.shell->start(path_from_host(to_utf8(words[0])), {words.begin() + 1, words.end()});
      return;
    } catch (const failure& reason) {
      throw failure(FailureNumber::kFileNotFound,
                    u"The editor cannot be started: " + reason.description() + std::u16string(kAdvice));
    }
  }
  if (!request.document.empty()) {
    for (const std::u16string_view extension : {std::u16string_view(u".xlf"), std::u16string_view(u".xliff")})
      if (system.shell->open_as(request.document, extension) > kLastShellFailure) return;
    if (system.shell->open(request.document) > kLastShellFailure) return;
  }
  throw failure(FailureNumber::kFileNotFound, u"No editor for XLIFF documents is known" + std::u16string(kAdvice));
}

}  // namespace kavo
