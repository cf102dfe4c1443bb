#include "suite/memory/text_similarity.h"

#include <algorithm>

#include "formats/text/text_coding.h"
#include "platform/fnv_hash.h"
#include "suite/document/coded_text.h"
#include "suite/document/word_characters.h"

namespace kavo {
namespace {

// Reads one run of text, character by character.
class RunTokens {
 public:
  RunTokens(std::vector<TextToken>& tokens, TextUnits units) : tokens_(tokens), units_(units) {}

  void read(std::string_view text) {
    while (!text.empty()) {
      const std::size_t length = std::max<std::size_t>(utf8_character_length(text), 1);
      const std::string_view character = text.substr(0, length);
      take(length == 1 ? static_cast<unsigned char>(text.front()) : utf8_code_point(character), character);
      text.remove_prefix(length);
    }
    finish_word();
  }

 private:
  void take(char32_t c, std::string_view character) {
    if (is_word_space(c)) return finish_word();
    // "1,234.50" is one number: the digit that follows decides whether a sign belongs to it.
    if ((c == '.' || c == ',') && length_ != 0 && is_number_) {
      if (separator_ != 0) finish_word();
      if (length_ != 0) {
        separator_ = static_cast<char>(c);
        return;
      }
    }
    if (!is_letter_or_digit(c)) {
      finish_word();
      tokens_.emplace_back(TextToken::kSign, fnv_hash(character));
      return;
    }
    const bool stands_alone = is_word_of_its_own(c) || (units_ == TextUnits::kCharacters && !is_word_digit(c));
    if (stands_alone || (separator_ != 0 && !is_word_digit(c))) finish_word();
    separator_ = 0;
    is_number_ = is_word_digit(c) && (length_ == 0 || is_number_);
    ++length_;
    const bool is_capital = c >= 'A' && c <= 'Z';
    hash_ = is_capital ? fnv_add(hash_, static_cast<std::uint32_t>(c - 'A' + 'a')) : fnv_add(hash_, character);
    if (stands_alone) finish_word();
  }

  void finish_word() {
    if (length_ != 0) tokens_.emplace_back(is_number_ ? TextToken::kNumber : TextToken::kWord, is_number_ ? 0 : hash_);
    if (separator_ != 0) tokens_.emplace_back(TextToken::kSign, fnv_hash(std::string_view(&separator_, 1)));
    hash_ = kFnvSeed;
    length_ = 0;
    is_number_ = false;
    separator_ = 0;
  }

  std::vector<TextToken>& tokens_;
  TextUnits units_;
  std::uint64_t hash_ = kFnvSeed;  // of the word being read
  std::size_t length_ = 0;         // its characters
  bool is_number_ = false;         // only digits so far
  char separator_ = 0;             // a sign after a number, when what follows decides
};

// The weight that must be inserted, removed or replaced to turn one text into the other, computed one row of the usual
// table at a time. Returns more than `most` when every way costs more.
std::uint64_t edit_weight(std::span<const TextToken> a, std::span<const TextToken> b, std::uint64_t most) {
  std::vector<std::uint64_t> row(b.size() + 1);
  for (std::size_t j = 0; j < b.size(); ++j) row[j + 1] = row[j] + b[j].weight();
  for (const TextToken& token : a) {
    std::uint64_t diagonal = row[0];
    row[0] += token.weight();
    std::uint64_t least = row[0];
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::uint64_t replaced = diagonal + (token == b[j] ? 0 : std::max(token.weight(), b[j].weight()));
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, diagonal + token.weight(), row[j] + b[j].weight()});
      least = std::min(least, row[j + 1]);
    }
    if (least > most) return least;
  }
  return row.back();
}

}  // namespace

TextUnits text_units_of(std::string_view language) {
  const std::string_view primary = language.substr(0, language.find('-'));
  constexpr std::string_view kWithoutSpaces[] = {"ZH", "JA", "TH", "LO", "KM", "MY", "BO", "DZ", "II"};
  const bool is_one = std::ranges::find(kWithoutSpaces, primary) != std::end(kWithoutSpaces);
  return is_one ? TextUnits::kCharacters : TextUnits::kWords;
}

void append_tokens(std::vector<TextToken>& tokens, std::string_view coded, TextUnits units) {
  RunTokens run(tokens, units);
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code)
      tokens.emplace_back(TextToken::kCode, 0);
    else
      run.read(part.text);
  }
}

std::uint64_t weight_of(std::span<const TextToken> tokens) {
  std::uint64_t weight = 0;
  for (const TextToken& token : tokens) weight += token.weight();
  return weight;
}

int similarity(std::span<const TextToken> a, std::span<const TextToken> b, std::uint64_t& budget) {
  const std::uint64_t heavier = std::max(weight_of(a), weight_of(b));
  const auto is_word = [](const TextToken& token) { return token.kind() == TextToken::kWord; };
  if (!std::ranges::any_of(a, is_word) || !std::ranges::any_of(b, is_word)) return 0;
  // A common beginning and a common end cost nothing.
  while (!a.empty() && !b.empty() && a.front() == b.front()) a = a.subspan(1), b = b.subspan(1);
  while (!a.empty() && !b.empty() && a.back() == b.back()) a = a.first(a.size() - 1), b = b.first(b.size() - 1);
  const std::uint64_t steps = (a.size() + 1) * static_cast<std::uint64_t>(b.size() + 1);
  if (steps > budget) return 0;
  budget -= steps;
  const std::uint64_t most = heavier * (100 - kLeastSimilarity) / 100;
  const std::uint64_t distance = edit_weight(a, b, most);
  return distance > most ? 0 : static_cast<int>((heavier - distance) * 100 / heavier);
}

}  // namespace kavo
