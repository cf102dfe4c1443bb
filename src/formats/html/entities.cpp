#include "formats/html/entities.h"

#include <algorithm>
#include <cstdint>

#include "formats/text/text_coding.h"

namespace kavo::html {
namespace {

struct Entity {
  std::string_view name;
  std::uint16_t character;
  bool needs_no_semicolon;
};

// The names of HTML 4 and those of HTML 5 that pages use: quotes, punctuation, the letters of European languages,
// common signs. Sorted by name. (Long rows: a table to be looked up, not read.)
// clang-format off
constexpr Entity kEntities[] = {
    {"AElig", 0xC6, 1}, {"AMP", 0x26, 1}, {"Aacute", 0xC1, 1}, {"Abreve", 0x102, 0}, {"Acirc", 0xC2, 1},
    {"Acy", 0x410, 0}, {"Agrave", 0xC0, 1}, {"Alpha", 0x391, 0}, {"Amacr", 0x100, 0}, {"Aogon", 0x104, 0},
    {"Aring", 0xC5, 1}, {"Atilde", 0xC3, 1}, {"Auml", 0xC4, 1}, {"Bcy", 0x411, 0}, {"Beta", 0x392, 0},
    {"CHcy", 0x427, 0}, {"COPY", 0xA9, 1}, {"Cacute", 0x106, 0}, {"Ccaron", 0x10C, 0}, {"Ccedil", 0xC7, 1},
    {"Chi", 0x3A7, 0}, {"CloseCurlyDoubleQuote", 0x201D, 0}, {"CloseCurlyQuote", 0x2019, 0}, {"Dagger", 0x2021, 0},
    {"Dcaron", 0x10E, 0}, {"Dcy", 0x414, 0}, {"Delta", 0x394, 0}, {"Dstrok", 0x110, 0}, {"ETH", 0xD0, 1},
    {"Eacute", 0xC9, 1}, {"Ecaron", 0x11A, 0}, {"Ecirc", 0xCA, 1}, {"Ecy", 0x42D, 0}, {"Egrave", 0xC8, 1},
    {"Emacr", 0x112, 0}, {"Eogon", 0x118, 0}, {"Epsilon", 0x395, 0}, {"Eta", 0x397, 0}, {"Euml", 0xCB, 1},
    {"Fcy", 0x424, 0}, {"GT", 0x3E, 1}, {"Gamma", 0x393, 0}, {"Gbreve", 0x11E, 0}, {"Gcy", 0x413, 0},
    {"HARDcy", 0x42A, 0}, {"Hat", 0x5E, 0}, {"IEcy", 0x415, 0}, {"IOcy", 0x401, 0}, {"Iacute", 0xCD, 1},
    {"Icirc", 0xCE, 1}, {"Icy", 0x418, 0}, {"Idot", 0x130, 0}, {"Igrave", 0xCC, 1}, {"Imacr", 0x12A, 0},
    {"Iota", 0x399, 0}, {"Iuml", 0xCF, 1}, {"Jcy", 0x419, 0}, {"KHcy", 0x425, 0}, {"Kappa", 0x39A, 0},
    {"Kcy", 0x41A, 0}, {"LT", 0x3C, 1}, {"Lambda", 0x39B, 0}, {"Lcaron", 0x13D, 0}, {"Lcy", 0x41B, 0},
    {"Lstrok", 0x141, 0}, {"Mcy", 0x41C, 0}, {"Mu", 0x39C, 0}, {"Nacute", 0x143, 0}, {"Ncaron", 0x147, 0},
    {"Ncy", 0x41D, 0}, {"NewLine", 0xA, 0}, {"NoBreak", 0x2060, 0}, {"NonBreakingSpace", 0xA0, 0},
    {"Ntilde", 0xD1, 1}, {"Nu", 0x39D, 0}, {"OElig", 0x152, 0}, {"Oacute", 0xD3, 1}, {"Ocirc", 0xD4, 1},
    {"Ocy", 0x41E, 0}, {"Odblac", 0x150, 0}, {"Ograve", 0xD2, 1}, {"Omacr", 0x14C, 0}, {"Omega", 0x3A9, 0},
    {"Omicron", 0x39F, 0}, {"OpenCurlyDoubleQuote", 0x201C, 0}, {"OpenCurlyQuote", 0x2018, 0}, {"Oslash", 0xD8, 1},
    {"Otilde", 0xD5, 1}, {"Ouml", 0xD6, 1}, {"Pcy", 0x41F, 0}, {"Phi", 0x3A6, 0}, {"Pi", 0x3A0, 0},
    {"Prime", 0x2033, 0}, {"Psi", 0x3A8, 0}, {"QUOT", 0x22, 1}, {"REG", 0xAE, 1}, {"Racute", 0x154, 0},
    {"Rcaron", 0x158, 0}, {"Rcy", 0x420, 0}, {"Rho", 0x3A1, 0}, {"SHCHcy", 0x429, 0}, {"SHcy", 0x428, 0},
    {"SOFTcy", 0x42C, 0}, {"Sacute", 0x15A, 0}, {"Scaron", 0x160, 0}, {"Scedil", 0x15E, 0}, {"Scy", 0x421, 0},
    {"Sigma", 0x3A3, 0}, {"THORN", 0xDE, 1}, {"TRADE", 0x2122, 0}, {"TScy", 0x426, 0}, {"Tab", 0x9, 0},
    {"Tau", 0x3A4, 0}, {"Tcaron", 0x164, 0}, {"Tcedil", 0x162, 0}, {"Tcy", 0x422, 0}, {"Theta", 0x398, 0},
    {"Uacute", 0xDA, 1}, {"Ucirc", 0xDB, 1}, {"Ucy", 0x423, 0}, {"Udblac", 0x170, 0}, {"Ugrave", 0xD9, 1},
    {"Umacr", 0x16A, 0}, {"UnderBar", 0x5F, 0}, {"Uogon", 0x172, 0}, {"Upsilon", 0x3A5, 0}, {"Uring", 0x16E, 0},
    {"Uuml", 0xDC, 1}, {"Vcy", 0x412, 0}, {"Xi", 0x39E, 0}, {"YAcy", 0x42F, 0}, {"YUcy", 0x42E, 0},
    {"Yacute", 0xDD, 1}, {"Ycy", 0x42B, 0}, {"Yuml", 0x178, 0}, {"ZHcy", 0x416, 0}, {"Zacute", 0x179, 0},
    {"Zcaron", 0x17D, 0}, {"Zcy", 0x417, 0}, {"Zdot", 0x17B, 0}, {"ZeroWidthSpace", 0x200B, 0}, {"Zeta", 0x396, 0},
    {"aacute", 0xE1, 1}, {"abreve", 0x103, 0}, {"acirc", 0xE2, 1}, {"acute", 0xB4, 1}, {"acy", 0x430, 0},
    {"aelig", 0xE6, 1}, {"agrave", 0xE0, 1}, {"alefsym", 0x2135, 0}, {"alpha", 0x3B1, 0}, {"amacr", 0x101, 0},
    {"amp", 0x26, 1}, {"and", 0x2227, 0}, {"ang", 0x2220, 0}, {"angst", 0xC5, 0}, {"aogon", 0x105, 0},
    {"apos", 0x27, 0}, {"aring", 0xE5, 1}, {"ast", 0x2A, 0}, {"asymp", 0x2248, 0}, {"atilde", 0xE3, 1},
    {"auml", 0xE4, 1}, {"bcy", 0x431, 0}, {"bdquo", 0x201E, 0}, {"bernou", 0x212C, 0}, {"beta", 0x3B2, 0},
    {"bigstar", 0x2605, 0}, {"blacksquare", 0x25AA, 0}, {"blk12", 0x2592, 0}, {"blk14", 0x2591, 0},
    {"blk34", 0x2593, 0}, {"block", 0x2588, 0}, {"boxh", 0x2500, 0}, {"boxv", 0x2502, 0}, {"brvbar", 0xA6, 1},
    {"bsol", 0x5C, 0}, {"bull", 0x2022, 0}, {"bullet", 0x2022, 0}, {"cacute", 0x107, 0}, {"cap", 0x2229, 0},
    {"caret", 0x2041, 0}, {"ccaron", 0x10D, 0}, {"ccedil", 0xE7, 1}, {"cedil", 0xB8, 1}, {"cent", 0xA2, 1},
    {"centerdot", 0xB7, 0}, {"chcy", 0x447, 0}, {"check", 0x2713, 0}, {"checkmark", 0x2713, 0}, {"chi", 0x3C7, 0},
    {"cir", 0x25CB, 0}, {"circ", 0x2C6, 0}, {"clubs", 0x2663, 0}, {"colon", 0x3A, 0}, {"comma", 0x2C, 0},
    {"commat", 0x40, 0}, {"cong", 0x2245, 0}, {"copy", 0xA9, 1}, {"copysr", 0x2117, 0}, {"crarr", 0x21B5, 0},
    {"cross", 0x2717, 0}, {"cup", 0x222A, 0}, {"curren", 0xA4, 1}, {"dArr", 0x21D3, 0}, {"dagger", 0x2020, 0},
    {"darr", 0x2193, 0}, {"dash", 0x2010, 0}, {"dcaron", 0x10F, 0}, {"dcy", 0x434, 0}, {"deg", 0xB0, 1},
    {"delta", 0x3B4, 0}, {"diams", 0x2666, 0}, {"divide", 0xF7, 1}, {"dollar", 0x24, 0}, {"dstrok", 0x111, 0},
    {"dtri", 0x25BF, 0}, {"eacute", 0xE9, 1}, {"ecaron", 0x11B, 0}, {"ecirc", 0xEA, 1}, {"ecy", 0x44D, 0},
    {"egrave", 0xE8, 1}, {"ell", 0x2113, 0}, {"emacr", 0x113, 0}, {"empty", 0x2205, 0}, {"emsp", 0x2003, 0},
    {"emsp13", 0x2004, 0}, {"emsp14", 0x2005, 0}, {"ensp", 0x2002, 0}, {"eogon", 0x119, 0}, {"epsilon", 0x3B5, 0},
    {"equals", 0x3D, 0}, {"equiv", 0x2261, 0}, {"eta", 0x3B7, 0}, {"eth", 0xF0, 1}, {"euml", 0xEB, 1},
    {"euro", 0x20AC, 0}, {"excl", 0x21, 0}, {"exist", 0x2203, 0}, {"fcy", 0x444, 0}, {"female", 0x2640, 0},
    {"flat", 0x266D, 0}, {"fnof", 0x192, 0}, {"forall", 0x2200, 0}, {"frac12", 0xBD, 1}, {"frac13", 0x2153, 0},
    {"frac14", 0xBC, 1}, {"frac15", 0x2155, 0}, {"frac18", 0x215B, 0}, {"frac23", 0x2154, 0}, {"frac34", 0xBE, 1},
    {"frac38", 0x215C, 0}, {"frac58", 0x215D, 0}, {"frac78", 0x215E, 0}, {"frasl", 0x2044, 0}, {"gamma", 0x3B3, 0},
    {"gbreve", 0x11F, 0}, {"gcy", 0x433, 0}, {"ge", 0x2265, 0}, {"grave", 0x60, 0}, {"gt", 0x3E, 1},
    {"hArr", 0x21D4, 0}, {"hairsp", 0x200A, 0}, {"half", 0xBD, 0}, {"hardcy", 0x44A, 0}, {"harr", 0x2194, 0},
    {"hbar", 0x210F, 0}, {"hearts", 0x2665, 0}, {"hellip", 0x2026, 0}, {"horbar", 0x2015, 0}, {"hybull", 0x2043, 0},
    {"hyphen", 0x2010, 0}, {"iacute", 0xED, 1}, {"icirc", 0xEE, 1}, {"icy", 0x438, 0}, {"iecy", 0x435, 0},
    {"iexcl", 0xA1, 1}, {"igrave", 0xEC, 1}, {"imacr", 0x12B, 0}, {"image", 0x2111, 0}, {"imath", 0x131, 0},
    {"incare", 0x2105, 0}, {"infin", 0x221E, 0}, {"inodot", 0x131, 0}, {"int", 0x222B, 0}, {"iocy", 0x451, 0},
    {"iota", 0x3B9, 0}, {"iquest", 0xBF, 1}, {"isin", 0x2208, 0}, {"iuml", 0xEF, 1}, {"jcy", 0x439, 0},
    {"kappa", 0x3BA, 0}, {"kcy", 0x43A, 0}, {"khcy", 0x445, 0}, {"lArr", 0x21D0, 0}, {"lambda", 0x3BB, 0},
    {"lang", 0x27E8, 0}, {"laquo", 0xAB, 1}, {"larr", 0x2190, 0}, {"lbrace", 0x7B, 0}, {"lbrack", 0x5B, 0},
    {"lcaron", 0x13E, 0}, {"lceil", 0x2308, 0}, {"lcub", 0x7B, 0}, {"lcy", 0x43B, 0}, {"ldquo", 0x201C, 0},
    {"ldquor", 0x201E, 0}, {"le", 0x2264, 0}, {"lfloor", 0x230A, 0}, {"lowast", 0x2217, 0}, {"lowbar", 0x5F, 0},
    {"loz", 0x25CA, 0}, {"lpar", 0x28, 0}, {"lrm", 0x200E, 0}, {"lsaquo", 0x2039, 0}, {"lsqb", 0x5B, 0},
    {"lsquo", 0x2018, 0}, {"lsquor", 0x201A, 0}, {"lstrok", 0x142, 0}, {"lt", 0x3C, 1}, {"ltri", 0x25C3, 0},
    {"macr", 0xAF, 1}, {"male", 0x2642, 0}, {"malt", 0x2720, 0}, {"map", 0x21A6, 0}, {"mcy", 0x43C, 0},
    {"mdash", 0x2014, 0}, {"micro", 0xB5, 1}, {"middot", 0xB7, 1}, {"minus", 0x2212, 0}, {"mldr", 0x2026, 0},
    {"mu", 0x3BC, 0}, {"nabla", 0x2207, 0}, {"nacute", 0x144, 0}, {"natural", 0x266E, 0}, {"nbsp", 0xA0, 1},
    {"ncaron", 0x148, 0}, {"ncy", 0x43D, 0}, {"ndash", 0x2013, 0}, {"ne", 0x2260, 0}, {"ni", 0x220B, 0},
    {"nldr", 0x2025, 0}, {"not", 0xAC, 1}, {"notin", 0x2209, 0}, {"nsub", 0x2284, 0}, {"ntilde", 0xF1, 1},
    {"nu", 0x3BD, 0}, {"num", 0x23, 0}, {"numero", 0x2116, 0}, {"numsp", 0x2007, 0}, {"oacute", 0xF3, 1},
    {"ocirc", 0xF4, 1}, {"ocy", 0x43E, 0}, {"odblac", 0x151, 0}, {"oelig", 0x153, 0}, {"ograve", 0xF2, 1},
    {"oline", 0x203E, 0}, {"omacr", 0x14D, 0}, {"omega", 0x3C9, 0}, {"omicron", 0x3BF, 0}, {"oplus", 0x2295, 0},
    {"or", 0x2228, 0}, {"ordf", 0xAA, 1}, {"ordm", 0xBA, 1}, {"oslash", 0xF8, 1}, {"otilde", 0xF5, 1},
    {"otimes", 0x2297, 0}, {"ouml", 0xF6, 1}, {"para", 0xB6, 1}, {"part", 0x2202, 0}, {"pcy", 0x43F, 0},
    {"percnt", 0x25, 0}, {"period", 0x2E, 0}, {"permil", 0x2030, 0}, {"perp", 0x22A5, 0}, {"phi", 0x3C6, 0},
    {"phone", 0x260E, 0}, {"pi", 0x3C0, 0}, {"piv", 0x3D6, 0}, {"planck", 0x210F, 0}, {"plus", 0x2B, 0},
    {"plusmn", 0xB1, 1}, {"pound", 0xA3, 1}, {"prime", 0x2032, 0}, {"prod", 0x220F, 0}, {"prop", 0x221D, 0},
    {"psi", 0x3C8, 0}, {"puncsp", 0x2008, 0}, {"quest", 0x3F, 0}, {"quot", 0x22, 1}, {"rArr", 0x21D2, 0},
    {"racute", 0x155, 0}, {"radic", 0x221A, 0}, {"rang", 0x27E9, 0}, {"raquo", 0xBB, 1}, {"rarr", 0x2192, 0},
    {"rbrace", 0x7D, 0}, {"rbrack", 0x5D, 0}, {"rcaron", 0x159, 0}, {"rceil", 0x2309, 0}, {"rcub", 0x7D, 0},
    {"rcy", 0x440, 0}, {"rdquo", 0x201D, 0}, {"rdquor", 0x201D, 0}, {"real", 0x211C, 0}, {"reg", 0xAE, 1},
    {"rfloor", 0x230B, 0}, {"rho", 0x3C1, 0}, {"rlm", 0x200F, 0}, {"rpar", 0x29, 0}, {"rsaquo", 0x203A, 0},
    {"rsqb", 0x5D, 0}, {"rsquo", 0x2019, 0}, {"rtri", 0x25B9, 0}, {"sacute", 0x15B, 0}, {"sbquo", 0x201A, 0},
    {"scaron", 0x161, 0}, {"scedil", 0x15F, 0}, {"scy", 0x441, 0}, {"sdot", 0x22C5, 0}, {"sect", 0xA7, 1},
    {"semi", 0x3B, 0}, {"sext", 0x2736, 0}, {"sharp", 0x266F, 0}, {"shchcy", 0x449, 0}, {"shcy", 0x448, 0},
    {"shy", 0xAD, 1}, {"sigma", 0x3C3, 0}, {"sigmaf", 0x3C2, 0}, {"sim", 0x223C, 0}, {"softcy", 0x44C, 0},
    {"sol", 0x2F, 0}, {"spades", 0x2660, 0}, {"squ", 0x25A1, 0}, {"square", 0x25A1, 0}, {"star", 0x2606, 0},
    {"starf", 0x2605, 0}, {"sub", 0x2282, 0}, {"sube", 0x2286, 0}, {"sum", 0x2211, 0}, {"sung", 0x266A, 0},
    {"sup", 0x2283, 0}, {"sup1", 0xB9, 1}, {"sup2", 0xB2, 1}, {"sup3", 0xB3, 1}, {"supe", 0x2287, 0},
    {"szlig", 0xDF, 1}, {"tau", 0x3C4, 0}, {"tcaron", 0x165, 0}, {"tcedil", 0x163, 0}, {"tcy", 0x442, 0},
    {"there4", 0x2234, 0}, {"theta", 0x3B8, 0}, {"thetasym", 0x3D1, 0}, {"thinsp", 0x2009, 0}, {"thorn", 0xFE, 1},
    {"tilde", 0x2DC, 0}, {"times", 0xD7, 1}, {"trade", 0x2122, 0}, {"tscy", 0x446, 0}, {"uArr", 0x21D1, 0},
    {"uacute", 0xFA, 1}, {"uarr", 0x2191, 0}, {"ucirc", 0xFB, 1}, {"ucy", 0x443, 0}, {"udblac", 0x171, 0},
    {"ugrave", 0xF9, 1}, {"umacr", 0x16B, 0}, {"uml", 0xA8, 1}, {"uogon", 0x173, 0}, {"upsih", 0x3D2, 0},
    {"upsilon", 0x3C5, 0}, {"uring", 0x16F, 0}, {"utri", 0x25B5, 0}, {"uuml", 0xFC, 1}, {"vcy", 0x432, 0},
    {"verbar", 0x7C, 0}, {"vert", 0x7C, 0}, {"weierp", 0x2118, 0}, {"xcirc", 0x25EF, 0}, {"xi", 0x3BE, 0},
    {"yacute", 0xFD, 1}, {"yacy", 0x44F, 0}, {"ycy", 0x44B, 0}, {"yen", 0xA5, 1}, {"yucy", 0x44E, 0},
    {"yuml", 0xFF, 1}, {"zacute", 0x17A, 0}, {"zcaron", 0x17E, 0}, {"zcy", 0x437, 0}, {"zdot", 0x17C, 0},
    {"zeta", 0x3B6, 0}, {"zhcy", 0x436, 0}, {"zwj", 0x200D, 0}, {"zwnj", 0x200C, 0},
};
// clang-format on

constexpr std::size_t kLongestName = 21;
// Of the names that need no semicolon.
constexpr std::size_t kShortestLegacy = 2;
constexpr std::size_t kLongestLegacy = 6;

// What the numbers of the C1 control characters mean in pages: Windows-1252, by the HTML Standard.
constexpr char16_t kC1[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
                              0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                              0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

const Entity* find_entity(std::string_view name) {
  const auto* const found = std::lower_bound(std::begin(kEntities), std::end(kEntities), name,
                                             [](const Entity& row, std::string_view text) { return row.name < text; });
  return found != std::end(kEntities) && found->name == name ? found : nullptr;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_name_character(char c) { return is_digit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

int hexadecimal_value(char c) {
  if (is_digit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

Reference read_number(std::string_view bytes) {
  const bool is_hexadecimal = bytes.size() > 2 && (bytes[2] == 'x' || bytes[2] == 'X');
  const std::size_t first = is_hexadecimal ? 3 : 2;
  std::size_t at = first;
  char32_t character = 0;
  for (; at < bytes.size() && at < kLongestReference; ++at) {
    const int digit = hexadecimal_value(bytes[at]);
    if (digit < 0 || (digit > 9 && !is_hexadecimal)) break;
    if (character <= 0x10FFFF) character = character * (is_hexadecimal ? 16 : 10) + static_cast<unsigned>(digit);
  }
  Reference reference;
  if (at == first) return reference;
  reference.length = at < bytes.size() && bytes[at] == ';' ? at + 1 : at;
  if (character >= 0x80 && character < 0xA0) character = kC1[character - 0x80];
  if (character != 0 && character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF))
    append_utf8(reference.text, character);
  return reference;
}

}  // namespace

Reference read_reference(std::string_view bytes, bool in_attribute) {
  bytes = bytes.substr(0, kLongestReference + 1);
  if (bytes.size() > 1 && bytes[1] == '#') return read_number(bytes);
  const auto* const end = std::find_if_not(bytes.begin() + 1, bytes.end(), is_name_character);
  const std::string_view name = bytes.substr(1, static_cast<std::size_t>(end - bytes.begin()) - 1);
  const char next = end == bytes.end() ? '\0' : *end;
  Reference reference;
  if (name.empty()) return reference;
  if (next == ';') {
    if (const Entity* const entity = name.size() <= kLongestName ? find_entity(name) : nullptr) {
      reference.length = name.size() + 2;
      append_utf8(reference.text, entity->character);
      return reference;
    }
  }
  for (std::size_t size = std::min(name.size(), kLongestLegacy); size >= kShortestLegacy; --size) {
    if (in_attribute && (size < name.size() || next == '=')) continue;
    const Entity* const entity = find_entity(name.substr(0, size));
    if (!entity || !entity->needs_no_semicolon) continue;
    reference.length = size + 1;
    append_utf8(reference.text, entity->character);
    return reference;
  }
  if (next == ';' && !is_digit(name.front())) reference.length = name.size() + 2;
  return reference;
}

}  // namespace kavo::html
