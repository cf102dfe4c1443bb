#include "cli/update_report.h"

#include <utility>

#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::pair<const char*, std::uint64_t UpdateCounts::*> kCounts[] = {{"kept", &UpdateCounts::kept},
                                                                             {"moved", &UpdateCounts::moved},
                                                                             {"similar", &UpdateCounts::similar},
                                                                             {"new", &UpdateCounts::fresh},
                                                                             {"removed", &UpdateCounts::removed}};

}  // namespace

void add_counts(Outcome& outcome, const UpdateCounts& counts, const std::u16string& heading) {
  std::string text;
  for (const auto& [name, member] : kCounts) {
    outcome.details["update"][name] = counts.*member;
    text += (text.empty() ? "" : ", ") + std::to_string(counts.*member) + " " + name;
  }
  outcome.messages.push_back({heading + to_utf16(text)});
}

UpdateCounts counts_of(const nlohmann::ordered_json& update) {
  UpdateCounts counts;
  for (const auto& [name, member] : kCounts) counts.*member = update.value(name, std::uint64_t{0});
  return counts;
}

}  // namespace kavo
