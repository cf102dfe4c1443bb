#include "suite/memory/document_update.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>
#include <unordered_set>

#include "common/checksum.h"
#include "common/document_names.h"
#include "platform/failure.h"
#include "suite/document/coded_text.h"
#include "suite/document/rebuilding.h"
#include "suite/document/skeleton.h"
#include "suite/document/tud_rewriter.h"
#include "suite/memory/code_mapping.h"

namespace kavo {
namespace {

struct NewDocument final : TudEvents {
  explicit NewDocument(std::u16string_view path) { read_tud(path, *this); }
  void header(const TudHeader& given) override { facts = given; }
  void unit(const TudUnit& unit) override {
    NewUnit& next = units.emplace_back();
    next.source = unit.source;
    next.plain = with_plain_numbers(unit.source, {}).source;
    next.name = unit.name;
    next.element = unit.element;
    next.is_locked = !unit.translate;
  }
  TudHeader facts;
  std::vector<NewUnit> units;
};

class Update {
 public:
  Update(std::u16string_view tud, const OldDocument* old, KnownTexts& known)
      : tud_(tud), old_(old), known_(known), document_(tud) {}

  DocumentUpdate run() {
    const TextUnits units = text_units_of(document_.facts.source_language);
    decisions_ = decide_update(old_units(), document_.units, units, known_);
    targets_.resize(decisions_.size());
    for (std::size_t i = 0; i < decisions_.size(); ++i) fill(i);
    refuse_unfit();
    count();
    collect_removed();
    if (std::ranges::any_of(decisions_, [](const UnitDecision& each) { return each.fate != UnitFate::kNew; })) write();
    return std::move(result_);
  }

 private:
  std::span<const OldUnit> old_units() const {
    return old_ ? std::span<const OldUnit>(old_->units) : std::span<const OldUnit>();
  }

  void fill(std::size_t i) {
    UnitDecision& decision = decisions_[i];
    if (decision.fate == UnitFate::kNew) return;
    const NewUnit& unit = document_.units[i];
    targets_[i] = with_codes_of(unit.source, decision.plain_target);
    if (!code_problem(unit.source, targets_[i], true).empty()) targets_[i] = plain_text(targets_[i]);
  }

  bool is_filled(std::size_t i) const {
    return decisions_[i].fate != UnitFate::kNew && targets_[i] != document_.units[i].source;
  }

  // In our own documents the numbers are places, counted from 1.
  std::map<std::uint32_t, std::string> filled_among(const std::set<std::uint32_t>* numbers) const {
    std::map<std::uint32_t, std::string> filled;
    for (std::uint32_t i = 0; i < targets_.size(); ++i)
      if (is_filled(i) && (!numbers || numbers->contains(i + 1))) filled.emplace_hint(filled.end(), i + 1, targets_[i]);
    return filled;
  }

  std::set<std::uint32_t> refused(const std::map<std::uint32_t, std::string>& translations) const {
    std::set<std::uint32_t> numbers;
    if (translations.empty()) return numbers;
    for (const auto& [number, reason] : refused_translations(skeleton_name_of(tud_), document_.facts, translations))
      numbers.insert(number);
    return numbers;
  }

  void refuse_unfit() {
    const std::set<std::uint32_t> unfit = refused(filled_among(nullptr));
    if (unfit.empty()) return;
    SkeletonReader skeleton(skeleton_name_of(tud_));
    for (SkeletonRecord record;;) {
      skeleton.next(record);
      if (record.kind == SkeletonRecord::Kind::kEnd) break;
      const bool is_segment =
          record.kind == SkeletonRecord::Kind::kSegment || record.kind == SkeletonRecord::Kind::kNestedSegment;
      if (is_segment && unfit.contains(record.number)) put_up_for_review(record.number - 1, record.hole);
    }
    for (const std::uint32_t number : refused(filled_among(&unfit))) {
      UnitDecision& decision = decisions_[number - 1];
      decision.fate = UnitFate::kSimilar;
      decision.status = TranslationStatus::kUntranslated;
      targets_[number - 1] = document_.units[number - 1].source;
    }
  }

  // Takes only the words, followed by the codes that must come back.
  void put_up_for_review(std::size_t i, const Hole& hole) {
    UnitDecision& decision = decisions_[i];
    if (decision.fate != UnitFate::kSimilar)
      decision.alternatives.insert(decision.alternatives.begin(),
                                   {100, document_.units[i].plain, decision.plain_target, std::string(kToolId)});
    decision.fate = UnitFate::kSimilar;
    decision.status = TranslationStatus::kFuzzy;
    targets_[i] = plain_text(targets_[i]);
    for (const Hole::Code& code : hole.codes)
      if (code.required) append_code(targets_[i], code.kind, code.id);
  }

  void count() {
    for (std::size_t i = 0; i < decisions_.size(); ++i) {
      UpdateCounts& counts = result_.counts;
      switch (decisions_[i].fate) {
        case UnitFate::kNew:
          counts.fresh += document_.units[i].is_locked ? 0 : 1;
          break;
        case UnitFate::kKept:
          ++counts.kept;
          break;
        case UnitFate::kMoved:
          ++counts.moved;
          break;
        case UnitFate::kSimilar:
          ++counts.similar;
          break;
      }
    }
  }

  // Finds the old units that are gone, and those of their translations that the new document does not contain.
  void collect_removed() {
    std::unordered_set<std::string_view> texts;
    std::set<std::pair<std::string_view, std::string_view>> translations;
    for (std::size_t i = 0; i < decisions_.size(); ++i) {
      const UnitDecision& decision = decisions_[i];
      texts.insert(document_.units[i].plain);
      if (decision.fate == UnitFate::kKept || decision.fate == UnitFate::kMoved)
        translations.emplace(document_.units[i].plain, decision.plain_target);
      for (const TudAlternative& each : decision.alternatives)
        if (each.source == document_.units[i].plain) translations.emplace(each.source, each.target);
    }
    std::unordered_set<std::string_view> edited;
    for (const UnitDecision& decision : decisions_)
      if (!decision.similar_to.empty()) edited.insert(decision.similar_to);
    for (const OldUnit& old : old_units()) {
      if (!old.is_part && !texts.contains(old.source) && !edited.contains(old.source)) ++result_.counts.removed;
      if (!old.is_translated() || old.target.empty() || !translations.emplace(old.source, old.target).second) continue;
      result_.removed.push_back({old.source, old.target, old.is_reviewed()});
    }
  }

  void write() {
    struct Changes final : TudChanges {
      explicit Changes(Update& from) : update(from) {}
      std::optional<BilingualSegment> change(std::size_t index, const TudUnit& unit) override {
        return update.changed(index, unit);
      }
      const XliffDetails* details(std::size_t) override { return &update.details_; }
      Update& update;
    };
    Changes changes(*this);
    rewrite_tud(tud_, changes);
  }

  std::optional<BilingualSegment> changed(std::size_t i, const TudUnit& unit) {
    const UnitDecision& decision = decisions_[i];
    if (decision.fate == UnitFate::kNew) return std::nullopt;
    details_ = {};
    for (const TudAlternative& each : decision.alternatives) details_.alternatives.push_back(each);
    BilingualSegment segment;
    segment.source = document_.units[i].source;
    segment.target = targets_[i];
    segment.status = decision.status;
    if (decision.fate == UnitFate::kKept) {
      const OldUnit& old = old_->units[decision.old];
      // The suite's own notes for translators are already in the new document, in today's wording. Earlier versions
      // wrote them without the suite's name.
      const auto is_there = [&](const TudNote& note) {
        return is_own_note(note) || std::ranges::find(unit.notes, note.text, &TudNote::text) != unit.notes.end();
      };
      std::ranges::remove_copy_if(old.notes, std::back_inserter(details_.notes), is_there);
      if (decision.status != TranslationStatus::kUntranslated) {
        details_.state = old.state;
        details_.state_qualifier = old.state_qualifier;
        details_.approved = old.approved;
      } else if (!unit.translate) {
        // Nobody has begun to translate it, so a new lock takes effect.
        segment.status = TranslationStatus::kLocked;
      }
      if (segment.status == status_of(unit) && segment.target == unit.target && details_.notes.empty() &&
          details_.alternatives.empty() && details_.state == unit.state)
        return std::nullopt;
    } else if (decision.fate == UnitFate::kMoved && decision.status == TranslationStatus::kFuzzy) {
      details_.state = xliff_state_of(TranslationStatus::kFuzzy).state;
      details_.state_qualifier = xliff_state_of(TranslationStatus::kExact).qualifier;
    }
    return segment;
  }

  std::u16string tud_;
  const OldDocument* old_;
  KnownTexts& known_;
  NewDocument document_;
  std::vector<UnitDecision> decisions_;
  std::vector<std::string> targets_;  // with the units' own codes
  XliffDetails details_;              // of the unit being written
  DocumentUpdate result_;
};

}  // namespace

UpdateCounts& UpdateCounts::operator+=(const UpdateCounts& other) {
  kept += other.kept;
  moved += other.moved;
  similar += other.similar;
  fresh += other.fresh;
  removed += other.removed;
  return *this;
}

// The skeletons are compared byte for byte. They do not contain the locks, so a new lock is looked for where nothing
// has been translated.
bool says_the_same(std::u16string_view tud, const OldDocument& old) {
  if (old.holds_lines || old.skeleton_checksum == 0) return false;
  const NewDocument document(tud);
  const TudHeader &was = old.header, &is = document.facts;
  if (was.original != is.original || was.target_code_page != is.target_code_page ||
      old.units.size() != document.units.size())
    return false;
  if (old.skeleton_checksum != checksum_of_file(skeleton_name_of(tud))) return false;
  for (std::size_t i = 0; i < old.units.size(); ++i) {
    const OldUnit& unit = old.units[i];
    if (unit.source != document.units[i].plain) return false;
    if (document.units[i].is_locked && unit.status == TranslationStatus::kUntranslated) return false;
  }
  return true;
}

DocumentUpdate update_document(std::u16string_view tud, const OldDocument* old, KnownTexts& known) {
  return Update(tud, old, known).run();
}

}  // namespace kavo
