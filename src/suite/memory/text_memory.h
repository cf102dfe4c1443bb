// Remembers translated texts, and finds equal or similar ones.
//
// Equal texts are kept once. Texts are found by hashing; similar ones through an index of their words (or pairs of
// characters): a text that has three quarters of its words in common with another one shares one of its rarest words
// with it, so a few short lists hold all candidates. How many of them are compared is bounded, whatever the texts are.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "suite/memory/text_similarity.h"

namespace kavo {

// One translation of a text; the views are valid as long as the memory.
struct KnownTranslation {
  std::string_view target;  // coded text with plain numbers (code_mapping.h)
  std::uint32_t count = 0;  // how often the text is translated like this
  bool is_reviewed = false;
};

class TextMemory {
 public:
  // How many different translations of one text are kept.
  static constexpr std::size_t kMostTranslations = 20;

  explicit TextMemory(TextUnits units) : units_(units) {}

  // Both texts have plain numbers. `is_reviewed` is false for a translation that somebody still has to check. Do not
  // call it after similar().
  void add(std::string_view source, std::string_view target, bool is_reviewed);
  bool has(std::string_view source, std::string_view target) const;
  std::size_t size() const { return texts_.size(); }  // different texts

  // All translations of exactly this text, the most frequent first; equally frequent ones in the order in which they
  // were added. If any has been reviewed, only the reviewed ones.
  std::vector<KnownTranslation> exact(std::string_view source) const;

  struct Similar {
    std::string_view source;
    std::vector<KnownTranslation> translations;  // as exact() gives them; never empty
    int percent = 0;                             // kLeastSimilarity to 99
  };
  // The most similar text, but never the text itself. Of equally similar ones the one that was added first.
  std::optional<Similar> similar(std::string_view source);

 private:
  struct Translation {
    std::string target;
    std::uint32_t count = 0;
    bool is_reviewed = false;
  };
  struct Text {
    std::string source;
    std::vector<Translation> translations;
    std::size_t first_token = 0;  // in tokens_; the next text's is the end
    std::uint32_t weight = 0;
  };

  std::vector<KnownTranslation> translations_of(const Text& text) const;
  void index();
  void append_features(std::vector<std::uint32_t>& features, std::span<const TextToken> tokens) const;
  std::vector<std::uint32_t> candidates(std::span<const TextToken> tokens, std::uint64_t weight);

  TextUnits units_;
  std::deque<Text> texts_;
  std::unordered_map<std::string_view, std::uint32_t> by_source_;

  // The index is made when a similar text is first asked for.
  bool is_indexed_ = false;
  std::vector<TextToken> tokens_;  // of all texts
  struct Posting {
    std::uint32_t feature;
    std::uint32_t text;
    auto operator<=>(const Posting&) const = default;
  };
  std::vector<Posting> postings_;  // sorted
  std::vector<std::uint8_t> votes_;
};

}  // namespace kavo
