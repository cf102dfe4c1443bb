// The public automation object. A host hands it a document, reads back the names of the files produced, and later has
// the translation rebuilt. The COM skin and the command are thin layers over this class.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "driver/preparation.h"
#include "driver/run_observer.h"

namespace kavo {

struct TranslationResult;

// All calls come on the thread that created the object. Parameters are by reference because hosts pass them so; only
// CreateTranslation writes one (`sTarget`).
class K19FPWObj {
 public:
  // Creates the filter catalogue of this thread and fills the thread's filter table from it. Throws what the catalogue
  // raises.
  K19FPWObj();
  // Releases the thread's filter catalogue, deliberately even when other instances exist, since a host uses one at a
  // time.
  ~K19FPWObj();
  K19FPWObj(const K19FPWObj&) = delete;
  K19FPWObj& operator=(const K19FPWObj&) = delete;

  // Shows the wizard dialog, prepares the file chosen there, has the suite's filters make bilingual documents of the
  // files produced, and starts the editor on the first; see wizard_run.h. Returns 0 when done, 1 when cancelled, 2 for
  // a file of no known type, 100 + the result of PreProcess, or 200 + i when file i could not be converted. Unless
  // quiet, a message box reports a failure. Throws `interruption` when the user interrupts the program.
  std::int32_t SingleFileWizard(std::u16string& sFilename, std::int32_t& nKAVO);
  // Prepares a document for the suite's filters and lists the files produced. Returns 0 when done, 3 when a page could
  // not be prepared, 4 when a MIF document could not be prepared or was in use. After a failure the list is empty and
  // every file is as it was; only the backup of a MIF document (its name and ".kavo.bak") stays. A document whose type
  // needs no preparation is listed as it is, without being opened. A document whose name differs from that of another
  // one only in letter case is refused: both would be prepared to the same files. Throws `interruption` when the user
  // interrupts.
  std::int32_t PreProcess(std::u16string& sFilename);
  std::int32_t GetFileCount() const { return static_cast<std::int32_t>(produced_.size()); }
  // The path of produced file `nCount`, counted from 0; "" past the last one. A negative index throws `failure` 9.
  // Hosts rely on this asymmetry.
  std::u16string GetFile(std::int32_t nCount) const;
  // Rebuilds the document of a translated bilingual document; see translation.h. `sTarget` is the file to create, ""
  // for the name that the bilingual document gives; on return it is the file that was created. nPreview 1 or 2 opens
  // the result; a negative value deletes an old target first, which is back when the run fails. nHighlight other than 0
  // colours the segments by their status. Returns 0, or 1 to 7 with the text in LastError and, unless quiet, in a
  // message box; all documents are then as they were. Throws what the suite's document component raises, with its
  // description in LastError, and `interruption` when the user interrupts.
  std::int32_t CreateTranslation(std::u16string& sTUD, std::u16string& sTarget, std::int32_t& nPreview,
                                 std::int32_t& nHighlight);
  std::int32_t QuietMode() const { return quiet_; }
  void QuietMode(std::int32_t value) { quiet_ = value; }
  const std::u16string& LastError() const { return last_error_; }

  std::span<const ProducedFile> produced_files() const { return produced_; }
  void observe(RunObserver observer) { observer_ = std::move(observer); }

 private:
  // Ends a CreateTranslation: sets LastError, shows it unless quiet, and returns the error's number.
  std::int32_t report(const TranslationResult& result);

  std::int32_t quiet_ = 0;
  std::u16string last_error_;
  std::vector<ProducedFile> produced_;
  RunObserver observer_;
};

}  // namespace kavo
