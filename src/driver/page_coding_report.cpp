#include "driver/page_coding_report.h"

#include <optional>

#include "common/block_reader.h"
#include "common/line_index.h"
#include "common/path_parts.h"
#include "formats/html/charset.h"
#include "formats/script/language.h"
#include "formats/text/text_coding.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// Bytes that are not a character in the page's coding.
struct InvalidBytes {
  std::uint64_t count = 0;
  std::uint64_t first = 0;  // position of the first one, in bytes from 0
};

InvalidBytes invalid_bytes(BlockReader& page, unsigned code_page) {
  const TextCoding coding(code_page);
  InvalidBytes found;
  std::string ignored;
  do {
    std::string_view bytes = page.window();
    if (!page.exhausted()) bytes.remove_suffix(coding.incomplete_tail(bytes));
    ignored.clear();
    coding.decode(bytes, ignored, [&](std::string_view piece) {
      if (found.count++ == 0) found.first = page.position() + static_cast<std::size_t>(piece.data() - bytes.data());
    });
    page.consume(bytes.size());
  } while (page.more());
  return found;
}

void report(const std::u16string& page, unsigned code_page, const RunObserver& observer) {
  BlockReader reader(page);
  while (reader.window().size() < html::kDeclarationReach && reader.more()) {
  }
  const std::string extension = to_utf8(ascii_lower(extension_of(page)));
  const html::PageCoding coding = html::coding_of(reader.window(), script::language_of_page(extension));
  if (!coding.remark.empty()) observer.tell({to_utf16(coding.remark)});
  if (coding.is_unsupported) return;
  code_page = coding.code_page.value_or(code_page);
  const InvalidBytes invalid = invalid_bytes(reader, code_page);
  if (invalid.count == 0) return;
  const LinePlace place = LineIndex(page).place_of(invalid.first);
  observer.tell({formatted(u"these bytes are not valid in the page's coding, {}, and stay as they are: {}",
                           html::charset_name(code_page), invalid.count),
                 0, place.line, place.column});
}

}  // namespace

void report_page_coding(const std::u16string& page, unsigned code_page, const RunObserver& observer) {
  try {
    report(page, code_page, observer);
  } catch (const failure& reason) {
    observer.tell(
        {u"It could not be checked whether the page's bytes are valid in its coding: " + reason.description()});
  }
}

}  // namespace kavo
