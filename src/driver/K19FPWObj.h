// The public automation object: a host hands it a document, reads the produced files back and later has the
// translation rebuilt. The COM skin and the command are thin covers over this class.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "driver/preparation.h"
#include "driver/run_observer.h"

namespace kavo {

struct TranslationResult;

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

  // Shows the wizard dialog by the thread's form presenter, prepares the file chosen there, has the suite's filters
  // make bilingual documents of what that produced and starts the editor on the first; see wizard_run.h. 0
  // done, 1 cancelled, 2 a file of no known type, 100 + the result of PreProcess, 200 + i when file i could not be
  // converted. Unless quiet a message box says what failed. Throws `interruption` when the user interrupts the program.
  std::int32_t SingleFileWizard(std::u16string& sFilename, std::int32_t& nKAVO);
  // Prepares a document for the suite's filters and lists the files produced. 0 when done (a type that needs no
  // preparation is listed as it is, without being opened), 3 when a page could not be prepared, 4 when a MIF document
  // could not, or was in use; the list is empty then and every file as it was. A document whose name differs from
  // another one's in letter case only is refused: both would be prepared to the same files. A MIF document that failed
  // leaves its backup (".kavo.bak" behind the name). Throws `interruption` when the user interrupts.
  std::int32_t PreProcess(std::u16string& sFilename);
  std::int32_t GetFileCount() const { return static_cast<std::int32_t>(produced_.size()); }
  // "" past the last file; a negative index throws `failure` 9, deliberately: hosts rely on the asymmetry.
  std::u16string GetFile(std::int32_t nCount) const;
  // Rebuilds the document of a translated bilingual document; see translation.h. `sTarget` is the file to create,
  // "" for the name that the bilingual document tells, and becomes the file really created. nPreview 1 or 2 opens the
  // result; a negative value has an old target deleted first (it is back when the run fails). nHighlight not 0 colours
  // the segments by their status. 0, or 1 to 7 with the text in LastError and, unless quiet, in a message box;
  // documents are then as they were. Throws what the suite's document component raises and `interruption` when the user
  // interrupts; LastError is then its description.
  std::int32_t CreateTranslation(std::u16string& sTUD, std::u16string& sTarget, std::int32_t& nPreview,
                                 std::int32_t& nHighlight);
  std::int32_t QuietMode() const { return quiet_; }
  void QuietMode(std::int32_t value) { quiet_ = value; }
  const std::u16string& LastError() const { return last_error_; }

  std::span<const ProducedFile> produced_files() const { return produced_; }
  void observe(RunObserver observer) { observer_ = std::move(observer); }

 private:
  // Ends a CreateTranslation: sets LastError and, unless quiet, shows it; the error's number is the result.
  std::int32_t report(const TranslationResult& result);

  std::int32_t quiet_ = 0;
  std::u16string last_error_;
  std::vector<ProducedFile> produced_;
  RunObserver observer_;
};

}  // namespace kavo
