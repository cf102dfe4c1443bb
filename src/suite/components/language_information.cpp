#include "suite/components/language_information.h"

#include "suite/languages/language_table.h"

namespace kavo {
namespace {

constexpr std::int32_t kFilled = 0;
constexpr std::int32_t kRefused = 1;

// The first field of a record gives its layout. There is one layout so far.
constexpr std::int32_t kLayout = 1;

template <class Row>
const Row* row_for(std::span<Argument> arguments, std::span<const Row> rows) {
  const std::int32_t index = as_number(arguments[0].value);
  if (as_number(arguments[1].value) != kLayout || index < 0 || static_cast<std::size_t>(index) >= rows.size())
    return nullptr;
  return &rows[static_cast<std::size_t>(index)];
}

Value fill_language(std::span<Argument> arguments) {
  const LanguageRow* const row = row_for(arguments, language_rows());
  if (!row) return kRefused;
  arguments[2].value = std::u16string(row->name);
  arguments[3].value = std::u16string(row->code);
  arguments[4].value = row->code_page;
  arguments[5].value = row->lcid;
  return kFilled;
}

Value fill_code_page(std::span<Argument> arguments) {
  const CodePageRow* const row = row_for(arguments, code_page_rows());
  if (!row) return kRefused;
  arguments[2].value = std::u16string(row->name);
  arguments[3].value = std::u16string(row->code);
  arguments[4].value = row->number;
  return kFilled;
}

}  // namespace

LanguageInformation::LanguageInformation()
    : TableObject({
          {u"LanguageCount", MemberKind::kPropertyGet, 0, 0,
           [](auto) -> Value { return static_cast<std::int32_t>(language_rows().size()); }},
          {u"FillLanguage", MemberKind::kMethod, 6, 6, fill_language},
          {u"CodePageCount", MemberKind::kPropertyGet, 0, 0,
           [](auto) -> Value { return static_cast<std::int32_t>(code_page_rows().size()); }},
          {u"FillCodePage", MemberKind::kMethod, 5, 5, fill_code_page},
      }) {}

}  // namespace kavo
