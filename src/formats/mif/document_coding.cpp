#include "formats/mif/document_coding.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>

#include "formats/mif/escapes.h"
#include "formats/text/euc_japanese.h"

namespace kavo::mif {
namespace {

constexpr int kFirstUtf8Version = 8;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// The word in a MIFEncoding statement, written in the coding that it declares: "Japanese", "Chinese", "Korean".
struct DeclaredCoding {
  std::string_view word;
  unsigned code_page;
};
constexpr DeclaredCoding kDeclaredCodings[] = {
    {"\x93\xFA\x96\x7B\x8C\xEA", 932}, {"\xD6\xD0\xCE\xC4", 936}, {"\xA4\xA4\xA4\xE5", 950},
    {"\xC7\xD1\xB1\xB9\xBE\xEE", 949}, {"\xC7\xD1\xB1\xDB", 949}, {"\xC6\xFC\xCB\xDC\xB8\xEC", kEucJapanese},
};

// FEncoding's names for the codings of fonts. FrameRoman is the format's own set, written as escapes.
constexpr std::string_view kWesternFont = "FrameRoman";
constexpr std::pair<std::string_view, unsigned> kFontCodings[] = {
    {"JISX0208.ShiftJIS", 932}, {"GB2312-80.EUC", 936}, {"KSC5601-1992", 949}, {"BIG5", 950}};
constexpr unsigned kWesternCodePage = 1252;

std::string unescaped(std::string_view value) {
  std::string bytes;
  for (std::size_t at = 0; at < value.size();) {
    const ByteEscape escape = byte_escape(value.substr(at));
    bytes += escape.length != 0 ? static_cast<char>(escape.byte) : value[at];
    at += std::max<std::size_t>(escape.length, 1);
  }
  return bytes;
}

// Null when the beginning declares nothing, or something unknown.
const DeclaredCoding* find_declared_coding(std::string_view beginning) {
  constexpr std::string_view statement = "<MIFEncoding";
  const std::size_t at = beginning.find(statement);
  if (at == std::string_view::npos) return nullptr;
  const std::string_view rest = beginning.substr(at + statement.size());
  const std::string value = unescaped(rest.substr(0, rest.find('>')));
  for (const DeclaredCoding& declared : kDeclaredCodings)
    if (value.find(declared.word) != std::string::npos) return &declared;
  return nullptr;
}

}  // namespace

DocumentCoding coding_of(std::string_view beginning, unsigned source_code_page) {
  beginning = beginning.substr(0, kDeclarationReach);
  DocumentCoding coding;
  if (beginning.starts_with(kUtf8Mark)) {
    coding.mark_size = kUtf8Mark.size();
    return coding;
  }
  for (const std::string_view opening : {"<MIFFile", "<Book"}) {
    if (!beginning.starts_with(opening)) continue;
    std::string_view version = beginning.substr(opening.size());
    version.remove_prefix(std::min(version.find_first_not_of(" \t\r\n"), version.size()));
    int number = 0;
    std::from_chars(version.data(), version.data() + version.size(), number);
    if (number >= kFirstUtf8Version) return coding;
  }
  coding.is_utf8 = false;
  coding.code_page = source_code_page;
  if (const DeclaredCoding* const declared = find_declared_coding(beginning)) {
    coding.code_page = declared->code_page;
    coding.declared = declared->word;
  }
  return coding;
}

unsigned code_page_of_font(std::string_view encoding, unsigned document_code_page) {
  for (const auto& [name, code_page] : kFontCodings)
    if (name == encoding) return code_page;
  if (encoding != kWesternFont) return 0;
  const auto is_asian = [&](const auto& coding) { return coding.second == document_code_page; };
  return document_code_page == kEucJapanese || std::ranges::any_of(kFontCodings, is_asian) ? kWesternCodePage
                                                                                           : document_code_page;
}

}  // namespace kavo::mif
