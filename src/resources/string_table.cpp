#include "resources/string_table.h"

namespace kavo {

// A name is a row, so that no text can be missing: a number that is none of them gives "".
#define KAVO_NO_TEXT(number, name, text)
#define KAVO_TEXT_CASE(number, name, text) \
  case number:                             \
    return text;

std::u16string_view string_resource(text::Name name) noexcept {
  switch (static_cast<std::int32_t>(name)) {
#define KAVO_COMMON_TEXT KAVO_TEXT_CASE
#define KAVO_MOVE_FILE_TEXT KAVO_NO_TEXT
#define KAVO_EXCEL_OPTIONS_TEXT KAVO_NO_TEXT
#define KAVO_HTML_VALIDATE_TEXT KAVO_NO_TEXT
#include "resources/texts.inc"
    default:
      return u"";
  }
}
#undef KAVO_COMMON_TEXT
#define KAVO_COMMON_TEXT KAVO_NO_TEXT

std::u16string_view string_resource(move_file_text::Name name) noexcept {
  switch (static_cast<std::int32_t>(name)) {
#undef KAVO_MOVE_FILE_TEXT
#define KAVO_MOVE_FILE_TEXT KAVO_TEXT_CASE
#include "resources/texts.inc"
    default:
      return u"";
  }
}
#undef KAVO_MOVE_FILE_TEXT
#define KAVO_MOVE_FILE_TEXT KAVO_NO_TEXT

std::u16string_view string_resource(excel_options_text::Name name) noexcept {
  switch (static_cast<std::int32_t>(name)) {
#undef KAVO_EXCEL_OPTIONS_TEXT
#define KAVO_EXCEL_OPTIONS_TEXT KAVO_TEXT_CASE
#include "resources/texts.inc"
    default:
      return u"";
  }
}
#undef KAVO_EXCEL_OPTIONS_TEXT
#define KAVO_EXCEL_OPTIONS_TEXT KAVO_NO_TEXT

std::u16string_view string_resource(html_validate_text::Name name) noexcept {
  switch (static_cast<std::int32_t>(name)) {
#undef KAVO_HTML_VALIDATE_TEXT
#define KAVO_HTML_VALIDATE_TEXT KAVO_TEXT_CASE
#include "resources/texts.inc"
    default:
      return u"";
  }
}

}  // namespace kavo
