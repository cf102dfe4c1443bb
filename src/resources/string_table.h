// The string table: texts by name. Hosts know their numbers. A dialog or a service whose numbers are those of other
// texts has a section of its own.
#pragma once

#include <cstdint>
#include <string_view>

namespace kavo {

#define KAVO_NO_TEXT(number, name, text)
#define KAVO_TEXT_NAME(number, name, text) name = number,

namespace text {
enum Name : std::int32_t {
#define KAVO_COMMON_TEXT KAVO_TEXT_NAME
#define KAVO_MOVE_FILE_TEXT KAVO_NO_TEXT
#define KAVO_EXCEL_OPTIONS_TEXT KAVO_NO_TEXT
#define KAVO_HTML_VALIDATE_TEXT KAVO_NO_TEXT
#include "resources/texts.inc"
};
}  // namespace text
#undef KAVO_COMMON_TEXT
#define KAVO_COMMON_TEXT KAVO_NO_TEXT

namespace move_file_text {
enum Name : std::int32_t {
#undef KAVO_MOVE_FILE_TEXT
#define KAVO_MOVE_FILE_TEXT KAVO_TEXT_NAME
#include "resources/texts.inc"
};
}  // namespace move_file_text
#undef KAVO_MOVE_FILE_TEXT
#define KAVO_MOVE_FILE_TEXT KAVO_NO_TEXT

namespace excel_options_text {
enum Name : std::int32_t {
#undef KAVO_EXCEL_OPTIONS_TEXT
#define KAVO_EXCEL_OPTIONS_TEXT KAVO_TEXT_NAME
#include "resources/texts.inc"
};
}  // namespace excel_options_text
#undef KAVO_EXCEL_OPTIONS_TEXT
#define KAVO_EXCEL_OPTIONS_TEXT KAVO_NO_TEXT

namespace html_validate_text {
enum Name : std::int32_t {
#undef KAVO_HTML_VALIDATE_TEXT
#define KAVO_HTML_VALIDATE_TEXT KAVO_TEXT_NAME
#include "resources/texts.inc"
};
}  // namespace html_validate_text

#undef KAVO_COMMON_TEXT
#undef KAVO_MOVE_FILE_TEXT
#undef KAVO_EXCEL_OPTIONS_TEXT
#undef KAVO_HTML_VALIDATE_TEXT
#undef KAVO_NO_TEXT
#undef KAVO_TEXT_NAME

std::u16string_view string_resource(text::Name name) noexcept;
std::u16string_view string_resource(move_file_text::Name name) noexcept;
std::u16string_view string_resource(excel_options_text::Name name) noexcept;
std::u16string_view string_resource(html_validate_text::Name name) noexcept;

}  // namespace kavo
