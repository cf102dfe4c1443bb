#include "mif/marker_types.h"

#include "platform/case_fold.h"

namespace kavo {
namespace {

std::u16string comparable(std::u16string_view text, MarkerTypes::LetterCase letter_case) {
  return letter_case == MarkerTypes::LetterCase::kIgnored ? upper_case(text) : std::u16string(text);
}

}  // namespace

MarkerTypes::MarkerTypes(std::u16string_view list, LetterCase letter_case)
    : letter_case_(letter_case),
      list_(comparable(u"\t" + std::u16string(list), letter_case)),
      index_(comparable(u"Index", letter_case)),
      last_kind_(classify({}, {})) {}

MarkerTypes::Kind MarkerTypes::kind_of(std::string_view type, const MifCoding& coding) {
  if (type != last_type_) {
    last_kind_ = classify(type, coding);
    last_type_ = type;
  }
  return last_kind_;
}

MarkerTypes::Kind MarkerTypes::classify(std::string_view type, const MifCoding& coding) const {
  const std::u16string name = comparable(coding.decode(type), letter_case_);
  if (list_.find(u"\t" + name + u"\t") == std::u16string::npos) return Kind::kUnselected;
  return name == index_ ? Kind::kIndex : Kind::kOther;
}

}  // namespace kavo
