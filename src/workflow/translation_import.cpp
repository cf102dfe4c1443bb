#include "workflow/translation_import.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "common/clsCommon.h"
#include "formats/xml/xml_text.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "suite/document/rebuilding.h"

namespace kavo {
namespace {

// Leaves out the suite's own facts about the unit's codes, which hold only for their own document.
XliffDetails details_of(const TudUnit& unit) {
  XliffDetails details{unit.state, unit.state_qualifier, unit.approved, unit.notes};
  std::erase_if(details.notes, is_own_note);
  return details;
}

// "fr" is any French, "fr-CA" is not "fr-FR".
bool is_other_language(std::string_view own, std::string_view given) {
  std::string a = bcp47_of(own), b = bcp47_of(given);
  if (a.size() > b.size()) std::swap(a, b);
  return !(b.starts_with(a) && (b.size() == a.size() || b[a.size()] == '-'));
}

Message unit_message(std::string_view id, const std::string& reason) {
  return {to_utf16("unit " + std::string(id) + ": " + reason)};
}

}  // namespace

class TranslationImport::OwnReader final : public TudEvents {
 public:
  explicit OwnReader(TranslationImport& import) : import_(import) {}
  void unit(const TudUnit& unit) override {
    if (!import_.units_.try_emplace(unit.id, OwnUnit{index_++, details_of(unit)}).second)
      throw failure(FailureNumber::kInvalidCall,
                    to_utf16(path_to_host(import_.document_.path()) + " holds unit " + unit.id + " twice"));
  }

 private:
  TranslationImport& import_;
  std::size_t index_ = 0;
};

// Counts how often each unit occurs.
class TranslationImport::GivenIds final : public TudEvents {
 public:
  explicit GivenIds(const TranslationImport& import) : import_(import) {}
  void header(const TudHeader& header) override {
    if (const std::string reason = import_.difference(header); !reason.empty())
      throw failure(FailureNumber::kInvalidCall, to_utf16(reason));
  }
  void unit(const TudUnit& unit) override { ++counts[unit.id]; }
  std::map<std::string, std::size_t, std::less<>> counts;

 private:
  const TranslationImport& import_;
};

// Collects the translations to take. Nothing is changed yet.
class TranslationImport::GivenUnits final : public TudEvents {
 public:
  struct Translation {
    std::string id;
    std::size_t index = 0;
    std::string target;
    TranslationStatus status = TranslationStatus::kUntranslated;
    std::int16_t match = 0;
    bool is_other = false;  // text or status
    std::optional<XliffDetails> details;
  };

  GivenUnits(const TranslationImport& import, const GivenIds& ids) : import_(import), ids_(ids) {}

  void unit(const TudUnit& unit) override {
    // Reported once, together with missing units.
    if (ids_.counts.at(unit.id) > 1) return;
    const auto found = import_.units_.find(unit.id);
    if (found == import_.units_.end()) return refuse(unit.id, "the document has no such unit");
    const OwnUnit& own = found->second;
    const BilingualSegment segment = import_.document_.segment(own.index);
    if (segment.source != unit.source) return refuse(unit.id, "its source text is another one");
    Translation given;
    given.id = unit.id;
    given.index = own.index;
    given.target = translation_of(unit);
    given.status = status_of(unit);
    given.match = unit.match.value_or(0);
    given.is_other = segment.target != given.target || segment.status != given.status;
    if (is_news(own.details, unit)) given.details = details_of(unit);
    if (!given.is_other && !given.details) return;
    if (const std::string problem = code_problem(unit.source, given.target, true); !problem.empty())
      return refuse(unit.id, problem);
    translations.push_back(std::move(given));
  }

  std::vector<Translation> translations;
  std::vector<Message> refused;

 private:
  void refuse(std::string_view id, const std::string& reason) { refused.push_back(unit_message(id, reason)); }

  static bool is_news(const XliffDetails& own, const TudUnit& unit) {
    const bool says_state =
        !unit.state.empty() &&
        (unit.state != own.state || unit.state_qualifier != own.state_qualifier || unit.approved != own.approved);
    return says_state || std::ranges::any_of(unit.notes, [&](const TudNote& note) {
             return !is_own_note(note) && std::ranges::find(own.notes, note) == own.notes.end();
           });
  }

  const TranslationImport& import_;
  const GivenIds& ids_;
};

// The document's skeleton. An unpacked one is removed again.
class TranslationImport::SkeletonFile {
 public:
  explicit SkeletonFile(const BilingualDocument& document) : skeleton_(document.locate_skeleton()) {}
  ~SkeletonFile() {
    if (skeleton_ && !skeleton_->keep) clsCommon().DeleteFile(skeleton_->path);
  }
  SkeletonFile(const SkeletonFile&) = delete;
  SkeletonFile& operator=(const SkeletonFile&) = delete;
  bool is_there() const { return skeleton_.has_value(); }
  const std::u16string& path() const { return skeleton_->path; }

 private:
  std::optional<BilingualDocument::Skeleton> skeleton_;
};

TranslationImport::TranslationImport(std::u16string_view tud) : document_(tud) {
  OwnReader reader(*this);
  read_tud(tud, reader);
}

std::string TranslationImport::difference(const TudHeader& given) const {
  const TudHeader& own = document_.header();
  const auto languages = [](const TudHeader& header) {
    return header.source_language + " to " + header.target_language;
  };
  const auto is_other = [](const std::string& a, const std::string& b) {
    return !a.empty() && !b.empty() && is_other_language(a, b);
  };
  if (is_other(own.source_language, given.source_language) || is_other(own.target_language, given.target_language))
    return "it translates from " + languages(given) + ", the document from " + languages(own);
  if (own.checksum != 0 && given.checksum != 0) {
    if (own.checksum == given.checksum) return {};
    return "it was made from another document (" + given.original + "), or of another state of this one";
  }
  if (!own.original.empty() && !given.original.empty() &&
      !equal_ignoring_case(core_file_name(own.original), core_file_name(given.original)))
    return "it was made from another document: " + given.original;
  return {};
}

TranslationImport::Counts TranslationImport::take(std::u16string_view xliff, MessageList& messages,
                                                  ProgressEvent* progress) {
  GivenIds ids(*this);
  read_tud(xliff, ids, progress);
  GivenUnits given(*this, ids);
  read_tud(xliff, given);

  // Translations that rebuilding would refuse are refused now, while the translator's file is at hand.
  std::map<std::uint32_t, std::string> changed;
  for (const GivenUnits::Translation& next : given.translations)
    if (const BilingualSegment own = document_.segment(next.index); next.target != own.source)
      changed.emplace(own.number, next.target);
  std::map<std::uint32_t, std::string> unfit;
  if (!changed.empty()) {
    const SkeletonFile skeleton(document_);
    if (skeleton.is_there())
      unfit = refused_translations(skeleton.path(), document_.header(), changed);
    else
      messages.push_back({to_utf16("The skeleton of " + path_to_host(document_.path()) +
                                   " is missing, so it is not checked whether these texts can be rebuilt")});
  }

  Counts counts;
  for (const auto& [id, count] : ids.counts)
    if (count > 1) given.refused.push_back(unit_message(id, "it occurs " + std::to_string(count) + " times"));
  for (const auto& [id, own] : units_)
    if (!ids.counts.contains(id)) given.refused.push_back(unit_message(id, "it is missing"));
  for (const GivenUnits::Translation& next : given.translations) {
    if (const auto found = unfit.find(document_.segment(next.index).number); found != unfit.end()) {
      given.refused.push_back(unit_message(next.id, found->second));
      continue;
    }
    try {
      if (next.is_other) document_.set_segment(next.index, next.target, next.status, next.match);
    } catch (const failure& reason) {
      given.refused.push_back(unit_message(next.id, reason.what()));
      continue;
    }
    if (next.details) document_.set_details(next.index, *next.details);
    if (next.is_other) ++counts.taken;
  }
  document_.save();
  counts.refused = given.refused.size();
  messages.insert(messages.end(), given.refused.begin(), given.refused.end());
  return counts;
}

}  // namespace kavo
