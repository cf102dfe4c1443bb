#include "formats/html/charset.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "formats/html/elements.h"
#include "formats/html/script_charset.h"
#include "formats/text/euc_japanese.h"
#include "formats/text/text_coding.h"
#include "platform/formatted.h"

namespace kavo::html {
namespace {

struct Label {
  std::string_view name;  // small letters
  unsigned code_page;
};

// By the HTML Standard, Latin-1 means Windows-1252 in a page. A page whose declaration could be read is not in UTF-16,
// so a name of UTF-16 means UTF-8. Pages are written with the first name of their code page.
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

bool is_label_character(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '_' ||
         c == '.' || c == ':' || c == '+';
}

// The place of the value after `name`, "=" and an optional quote, within [begin, end) of the bytes.
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

// Adds what the markup declares: "<?xml ... ?>" and "<meta>".
void add_markup_declarations(std::string_view beginning, std::vector<CharsetDeclaration>& found) {
  // ASCII is enough to find tags, so any coding without double-byte characters will do.
  const TextCoding coding(kUtf8CodePage);
  PageInput input(beginning);
  TokenScanner scanner(input, coding);
  for (PageToken token; scanner.next(token);) {
    const auto add = [&](CharsetSource source, const std::optional<Span>& place) {
      if (place) found.push_back({source, std::string(token.bytes.substr(place->begin, place->end - place->begin))});
    };
    if (token.kind == TokenKind::kComment) add(CharsetSource::kXml, charset_in_xml(token.bytes));
    if (token.kind != TokenKind::kStartTag) continue;
    const Element& element = find_element(token.name);
    if (element.kind == ElementKind::kScript) scanner.enter_raw_text(element.name, false);
    if (element.name == "meta") add(CharsetSource::kMeta, charset_in_meta(token, scanner.attributes()));
  }
}

// The code page of a charset's name, or of the number that server pages write.
std::optional<unsigned> code_page_of(std::string_view label) {
  constexpr Label kNumbers[] = {{"51932", kEucJapanese}, {"20932", kEucJapanese}, {"28591", 1252},
                                {"20127", 1252},         {"28599", 1254},         {"54936", 936}};
  const auto named = [&](const Label& row) { return equal_name(row.name, label); };
  const auto* const number = std::find_if(std::begin(kNumbers), std::end(kNumbers), named);
  if (number != std::end(kNumbers)) return number->code_page;
  const auto* const row = std::find_if(std::begin(kLabels), std::end(kLabels), [&](const Label& each) {
    return named(each) || std::to_string(each.code_page) == label;
  });
  return row != std::end(kLabels) ? std::optional(row->code_page) : std::nullopt;
}

std::string_view name_of(CharsetSource source) {
  constexpr std::string_view kNames[] = {
      "the byte order mark", "the page's directive",   "the XML declaration", "contentType", "<meta>",
      "Response.Charset",    "the Content-Type header"};
  return kNames[static_cast<std::size_t>(source)];
}

std::string remark_on(const std::vector<CharsetDeclaration>& found, const PageCoding& coding) {
  const CharsetDeclaration& taken = found.front();
  std::string remark(name_of(taken.source));
  remark += " declares the coding " + taken.label;
  if (coding.is_unsupported) return remark + ", which is not supported";
  for (const CharsetDeclaration& other : found)
    if (code_page_of(other.label) != coding.code_page)
      return formatted("{}, {} declares {}: the first declaration counts", remark, name_of(other.source), other.label);
  return "";
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

PageCoding coding_of(std::string_view beginning, script::Language server) {
  constexpr struct {
    std::string_view bytes;
    unsigned code_page;
    std::string_view name;
  } kMarks[] = {{"\xEF\xBB\xBF", kUtf8CodePage, "utf-8"},
                {"\xFF\xFE", kUtf16LittleEndian, "utf-16le"},
                {"\xFE\xFF", kUtf16BigEndian, "utf-16be"}};
  PageCoding coding;
  std::vector<CharsetDeclaration> found;
  for (const auto& mark : kMarks) {
    if (!beginning.starts_with(mark.bytes)) continue;
    coding.code_page = mark.code_page;
    coding.has_mark = true;
    coding.mark_size = mark.bytes.size();
    if (mark.code_page != kUtf8CodePage) return coding;
    found.push_back({CharsetSource::kMark, std::string(mark.name)});
  }
  beginning = beginning.substr(0, kDeclarationReach);
  add_script_declarations(beginning, server, found);
  add_markup_declarations(beginning, found);
  if (found.empty()) return coding;
  std::ranges::stable_sort(found, {}, &CharsetDeclaration::source);
  const CharsetDeclaration& taken = found.front();
  if (!coding.has_mark) {
    coding.code_page = code_page_of(taken.label);
    coding.is_unsupported = !coding.code_page && std::ranges::all_of(taken.label, is_label_character);
  }
  coding.is_in_script =
      std::ranges::any_of(found, [](const CharsetDeclaration& each) { return is_script_source(each.source); });
  coding.remark = remark_on(found, coding);
  return coding;
}

std::string_view charset_name(unsigned code_page) {
  const auto* const label = std::find_if(std::begin(kLabels), std::end(kLabels),
                                         [&](const Label& row) { return row.code_page == code_page; });
  return label != std::end(kLabels) ? label->name : "utf-16";
}

}  // namespace kavo::html
