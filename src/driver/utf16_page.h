// Server pages in UTF-16. Script protection and tag repair work on bytes in which a token is one ASCII byte a
// character, so such a page goes through them in UTF-8. The prepared page is in the author's coding again, so that
// rebuilding sees the coding by the byte order mark.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// True for a file that begins with the byte order mark of UTF-16; false for one that cannot be read, which the next
// reader reports.
bool is_utf16_page(std::u16string_view path);
// Writes the UTF-8 form of a UTF-16 file, with its mark, to `target`. Returns the file's code page. Throws `failure` 5
// with the place for bytes that are not UTF-16, because they could not be restored.
unsigned write_as_utf8(std::u16string_view utf16, std::u16string_view target);
// Replaces a UTF-8 file with its UTF-16 form in the byte order of `code_page`. Throws `failure`.
void turn_into_utf16(std::u16string_view path, unsigned code_page);
// Puts a byte order mark of UTF-8 at the beginning of a file.
void mark_as_utf8(std::u16string_view path);

}  // namespace kavo
