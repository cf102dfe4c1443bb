// Checks that the inline and table elements of an HTML page are opened and closed properly, repairs what is wrong and
// rewrites the page in place.
//
// The measure is the HTML standard: a parser builds the same document from the page before and after, except where a
// message says why it cannot be (3019). A repair is an end tag, an opening tag or an escaped bracket that is written
// where a parser would act so anyway; every other byte stays. Three readings follow from that:
// - a quote opens an attribute value only where the standard says so, after "="; `<img alt=it's>` ends at its ">";
// - an element's name is the whole name ("o:p"), not its letters alone;
// - a repaired page is not repaired again and reports no repair. What had to be left alone (3014, 3017, 3018) is still
//   there and is reported again.
// The end of the page: what is open is closed before </BODY> or </HTML> when only they, comments and white space
// follow, else behind everything, one line per element. An element that is not in the table is closed only where one of
// the table could not be closed otherwise. With an empty table nothing is checked. Server code that was not taken out
// is copied unchanged.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/copy_trail.h"
#include "common/line_index.h"
#include "common/messages.h"
#include "common/progress_event.h"
#include "html/repair/tag_table.h"

namespace kavo {

// Whether a message of ErrorList() tells a repair; the others tell what was left as it is.
bool tells_repair(const Message& message);

class clsHTMLValidate {
 public:
  // Repairs `Filename`: 0 on success, 1 on failure, with the reason as the last message; the page is then as it was.
  // Throws `failure` when the page cannot be read to its end or the repaired text cannot be written: nothing changes.
  std::int32_t HTMLValidate();

  // The table of checked elements as text. Writing throws `failure` 9 for more than 128 entries.
  std::u16string Tags() const { return tags_.text(); }
  void Tags(std::u16string_view value) { tags_.text(value); }
  // Shows the options dialog modally on the table and takes over what the user confirmed. It is stored nowhere else.
  void DisplayOptions();
  const std::u16string& Filename() const { return file_name_; }
  void Filename(std::u16string_view value) { file_name_ = value; }
  // Keep the page as it was as `Filename` & ".bak", replacing an older one. A call that fails keeps no new backup.
  bool Backup() const { return backup_; }
  void Backup(bool value) { backup_ = value; }
  // Another name for the backup; "" for that one.
  void backup_name(std::u16string_view value) { backup_name_ = value; }
  // Of the last call; the first names the page.
  const MessageList& ErrorList() const { return messages_; }
  // The event: percentage of the page read, raised when it grows.
  void Progress(ProgressEvent::Handler handler) { progress_.handler(std::move(handler)); }

  // When set, the page ends at the placeholder of a script that never ends: what is open there is told and stays open,
  // since end tags would be script in the restored page.
  void ends_in_script(bool value) { ends_in_script_ = value; }
  // Tells places of the page, which messages name, as places of the document that it was made of.
  void origin(PlaceOrigin origin) { origin_ = std::move(origin); }
  // When set, HTMLValidate() writes down where the bytes of the repaired page come from, in an empty trail that
  // outlives it.
  void follow(CopyTrail* trail) { trail_ = trail; }
  // When set, HTMLValidate() writes no file at all; messages and repairs() are as if it did.
  void check_only(bool value) { check_only_ = value; }
  // Places that the last call repaired, or would have. The file is only rewritten when there are any.
  std::uint64_t repairs() const { return repairs_; }

 private:
  std::int32_t failed(std::u16string text, std::int32_t number);

  TagTable tags_;
  std::u16string file_name_;
  bool backup_ = false;
  std::u16string backup_name_;
  bool check_only_ = false;
  PlaceOrigin origin_;
  CopyTrail* trail_ = nullptr;
  bool ends_in_script_ = false;
  MessageList messages_;
  ProgressEvent progress_;
  std::uint64_t repairs_ = 0;
};

}  // namespace kavo
