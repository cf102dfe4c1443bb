// The update of a document of 10,000 and 100,000 units: place by place, and with texts to be looked up.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "suite/memory/unit_update.h"

namespace kavo::bench {
namespace {

// Ten words of a vocabulary in which few words are frequent and many rare, as in real texts.
std::string text(std::uint64_t number, bool is_edited) {
  std::string result;
  std::uint64_t state = number * 0x9E3779B97F4A7C15ULL + 1;
  for (int i = 0; i < 10; ++i) {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    const std::uint64_t random = state >> 33;
    const std::uint64_t word = is_edited && i == 4 ? 90'000 + number % 1000 : random % (1 + (random >> 8) % 20'000);
    result += "word";
    for (std::uint64_t rest = word + 1; rest != 0; rest /= 26) result += static_cast<char>('a' + rest % 26);
    result += ' ';
  }
  return result;
}

enum class Case { kUnchanged, kEdited, kEqual, kNew };

struct Known final : KnownTexts {
  explicit Known(const std::vector<OldUnit>& units) {
    for (const OldUnit& unit : units) documents_.add(unit.source, unit.target, true);
  }
  TextMemory& documents() override { return documents_; }
  TextMemory& removed() override { return removed_; }
  TextMemory documents_{TextUnits::kWords};
  TextMemory removed_{TextUnits::kWords};
};

void update(benchmark::State& state, Case what) {
  const auto count = static_cast<std::uint64_t>(state.range(0));
  std::vector<OldUnit> old_units(count);
  std::vector<NewUnit> new_units(count);
  for (std::uint64_t i = 0; i < count; ++i) {
    old_units[i].source = what == Case::kEqual ? "OK" : text(i, false);
    old_units[i].target = "[" + old_units[i].source + "]";
    old_units[i].status = TranslationStatus::kTranslated;
    std::string now = old_units[i].source;
    if (what == Case::kEdited) now = text(i, true);
    if (what == Case::kNew) now = text(i + count, false);
    new_units[i].source = new_units[i].plain = now;
  }
  std::uint64_t filled = 0;
  for (auto _ : state) {
    Known known(old_units);
    filled = 0;
    for (const UnitDecision& decision : decide_update(old_units, new_units, TextUnits::kWords, known))
      filled += decision.fate != UnitFate::kNew;
  }
  state.counters["filled"] = static_cast<double>(filled);
}

BENCHMARK_CAPTURE(update, unchanged, Case::kUnchanged)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(update, edited, Case::kEdited)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(update, all_new, Case::kNew)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(update, equal, Case::kEqual)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kavo::bench
