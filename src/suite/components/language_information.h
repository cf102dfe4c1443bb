// K19Suite.LanguageInformation: the languages and code pages of the suite, record by record.
#pragma once

#include "platform/automation.h"

namespace kavo {

// Members: LanguageCount, FillLanguage, CodePageCount and FillCodePage, as docs/suite-interface.md describes them.
class LanguageInformation final : public TableObject {
 public:
  LanguageInformation();
};

}  // namespace kavo
