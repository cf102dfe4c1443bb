// The editor launcher: starts the user's editor on a bilingual document, with a translation memory when one is named.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

struct EditorRequest {
  std::u16string document;  // "" for none: the editor alone
  std::u16string memory;    // "" for none
};

// Reads the launcher's own arguments: a document, and /t with the memory's name right behind it, in any order. Throws
// `failure` 5 for two documents or two memories, as a line has that was split inside a name.
EditorRequest editor_request_of(std::span<const std::string> arguments);

// The program and the arguments that the setting `command` asks for; the setting is split as Windows splits a command
// line. %1 in an argument stands for the document and %2 for the memory, both in the host's own form of a path: however
// they are spelled, each argument stays one. Arguments with the name of something that is not there are left out; a
// document that no argument names comes behind the last one. Empty for a setting without a word.
std::vector<std::u16string> editor_words(std::u16string_view command, const EditorRequest& request);

// The setting that names the user's editor, a command line; "" for none (program settings, "KAVO", "Editor").
std::u16string editor_command();
void editor_command(std::u16string_view command);

// Starts the editor of the setting, else the one that the system opens XLIFF documents with, else whatever opens the
// document. Does not wait for it. Throws `failure` 53 when the document is missing or nothing can be started; an editor
// that cannot be started is named.
void start_editor(const EditorRequest& request);

}  // namespace kavo
