#include "suite/filters/rc/rc_script.h"

#include <algorithm>

#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/languages/language_tags.h"

namespace kavo::rc {
namespace {

struct Mark {
  std::string_view bytes;
  unsigned code_page;
};
constexpr Mark kMarks[] = {
    {"\xEF\xBB\xBF", kUtf8CodePage}, {"\xFF\xFE", kUtf16LittleEndian}, {"\xFE\xFF", kUtf16BigEndian}};
constexpr std::size_t kLongestMark = 3;  // bytes

// Reads the document from its window to its end.
bool is_utf8(BlockReader& document) {
  for (;;) {
    std::string_view bytes = document.window();
    while (!bytes.empty()) {
      const std::size_t length = static_cast<unsigned char>(bytes.front()) < 0x80 ? 1 : utf8_character_length(bytes);
      if (length == 0) break;
      bytes.remove_prefix(length);
    }
    constexpr std::size_t kLongestCharacter = 4;
    if (bytes.size() >= kLongestCharacter) return false;
    document.consume(document.window().size() - bytes.size());
    if (!document.more()) return document.window().empty();
  }
}

}  // namespace

RcScript::RcScript(BlockReader& document, const ConversionSettings& settings)
    : document_(document), code_page_(settings.source_code_page) {
  while (document.window().size() < kLongestMark && document.more()) {
  }
  for (const Mark& mark : kMarks) {
    if (!document.window().starts_with(mark.bytes)) continue;
    mark_ = mark.bytes;
    code_page_ = mark.code_page;
    return;
  }
  if (code_page_ != kUtf8CodePage || is_utf8(document)) return;
  if (const LanguageRow* language = find_language(to_utf16(settings.source_language)))
    code_page_ = static_cast<unsigned>(language->code_page);
}

unsigned RcScript::code_page(unsigned declared) const { return is_marked() || declared == 0 ? code_page_ : declared; }

const TextCoding& RcScript::coding(unsigned code_page) {
  std::unique_ptr<TextCoding>& coding = codings_[code_page];
  if (!coding) coding = std::make_unique<TextCoding>(code_page);
  return *coding;
}

// The scanner asks only for lead bytes. An unknown code page counts as having none.
const TextCoding* RcScript::scanner_coding(unsigned declared) {
  const unsigned number = code_page(declared);
  if (number == kUtf8CodePage || number == kUtf16LittleEndian || number == kUtf16BigEndian) return nullptr;
  try {
    return &coding(number);
  } catch (const failure& reason) {
    if (!reason.is(FailureNumber::kInvalidCall)) throw;
    return &coding(1252);
  }
}

void RcScript::read(const RcParser::Taker& take, ProgressEvent* progress) {
  document_.seek(0);
  while (document_.window().size() < mark_.size() && document_.more()) {
  }
  document_.consume(mark_.size());
  input_ = std::make_unique<html::PageInput>(document_, code_page_);
  RcParser parser(take);
  RcTokenScanner scanner;
  unsigned declared = 0;
  scanner.coding(scanner_coding(declared));
  RcToken token;
  for (bool is_all = false;;) {
    std::string_view window = input_->window();
    const std::size_t size = window.size();
    while (!window.empty() && scanner.next(window, is_all, token)) {
      parser.take(token);
      window.remove_prefix(token.bytes.size());
      if (parser.code_page() == declared) continue;
      declared = parser.code_page();
      scanner.coding(scanner_coding(declared));
    }
    input_->consume(size - window.size());
    if (is_all) break;
    is_all = !input_->more();
    if (progress) progress->report(document_.percent());
  }
  parser.finish();
}

}  // namespace kavo::rc
