#include "suite/memory/unit_update.h"

#include <algorithm>
#include <map>

#include "suite/memory/code_mapping.h"

namespace kavo {
namespace {

constexpr std::uint64_t kMostStepsInPlace = 1'000'000;  // for comparing a text with the one that was in its place

template <class Unit>
std::vector<PlacedText> placed(std::span<const Unit> units, std::string Unit::*text) {
  std::vector<PlacedText> result;
  result.reserve(units.size());
  for (const Unit& unit : units) result.push_back({unit.*text, unit.name, unit.element});
  return result;
}

class UpdateDecisions {
 public:
  UpdateDecisions(std::span<const OldUnit> old_units, std::span<const NewUnit> new_units, TextUnits units,
                  KnownTexts& known)
      : old_(old_units), new_(new_units), units_(units), known_(known), decisions_(new_units.size()) {}

  std::vector<UnitDecision> run() {
    partners_ = aligned_units(placed(old_, &OldUnit::source), placed(new_, &NewUnit::plain));
    is_paired_.resize(old_.size());
    for (const std::uint32_t partner : partners_)
      if (partner != kNoUnit) is_paired_[partner] = true;
    for (std::uint32_t i = 0; i < old_.size(); ++i)
      if (!old_[i].name.empty() && !is_paired_[i]) by_name_.try_emplace(old_[i].name, i);
    for (std::uint32_t i = 0; i < new_.size(); ++i) decide(i);
    return std::move(decisions_);
  }

 private:
  void decide(std::uint32_t i) {
    UnitDecision& decision = decisions_[i];
    if (partners_[i] != kNoUnit) return keep(decision, old_[partners_[i]], partners_[i]);
    // The reason for a lock holds only in the text's own place.
    if (new_[i].is_locked) return;
    for (TextMemory* memory : {&known_.documents(), &known_.removed()})
      if (const auto translations = memory->exact(new_[i].plain); !translations.empty())
        return take_exact(decision, new_[i].plain, translations);
    if (take_from_documents(decision, i)) return;
    if (const auto similar = known_.removed().similar(new_[i].plain)) take_similar(decision, new_[i], *similar);
  }

  static void keep(UnitDecision& decision, const OldUnit& old, std::uint32_t index) {
    decision.fate = UnitFate::kKept;
    decision.old = index;
    decision.plain_target = old.target;
    decision.status = old.status;
    decision.alternatives = old.alternatives;
  }

  static void take_exact(UnitDecision& decision, const std::string& source,
                         const std::vector<KnownTranslation>& translations) {
    const bool is_sure = translations.size() == 1 && translations.front().is_reviewed;
    decision.fate = UnitFate::kMoved;
    decision.plain_target = translations.front().target;
    decision.status = is_sure ? TranslationStatus::kExact : TranslationStatus::kFuzzy;
    if (!is_sure) offer(decision, source, translations, 100);
  }

  static void take_similar(UnitDecision& decision, const NewUnit& unit, const TextMemory::Similar& similar) {
    decision.fate = UnitFate::kSimilar;
    decision.similar_to = similar.source;
    decision.status = TranslationStatus::kFuzzy;
    const std::string_view target = similar.translations.front().target;
    decision.plain_target = has_same_codes(similar.source, unit.plain) ? std::string(target) : plain_text(target);
    offer(decision, similar.source, similar.translations, similar.percent);
  }

  // Takes the most similar text. The one that was in this place has precedence over others that are as similar. False
  // when there is none.
  bool take_from_documents(UnitDecision& decision, std::uint32_t i) {
    std::vector<TextToken> tokens;
    append_tokens(tokens, new_[i].plain, units_);
    std::uint32_t best = kNoUnit;
    int best_percent = 0;
    for (const std::uint32_t candidate : candidates_in_place(i)) {
      const OldUnit& old = old_[candidate];
      if (is_paired_[candidate] || !old.is_translated() || old.is_part) continue;
      std::vector<TextToken> other;
      append_tokens(other, old.source, units_);
      std::uint64_t budget = kMostStepsInPlace;
      const int percent = std::min(similarity(tokens, other, budget), 99);
      if (percent <= best_percent) continue;
      best = candidate;
      best_percent = percent;
    }
    const auto elsewhere = known_.documents().similar(new_[i].plain);
    if (best == kNoUnit || (elsewhere && elsewhere->percent > best_percent)) {
      if (elsewhere) take_similar(decision, new_[i], *elsewhere);
      return elsewhere.has_value();
    }
    const OldUnit& old = old_[best];
    take_similar(decision, new_[i], {old.source, {{old.target, 1, old.is_reviewed()}}, best_percent});
    return true;
  }

  // The unpaired old units that may have been in the unit's place: the one with its name, the one after the old place
  // of the previous unit, the one before the old place of the next unit.
  std::vector<std::uint32_t> candidates_in_place(std::uint32_t i) const {
    std::vector<std::uint32_t> candidates;
    if (const auto named = by_name_.find(new_[i].name); named != by_name_.end()) candidates.push_back(named->second);
    const std::uint32_t before = i == 0 ? kNoUnit : partners_[i - 1];
    // kNoUnit + 1 is 0, so the first unit is at the beginning of both.
    if ((i == 0 || before != kNoUnit) && before + 1 < old_.size()) candidates.push_back(before + 1);
    const bool is_last = i + 1 == new_.size();
    const std::uint32_t behind = is_last ? static_cast<std::uint32_t>(old_.size()) : partners_[i + 1];
    if (behind != kNoUnit && behind > 0) candidates.push_back(behind - 1);
    return candidates;
  }

  static void offer(UnitDecision& decision, std::string_view source, const std::vector<KnownTranslation>& translations,
                    int percent) {
    for (const KnownTranslation& each : translations)
      decision.alternatives.push_back(
          {static_cast<std::int16_t>(percent), std::string(source), std::string(each.target), std::string(kToolId)});
  }

  std::span<const OldUnit> old_;
  std::span<const NewUnit> new_;
  TextUnits units_;
  KnownTexts& known_;
  std::vector<UnitDecision> decisions_;
  std::vector<std::uint32_t> partners_;
  std::vector<bool> is_paired_;
  std::map<std::string_view, std::uint32_t> by_name_;  // unpaired old units
};

}  // namespace

bool OldUnit::is_translated() const {
  if (status == TranslationStatus::kLocked) return target != source && !is_new_state(state);
  return status != TranslationStatus::kUntranslated;
}

std::vector<UnitDecision> decide_update(std::span<const OldUnit> old_units, std::span<const NewUnit> new_units,
                                        TextUnits units, KnownTexts& known) {
  return UpdateDecisions(old_units, new_units, units, known).run();
}

}  // namespace kavo
