// A language information component with the records that a test says.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/fake_automation.h"

namespace kavo::test {

struct ListedLanguage {
  std::u16string description, code;
  std::int32_t encoding = 1252, lcid = 0;
};

struct ListedCodePage {
  std::u16string description, code;
  std::int32_t number = 0;
};

// How a component misbehaves: from this index on it refuses records (status 1) or raises an error. The counts that it
// reports are always those of all records.
struct SourceFaults {
  std::optional<std::int32_t> language_refused, language_raised, code_page_refused, code_page_raised;
  bool language_count_raised = false;
  bool code_page_count_raised = false;
};

inline void maybe_raise(bool raised) {
  if (raised) throw failure(1004, u"The table cannot be read", u"Suite");
}

inline ObjectRef make_language_information(std::vector<ListedLanguage> languages,
                                           std::vector<ListedCodePage> code_pages, SourceFaults faults = {}) {
  const auto language_count = [=](std::span<Argument>) -> Value {
    maybe_raise(faults.language_count_raised);
    return static_cast<std::int32_t>(languages.size());
  };
  const auto fill_language = [=](std::span<Argument> record) -> Value {
    const std::int32_t index = as_number(record[0].value);
    maybe_raise(index >= faults.language_raised.value_or(INT32_MAX));
    if (as_number(record[1].value) != 1 || index >= faults.language_refused.value_or(INT32_MAX)) return std::int32_t{1};
    const ListedLanguage& language = languages.at(static_cast<std::size_t>(index));
    record[2].value = language.description;
    record[3].value = language.code;
    record[4].value = language.encoding;
    record[5].value = language.lcid;
    return std::int32_t{0};
  };
  const auto code_page_count = [=](std::span<Argument>) -> Value {
    maybe_raise(faults.code_page_count_raised);
    return static_cast<std::int32_t>(code_pages.size());
  };
  const auto fill_code_page = [=](std::span<Argument> record) -> Value {
    const std::int32_t index = as_number(record[0].value);
    maybe_raise(index >= faults.code_page_raised.value_or(INT32_MAX));
    if (as_number(record[1].value) != 1 || index >= faults.code_page_refused.value_or(INT32_MAX))
      return std::int32_t{1};
    const ListedCodePage& code_page = code_pages.at(static_cast<std::size_t>(index));
    record[2].value = code_page.description;
    record[3].value = code_page.code;
    record[4].value = code_page.number;
    return std::int32_t{0};
  };
  return std::make_shared<FakeObject>(std::vector<Member>{
      {u"LanguageCount", MemberKind::kPropertyGet, 0, 0, language_count},
      {u"FillLanguage", MemberKind::kMethod, 6, 6, fill_language},
      {u"CodePageCount", MemberKind::kPropertyGet, 0, 0, code_page_count},
      {u"FillCodePage", MemberKind::kMethod, 5, 5, fill_code_page},
  });
}

inline std::vector<ListedLanguage> five_languages() {
  return {{u"Danish", u"DA", 1252, 0x0406},
          {u"English (U.K.)", u"EN-GB", 1252, 0x0809},
          {u"English (U.S.)", u"EN-US", 1252, 0x0409},
          {u"French (France)", u"FR-FR", 1252, 0x040C},
          {u"Japanese", u"JA", 932, 0x0411}};
}

inline std::vector<ListedCodePage> three_code_pages() {
  return {{u"Western European", u"windows-1252", 1252},
          {u"Central European", u"windows-1250", 1250},
          {u"Japanese (Shift-JIS)", u"shift_jis", 932}};
}

}  // namespace kavo::test
