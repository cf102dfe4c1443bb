// Post-processing: when the suite's filter has made the target, it reverses what the preparation did.
#pragma once

#include <string>
#include <string_view>

#include "driver/run_observer.h"
#include "driver/tud_name.h"

namespace kavo {

class FolderRun;

// The document that post-processing makes when the filter made `target`. `language` as below.
std::u16string document_made_of(const TudName& name, std::u16string_view target, std::u16string_view language);

class PostProcessing {
 public:
  // `created`: the scratch file that the filter made for the document `target`. `language`: the code in the bilingual
  // document's name, "" when the document counts as having none. `mark`: the mark of its preparation, which the
  // documents of its other files must share. `refuses_gaps`: fail when the scripts and placeholders of a page do not
  // match. All references must outlive the object.
  PostProcessing(const TudName& name, std::u16string_view target, std::u16string created, std::u16string language,
                 std::u16string mark, bool refuses_gaps, FolderRun& run, const RunObserver& observer);

  // Takes the steps that the target's extension asks for, if any. Throws `reported_failure` (step_failures.h) when one
  // fails, and `interruption` when the user interrupts.
  void PostProcess();
  // The scratch file that now holds the translation, and the document that it is to become.
  const std::u16string& result() const { return result_; }
  const std::u16string& document() const { return document_; }
  // The scratch file that the Office program read; "" for other documents.
  const std::u16string& form() const { return form_; }

 private:
  void RestoreScripts();
  void MergeMIF();
  void RebuildDocument();
  void RebuildOfficeFile();
  void rebuild(const std::u16string& document, const std::u16string& file);

  const TudName& name_;
  std::u16string document_;
  std::u16string result_;
  std::u16string form_;
  std::u16string language_;
  std::u16string mark_;
  bool refuses_gaps_;
  FolderRun& run_;
  const RunObserver& observer_;
};

}  // namespace kavo
