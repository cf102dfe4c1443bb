#include "formats/html/charset.h"

#include <algorithm>
#include <iterator>

#include "formats/html/elements.h"
#include "formats/text/euc_japanese.h"
#include "formats/text/text_coding.h"

namespace kavo::html {
namespace {

struct Label {
  std::string_view name;  // small letters
  unsigned code_page;
};

// By the HTML Standard Latin-1 means Windows-1252 in a page, and a page that can be read so far is not in UTF-16. The
// first name of a code page is the one that is written.
constexpr Label kLabels[] = {
    {"utf-8", kUtf8CodePage},
    {"utf8", kUtf8CodePage},
    {"unicode-1-1-utf-8", kUtf8CodePage},
    {"utf-16", kUtf8CodePage},
    {"utf-16le", kUtf8CodePage},
    {"utf-16be", kUtf8CodePage},
    {"unicode", kUtf8CodePage},
    {"windows-1252", 1252},
    {"cp1252", 1252},
    {"x-cp1252", 1252},
    {"iso-8859-1", 1252},
    {"iso8859-1", 1252},
    {"iso_8859-1", 1252},
    {"latin1", 1252},
    {"l1", 1252},
    {"us-ascii", 1252},
    {"ascii", 1252},
    {"windows-1250", 1250},
    {"cp1250", 1250},
    {"windows-1251", 1251},
    {"cp1251", 1251},
    {"windows-1253", 1253},
    {"cp1253", 1253},
    {"windows-1254", 1254},
    {"cp1254", 1254},
    {"iso-8859-9", 1254},
    {"latin5", 1254},
    {"windows-1255", 1255},
    {"cp1255", 1255},
    {"windows-1256", 1256},
    {"cp1256", 1256},
    {"windows-1257", 1257},
    {"cp1257", 1257},
    {"windows-1258", 1258},
    {"cp1258", 1258},
    {"windows-874", 874},
    {"tis-620", 874},
    {"iso-8859-11", 874},
    {"dos-874", 874},
    {"shift_jis", 932},
    {"shift-jis", 932},
    {"sjis", 932},
    {"x-sjis", 932},
    {"ms_kanji", 932},
    {"ms932", 932},
    {"windows-31j", 932},
    {"euc-jp", kEucJapanese},
    {"x-euc-jp", kEucJapanese},
    {"x-euc", kEucJapanese},
    {"gb2312", 936},
    {"gbk", 936},
    {"x-gbk", 936},
    {"gb_2312-80", 936},
    {"gb18030", 936},
    {"cp936", 936},
    {"euc-kr", 949},
    {"ks_c_5601-1987", 949},
    {"ksc5601", 949},
    {"korean", 949},
    {"windows-949", 949},
    {"big5", 950},
    {"big5-hkscs", 950},
    {"cn-big5", 950},
    {"x-x-big5", 950},
    {"cp950", 950},
};

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";

bool is_label_character(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '_' ||
         c == '.' || c == ':' || c == '+';
}

// The value after `name`, "=" and perhaps a quote in [begin, end) of the bytes.
std::optional<Span> value_after(std::string_view bytes, std::size_t begin, std::size_t end, std::string_view name) {
  for (; begin + name.size() < end; ++begin) {
    if (!equal_name(bytes.substr(begin, name.size()), name)) continue;
    std::size_t at = begin + name.size();
    while (at < end && is_html_space(bytes[at])) ++at;
    if (at == end || bytes[at] != '=') continue;
    ++at;
    while (at < end && (is_html_space(bytes[at]) || bytes[at] == '"' || bytes[at] == '\'')) ++at;
    const std::size_t value = at;
    while (at < end && is_label_character(bytes[at])) ++at;
    if (at == value) return std::nullopt;
    return Span{value, at};
  }
  return std::nullopt;
}

std::optional<std::string_view> declared_charset(std::string_view beginning) {
  // Tags are cut by ASCII alone, so any coding without double bytes does here.
  const TextCoding coding(kUtf8CodePage);
  PageInput input(beginning.substr(0, kDeclarationReach));
  TokenScanner scanner(input, coding);
  for (PageToken token; scanner.next(token);) {
    std::optional<Span> place;
    if (token.kind == TokenKind::kComment) place = charset_in_xml(token.bytes);
    if (token.kind == TokenKind::kStartTag) {
      const Element& element = find_element(token.name);
      if (element.kind == ElementKind::kScript) scanner.enter_raw_text(element.name, false);
      if (element.name == "meta") place = charset_in_meta(token, scanner.attributes());
    }
    // The window is a part of `beginning`, which outlives it.
    if (place) return token.bytes.substr(place->begin, place->end - place->begin);
  }
  return std::nullopt;
}

}  // namespace

Span trimmed(std::string_view bytes, std::size_t begin, std::size_t end) {
  while (begin < end && is_html_space(bytes[begin])) ++begin;
  while (end > begin && is_html_space(bytes[end - 1])) --end;
  return {begin, end};
}

std::optional<Span> charset_in_meta(const PageToken& tag, const std::vector<AttributeSpan>& attributes) {
  const AttributeSpan* content = nullptr;
  bool tells_type = false;
  for (const AttributeSpan& attribute : attributes) {
    const std::string_view name = tag.bytes.substr(attribute.name, attribute.name_end - attribute.name);
    const std::string_view value = tag.bytes.substr(attribute.value, attribute.value_end - attribute.value);
    if (equal_name(name, "charset")) {
      const Span place = trimmed(tag.bytes, attribute.value, attribute.value_end);
      if (place.begin < place.end) return place;
    }
    if (equal_name(name, "http-equiv")) tells_type = equal_name(value, "content-type");
    if (equal_name(name, "content")) content = &attribute;
  }
  if (!tells_type || !content) return std::nullopt;
  return value_after(tag.bytes, content->value, content->value_end, "charset");
}

std::optional<Span> charset_in_xml(std::string_view declaration) {
  if (!declaration.starts_with("<?xml ")) return std::nullopt;
  return value_after(declaration, 0, declaration.size(), "encoding");
}

PageCoding coding_of(std::string_view beginning) {
  PageCoding coding;
  const auto take_mark = [&](std::string_view mark, unsigned code_page) {
    if (!beginning.starts_with(mark)) return;
    coding.code_page = code_page;
    coding.has_mark = true;
    coding.mark_size = mark.size();
  };
  take_mark(kUtf8Mark, kUtf8CodePage);
  take_mark(kLittleEndianMark, kUtf16LittleEndian);
  take_mark(kBigEndianMark, kUtf16BigEndian);
  if (coding.has_mark) return coding;
  const std::optional<std::string_view> charset = declared_charset(beginning);
  if (!charset) return coding;
  const auto* const label = std::find_if(std::begin(kLabels), std::end(kLabels),
                                         [&](const Label& row) { return equal_name(row.name, *charset); });
  if (label != std::end(kLabels))
    coding.code_page = label->code_page;
  else
    coding.is_unsupported = std::all_of(charset->begin(), charset->end(), is_label_character);
  return coding;
}

std::string_view charset_name(unsigned code_page) {
  const auto* const label = std::find_if(std::begin(kLabels), std::end(kLabels),
                                         [&](const Label& row) { return row.code_page == code_page; });
  return label != std::end(kLabels) ? label->name : "utf-16";
}

}  // namespace kavo::html
