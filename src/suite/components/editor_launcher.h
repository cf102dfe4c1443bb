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

// Reads the launcher's own arguments in any order: a document, and /t directly followed by the memory's name. Throws
// `failure` 5 for two documents or two memories: such a line was split inside a name.
EditorRequest editor_request_of(std::span<const std::string> arguments);

// The program and its arguments, as the setting `command` asks for them. The setting is split as Windows splits a
// command line. In an argument %1 stands for the document and %2 for the memory, both in the host's own form of a path;
// whatever a name holds, the argument stays one. An argument that needs a missing name is left out. A document that no
// argument mentions is added at the end. Empty for a setting without a word.
std::vector<std::u16string> editor_words(std::u16string_view command, const EditorRequest& request);

// The user's setting that names the editor: a command line, or "" for none (program settings, "KAVO", "Editor").
std::u16string editor_command();
void editor_command(std::u16string_view command);

// Starts the editor of the setting, else the program that the system opens XLIFF documents with, else whatever opens
// the document. Does not wait for it. Throws `failure` 53 when the document is missing or nothing can be started; the
// description then names the editor that was tried.
void start_editor(const EditorRequest& request);

}  // namespace kavo
