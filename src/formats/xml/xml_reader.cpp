#include "formats/xml/xml_reader.h"

#include <expat.h>

#include <cstring>
#include <exception>

#include "platform/code_page.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr XML_Char kSeparator = ' ';

// The parser keeps a tag in memory until it ends. No real tag is longer than this.
constexpr std::uint64_t kLongestTag = 16 * 1024 * 1024;

bool is_named(const XML_Char* name, const char* lower) {
  for (; *name && *lower; ++name, ++lower)
    if ((*name >= 'A' && *name <= 'Z' ? *name + 32 : *name) != *lower) return false;
  return *name == *lower;
}

// Fills the parser's map for a code page of one byte a character; false for any other code page.
bool fill_map(const CodePage& page, XML_Encoding& map) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    if (page.is_lead_byte(static_cast<unsigned char>(byte))) return false;
    const std::u16string unit = page.decode(std::string(1, static_cast<char>(byte)));
    const bool is_valid = unit.size() == 1 && (unit[0] < 0xD800 || unit[0] > 0xDFFF);
    map.map[byte] = is_valid ? unit[0] : -1;
  }
  map.data = nullptr;
  map.convert = nullptr;
  map.release = nullptr;
  return true;
}

int XMLCALL unknown_encoding(void*, const XML_Char* name, XML_Encoding* map) {
  try {
    return fill_map(*make_code_page(name), *map) ? XML_STATUS_OK : XML_STATUS_ERROR;
  } catch (const std::exception&) {
    return XML_STATUS_ERROR;
  }
}

}  // namespace

const char* XmlAttributes::find(std::string_view name) const {
  for (const char** pair = pairs_; *pair; pair += 2)
    if (name == *pair) return pair[1];
  return nullptr;
}

std::string_view XmlAttributes::text(std::string_view name) const {
  const char* const value = find(name);
  return value ? value : "";
}

struct XmlReader::State {
  explicit State(std::u16string_view file) : path(file), reader(file), parser(XML_ParserCreateNS(nullptr, kSeparator)) {
    if (!parser) throw failure(FailureNumber::kOutOfMemory, u"Out of memory");
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, on_start, on_end);
    XML_SetCharacterDataHandler(parser, on_text);
    XML_SetXmlDeclHandler(parser, on_declaration);
    XML_SetEntityDeclHandler(parser, on_entity);
    XML_SetSkippedEntityHandler(parser, on_skipped_entity);
    XML_SetUnknownEncodingHandler(parser, unknown_encoding, nullptr);
    XML_SetParamEntityParsing(parser, XML_PARAM_ENTITY_PARSING_NEVER);
  }
  ~State() { XML_ParserFree(parser); }

  // The parser is C code, so an exception that a handler throws is kept until the parser has returned.
  template <class Step>
  void guarded(Step&& step) {
    if (thrown) return;
    try {
      step();
    } catch (...) {
      thrown = std::current_exception();
      XML_StopParser(parser, XML_FALSE);
    }
  }

  XmlPlace place() const {
    const auto begin = static_cast<std::uint64_t>(XML_GetCurrentByteIndex(parser));
    return {begin, begin + static_cast<std::uint64_t>(XML_GetCurrentByteCount(parser))};
  }

  static void split(const XML_Char* full, std::string_view& space, std::string_view& name) {
    name = full;
    space = {};
    const std::size_t separator = name.rfind(kSeparator);
    if (separator == std::string_view::npos) return;
    space = name.substr(0, separator);
    name.remove_prefix(separator + 1);
  }

  static void XMLCALL on_start(void* self, const XML_Char* full, const XML_Char** attributes) {
    State& state = *static_cast<State*>(self);
    state.guarded([&] {
      std::string_view space, name;
      split(full, space, name);
      state.handler->start(space, name, XmlAttributes(attributes), state.place());
    });
  }
  static void XMLCALL on_end(void* self, const XML_Char* full) {
    State& state = *static_cast<State*>(self);
    state.guarded([&] {
      std::string_view space, name;
      split(full, space, name);
      state.handler->end(space, name, state.place());
    });
  }
  static void XMLCALL on_text(void* self, const XML_Char* text, int length) {
    State& state = *static_cast<State*>(self);
    state.guarded([&] { state.handler->text({text, static_cast<std::size_t>(length)}); });
  }
  static void XMLCALL on_declaration(void* self, const XML_Char*, const XML_Char* encoding, int) {
    State& state = *static_cast<State*>(self);
    if (encoding && state.coding == XmlCoding::kUtf8 && !is_named(encoding, "utf-8"))
      state.coding = XmlCoding::kAsciiBased;
  }
  static void XMLCALL on_entity(void* self, const XML_Char*, int, const XML_Char*, int, const XML_Char*,
                                const XML_Char*, const XML_Char*, const XML_Char*) {
    State& state = *static_cast<State*>(self);
    state.guarded([&] { state.refuse(u"the document declares entities, which are not read"); });
  }
  static void XMLCALL on_skipped_entity(void* self, const XML_Char* name, int) {
    State& state = *static_cast<State*>(self);
    state.guarded([&] { state.refuse(formatted(u"the entity \"{}\" is not read", name)); });
  }

  [[noreturn]] void refuse(std::u16string_view reason) const {
    throw failure(FailureNumber::kInvalidCall,
                  formatted(u"{}, line {}, column {}: {}", path, XML_GetCurrentLineNumber(parser),
                            std::to_string(XML_GetCurrentColumnNumber(parser) + 1), reason));
  }

  void look_at_coding() {
    const std::string_view start = reader.window();
    if (start.starts_with("\xFF\xFE") || start.starts_with(std::string_view("<\0", 2)))
      coding = XmlCoding::kUtf16Little;
    if (start.starts_with("\xFE\xFF") || start.starts_with(std::string_view("\0<", 2))) coding = XmlCoding::kUtf16Big;
  }

  std::u16string path;
  BlockReader reader;
  XML_Parser parser;
  XmlHandler* handler = nullptr;
  XmlCoding coding = XmlCoding::kUtf8;
  std::exception_ptr thrown;
};

XmlReader::XmlReader(std::u16string_view path) : state_(std::make_unique<State>(path)) {}
XmlReader::~XmlReader() = default;

void XmlReader::read(XmlHandler& handler, ProgressEvent* progress) {
  State& state = *state_;
  state.handler = &handler;
  std::uint64_t given = 0;
  // Four bytes are needed to recognise UTF-16, with or without a byte order mark.
  while (state.reader.window().size() < 4 && state.reader.more()) {
  }
  state.look_at_coding();
  for (;;) {
    const std::string_view window = state.reader.window();
    const bool is_last = state.reader.exhausted();
    const XML_Status status = XML_Parse(state.parser, window.data(), static_cast<int>(window.size()), is_last);
    given += window.size();
    state.reader.consume(window.size());
    if (state.thrown) std::rethrow_exception(state.thrown);
    if (status != XML_STATUS_OK) {
      const XML_Error error = XML_GetErrorCode(state.parser);
      if (error == XML_ERROR_NO_ELEMENTS || error == XML_ERROR_UNCLOSED_TOKEN || error == XML_ERROR_PARTIAL_CHAR ||
          error == XML_ERROR_UNCLOSED_CDATA_SECTION)
        refuse(u"the document ends too early (" + to_utf16(XML_ErrorString(error)) + u")");
      refuse(to_utf16(XML_ErrorString(error)));
    }
    if (progress) progress->report(state.reader.percent());
    if (is_last) return;
    if (given - static_cast<std::uint64_t>(XML_GetCurrentByteIndex(state.parser)) > kLongestTag)
      refuse(u"a tag is longer than 16 MB");
    state.reader.more();
  }
}

void XmlReader::refuse(std::u16string_view reason) const { state_->refuse(reason); }
XmlCoding XmlReader::coding() const { return state_->coding; }

}  // namespace kavo
