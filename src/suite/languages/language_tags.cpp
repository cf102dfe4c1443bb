#include "suite/languages/language_tags.h"

#include <algorithm>

#include "common/nearest.h"
#include "platform/case_fold.h"
#include "platform/formatted.h"
#include "platform/trimmed.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::size_t kMostNearest = 3;
constexpr std::size_t kLongestName = 100;  // a longer text is not a name, and would take long to compare
constexpr std::int32_t kNoIdentifier = 0x1000;
constexpr std::u16string_view kListSeparators = u",;+";

std::vector<std::u16string_view> split(std::u16string_view text, std::u16string_view separators) {
  std::vector<std::u16string_view> parts;
  while (true) {
    const std::size_t end = text.find_first_of(separators);
    if (end != 0 && !text.empty()) parts.push_back(text.substr(0, end));
    if (end == text.npos) return parts;
    text.remove_prefix(end + 1);
  }
}

bool is_script(std::u16string_view subtag) {
  return subtag.size() == 4 && std::ranges::all_of(subtag, [](char16_t c) { return c >= u'A' && c <= u'Z'; });
}

// Finds a row by its code or one of its tags, which must be in capitals.
const LanguageRow* row_of(std::u16string_view tag) {
  const auto rows = language_rows();
  if (const auto row = std::ranges::find(rows, tag, &LanguageRow::code); row != rows.end()) return &*row;
  const auto row = std::ranges::find_if(
      rows, [tag](const LanguageRow& candidate) { return std::ranges::count(split(candidate.tags, u" "), tag) != 0; });
  return row != rows.end() ? &*row : nullptr;
}

// The rows whose tag is this one with a script added: HA-LATN-NG for HA-NG.
std::vector<const LanguageRow*> rows_with_any_script(std::u16string_view tag) {
  std::vector<const LanguageRow*> found;
  const std::size_t dash = tag.find(u'-');
  if (dash == tag.npos) return found;
  for (const LanguageRow& row : language_rows()) {
    const std::u16string_view code = row.code;
    if (code.size() == tag.size() + 5 && code.starts_with(tag.substr(0, dash + 1)) &&
        code.ends_with(tag.substr(dash)) && is_script(code.substr(dash + 1, 4)))
      found.push_back(&row);
  }
  return found;
}

// Replaces an outdated language code: IW-IL becomes HE-IL.
std::u16string with_known_language(std::u16string_view tag) {
  const std::size_t end = std::min(tag.find(u'-'), tag.size());
  const LanguageRow* const language = row_of(tag.substr(0, end));
  return std::u16string(language != nullptr ? language->code : tag.substr(0, end)) + std::u16string(tag.substr(end));
}

// Writes "-" between the parts of a tag, where the locale names of some systems have "_".
std::u16string as_tag(std::u16string_view text) {
  std::u16string tag = ascii_upper(trimmed(text));
  std::ranges::replace(tag, u'_', u'-');
  return tag;
}

// The part in brackets: "Germany" of "German (Germany)", "Latin, Serbia" of "Serbian (Latin, Serbia)".
std::u16string_view variant_of(const LanguageRow& row) {
  const std::size_t open = row.name.find(u'(');
  return open == row.name.npos ? u"" : row.name.substr(open + 1, row.name.size() - open - 2);
}

// Collects rows, the likeliest first, each once.
class Nearest {
 public:
  explicit Nearest(std::u16string_view text) : text_(trimmed(text)), tag_(as_tag(text)) {}

  std::vector<const LanguageRow*> find() {
    if (text_.size() > kLongestName) return {};
    add(find_language(tag_));
    add_if([&](const LanguageRow& row) { return equal_ignoring_case(row.name, text_); });
    for (const LanguageRow* row : rows_with_any_script(with_known_language(tag_))) add(row);
    for (std::size_t dash = tag_.rfind(u'-'); dash != tag_.npos && dash != 0; dash = tag_.rfind(u'-', dash - 1))
      add(find_language(std::u16string_view(tag_).substr(0, dash)));
    if (!found_.empty()) return std::move(found_);
    add_spoken_where([&](const LanguageRow& row) { return is_region(row, tag_); });
    if (text_.size() < 2) return std::move(found_);
    add_if([&](const LanguageRow& row) {
      return variant_of(row).empty() && equal_ignoring_case(row.name.substr(0, text_.size()), text_);
    });
    if (text_.size() < 3) return std::move(found_);
    add_misspelt();
    // The text may begin with a region: "Austria", "Austrian German".
    add_spoken_where([&](const LanguageRow& row) {
      const std::u16string_view variant = variant_of(row);
      return variant.size() > 3 && equal_ignoring_case(variant, text_.substr(0, variant.size()));
    });
    if (found_.empty()) add_if([&](const LanguageRow& row) { return abbreviates(row); });
    return std::move(found_);
  }

 private:
  void add(const LanguageRow* row) {
    if (row != nullptr && found_.size() < kMostNearest && std::ranges::count(found_, row) == 0) found_.push_back(row);
  }
  template <class Condition>
  void add_if(Condition condition) {
    for (const LanguageRow& row : language_rows())
      if (condition(row)) add(&row);
  }

  // A region's own languages come first. Windows gives them an identifier (to DE-AT, not to EN-AT).
  template <class Condition>
  void add_spoken_where(Condition condition) {
    add_if([&](const LanguageRow& row) { return row.lcid != kNoIdentifier && condition(row); });
    add_if(condition);
  }

  static bool is_region(const LanguageRow& row, std::u16string_view region) {
    return row.code.size() == region.size() + 3 && row.code[2] == u'-' && row.code.ends_with(region);
  }

  // Allows one wrong letter, in a long name two.
  void add_misspelt() {
    const std::string typed = to_utf8(text_);
    for (std::size_t distance = 1; distance <= (typed.size() < 8 ? 1u : 2u); ++distance)
      add_if([&](const LanguageRow& row) {
        return edit_distance(typed, to_utf8(row.code)) == distance ||
               edit_distance(typed, to_utf8(row.name)) == distance;
      });
  }

  // Whether the text abbreviates the name: its letters occur there in this order, and the first begins it (JPN for
  // Japanese).
  bool abbreviates(const LanguageRow& row) const {
    if (!variant_of(row).empty() || upper_case(row.name.front()) != upper_case(text_.front())) return false;
    std::u16string_view rest = text_;
    for (const char16_t c : row.name)
      if (!rest.empty() && upper_case(c) == upper_case(rest.front())) rest.remove_prefix(1);
    return rest.empty();
  }

  std::u16string_view text_;
  std::u16string tag_;
  std::vector<const LanguageRow*> found_;
};

}  // namespace

const LanguageRow* find_language(std::u16string_view tag) {
  const std::u16string given = ascii_upper(tag);
  if (const LanguageRow* const row = row_of(given)) return row;
  const std::u16string known = with_known_language(given);
  if (const LanguageRow* const row = row_of(known)) return row;
  if (const std::size_t dash = known.find(u'-'); dash != known.npos) {
    const std::u16string_view script = std::u16string_view(known).substr(dash + 1).substr(0, 4);
    const bool has_script = is_script(script) && (known.size() == dash + 5 || known[dash + 5] == u'-');
    if (has_script) {
      const LanguageRow* const row = row_of(known.substr(0, dash) + known.substr(dash + 5));
      return row != nullptr && equal_ignoring_ascii_case(row->script, script) ? row : nullptr;
    }
  }
  const std::vector<const LanguageRow*> rows = rows_with_any_script(known);
  return rows.size() == 1 ? rows.front() : nullptr;
}

std::vector<const LanguageRow*> nearest_languages(std::u16string_view text) { return Nearest(text).find(); }

std::u16string unknown_language_text(std::u16string_view text) {
  const std::u16string name = std::u16string(trimmed(text));
  if (name.empty()) return u"a language is missing: give its code, such as FR or EN-US";
  const auto parts = split(name, u",;+ \t");
  if (name.find_first_of(kListSeparators) != name.npos ||
      (parts.size() > 1 && std::ranges::all_of(parts, [](auto part) { return find_language(part) != nullptr; })))
    return name + u" is a list; each run takes one language, so start one run for each";
  std::u16string answer = name + u" is not a language that the suite knows";
  const std::vector<const LanguageRow*> near = nearest_languages(name);
  if (near.empty()) return answer + u"; give its code, such as FR, EN-US or SR-LATN-RS";
  for (std::size_t i = 0; i < near.size(); ++i) {
    answer += i == 0 ? u"; did you mean " : i + 1 == near.size() ? u" or " : u", ";
    answer += formatted(u"{} ({})", near[i]->code, near[i]->name);
  }
  return answer + u"?";
}

}  // namespace kavo
