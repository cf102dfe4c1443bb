#include "suite/memory/text_memory.h"

#include <algorithm>

namespace kavo {
namespace {

// Limits for one look-up, so that a memory of a million texts with the same few words answers as fast as others.
constexpr std::size_t kMostFeatures = 24;        // rarest words that are looked up
constexpr std::size_t kLongestList = 2000;       // texts taken from the list of one word
constexpr std::size_t kEnoughPostings = 3000;    // of all lists; further ones only as far as they are needed
constexpr std::size_t kMostCandidates = 24;      // texts compared
constexpr std::uint64_t kMostSteps = 4'000'000;  // of all comparisons

std::uint32_t pair_feature(const TextToken& a, const TextToken& b) { return a.value() * 0x9E3779B1U ^ b.value(); }

}  // namespace

void TextMemory::add(std::string_view source, std::string_view target, bool is_reviewed) {
  const auto found = by_source_.find(source);
  if (found == by_source_.end()) {
    texts_.push_back({std::string(source), {{std::string(target), 1, is_reviewed}}});
    by_source_.emplace(texts_.back().source, static_cast<std::uint32_t>(texts_.size() - 1));
    return;
  }
  std::vector<Translation>& known = texts_[found->second].translations;
  const auto same = std::ranges::find(known, target, &Translation::target);
  if (same != known.end()) {
    ++same->count;
    same->is_reviewed = same->is_reviewed || is_reviewed;
  } else if (known.size() < kMostTranslations) {
    known.push_back({std::string(target), 1, is_reviewed});
  }
}

bool TextMemory::has(std::string_view source, std::string_view target) const {
  const auto found = by_source_.find(source);
  if (found == by_source_.end()) return false;
  const std::vector<Translation>& known = texts_[found->second].translations;
  return std::ranges::find(known, target, &Translation::target) != known.end();
}

std::vector<KnownTranslation> TextMemory::exact(std::string_view source) const {
  const auto found = by_source_.find(source);
  return found == by_source_.end() ? std::vector<KnownTranslation>() : translations_of(texts_[found->second]);
}

std::vector<KnownTranslation> TextMemory::translations_of(const Text& text) const {
  const bool has_reviewed = std::ranges::any_of(text.translations, &Translation::is_reviewed);
  std::vector<KnownTranslation> result;
  for (const Translation& each : text.translations)
    if (each.is_reviewed || !has_reviewed) result.push_back({each.target, each.count, each.is_reviewed});
  std::ranges::stable_sort(result, std::greater<>(), &KnownTranslation::count);
  return result;
}

std::optional<TextMemory::Similar> TextMemory::similar(std::string_view source) {
  if (!is_indexed_) index();
  std::vector<TextToken> tokens;
  append_tokens(tokens, source, units_);
  std::uint64_t budget = kMostSteps;
  std::uint32_t best = 0;
  int best_percent = 0;
  for (const std::uint32_t candidate : candidates(tokens, weight_of(tokens))) {
    const Text& text = texts_[candidate];
    if (text.source == source) continue;
    const std::size_t end = candidate + 1 < texts_.size() ? texts_[candidate + 1].first_token : tokens_.size();
    const std::span<const TextToken> other(tokens_.data() + text.first_token, end - text.first_token);
    // Another text is never quite the same, even if it has the same words.
    const int percent = std::min(similarity(tokens, other, budget), 99);
    // Of equally similar texts the first that was added counts, so that every run gives the same result.
    if (percent > best_percent || (percent == best_percent && candidate < best)) {
      best = candidate;
      best_percent = percent;
    }
  }
  if (best_percent == 0) return std::nullopt;
  return Similar{texts_[best].source, translations_of(texts_[best]), best_percent};
}

void TextMemory::index() {
  is_indexed_ = true;
  std::vector<std::uint32_t> features;
  for (std::uint32_t i = 0; i < texts_.size(); ++i) {
    texts_[i].first_token = tokens_.size();
    append_tokens(tokens_, texts_[i].source, units_);
    const std::span<const TextToken> tokens = std::span<const TextToken>(tokens_).subspan(texts_[i].first_token);
    texts_[i].weight = static_cast<std::uint32_t>(std::min<std::uint64_t>(weight_of(tokens), UINT32_MAX));
    features.clear();
    append_features(features, tokens);
    for (const std::uint32_t feature : features) postings_.push_back({feature, i});
  }
  std::sort(postings_.begin(), postings_.end());
  votes_.resize(texts_.size());
}

// Each once.
void TextMemory::append_features(std::vector<std::uint32_t>& features, std::span<const TextToken> tokens) const {
  if (units_ == TextUnits::kWords) {
    for (const TextToken& token : tokens)
      if (token.kind() == TextToken::kWord) features.push_back(token.value());
  } else {
    for (std::size_t i = 1; i < tokens.size(); ++i) features.push_back(pair_feature(tokens[i - 1], tokens[i]));
  }
  std::sort(features.begin(), features.end());
  features.erase(std::unique(features.begin(), features.end()), features.end());
}

// The texts that share most of the rarest features and are about as long, in the order in which they were added.
std::vector<std::uint32_t> TextMemory::candidates(std::span<const TextToken> tokens, std::uint64_t weight) {
  std::vector<std::uint32_t> features;
  append_features(features, tokens);
  std::vector<std::span<const Posting>> lists;
  for (const std::uint32_t feature : features) {
    const auto first = std::ranges::lower_bound(postings_, feature, {}, &Posting::feature);
    const auto last = std::ranges::upper_bound(postings_, feature, {}, &Posting::feature);
    lists.emplace_back(first, std::min(static_cast<std::size_t>(last - first), kLongestList));
  }
  std::ranges::stable_sort(lists, {}, &std::span<const Posting>::size);
  // An edit that keeps three quarters of the weight changes at most a third of the words, and two pairs for each
  // changed character. So with one list more than that, at least one list holds the text. More lists help to find the
  // best text.
  const std::size_t needed = (units_ == TextUnits::kWords ? 1 : 2) * lists.size() / 3 + 1;
  lists.resize(std::min(lists.size(), kMostFeatures));
  std::size_t scanned = 0, used = 0;
  while (used < lists.size() && (used < needed || scanned < kEnoughPostings)) scanned += lists[used++].size();
  lists.resize(used);

  std::vector<std::uint32_t> found;
  for (const std::span<const Posting> list : lists)
    for (const Posting& posting : list) {
      if (votes_[posting.text]++ != 0) continue;
      const std::uint64_t other = texts_[posting.text].weight;
      if (std::min(weight, other) * 100 >= std::max(weight, other) * kLeastSimilarity) found.push_back(posting.text);
    }
  const std::size_t compared = std::min(found.size(), kMostCandidates);
  std::ranges::partial_sort(
      found, found.begin() + static_cast<std::ptrdiff_t>(compared),
      [&](std::uint32_t a, std::uint32_t b) { return votes_[a] != votes_[b] ? votes_[a] > votes_[b] : a < b; });
  found.resize(compared);
  for (const std::span<const Posting> list : lists)
    for (const Posting& posting : list) votes_[posting.text] = 0;
  return found;
}

}  // namespace kavo
