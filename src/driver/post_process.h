// What follows when the suite's filter has created a target: the steps that undo the preparation of its format.
#pragma once

#include <string>
#include <string_view>

#include "driver/run_files.h"
#include "driver/run_observer.h"
#include "driver/tud_name.h"

namespace kavo {

// The document that post-processing ends with when the filter has created `target`; `language` as below.
std::u16string document_made_of(const TudName& name, std::u16string_view target, std::u16string_view language);

class PostProcessing {
 public:
  // Where a route puts a document of another name than the filter's.
  enum class Documents {
    kUsual,    // to the name that document_made_of() tells
    kScratch,  // to a scratch file that the caller moves on
  };
  // `target` is the file that the filter created; `language` the code in the bilingual document's name, "" when the
  // document is treated as one without. All references must outlive the object.
  PostProcessing(const TudName& name, std::u16string target, std::u16string language, Documents documents,
                 RunFiles& files, const RunObserver& observer);

  // Takes the route that the target's extension asks for; true without work for one that asks for none. False when the
  // route failed, the observer then knows why. Throws `failure` 18 when the user interrupts.
  bool PostProcess();
  // The file that the translation is in now.
  const std::u16string& target() const { return target_; }

 private:
  bool RestoreScripts();
  bool MergeMIF();
  bool RebuildDocument();
  bool RebuildOfficeFile();
  bool rebuild(const std::u16string& tud, const std::u16string& file);
  void move_out_of_the_way_of(const std::u16string& page);
  std::u16string document_name() const;

  const TudName& name_;
  std::u16string target_;
  std::u16string language_;
  Documents documents_;
  RunFiles& files_;
  const RunObserver& observer_;
};

}  // namespace kavo
