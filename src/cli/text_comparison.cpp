#include "cli/text_comparison.h"

#include <optional>
#include <unordered_set>
#include <utility>

#include "suite/coded_text.h"

namespace kavo {
namespace {

// How many texts of both sequences together are looked through for the next two that are equal.
constexpr std::size_t kWindow = 32;

class Comparison {
 public:
  Comparison(std::span<const std::string_view> expected, std::span<const std::string_view> found)
      : expected_(expected), found_(found) {}

  std::vector<TextFinding> run() {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < expected_.size() || j < found_.size()) {
      if (i < expected_.size() && j < found_.size() && expected_[i] == found_[j]) {
        ++i;
        ++j;
        continue;
      }
      const auto [lost, extra] = gap(i, j);
      std::size_t pairs = 0;
      for (; pairs < lost && pairs < extra; ++pairs) add_changed(i + pairs, j + pairs);
      for (std::size_t k = pairs; k < lost; ++k) findings_.push_back({TextChange::kLost, i + k, TextFinding::kNone});
      for (std::size_t k = pairs; k < extra; ++k) add_extra(j + k);
      i += lost;
      j += extra;
    }
    return std::move(findings_);
  }

 private:
  // How many texts stand in both sequences before the next two that are equal.
  std::pair<std::size_t, std::size_t> gap(std::size_t i, std::size_t j) const {
    const std::size_t expected_left = expected_.size() - i;
    const std::size_t found_left = found_.size() - j;
    for (std::size_t sum = 1; sum <= kWindow; ++sum) {
      // Balanced gaps first: a changed text is likelier than one lost and another added.
      std::optional<std::pair<std::size_t, std::size_t>> best;
      for (std::size_t lost = 0; lost <= sum; ++lost) {
        const std::size_t extra = sum - lost;
        if (lost > expected_left || extra > found_left) continue;
        const bool both_end = lost == expected_left && extra == found_left;
        const bool meets = lost < expected_left && extra < found_left && expected_[i + lost] == found_[j + extra];
        if (!both_end && !meets) continue;
        if (!best || imbalance(lost, extra) < imbalance(best->first, best->second)) best = {lost, extra};
      }
      if (best) return *best;
    }
    return {expected_left == 0 ? 0 : 1, found_left == 0 ? 0 : 1};
  }
  static std::size_t imbalance(std::size_t a, std::size_t b) { return a > b ? a - b : b - a; }

  void add_changed(std::size_t i, std::size_t j) {
    const bool same_text = plain_text(expected_[i]) == plain_text(found_[j]);
    findings_.push_back({same_text ? TextChange::kBrokenCodes : TextChange::kChanged, i, j});
  }

  void add_extra(std::size_t j) {
    if (known_.empty()) known_.insert(expected_.begin(), expected_.end());
    const bool is_known = known_.contains(found_[j]);
    findings_.push_back({is_known ? TextChange::kDoubled : TextChange::kAdded, TextFinding::kNone, j});
  }

  std::span<const std::string_view> expected_;
  std::span<const std::string_view> found_;
  std::vector<TextFinding> findings_;
  std::unordered_set<std::string_view> known_;
};

}  // namespace

std::vector<TextFinding> compare_texts(std::span<const std::string_view> expected,
                                       std::span<const std::string_view> found) {
  return Comparison(expected, found).run();
}

}  // namespace kavo
