// The public automation object: a host hands it a document, reads the produced files back and later has the
// translation rebuilt. The COM skin and the command are thin covers over this class.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "common/messages.h"
#include "platform/automation.h"

namespace kavo {

// A file that the suite's filters are to process.
struct ProducedFile {
  std::u16string file_name;    // full path
  std::int32_t file_type = 0;  // file type code (see file_types.h); selects the filter
  std::u16string tud_name;     // the bilingual document that the filter run wrote, "" before
};

// What a preparation tells while it runs: percent of the whole preparation, and each message of the converters (what
// failed, what was repaired); both may be empty. Beside the contract: a host sees results only, the
// command shows progress and messages.
struct PreparationObserver {
  std::function<void(std::u16string_view file, int percent)> progress;
  std::function<void(const Message& message)> message;
};

// All calls come on the thread that created the object. Every by-reference parameter may be written by the callee in
// principle; only CreateTranslation writes one back (`sTarget`).
class K19FPWObj {
 public:
  // Creates the thread's filter catalogue object and fills the thread's filter table from it. Throws what the
  // catalogue raises.
  K19FPWObj();
  // Releases the thread's filter catalogue, deliberately even when other instances live: a host uses one at a time.
  ~K19FPWObj();
  K19FPWObj(const K19FPWObj&) = delete;
  K19FPWObj& operator=(const K19FPWObj&) = delete;

  // There is no wizard dialog yet: always 1, as when the user leaves it without choosing a file.
  std::int32_t SingleFileWizard(std::u16string& sFilename, std::int32_t& nKAVO);
  // Prepares a document for the suite's filters and lists the files produced. 0 when done (a type that needs no
  // preparation is listed as it is, without being opened), 3 when a page could not be prepared, 4 when a MIF document
  // could not; the list is empty then. A page that failed leaves no file behind, a MIF document its backup (".kavo.bak"
  // behind the name).
  // Throws `failure` 18 when the user interrupts.
  std::int32_t PreProcess(std::u16string& sFilename);
  std::int32_t GetFileCount() const { return produced_count_; }
  // "" past the last file; a negative index throws `failure` 9, deliberately: hosts rely on the asymmetry.
  std::u16string GetFile(std::int32_t nCount) const;
  // Rebuilding is not there yet: always 1, reported like every failure (LastError, message box unless quiet).
  std::int32_t CreateTranslation(std::u16string& sTUD, std::u16string& sTarget, std::int32_t& nPreview,
                                 std::int32_t& nHighlight);
  std::int32_t QuietMode() const { return quiet_; }
  void QuietMode(std::int32_t value) { quiet_ = value; }
  const std::u16string& LastError() const { return last_error_; }

  std::span<const ProducedFile> produced_files() const;
  void observe(PreparationObserver observer) { observer_ = std::move(observer); }

 protected:
  // Ends a CreateTranslation: sets LastError and, unless quiet, shows it; the code is the result. Without a text of its
  // own an error has the one of the string table.
  std::int32_t report_translation(std::int32_t error_code, std::u16string error_text);

 private:
  bool prepare(bool (K19FPWObj::*preparation)());
  bool PrepareHTML();
  bool PrepareMIF();
  void tell(const Message& message) const;
  void tell_all(std::span<const Message> messages) const;
  void tell_progress(std::u16string_view file, int percent) const;

  std::int32_t quiet_ = 0;
  std::u16string last_error_;
  std::array<ProducedFile, 4> produced_;
  std::int32_t produced_count_ = 0;
  std::int32_t source_type_ = 0;
  std::u16string backup_name_;
  PreparationObserver observer_;
};

}  // namespace kavo
