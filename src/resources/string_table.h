// The string table: every text that a person can read in a dialog or an error list, one row each, in order of section
// and number. Hosts know the numbers; code uses the names. A dialog or a service that uses the numbers of other texts
// has a section of its own.
#pragma once

#include <cstdint>
#include <string_view>

namespace kavo {

struct TextRow {
  std::int32_t number = 0;  // 0 for no text at all
  std::u16string_view text;
  bool operator==(const TextRow& other) const { return number == other.number && text == other.text; }
};

namespace text {
inline constexpr TextRow kFileFilter{
    111, u"Translatable files|*.doc;*.rtf;*.htm;*.html;*.asp;*.jsp;*.mif;*.rc;*.txt;*.ppt;*.xls||"};
inline constexpr TextRow kTudNotOpened{501, u"Failed to open TUD file"};
inline constexpr TextRow kOpenTagNotSaved{502, u"Failed to save OpenTag file"};
inline constexpr TextRow kNoSkeleton{503, u"Failed to locate SKL file"};
inline constexpr TextRow kNoMergeDetails{504, u"Failed to retrieve merge file details"};
inline constexpr TextRow kTargetNotCreated{505, u"Failed to create the translation file"};
inline constexpr TextRow kNotPostProcessed{506, u"Failed to post-process the file"};
inline constexpr TextRow kTargetInTheWay{507,
                                         u"Unable to delete the target file - check that it is not already in use"};
inline constexpr TextRow kNoMemory{508, u"<none>"};
inline constexpr TextRow kLanguage{2000, u"Language"};
inline constexpr TextRow kCharacterSet{2001, u"Character set"};
inline constexpr TextRow kLanguageVariant{2002, u"Language variant"};
inline constexpr TextRow kMore{3000, u"More >>"};
inline constexpr TextRow kLess{3001, u"<< Less"};
inline constexpr TextRow kSetLanguageOK{3002, u"OK"};
inline constexpr TextRow kSetLanguageCancel{3003, u"Cancel"};
inline constexpr TextRow kSetLanguage{3004, u"Set language"};
inline constexpr TextRow kCannotWriteIndex{3020, u"The index file could not be written"};
inline constexpr TextRow kNoIndexName{3021, u"No name was given for the index file"};
inline constexpr TextRow kCannotWriteXrefs{3022, u"The cross-reference file could not be written"};
inline constexpr TextRow kNoXrefName{3023, u"No name was given for the cross-reference file"};
inline constexpr TextRow kCannotWriteVariables{3024, u"The variable file could not be written"};
inline constexpr TextRow kNoVariableName{3025, u"No name was given for the variable file"};
inline constexpr TextRow kNoMifFile{3026, u"No MIF file was set"};
inline constexpr TextRow kMifFileNotFound{3027, u"The MIF file was not found"};
inline constexpr TextRow kCannotReadMifFile{3028, u"The MIF file could not be read"};
inline constexpr TextRow kCannotReadObjects{3029, u"The object file is missing or could not be read"};
inline constexpr TextRow kCannotWriteObjects{3030, u"The object file could not be created"};
inline constexpr TextRow kNoTemporaryFile{3031, u"The temporary file could not be created"};
inline constexpr TextRow kCannotReplaceObjects{3032, u"The old object file could not be replaced"};
inline constexpr TextRow kIndexFull{3033, u"The index table is full; further index entries were left out"};
inline constexpr TextRow kXrefsFull{3034, u"The cross-reference table is full; further formats were left out"};
inline constexpr TextRow kVariablesFull{3035, u"The variable table is full; further definitions were left out"};
inline constexpr TextRow kCannotReadIndex{3036, u"The index file could not be read; index entries stay untranslated"};
inline constexpr TextRow kCannotReadXrefs{
    3037, u"The cross-reference file could not be read; cross-reference formats stay untranslated"};
inline constexpr TextRow kCannotReadVariables{
    3038, u"The variable file could not be read; variables and number formats stay untranslated"};
inline constexpr TextRow kEndsInObject{3039, u"The MIF file ends inside an embedded object and was left as it is"};
inline constexpr TextRow kHoldsPlaceholders{
    3040, u"The MIF file already holds placeholders of removed objects and was left as it is"};
inline constexpr TextRow kCannotProcess{3041, u"The MIF file could not be processed and was left as it is"};
inline constexpr TextRow kStatementLeftOut{3042,
                                           u"A statement that is never closed, or is far too long, was left as it is"};
inline constexpr TextRow kSideFileIsSource{3043, u"A side file must not replace a MIF file of its own batch"};
inline constexpr TextRow kTranslationDoesNotFit{
    3044, u"A translation holds a character that the MIF file cannot hold; its text stays untranslated"};
inline constexpr TextRow kTwoOfOneTag{
    3045, u"Entries of a side file have one tag and several translations; the first one counts"};
inline constexpr TextRow kObjectsMissing{3046,
                                         u"The object file lacks objects of the MIF file; their placeholders stay"};
inline constexpr TextRow kWizard{4000, u"Start translation"};
inline constexpr TextRow kWizardFile{4001, u"Please select the &file you wish to translate:"};
inline constexpr TextRow kWizardSource{4002, u"&Source language"};
inline constexpr TextRow kWizardTarget{4003, u"&Target language"};
inline constexpr TextRow kWizardMemory{4004, u"T&M (optional)"};
inline constexpr TextRow kClearMemory{4005, u"&Clear"};
inline constexpr TextRow kNewMemory{4006, u"&New..."};
inline constexpr TextRow kOpenMemory{4007, u"&Open..."};
inline constexpr TextRow kWizardOptions{4008, u"Options..."};
inline constexpr TextRow kWizardOK{4009, u"OK"};
inline constexpr TextRow kWizardCancel{4010, u"Cancel"};
inline constexpr TextRow kBrowse{4011, u"&Browse..."};
inline constexpr TextRow kChangeSource{4012, u"Ch&ange..."};
inline constexpr TextRow kChangeTarget{4013, u"Chan&ge..."};
inline constexpr TextRow kStartEditor{4014, u"Start &editor"};
inline constexpr TextRow kUnrecognisedType{4015, u"Unrecognised file type"};
inline constexpr TextRow kUnknownTypeText{4020, u"Nothing was prepared, because the type of this file is not known"};
inline constexpr TextRow kUnknownTypeAdvice{4021,
                                            u"Please choose a file of one of the kinds that the file dialog lists."};
inline constexpr TextRow kPreparationFailed{4022, u"This document could not be prepared for translation"};
inline constexpr TextRow kFileAdvice{
    4023, u"Please make sure that it is whole and not open in another program, and start again."};
inline constexpr TextRow kConversionFailed{4024, u"No bilingual document could be made of this file"};
inline constexpr TextRow kEditorFailed{4025, u"The translation editor could not be started"};
inline constexpr TextRow kEditorAdvice{4026, u"Please open the bilingual document in the editor yourself."};
inline constexpr TextRow kProgress{4030, u"Preparing for translation"};
inline constexpr TextRow kPreparing{4031, u"Preparing"};
inline constexpr TextRow kConverting{4032, u"Converting"};
inline constexpr TextRow kHtmlOptions{5000, u"HTML Options"};
inline constexpr TextRow kRecognizedTags{5001, u"Recognized tags"};
inline constexpr TextRow kAdd{5002, u"&Add"};
inline constexpr TextRow kRemove{5003, u"&Remove"};
inline constexpr TextRow kClear{5004, u"&Clear"};
inline constexpr TextRow kOverlapAllowed{5005, u"&Overlap allowed"};
inline constexpr TextRow kOptionsOK{5006, u"OK"};
inline constexpr TextRow kOptionsCancel{5007, u"Cancel"};
inline constexpr TextRow kNewTag{5008, u"New tag"};
inline constexpr TextRow kTagListFull{5009, u"The list is full: no more than 128 tags can be checked."};
inline constexpr TextRow kMifOptions{6000, u"MIF Options"};
inline constexpr TextRow kIndexSplitting{6001, u"Index entry splitting"};
inline constexpr TextRow kDontSplit{6002, u"Don't split"};
inline constexpr TextRow kSplitAtSemicolon{6003, u"Split at \";\" only"};
inline constexpr TextRow kSplitAtBoth{6004, u"Split at \";\" and \":\""};
inline constexpr TextRow kRemoveObjects{6005, u"Remove embedded &objects from files"};
inline constexpr TextRow kMarkerTypes{6006, u"Marker types"};
inline constexpr TextRow kDefaultMarkers{6007, u"&Default"};
inline constexpr TextRow kNewMarkerType{6008, u"New marker type"};
}  // namespace text

namespace move_file_text {
inline constexpr TextRow kNotReplaced{3003, u"The old file could not be replaced: "};
inline constexpr TextRow kNotCopied{3004, u"The file could not be copied: "};
inline constexpr TextRow kNotRemoved{3005, u"The file could not be removed: "};
}  // namespace move_file_text

namespace excel_options_text {
inline constexpr TextRow kTitle{5000, u"Excel Options"};
inline constexpr TextRow kOrder{5001, u"Order of the cells"};
inline constexpr TextRow kByRows{5002, u"&Row by row"};
inline constexpr TextRow kByColumns{5003, u"&Column by column"};
inline constexpr TextRow kOK{5004, u"OK"};
inline constexpr TextRow kCancel{5005, u"Cancel"};
inline constexpr TextRow kHidden{5006, u"Export &hidden content"};
inline constexpr TextRow kFormulas{5007, u"Export &formulas"};
inline constexpr TextRow kUngroup{5008, u"&Ungroup objects before the export"};
inline constexpr TextRow kUngroupWarning{
    5009,
    u"Objects are taken out of their groups in the workbook itself, and the translated workbook "
    u"comes back without the groups."};
inline constexpr TextRow kBlankCells{5010, u"&Blank cells to step over:"};
}  // namespace excel_options_text

namespace html_validate_text {
// 3008 to 3019: %1% element, %2% line, %3% column, %4% the tag or element that it meets.
inline constexpr TextRow kFileNotOpened{3001, u"The file could not be opened: "};
inline constexpr TextRow kHeading{3006, u"HTML validation of "};
inline constexpr TextRow kNoBackup{3007, u"The backup copy could not be made: "};
inline constexpr TextRow kGluePage{3008, u"Line %2%, column %3%: the page begins with %1% and was left as it is"};
inline constexpr TextRow kLessSignWritten{
    3009, u"Line %2%, column %3%: a \"%1%\" that begins no tag was written as \"&lt;\""};
inline constexpr TextRow kClosedBefore{3010,
                                       u"Line %2%, column %3%: %1% was still open at %4% and was closed before it"};
inline constexpr TextRow kGreaterSignWritten{
    3011, u"Line %2%, column %3%: a \"%1%\" outside any tag was written as \"&gt;\""};
inline constexpr TextRow kClosedAndReopened{
    3012, u"Line %2%, column %3%: %1% was closed early and was opened again where its text goes on"};
inline constexpr TextRow kClosedWhereItEnds{3013, u"Line %2%, column %3%: %1% ends at %4% and was closed there"};
inline constexpr TextRow kEndTagLeft{
    3014, u"Line %2%, column %3%: the closing tag of %1% matches no open element and was left as it is"};
inline constexpr TextRow kParagraphClosed{3015,
                                          u"Line %2%, column %3%: the paragraph %1% ends at %4% and was closed there"};
inline constexpr TextRow kClosedAtEnd{
    3016, u"Line %2%, column %3%: %1% was never closed and was closed at the end of the page"};
inline constexpr TextRow kOverlapLeft{
    3017,
    u"Line %2%, column %3%: %1% ends inside %4%, which began in it; both were left as they are, "
    u"because no closing tag can say what a browser makes of it"};
inline constexpr TextRow kOpenElementLeft{
    3018,
    u"Line %2%, column %3%: %1% is open at %4% and was left as it is, because a closing tag there "
    u"would change the page"};
// This text shares its number with another one.
inline constexpr TextRow kOtherBranch{
    3018,
    u"Line %2%, column %3%: %1% is open at %4% and was left as it is, because that is in another branch of a "
    u"script's condition. Close it in the page"};
inline constexpr TextRow kNotRepaired{
    3019, u"Line %2%, column %3%: %1% could not be repaired; the page may look different there"};
}  // namespace html_validate_text

}  // namespace kavo
