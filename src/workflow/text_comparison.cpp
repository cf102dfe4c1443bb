#include "workflow/text_comparison.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

#include "suite/document/coded_text.h"

namespace kavo {
namespace {

// How many texts of both sequences are searched for the next two equal ones.
constexpr std::size_t kWindow = 32;

// Filters do not cut shorter texts. They cut at 256 KB of markup, where character references may take eight times the
// room of their characters.
constexpr std::size_t kShortestPiece = 32 * 1024;  // bytes

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
      if (const auto [pieces, others] = same_text_in_pieces(i, j); pieces != 0) {
        i += pieces;
        j += others;
        continue;
      }
      const auto [lost, extra] = gap(i, j);
      std::size_t pairs = 0;
      for (; pairs < lost && pairs < extra; ++pairs) add_changed(i + pairs, j + pairs);
      for (std::size_t k = pairs; k < lost; ++k)
        findings_.push_back({TextChange::kLost, i + k, TextFinding::kNone, i + k});
      // The index before 0 is kNone.
      for (std::size_t k = pairs; k < extra; ++k) add_extra(j + k, i + lost - 1);
      i += lost;
      j += extra;
    }
    return std::move(findings_);
  }

 private:
  // How many texts of each sequence hold the same words, cut at different places; 0 and 0 when they do not. Only the
  // words are compared: the codes of a piece are numbered anew.
  std::pair<std::size_t, std::size_t> same_text_in_pieces(std::size_t i, std::size_t j) const {
    Pieces expected(expected_.subspan(i));
    Pieces found(found_.subspan(j));
    for (std::size_t compared = 0;;) {
      Pieces& shorter = expected.text.size() <= found.text.size() ? expected : found;
      if (!shorter.add()) return {0, 0};
      const std::size_t common = std::min(expected.text.size(), found.text.size());
      if (expected.text.compare(compared, common - compared, found.text, compared, common - compared) != 0)
        return {0, 0};
      compared = common;
      if (found.count == 0 || expected.text.size() != found.text.size()) continue;
      // Two whole texts with the same words were not cut: only their codes differ.
      if (found.count == 1 && expected.count == 1) return {0, 0};
      return {expected.count, found.count};
    }
  }

  // The words of a text that may be cut into several.
  struct Pieces {
    explicit Pieces(std::span<const std::string_view> all) : texts(all) {}
    // False when nothing follows, or what follows is another text.
    bool add() {
      if (count == texts.size() || (count != 0 && texts[count - 1].size() < kShortestPiece)) return false;
      std::string words = plain_text(texts[count++]);
      // Neither piece holds the blank where a text was cut.
      std::erase_if(words, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
      text += words;
      return true;
    }
    std::span<const std::string_view> texts;
    std::size_t count = 0;
    std::string text;
  };

  // How many texts stand in both sequences before the next two that are equal.
  std::pair<std::size_t, std::size_t> gap(std::size_t i, std::size_t j) const {
    const std::size_t expected_left = expected_.size() - i;
    const std::size_t found_left = found_.size() - j;
    for (std::size_t sum = 1; sum <= kWindow; ++sum) {
      // Balanced gaps come first, because a changed text is likelier than a lost one and an added one.
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
    findings_.push_back({same_text ? TextChange::kBrokenCodes : TextChange::kChanged, i, j, i});
  }

  void add_extra(std::size_t j, std::size_t place) {
    if (known_.empty()) known_.insert(expected_.begin(), expected_.end());
    const bool is_known = known_.contains(found_[j]);
    findings_.push_back({is_known ? TextChange::kDoubled : TextChange::kAdded, TextFinding::kNone, j, place});
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
