// The wizard run: asks for a document in the dialog, makes its bilingual documents and starts the editor.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "driver/produced_file.h"
#include "driver/run_observer.h"

namespace kavo {

struct WizardRequest {
  std::u16string file;    // offered in the dialog when it exists; blanks around the name do not count
  std::int32_t bits = 0;  // 1: the dialog can start the editor; 2: start the editor after a failure, too; 4: offer the
                          // memory that was used last
  bool quiet = false;     // show no message box about a failure
};

struct WizardOutcome {
  std::int32_t result = 0;
  std::optional<std::vector<ProducedFile>> files = {};  // nothing before a preparation; empty when that failed
};

// The result is 0 when done, 1 when cancelled (in the dialog or beside the progress), 2 for a file of no known type,
// 100 + the result of the preparation, or 200 + i when produced file i could not be converted; the documents of the
// files before it stay.
//
// The editor launcher, "K19Subst.exe" in the library's folder, is started on the first bilingual document with the
// chosen memory. A missing launcher, or one that cannot be started, does not change the result, since the documents
// exist. The observer receives the progress and, when the run fails, the reason. Throws `interruption` when the user
// interrupts the program.
WizardOutcome run_single_file_wizard(const WizardRequest& request, const RunObserver& observer);

}  // namespace kavo
