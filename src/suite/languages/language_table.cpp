#include "suite/languages/language_table.h"

namespace kavo {
namespace {

constexpr LanguageRow kLanguages[] = {
#include "language_rows.inc"
};

// All ANSI code pages, and UTF-8 for the languages without one.
constexpr CodePageRow kCodePages[] = {
    {u"Thai", u"windows-874", 874},
    {u"Japanese", u"shift_jis", 932},
    {u"Chinese (Simplified)", u"gb2312", 936},
    {u"Korean", u"ks_c_5601-1987", 949},
    {u"Chinese (Traditional)", u"big5", 950},
    {u"Central European", u"windows-1250", 1250},
    {u"Cyrillic", u"windows-1251", 1251},
    {u"Western European", u"windows-1252", 1252},
    {u"Greek", u"windows-1253", 1253},
    {u"Turkish", u"windows-1254", 1254},
    {u"Hebrew", u"windows-1255", 1255},
    {u"Arabic", u"windows-1256", 1256},
    {u"Baltic", u"windows-1257", 1257},
    {u"Vietnamese", u"windows-1258", 1258},
    {u"Unicode (UTF-8)", u"utf-8", 65001},
};

}  // namespace

std::span<const LanguageRow> language_rows() { return kLanguages; }
std::span<const CodePageRow> code_page_rows() { return kCodePages; }

}  // namespace kavo
