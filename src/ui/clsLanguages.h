// The languages and code pages that the suite knows, for the language pickers.
//
// Both tables are copied once, when the object is made, from the suite's component "K19Suite.LanguageInformation"
// (docs/suite-interface.md); afterwards every question is answered from the copies. No failure reaches a caller: when
// the component is missing or fails, a table keeps what has been filled so far.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kavo {

// Indices count from 0. One outside the table gives "" for a text, 0 for a number and -1 for LanguageCodePage.
class clsLanguages {
 public:
  clsLanguages();

  std::u16string LanguageDescription(std::int32_t index) const;
  std::u16string LanguageCode(std::int32_t index) const;    // the suite's code: "EN-US"
  std::int32_t LanguageEncoding(std::int32_t index) const;  // number of the default code page
  std::int32_t LanguageLCID(std::int32_t index) const;
  // Index of the first code page whose number is the language's default one, -1 when there is none.
  std::int32_t LanguageCodePage(std::int32_t index) const;
  std::u16string CodePageDescription(std::int32_t index) const;
  std::int32_t CodePageNumber(std::int32_t index) const;
  std::u16string CodePageCode(std::int32_t index) const;

  // The highest index, -1 of an empty table. Deliberately not the number of entries: callers count from 0 up to it.
  std::int32_t LanguageCount() const { return static_cast<std::int32_t>(languages_.size()) - 1; }
  std::int32_t CodePageCount() const { return static_cast<std::int32_t>(code_pages_.size()) - 1; }

 private:
  struct Language {
    std::u16string description, code;
    std::int32_t encoding = 0, lcid = 0;
  };
  struct EncodingEntry {
    std::u16string description, code;
    std::int32_t number = 0;
  };

  std::vector<Language> languages_;
  std::vector<EncodingEntry> code_pages_;
};

}  // namespace kavo
