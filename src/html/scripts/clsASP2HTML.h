// Protects the server-side script of a page from translation and restores it afterwards.
//
// ASP2HTML turns a server page into plain HTML with numbered placeholder comments and a script side file; HTML2ASP
// turns the translated HTML and the side file into the page again. Restoring an unchanged page gives back every byte.
//
// The new files take their names only when they are complete: a call that fails leaves everything as it was. UTF-16
// pages are refused.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/copy_trail.h"
#include "common/document_names.h"
#include "common/messages.h"
#include "common/progress_event.h"

namespace kavo {

class ScriptFile;
class ScriptRestorer;

class clsASP2HTML {
 public:
  // Both return 0, or 1 with the reason in ErrorList(). What a Progress handler throws, and an `interruption`, pass
  // through after everything new has been removed.
  std::int32_t ASP2HTML();
  std::int32_t HTML2ASP();

  // Full paths. When HTMFile or SCRFile is empty at the start of a call, every empty name is made from the input's:
  // index.asp goes with index_asp.htm and index_asp.scr. When both are given, an empty ASPFile stays empty,
  // deliberately: callers that name two files name the third.
  const std::u16string& ASPFile() const { return names_.page; }
  void ASPFile(std::u16string_view value) { names_.page = value; }
  const std::u16string& HTMFile() const { return names_.html; }
  void HTMFile(std::u16string_view value) { names_.html = value; }
  const std::u16string& SCRFile() const { return names_.script; }
  void SCRFile(std::u16string_view value) { names_.script = value; }

  // True when the page of the last ASP2HTML() ends inside a block that is never closed. Text that is written after its
  // placeholder becomes script when the page is restored.
  bool ends_in_script() const { return ends_in_script_; }

  // What did not fit together in the files of the last HTML2ASP(): a placeholder for which the script file has no block
  // (it is taken out), a block that no placeholder names (its script is lost), a script file that ends inside a block.
  // A placeholder that occurs twice is reported, too; its script is written at both places, since a translation may
  // need that. At most one message for each kind, naming the first place. They are not in ErrorList() when the call
  // succeeded. Empty when the call failed for another reason.
  const MessageList& warnings() const { return warnings_; }
  // When set, an HTML2ASP() that would lose script writes nothing and fails, with these warnings as its errors.
  void refuse_gaps(bool value) { refuse_gaps_ = value; }

  // When set, ASP2HTML() records where the bytes of the page and of the script file come from. The trails are borrowed,
  // must be empty, and take memory for every script.
  void follow(CopyTrail* page, CopyTrail* script) {
    page_trail_ = page;
    script_trail_ = script;
  }

  // The messages of the last call; the first says which call it was.
  const MessageList& ErrorList() const { return messages_; }
  // The message with this 1-based index; "" when there is none.
  std::u16string GetError(std::int32_t index) const;

  // The handler of the Progress event, raised with the percentage of the input read.
  void Progress(ProgressEvent::Handler handler) { progress_.handler(std::move(handler)); }

 private:
  using CompleteNames = void(PageNames&);
  using Operation = std::int32_t (clsASP2HTML::*)();
  std::int32_t run(std::u16string_view what, const std::u16string& input, CompleteNames complete, Operation operation);
  std::int32_t protect();
  std::int32_t restore();
  bool find_gaps(const ScriptRestorer& restorer, ScriptFile& script);

  PageNames names_;
  bool ends_in_script_ = false;
  bool refuse_gaps_ = false;
  CopyTrail* page_trail_ = nullptr;
  CopyTrail* script_trail_ = nullptr;
  MessageList messages_;
  MessageList warnings_;
  ProgressEvent progress_;
};

}  // namespace kavo
