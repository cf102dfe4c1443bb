// What follows when the suite's filter has created a target: the steps that undo the preparation of its format.
#pragma once

#include <string>
#include <string_view>

#include "driver/run_observer.h"
#include "driver/tud_name.h"

namespace kavo {

class FolderRun;

// The document that post-processing ends with when the filter has created `target`; `language` as below.
std::u16string document_made_of(const TudName& name, std::u16string_view target, std::u16string_view language);

class PostProcessing {
 public:
  // `created` is the scratch file that the filter has made for the document `target`; `language` the code in the
  // bilingual document's name, "" when the document is treated as one without; `mark` that of its preparation, which
  // the documents of its other files must have. `refuses_gaps`: a page whose scripts and placeholders do not fit
  // together fails. All references must outlive the object.
  PostProcessing(const TudName& name, std::u16string target, std::u16string created, std::u16string language,
                 std::u16string mark, bool refuses_gaps, FolderRun& run, const RunObserver& observer);

  // Takes the route that the target's extension asks for; true without work for one that asks for none. False when the
  // route failed, the observer then knows why. Throws `interruption` when the user interrupts.
  bool PostProcess();
  // The scratch file that the translation is in now, and the document that it is to become.
  const std::u16string& result() const { return result_; }
  const std::u16string& document() const { return document_; }

 private:
  bool RestoreScripts();
  bool MergeMIF();
  bool RebuildDocument();
  bool RebuildOfficeFile();
  void rebuild(const std::u16string& tud, const std::u16string& file);

  const TudName& name_;
  std::u16string document_;
  std::u16string result_;
  std::u16string language_;
  std::u16string mark_;
  bool refuses_gaps_;
  FolderRun& run_;
  const RunObserver& observer_;
};

}  // namespace kavo
