#include "formats/rtf/destinations.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>

namespace kavo::rtf {
namespace {

struct Row {
  std::string_view word;
  Destination destination;
};
using enum Destination;
// Destinations of data that stand without \* are listed, too. The words that only \* destinations use need no row.
constexpr Row kRows[] = {
    {"annotation", kNote},      {"atnauthor", kData},     {"atndate", kData},      {"atnicn", kData},
    {"atnid", kData},           {"atnparent", kData},     {"atnref", kData},       {"atntime", kData},
    {"atrfend", kData},         {"atrfstart", kData},     {"author", kData},       {"bkmkend", kData},
    {"bkmkstart", kData},       {"buptim", kData},        {"category", kData},     {"colortbl", kColourTable},
    {"comment", kData},         {"company", kData},       {"creatim", kData},      {"datafield", kData},
    {"do", kText},              {"doccomm", kStory},      {"dptxbxtext", kStory},  {"falt", kData},
    {"ffdeftext", kEntry},      {"ffentrymcr", kData},    {"ffexitmcr", kData},    {"ffformat", kData},
    {"ffhelptext", kEntry},     {"ffl", kEntry},          {"ffname", kData},       {"ffstattext", kEntry},
    {"field", kField},          {"filetbl", kData},       {"fldinst", kInstruction}, {"fldrslt", kResult},
    {"fldtype", kData},         {"fontemb", kData},       {"fontfile", kData},     {"fonttbl", kFontTable},
    {"footer", kStory},         {"footerf", kStory},      {"footerl", kStory},     {"footerr", kStory},
    {"footnote", kNote},        {"formfield", kText},     {"ftncn", kData},        {"ftnsep", kData},
    {"ftnsepc", kData},         {"header", kStory},       {"headerf", kStory},     {"headerl", kStory},
    {"headerr", kStory},        {"hlinkbase", kData},     {"info", kText},         {"keycode", kData},
    {"keywords", kStory},       {"list", kData},          {"listlevel", kData},    {"listname", kData},
    {"listoverride", kData},    {"listpicture", kData},   {"liststylename", kData}, {"listtable", kData},
    {"listtext", kData},        {"lfolevel", kData},      {"manager", kData},      {"mmathpict", kData},
    {"mor", kMarker},           {"nextfile", kData},      {"nonesttables", kData}, {"nonshppict", kData},
    {"objalias", kData},        {"object", kPicture},     {"operator", kData},     {"panose", kData},
    {"pict", kPicture},         {"pn", kData},            {"pnseclvl", kData},     {"pntext", kData},
    {"pntxta", kData},          {"pntxtb", kData},        {"printim", kData},      {"private", kData},
    {"propname", kData},        {"result", kData},        {"revtbl", kData},       {"revtim", kData},
    {"rxe", kData},             {"shp", kText},           {"shpgrp", kText},       {"shpinst", kText},
    {"shppict", kData},         {"shprslt", kData},       {"shptxt", kStory},      {"sn", kData},
    {"sp", kData},              {"staticval", kData},     {"stylesheet", kStyleSheet},   {"subject", kStory},
    {"sv", kData},              {"tc", kEntry},           {"tcn", kEntry},         {"template", kData},
    {"title", kStory},          {"txe", kData},           {"ud", kText},           {"upr", kVariants},
    {"userprops", kData},       {"xe", kEntry},
};

// Destinations that should stand behind \*; programs forget it.
constexpr std::string_view kStarred[] = {
    "aftncn",      "aftnsep",       "aftnsepc",  "background", "bkmkcolf",          "blipuid",
    "colorschememapping", "datastore", "defchp", "defpap",        "docvar",     "expandedcolortbl",  "fchars",
    "fname",         "generator", "gridtbl",       "htmltag",    "latentstyles",      "lchars",
    "levelnumbers", "leveltext",    "listoverridetable", "mailmerge", "mmathpr", "objclass",         "objdata",
    "objname",     "oldcprops",     "oldpprops", "oldsprops",     "oldtprops",  "password",          "passwordhash",
    "pgdsctbl",    "pgptbl",        "picprop",   "protusertbl", "rsidtbl",          "themedata",
    "wgrffmtfilter", "xmlnstbl",
};

// What the word processor computes; what it shows is none of the author's text.
constexpr std::string_view kComputedFields[] = {
    "=",        "ADVANCE",   "AUTHOR",      "AUTONUM",     "AUTONUMLGL", "AUTONUMOUT", "AUTOTEXT",   "BARCODE",
    "BIBLIOGRAPHY", "BIDIOUTLINE", "CITATION", "COMMENTS", "COMPARE",    "CREATEDATE", "DATABASE",   "DATE",
    "DOCPROPERTY", "DOCVARIABLE", "EDITTIME", "EMBED",     "EQ",         "FILENAME",   "FILESIZE",   "FORMCHECKBOX",
    "FORMDROPDOWN", "GREETINGLINE", "ADDRESSBLOCK", "INCLUDEPICTURE", "INDEX", "INFO",  "KEYWORDS",  "LASTSAVEDBY",
    "LINK",     "LISTNUM",   "MERGEFIELD",  "MERGEREC",    "MERGESEQ",   "NOTEREF",    "NUMCHARS",   "NUMPAGES",
    "NUMWORDS", "PAGE",      "PAGEREF",     "PRINTDATE",   "RD",         "REF",        "REVNUM",     "SAVEDATE",
    "SECTION",  "SECTIONPAGES", "SEQ",      "SHAPE",       "STYLEREF",   "SUBJECT",    "SYMBOL",     "TA",
    "TC",       "TEMPLATE",  "TIME",        "TITLE",       "TOA",        "TOC",        "USERADDRESS", "USERINITIALS",
    "USERNAME", "XE",
};

}  // namespace

std::optional<Destination> destination_of(std::string_view word) {
  static const std::unordered_map<std::string_view, Destination> destinations = [] {
    std::unordered_map<std::string_view, Destination> rows;
    for (const Row& row : kRows) rows.emplace(row.word, row.destination);
    for (const std::string_view starred : kStarred) rows.emplace(starred, kData);
    return rows;
  }();
  const auto found = destinations.find(word);
  if (found == destinations.end()) return std::nullopt;
  return found->second;
}

bool has_readable_result(std::string_view field_type) {
  std::string upper(field_type);
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return std::ranges::find(kComputedFields, upper) == std::end(kComputedFields);
}

}  // namespace kavo::rtf
