// Which marker types are selected by a list of names, each followed by one TAB.
#pragma once

#include <string>
#include <string_view>

#include "mif/mif_coding.h"

namespace kavo {

class MarkerTypes {
 public:
  // Extraction ignores letter case and merging does not, deliberately: a marker type that the list names in another
  // case is extracted and keeps its untranslated text.
  enum class LetterCase { kIgnored, kExact };
  enum class Kind { kUnselected, kOther, kIndex };

  MarkerTypes(std::u16string_view list, LetterCase letter_case);

  // What a marker of this type (the bytes between its quotes) is.
  Kind kind_of(std::string_view type, const MifCoding& coding);

 private:
  Kind classify(std::string_view type, const MifCoding& coding) const;

  LetterCase letter_case_;
  std::u16string list_;  // a TAB, then the names
  std::u16string index_;
  std::string last_type_;  // most markers are of the type of the one before
  Kind last_kind_;
};

}  // namespace kavo
