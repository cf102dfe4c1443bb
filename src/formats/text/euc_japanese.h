// Japanese EUC, the coding of many pages and UNIX documents from Japan. It is not an ANSI code page, so the system does
// not provide it. Its one-byte and two-byte characters (JIS X 0201 and 0208) are those of code page 932 with other
// bytes.
//
// Its three-byte characters (JIS X 0212, after 0x8F) are not in that code page. They count as invalid bytes, which
// documents keep as they are.
#pragma once

#include <memory>

#include "platform/code_page.h"

namespace kavo {

inline constexpr unsigned kEucJapanese = 51932;        // as Windows numbers it
inline constexpr unsigned char kEucThreeBytes = 0x8F;  // leads a character of three

std::unique_ptr<CodePage> make_euc_japanese();

}  // namespace kavo
