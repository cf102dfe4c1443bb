#include "driver/translation.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "common/document_names.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/same_file.h"
#include "driver/companions.h"
#include "driver/document_files.h"
#include "driver/filter_table.h"
#include "driver/font_mapping.h"
#include "driver/post_process.h"
#include "driver/status_colours.h"
#include "driver/step_failures.h"
#include "driver/target_build.h"
#include "driver/tud_name.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "resources/string_table.h"
#include "ui/clsLanguages.h"

namespace kavo {
namespace {

constexpr std::u16string_view kOfficeFilters[] = {u"k19pptw.k19pptwobj.1", u"k19xlsw.k19xlswobj.1",
                                                  u"k19docw.k19docwobj.1"};
// Some Office programs need this long to release a file.
constexpr double kOfficeSeconds = 5;
constexpr double kBetweenLooks = 0.05;  // seconds
constexpr int kHighestShellFailure = 31;

// The language's code as the suite writes it; "" when the suite does not know it.
std::u16string known_language(std::u16string_view code) {
  const clsLanguages languages;
  for (std::int32_t i = 0; i <= languages.LanguageCount(); ++i)
    if (equal_ignoring_ascii_case(languages.LanguageCode(i), code)) return languages.LanguageCode(i);
  return u"";
}

bool is_office_format(std::u16string_view format) {
  const std::u16string upper = ascii_upper(format);
  return upper == u"PPT" || upper == u"XLS";
}

// Ends a translation with an error of the contract. The description is "" when the standard text of its number says
// enough.
class translation_failure : public failure {
 public:
  explicit translation_failure(TranslationError error, std::u16string description = {})
      : failure(FailureNumber::kInvalidCall, std::move(description)), error_(error) {}
  TranslationError error() const noexcept { return error_; }

 private:
  TranslationError error_;
};

// Takes a step and returns its result. Its failure becomes `error`, with the failure's own description.
template <class Step>
auto described_as(TranslationError error, Step&& step) {
  try {
    return step();
  } catch (const translation_failure&) {
    throw;
  } catch (const failure& reason) {
    throw translation_failure(error, reason.description());
  }
}

class Translation {
 public:
  Translation(const TranslationRequest& request, const RunObserver& observer)
      : request_(request),
        observer_(observer),
        overwrites_(request.preview < 0),
        // The remainder of a negative value is 0 or negative, which means no preview.
        preview_(overwrites_ ? request.preview % 256 : request.preview),
        name_(request.tud),
        target_(request.target) {}

  TranslationResult run() {
    std::u16string filter;
    try {
      filter = create();
    } catch (const translation_failure& reason) {
      return {reason.error(), FolderRun::without_scratch_folder(reason.description()), u""};
    }
    show(filter);
    return {kNoError, u"", target_};
  }

 private:
  // Returns the filter's identifier.
  std::u16string create() {
    std::optional<FolderRun> run;
    described_as(kTudNotOpened, [&] {
      run.emplace(request_.tud, observer_.report());
      language_ = known_language(name_.language());
      // Without its companions the document is rebuilt as the filter made it, without post-processing.
      if (!language_.empty() && !missing_companions(name_).empty()) language_.clear();
    });
    TargetBuild build(request_.tud, *run);
    build_target(build, *run);
    try {
      run->commit();
    } catch (const failure& reason) {
      observer_.tell({reason.description()});
      if (overwrites_) throw translation_failure(kTargetInTheWay);
      throw translation_failure(kTargetNotCreated, reason.description());
    }
    tell_progress(100);
    return build.details().filter_identifier;
  }

  // Takes a step of the build. When the suite refuses it, the observer receives the reason.
  template <class Step>
  void take(TranslationError error, Step&& step) const {
    try {
      step();
    } catch (const refusal& reason) {
      observer_.tell({reason.description()});
      throw translation_failure(error);
    }
  }

  void build_target(TargetBuild& build, FolderRun& run) {
    take(kTudNotOpened, [&] { build.open(); });
    described_as(kTudNotOpened, [&] {
      if (build.has_source_changed()) tell_that_source_has_changed();
    });
    tell_progress(15);
    take(kNoMergeDetails, [&] { build.read_details(); });
    const std::u16string& source_format = build.details().source_format;
    if (target_.empty()) target_ = build.details().target_name;
    described_as(kTargetNotCreated, [&] { check_target(build); });
    take(kOpenTagNotSaved, [&] { build.save_open_tag(colours(source_format)); });
    tell_progress(30);
    take(kNoSkeleton, [&] { build.locate_skeleton(); });
    const std::u16string created = described_as(kTargetNotCreated, [&] { return create_target(build, run); });
    tell_progress(80);
    std::u16string result = created;
    if (is_post_processed(source_format)) result = post_process(build, created, run);
    target_ = wanted();
    described_as(kTargetNotCreated, [&] { replace_file(result, target_); });
  }

  // Returns the scratch file that holds the translation.
  std::u16string post_process(TargetBuild& build, const std::u16string& created, FolderRun& run) {
    const RunObserver last_fifth{[this](std::u16string_view, int percent) { tell_progress(80 + percent / 5); },
                                 observer_.message};
    PostProcessing routes(name_, target_, created, language_, build.set_mark(), request_.refuses_gaps, run, last_fifth);
    try {
      routes.PostProcess();
    } catch (const reported_failure&) {
      throw translation_failure(kNotPostProcessed);
    }
    if (request_.keeps_form && !routes.form().empty()) copy_file(routes.form(), translated_form_of(routes.document()));
    target_ = routes.document();
    return routes.result();
  }

  bool has_output() const { return !request_.output.empty(); }

  // The document that the caller asks for.
  const std::u16string& wanted() const { return has_output() ? request_.output : target_; }

  void check_target(TargetBuild& build) {
    refuse_lost_name(build);
    std::vector<std::u16string> documents{wanted()};
    if (!has_output() && is_post_processed(build.details().source_format))
      documents.push_back(document_made_of(name_, target_, language_));
    for (const std::u16string& document : documents) {
      if (request_.keeps_existing && is_file(document))
        throw translation_failure(kTargetInTheWay, document + u" exists already");
      // The run replaces an old document once the new one is complete, but cannot replace a folder.
      if (const auto old = ports().files->info(document); overwrites_ && old && old->is_folder) {
        observer_.tell({document + u" is a folder"});
        throw translation_failure(kTargetInTheWay);
      }
    }
    build.refuse_own_file(wanted());
    refuse_companion(wanted());
  }

  // Scripts and hidden texts are found by the document's name. Where gaps are refused, throws `failure` 5 for a
  // document of a set whose name does not say which set.
  void refuse_lost_name(TargetBuild& build) const {
    const std::u16string format = ascii_upper(build.details().source_format);
    if (!request_.refuses_gaps || !language_.empty() || (format != u"HTM" && format != u"MIF") ||
        build.set_mark().empty())
      return;
    const std::u16string skeleton = file_name_of(build.details().skeleton_name);
    throw failure(FailureNumber::kInvalidCall,
                  u"The document was prepared under another name" +
                      (skeleton.empty() ? u"" : u" (its skeleton is " + skeleton + u")") +
                      u", by which the files that belong to it are found. The translated document would be incomplete, "
                      u"so nothing is written. Restore its name, such as page_asp_htm_FR.tud");
  }

  // Throws `failure` 5 when `target` is a file beside the document that rebuilding may read.
  void refuse_companion(const std::u16string& target) const {
    std::vector<std::u16string> tuds{name_.script_tud()};
    for (const std::u16string_view side : kMifSides)
      tuds.push_back(mif_side_tud(name_.folder(), side, name_.language()));
    std::vector<std::u16string> companions{name_.file_name(1, u"obj", false)};
    for (const std::u16string& tud : tuds)
      companions.insert(companions.end(), {tud, skeleton_name_of(tud), open_tag_name_of(tud)});
    for (const std::u16string& companion : companions)
      if (is_same_file(target, companion))
        throw failure(FailureNumber::kInvalidCall, u"The target must be another file than " + companion);
  }

  std::optional<StatusColours> colours(const std::u16string& source_format) const {
    if (request_.highlight == 0 || is_office_format(source_format)) return std::nullopt;
    return stored_status_colours(request_.unset_colours);
  }

  // Returns the scratch file that the filter made.
  std::u16string create_target(const TargetBuild& build, FolderRun& run) const {
    build.refuse_own_file(wanted());
    std::u16string created = run.scratch_path(file_name_of(target_));
    const FontMapping font_mapping(ports().files->absolute(name_.folder() + u"KAVO.FMP"),
                                   build.details().source_format);
    build.create_target(created, language_);
    observer_.tell_all(filter_messages());
    font_mapping.restore();
    return created;
  }

  bool is_post_processed(const std::u16string& source_format) const {
    return !language_.empty() || (is_office_format(name_.language()) && ascii_upper(source_format) == u"XML");
  }

  // Opens the result for viewing. The translation counts as done even when this fails.
  void show(const std::u16string& filter_identifier) {
    if (preview_ != 1 && preview_ != 2) return;
    const std::u16string filter = ascii_lower(filter_identifier);
    if (std::ranges::find(kOfficeFilters, filter) != std::end(kOfficeFilters)) wait_for_office();
    Shell& shell = *ports().shell;
    try {
      if (shell.open(target_) <= kHighestShellFailure) shell.start(u"notepad", {to_utf16(path_to_host(target_))});
    } catch (const failure& reason) {
      observer_.tell({reason.description()});
    }
  }

  static void wait_for_office() {
    Clock& clock = *ports().clock;
    const double start = clock.seconds();
    while (clock.seconds() - start <= kOfficeSeconds) {
      ports().desktop->process_messages();
      clock.sleep(kBetweenLooks);
    }
  }

  void tell_that_source_has_changed() const {
    observer_.tell(
        {u"The document has changed since it was prepared: this translation is of "
         u"its old state. Prepare it again to translate its current state"});
  }
  void tell_progress(int percent) const { observer_.tell_progress(request_.tud, percent); }

  const TranslationRequest& request_;
  const RunObserver& observer_;
  const bool overwrites_;
  const std::int32_t preview_;
  const TudName name_;
  std::u16string target_;
  std::u16string language_;  // "" when the suite does not know the language in the name, or companions are missing
};

}  // namespace

std::u16string translation_error_text(const TranslationResult& result) {
  constexpr TextRow kTexts[] = {text::kTudNotOpened,   text::kOpenTagNotSaved,  text::kNoSkeleton,
                                text::kNoMergeDetails, text::kTargetNotCreated, text::kNotPostProcessed,
                                text::kTargetInTheWay};
  if (result.error == kNoError || !result.text.empty()) return result.text;
  return std::u16string(kTexts[result.error - 1].text);
}

TranslationResult create_translation(const TranslationRequest& request, const RunObserver& observer) {
  return Translation(request, observer).run();
}

}  // namespace kavo
