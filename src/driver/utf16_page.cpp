#include "driver/utf16_page.h"

#include "common/block_reader.h"
#include "common/line_index.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "formats/text/text_coding.h"
#include "formats/text/utf16_mark.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

[[noreturn]] void throw_invalid(std::u16string_view path, std::uint64_t position) {
  const LinePlace place = LineIndex(path).place_of(position);
  throw failure(FailureNumber::kInvalidCall,
                formatted(u"{} (line {}) holds bytes that are not valid UTF-16: save it as UTF-8 and try again",
                          file_name_of(path), place.line));
}

// Writes a file in another coding. The byte order mark is a character like any other.
void recode(std::u16string_view path, unsigned from, unsigned to, std::u16string_view target) {
  const TextCoding source(from);
  const TextCoding result(to);
  PendingFile file(target);
  {
    BlockReader reader(path);
    std::string text;
    std::string bytes;
    do {
      std::string_view window = reader.window();
      if (!reader.exhausted()) window.remove_suffix(source.incomplete_tail(window));
      text.clear();
      source.decode(window, text, [&](std::string_view piece) {
        throw_invalid(path, reader.position() + static_cast<std::size_t>(piece.data() - window.data()));
      });
      bytes.clear();
      result.encode(text, bytes, [](std::string_view, std::string&) {});
      file.write(bytes);
      reader.consume(window.size());
    } while (reader.more());
  }
  file.commit();
}

}  // namespace

bool is_utf16_page(std::u16string_view path) {
  try {
    BlockReader reader(path);
    return starts_as_utf16(reader);
  } catch (const failure&) {
    return false;
  }
}

unsigned write_as_utf8(std::u16string_view utf16, std::u16string_view target) {
  unsigned code_page = kUtf16LittleEndian;
  {
    BlockReader reader(utf16);
    if (starts_as_utf16(reader) && reader.window().front() == '\xFE') code_page = kUtf16BigEndian;
  }
  recode(utf16, code_page, kUtf8CodePage, target);
  return code_page;
}

void turn_into_utf16(std::u16string_view path, unsigned code_page) { recode(path, kUtf8CodePage, code_page, path); }

void mark_as_utf8(std::u16string_view path) {
  PendingFile file(path);
  {
    BlockReader reader(path);
    file.write("\xEF\xBB\xBF");
    do {
      file.write(reader.window());
      reader.consume(reader.window().size());
    } while (reader.more());
  }
  file.commit();
}

}  // namespace kavo
