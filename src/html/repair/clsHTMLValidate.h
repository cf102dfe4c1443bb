// Checks that the inline and table elements of an HTML page are opened and closed properly, repairs what is wrong and
// rewrites the page in place.
//
// The HTML standard is the measure: a parser builds the same document from the repaired page as from the page before,
// except where message 3019 says why it cannot. A repair writes an end tag, an opening tag or an escaped bracket where
// a parser would act so anyway; every other byte stays. It follows that:
// - a quote opens an attribute value only where the standard says so, after "="; `<img alt=it's>` ends at its ">";
// - an element's name is the whole name ("o:p"), not its letters alone;
// - a repaired page is not repaired again and reports no repair. What had to be left alone (3014, 3017, 3018) is still
//   there and is reported again.
//
// At the end of the page, elements that are still open are closed, one on each line: before </BODY> or </HTML> when
// only these tags, comments and white space follow, otherwise after everything. An element that is not in the table is
// closed only where a listed one could not be closed without it. With an empty table nothing is checked. Server code
// that was not taken out is copied unchanged.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "common/copy_trail.h"
#include "common/line_index.h"
#include "common/messages.h"
#include "common/progress_event.h"
#include "formats/script/token.h"
#include "html/repair/repaired_page.h"
#include "html/repair/tag_table.h"
#include "platform/failure.h"
#include "resources/string_table.h"

namespace kavo {

// Whether a message of ErrorList() reports a repair. The other messages report what was left as it is.
bool tells_repair(const Message& message);

class clsHTMLValidate {
 public:
  // Checks and repairs the page `Filename`. Returns 0 on success, or 1 with the reason as the last message. Throws
  // `failure` when the page cannot be read to its end or the repaired text cannot be written. Passes on what a Progress
  // handler throws. A call that fails leaves the page as it was.
  std::int32_t HTMLValidate();

  // The table of checked elements as text. Setting it throws `failure` 9 for more than 128 entries; the table is then
  // as it was.
  std::u16string Tags() const { return tags_.text(); }
  void Tags(std::u16string_view value) { tags_.text(value); }
  // Shows the table in a modal dialog and takes over what the user confirms. The table is stored nowhere else.
  void DisplayOptions();
  const std::u16string& Filename() const { return file_name_; }
  void Filename(std::u16string_view value) { file_name_ = value; }
  // Whether HTMLValidate() keeps the page as it was under `Filename` & ".bak", replacing an older backup. A call that
  // fails deletes a backup that was not there before.
  bool Backup() const { return backup_; }
  void Backup(bool value) { backup_ = value; }
  // The full path of the backup; "" for `Filename` & ".bak".
  void backup_name(std::u16string_view value) { backup_name_ = value; }
  // The messages of the last call; the first names the page.
  const MessageList& ErrorList() const { return messages_; }
  // The handler of the Progress event, raised with the percentage of the page read when it grows.
  void Progress(ProgressEvent::Handler handler) { progress_.handler(std::move(handler)); }

  // Set this when the page ends at the placeholder of a script that never ends. Elements that are open there are
  // reported and stay open, since end tags would become script in the restored page.
  void ends_in_script(bool value) { ends_in_script_ = value; }
  // The script file made with the page, and the language of its server blocks until it declares another one. When set,
  // no end tag is written into another branch of a script's condition than that of its start tag, and a page is left
  // unchanged when PHP code continues where page text seems to begin. `origin` maps places of the script file.
  void scripts(std::u16string file, script::Language server, PlaceOrigin origin = {}) {
    script_file_ = std::move(file);
    server_language_ = server;
    script_origin_ = std::move(origin);
  }
  // Maps places in the page to places in the document from which the page was made. Messages then name the latter.
  void origin(PlaceOrigin origin) { origin_ = std::move(origin); }
  // When set, HTMLValidate() records where the bytes of the repaired page come from. The trail is borrowed and must be
  // empty.
  void follow(CopyTrail* trail) { trail_ = trail; }
  // When set, HTMLValidate() writes no file at all; messages and repairs() are as if it did.
  void check_only(bool value) { check_only_ = value; }
  // How many places the last call repaired, or would have repaired. The file is rewritten only when there are any.
  std::uint64_t repairs() const { return repairs_; }

 private:
  std::int32_t failed(TextRow row, const failure& reason);
  void repair(BlockReader& page, OpenRepairedPage open);
  // The reason why the page is not repaired at all, if there is one. Throws `failure` when the script file cannot be
  // read.
  std::optional<Message> reason_to_leave(std::string_view start) const;

  TagTable tags_;
  std::u16string file_name_;
  bool backup_ = false;
  std::u16string backup_name_;
  bool check_only_ = false;
  PlaceOrigin origin_;
  CopyTrail* trail_ = nullptr;
  bool ends_in_script_ = false;
  std::u16string script_file_;
  PlaceOrigin script_origin_;
  script::Language server_language_ = script::Language::kUnknown;
  MessageList messages_;
  ProgressEvent progress_;
  std::uint64_t repairs_ = 0;
};

}  // namespace kavo
