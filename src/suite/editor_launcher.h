// The editor launcher: starts the user's editor on a bilingual document, with a translation memory when one is named.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kavo {

struct EditorRequest {
  std::u16string document;  // "" for none: the editor alone
  std::u16string memory;    // "" for none
};

// Reads the launcher's own arguments: a document, and /t with the memory's name right behind it, in any order.
EditorRequest editor_request_of(std::span<const std::string> arguments);

// The command line of an editor whose setting is `command`: %1 is replaced by the document and %2 by the memory, in
// quotes where the setting has none around them. Words that hold the name of something that is not there are left out;
// a document that no word names is put behind the last one.
std::u16string editor_command_line(std::u16string_view command, const EditorRequest& request);

// The setting that names the user's editor, a command line; "" for none (program settings, "KAVO", "Editor").
std::u16string editor_command();
void editor_command(std::u16string_view command);

// Starts the editor of the setting, else the one that the system opens XLIFF documents with, else whatever opens the
// document. Does not wait for it. Throws `failure` 53 when the document is missing or nothing can be started.
void start_editor(const EditorRequest& request);

}  // namespace kavo
