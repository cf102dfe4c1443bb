// Decides by a list of names, each followed by one TAB, which marker types are selected.
#pragma once

#include <string>
#include <string_view>

#include "mif/mif_coding.h"

namespace kavo {

class MarkerTypes {
 public:
  // Extraction ignores letter case and merging does not, deliberately. A marker type that the list names in other
  // letter case is extracted, and keeps its untranslated text.
  enum class LetterCase { kIgnored, kExact };
  enum class Kind { kUnselected, kOther, kIndex };

  MarkerTypes(std::u16string_view list, LetterCase letter_case);

  // The kind of a marker type. `type` is the bytes between its quotes.
  Kind kind_of(std::string_view type, const MifCoding& coding);

 private:
  Kind classify(std::string_view type, const MifCoding& coding) const;

  LetterCase letter_case_;
  std::u16string list_;  // a TAB, then the names, so that each is between two TABs
  std::u16string index_;
  std::string last_type_;  // cached, since most markers have the type of the one before
  Kind last_kind_;
};

}  // namespace kavo
