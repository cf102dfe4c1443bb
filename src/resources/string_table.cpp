#include "resources/string_table.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace kavo {
namespace {

struct Row {
  StringSection section;
  std::int32_t number;
  std::u16string_view text;
};

constexpr auto kCommon = StringSection::kCommon;
constexpr auto kMoveFile = StringSection::kMoveFile;
constexpr auto kExcelOptions = StringSection::kExcelOptions;
constexpr auto kHTMLValidate = StringSection::kHTMLValidate;

// In order of section and number: looked up by binary search.
constexpr Row kRows[] = {
    {kCommon, 111, u"Translatable files|*.doc;*.rtf;*.htm;*.html;*.asp;*.jsp;*.mif;*.rc;*.txt;*.ppt;*.xls||"},
    {kCommon, 501, u"Failed to open TUD file"},
    {kCommon, 502, u"Failed to save OpenTag file"},
    {kCommon, 503, u"Failed to locate SKL file"},
    {kCommon, 504, u"Failed to retrieve merge file details"},
    {kCommon, 505, u"Failed to create the translation file"},
    {kCommon, 506, u"Failed to post-process the file"},
    {kCommon, 507, u"Unable to delete the target file - check that it is not already in use"},
    {kCommon, 508, u"<none>"},
    {kCommon, 2000, u"Language"},
    {kCommon, 2001, u"Character set"},
    {kCommon, 2002, u"Language variant"},
    {kCommon, 3000, u"More >>"},
    {kCommon, 3001, u"<< Less"},
    {kCommon, 3002, u"OK"},
    {kCommon, 3003, u"Cancel"},
    {kCommon, 3004, u"Set language"},
    {kCommon, 3020, u"The index file could not be written"},
    {kCommon, 3021, u"No name was given for the index file"},
    {kCommon, 3022, u"The cross-reference file could not be written"},
    {kCommon, 3023, u"No name was given for the cross-reference file"},
    {kCommon, 3024, u"The variable file could not be written"},
    {kCommon, 3025, u"No name was given for the variable file"},
    {kCommon, 3026, u"No MIF file was set"},
    {kCommon, 3027, u"The MIF file was not found"},
    {kCommon, 3028, u"The MIF file could not be read"},
    {kCommon, 3029, u"The object file is missing or could not be read"},
    {kCommon, 3030, u"The object file could not be created"},
    {kCommon, 3031, u"The temporary file could not be created"},
    {kCommon, 3032, u"The old object file could not be replaced"},
    {kCommon, 3033, u"The index table is full; further index entries were left out"},
    {kCommon, 3034, u"The cross-reference table is full; further formats were left out"},
    {kCommon, 3035, u"The variable table is full; further definitions were left out"},
    {kCommon, 3036, u"The index file could not be read; index entries stay untranslated"},
    {kCommon, 3037, u"The cross-reference file could not be read; cross-reference formats stay untranslated"},
    {kCommon, 3038, u"The variable file could not be read; variables and number formats stay untranslated"},
    {kCommon, 3039, u"The MIF file ends inside an embedded object and was left as it is"},
    {kCommon, 3040, u"The MIF file already holds placeholders of removed objects and was left as it is"},
    {kCommon, 3041, u"The MIF file could not be processed and was left as it is"},
    {kCommon, 3042, u"A statement that is never closed, or is far too long, was left as it is"},
    {kCommon, 3043, u"A side file must not replace a MIF file of its own batch"},
    {kCommon, 3044, u"A translation holds a character that the MIF file cannot hold; its text stays untranslated"},
    {kCommon, 3045, u"Entries of a side file have one tag and several translations; the first one counts"},
    {kCommon, 3046, u"The object file lacks objects of the MIF file; their placeholders stay"},
    {kCommon, 4000, u"Start translation"},
    {kCommon, 4001, u"Please select the &file you wish to translate:"},
    {kCommon, 4002, u"&Source language"},
    {kCommon, 4003, u"&Target language"},
    {kCommon, 4004, u"T&M (optional)"},
    {kCommon, 4005, u"&Clear"},
    {kCommon, 4006, u"&New..."},
    {kCommon, 4007, u"&Open..."},
    {kCommon, 4008, u"Options..."},
    {kCommon, 4009, u"OK"},
    {kCommon, 4010, u"Cancel"},
    {kCommon, 4011, u"&Browse..."},
    {kCommon, 4012, u"Ch&ange..."},
    {kCommon, 4013, u"Chan&ge..."},
    {kCommon, 4014, u"Start &editor"},
    {kCommon, 4015, u"Unrecognised file type"},
    {kCommon, 4020, u"Nothing was prepared, because the type of this file is not known"},
    {kCommon, 4021, u"Please choose a file of one of the kinds that the file dialog lists."},
    {kCommon, 4022, u"This document could not be prepared for translation"},
    {kCommon, 4023, u"Please make sure that it is whole and not open in another program, and start again."},
    {kCommon, 4024, u"No bilingual document could be made of this file"},
    {kCommon, 4025, u"The translation editor could not be started"},
    {kCommon, 4026, u"Please open the bilingual document in the editor yourself."},
    {kCommon, 4030, u"Preparing for translation"},
    {kCommon, 4031, u"Preparing"},
    {kCommon, 4032, u"Converting"},
    {kCommon, 5000, u"HTML Options"},
    {kCommon, 5001, u"Recognized tags"},
    {kCommon, 5002, u"&Add"},
    {kCommon, 5003, u"&Remove"},
    {kCommon, 5004, u"&Clear"},
    {kCommon, 5005, u"&Overlap allowed"},
    {kCommon, 5006, u"OK"},
    {kCommon, 5007, u"Cancel"},
    {kCommon, 5008, u"New tag"},
    {kCommon, 5009, u"The list is full: no more than 128 tags can be checked."},
    {kCommon, 6000, u"MIF Options"},
    {kCommon, 6001, u"Index entry splitting"},
    {kCommon, 6002, u"Don't split"},
    {kCommon, 6003, u"Split at \";\" only"},
    {kCommon, 6004, u"Split at \";\" and \":\""},
    {kCommon, 6005, u"Remove embedded &objects from files"},
    {kCommon, 6006, u"Marker types"},
    {kCommon, 6007, u"&Default"},
    {kCommon, 6008, u"New marker type"},
    {kMoveFile, 3003, u"The old file could not be replaced: "},
    {kMoveFile, 3004, u"The file could not be copied: "},
    {kMoveFile, 3005, u"The file could not be removed: "},
    {kExcelOptions, 5000, u"Excel Options"},
    {kExcelOptions, 5001, u"Order of the cells"},
    {kExcelOptions, 5002, u"&Row by row"},
    {kExcelOptions, 5003, u"&Column by column"},
    {kExcelOptions, 5004, u"OK"},
    {kExcelOptions, 5005, u"Cancel"},
    {kExcelOptions, 5006, u"Export &hidden content"},
    {kExcelOptions, 5007, u"Export &formulas"},
    {kExcelOptions, 5008, u"&Ungroup objects before the export"},
    {kExcelOptions, 5009,
     u"Objects are taken out of their groups in the workbook itself, and the translated workbook "
     u"comes back without the groups."},
    {kExcelOptions, 5010, u"&Blank cells to step over:"},
    // 3008 to 3019: %1% element, %2% line, %3% column, %4% the tag or element that it meets.
    {kHTMLValidate, 3001, u"The file could not be opened: "},
    {kHTMLValidate, 3006, u"HTML validation of "},
    {kHTMLValidate, 3007, u"The backup copy could not be made: "},
    {kHTMLValidate, 3008, u"Line %2%, column %3%: the page begins with %1% and was left as it is"},
    {kHTMLValidate, 3009, u"Line %2%, column %3%: a \"%1%\" that begins no tag was written as \"&lt;\""},
    {kHTMLValidate, 3010, u"Line %2%, column %3%: %1% was still open at %4% and was closed before it"},
    {kHTMLValidate, 3011, u"Line %2%, column %3%: a \"%1%\" outside any tag was written as \"&gt;\""},
    {kHTMLValidate, 3012, u"Line %2%, column %3%: %1% was closed early and was opened again where its text goes on"},
    {kHTMLValidate, 3013, u"Line %2%, column %3%: %1% ends at %4% and was closed there"},
    {kHTMLValidate, 3014,
     u"Line %2%, column %3%: the closing tag of %1% matches no open element and was left as it is"},
    {kHTMLValidate, 3015, u"Line %2%, column %3%: the paragraph %1% ends at %4% and was closed there"},
    {kHTMLValidate, 3016, u"Line %2%, column %3%: %1% was never closed and was closed at the end of the page"},
    {kHTMLValidate, 3017,
     u"Line %2%, column %3%: %1% ends inside %4%, which began in it; both were left as they are, "
     u"because no closing tag can say what a browser makes of it"},
    {kHTMLValidate, 3018,
     u"Line %2%, column %3%: %1% is open at %4% and was left as it is, because a closing tag there "
     u"would change the page"},
    {kHTMLValidate, 3019, u"Line %2%, column %3%: %1% could not be repaired; the page may look different there"},
};

constexpr bool before(const Row& a, const Row& b) {
  return a.section != b.section ? a.section < b.section : a.number < b.number;
}
static_assert(std::is_sorted(std::begin(kRows), std::end(kRows), before));

}  // namespace

std::u16string_view string_resource(std::int32_t number, StringSection section) {
  const Row wanted{section, number, {}};
  const Row* row = std::lower_bound(std::begin(kRows), std::end(kRows), wanted, before);
  if (row == std::end(kRows) || row->section != section || row->number != number)
    throw std::out_of_range("no string " + std::to_string(number) + " in the string table");
  return row->text;
}

}  // namespace kavo
