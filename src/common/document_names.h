// Makes the names of all files around a document. Each file is beside its document.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// --- a document in translation

// The bilingual document: "C:\web\page_asp.htm" for FR gives "C:\web\page_asp_htm_FR.tud". An Office document and its
// translated form share one: "report_doc_rtf_FR.tud", "deck_ppt_FR.tud".
std::u16string tud_name_of(std::u16string_view document, std::u16string_view target_language);
// Its skeleton: its own name and ".skl".
std::u16string skeleton_name_of(std::u16string_view tud);
// The translated document, in `folder`: "page_FR.asp" of "page.asp".
std::u16string target_name_of(std::u16string_view folder, std::u16string_view document,
                              std::u16string_view target_language);
// The scratch file with its translated segments: "page_asp_htm_FR.otf".
std::u16string open_tag_name_of(std::u16string_view tud);

// The file that a filter reads in the place of an Office document: "report_doc.rtf", "deck_ppt.xml". "" for any other
// document.
std::u16string translated_form_of(std::u16string_view document);

// --- a server page: "index.asp", its protected page "index_asp.htm", its script file "index_asp.scr"

struct PageNames {
  std::u16string page;
  std::u16string html;
  std::u16string script;
};
// Both fill in the names that are empty; they do nothing when `html` and `script` are set already.
void complete_from_page(PageNames& names);
void complete_from_html(PageNames& names);

// --- a MIF document

// Its side files, which all MIF documents of a folder share: index, cross-references, variables ("KAVO_ix.mif").
inline constexpr std::u16string_view kMifSides[] = {u"KAVO_ix", u"KAVO_xr", u"KAVO_va"};
// `folder` with its "\".
std::u16string mif_side_file(std::u16string_view folder, std::u16string_view side);
std::u16string mif_side_tud(std::u16string_view folder, std::u16string_view side, std::u16string_view target_language);
bool is_mif_side_file(std::u16string_view path);
// The copy that a preparation leaves: "manual.mif.kavo.bak".
std::u16string backup_name_of(std::u16string_view document);

// --- pictures and objects of a MIF or RTF document: "manual.obj"

std::u16string object_file_of(std::u16string_view document);

// --- an Office document

// "report.doc" gives "report_doc.rtf".
std::u16string rtf_name_of(std::u16string_view doc_file);
// "report_doc.rtf" (any case) gives "report.doc", "other.rtf" gives "other.doc".
std::u16string doc_name_of(std::u16string_view rtf_file);
// "deck.ppt" gives "deck_ppt.xml".
std::u16string xml_name_of(std::u16string_view office_file);
// "deck_ppt.xml" gives "deck.ppt". Deliberately, the fourth character from the end of the name becomes "." whatever it
// is: hosts rely on it. A shorter name stays as it is.
std::u16string office_name_of(std::u16string_view xml_file);

// --- what a run had to put aside

// "a.txt.kavo-old", "a.txt.kavo-old2" ...
std::u16string aside_name_of(std::u16string_view path, int number);

}  // namespace kavo
