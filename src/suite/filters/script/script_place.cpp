#include "suite/filters/script/script_place.h"

#include "platform/failure.h"

namespace kavo::script {
namespace {

// A context holds one letter for each value: language, flags, the attribute's quote, first and last form; then three
// letters for each code.
constexpr char kBase = '0';
constexpr std::size_t kHeadSize = 5;
constexpr std::size_t kCodeSize = 3;
constexpr int kMostForm = static_cast<int>(LiteralForm::kCommand);
constexpr int kMostLanguage = static_cast<int>(Language::kPhp);
constexpr std::string_view kQuotes("\0\"'", 3);

char letter(int value) { return static_cast<char>(kBase + value); }

int value_of(char c, int most) {
  const int value = c - kBase;
  if (value < 0 || value > most) throw failure(FailureNumber::kInvalidCall, u"The skeleton is damaged");
  return value;
}

LiteralForm form_of(char c) { return static_cast<LiteralForm>(value_of(c, kMostForm)); }

}  // namespace

SegmentPlace place_of_unit(const Unit& unit) {
  SegmentPlace place{.language = unit.language,
                     .in_element = unit.in_element,
                     .has_markup = unit.has_markup,
                     .is_attribute = !unit.attribute.empty(),
                     .is_constant = unit.is_constant,
                     .in_page = unit.in_page,
                     .quote = unit.quote,
                     .first = unit.first,
                     .last = unit.last,
                     .codes = {}};
  for (const UnitPart& part : unit.parts)
    if (part.is_code) place.codes.push_back({part.before, part.after, part.is_ordered});
  return place;
}

std::string context_of(const SegmentPlace& place) {
  std::string context;
  context += letter(static_cast<int>(place.language));
  context += letter((place.in_element ? 1 : 0) + (place.has_markup ? 2 : 0) + (place.is_attribute ? 4 : 0) +
                    (place.is_constant ? 8 : 0) + (place.in_page ? 16 : 0));
  context += letter(static_cast<int>(kQuotes.find(place.quote)));
  context += letter(static_cast<int>(place.first));
  context += letter(static_cast<int>(place.last));
  for (const SegmentPlace::Code& code : place.codes) {
    context += letter(static_cast<int>(code.before));
    context += letter(static_cast<int>(code.after));
    context += letter(code.is_ordered ? 1 : 0);
  }
  return context;
}

SegmentPlace place_from(std::string_view context) {
  if (context.size() < kHeadSize || (context.size() - kHeadSize) % kCodeSize != 0)
    throw failure(FailureNumber::kInvalidCall, u"The skeleton is damaged");
  SegmentPlace place;
  place.language = static_cast<Language>(value_of(context[0], kMostLanguage));
  const int flags = value_of(context[1], 31);
  place.in_element = (flags & 1) != 0;
  place.has_markup = (flags & 2) != 0;
  place.is_attribute = (flags & 4) != 0;
  place.is_constant = (flags & 8) != 0;
  place.in_page = (flags & 16) != 0;
  place.quote = kQuotes[static_cast<std::size_t>(value_of(context[2], 2))];
  place.first = form_of(context[3]);
  place.last = form_of(context[4]);
  for (std::size_t at = kHeadSize; at < context.size(); at += kCodeSize)
    place.codes.push_back({form_of(context[at]), form_of(context[at + 1]), value_of(context[at + 2], 1) == 1});
  return place;
}

}  // namespace kavo::script
