// What the target language does to an RTF document: character sets, languages, direction, fonts and colours.
#include <gtest/gtest.h>

#include "common/host_settings.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

class RtfTarget : public SuiteTest {
 protected:
  // The document of a translation into a language, every text replaced by one.
  std::string rebuilt(std::string_view document, std::u16string_view language, std::u16string_view text,
                      const std::optional<SegmentColours>& colours = {}, std::u16string_view source = u"EN-US") {
    put(u"a.rtf", document);
    ConversionRequest request;
    request.document = in_folder(u"a.rtf");
    request.tud = in_folder(u"a.tud");
    request.source_language = source;
    request.target_language = language;
    request.source_code_page = 1252;
    request.filter = u"K19RTF";
    ProgressEvent progress;
    convert_document(request, progress);
    BilingualDocument translation(request.tud);
    using enum TranslationStatus;
    constexpr TranslationStatus statuses[] = {kTranslated, kFuzzy, kExact, kUntranslated, kLocked};
    for (std::size_t i = 0; i < translation.size(); ++i)
      if (!text.empty())
        translation.set_segment(i, from_host_text(text), kTranslated, 0);
      else
        translation.set_segment(i, translation.segment(i).source, statuses[i % 5], 0);
    translation.save();
    return rebuild(request.tud, {.filter = u"K19RTF", .colours = colours});
  }

  void set_map(std::string_view map, std::int32_t allowed) {
    put(u"KAVO.FMP", map);
    RegistryData file{RegistryType::kString, {}};
    for (const char16_t unit : in_folder(u"KAVO.FMP") + u'\0') {
      file.bytes += static_cast<char>(unit & 0xFF);
      file.bytes += static_cast<char>(unit >> 8);
    }
    registry.write(Hive::kCurrentUser, kFontMapKey, kFontMapFile, file);
    RegistryData number{RegistryType::kNumber, {}};
    for (int i = 0; i < 4; ++i) number.bytes += static_cast<char>(allowed >> (8 * i));
    registry.write(Hive::kCurrentUser, kFontMapKey, kAllowFontMapping, number);
  }
};

TEST_F(RtfTarget, CharactersOfTheFontAreBytesAndOthersNumbers) {
  const std::string head = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fcharset0 Times;}}{\\colortbl;}\\uc1 ";
  EXPECT_EQ(rebuilt(head + "x\\par}", u"FR", u"caf\u00E9 \u20AC {\\} \u00A0\u00AD\u2011 \U0001F600"),
            head + "caf\\'e9 \\'80 \\{\\\\\\} \\~\\-\\_ \\u-10179?\\u-8704?\\par}");
}

TEST_F(RtfTarget, TheNumberOfBytesAfterANumberIsTheDocuments) {
  const std::string head = "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0 T;}}{\\colortbl;}";
  EXPECT_EQ(rebuilt(head + "\\uc0 x\\par}", u"FR", u"a\u0100b"), head + "\\uc0 a\\u256 b\\par}");
  EXPECT_EQ(rebuilt(head + "\\uc2 x\\par}", u"FR", u"a\u0100b"), head + "\\uc2 a\\u256??b\\par}");
  EXPECT_EQ(rebuilt(head + "\\uc5 x\\par}", u"FR", u"a\u0100b"), head + "\\uc5 {\\uc1 a\\u256?b}\\par}");
}

TEST_F(RtfTarget, ALanguageOfAnotherCharacterSetGetsFontsOfItsOwn) {
  EXPECT_EQ(rebuilt("{\\rtf1\\ansi{\\fonttbl{\\f0\\froman\\fcharset0 T;}{\\f3\\fcharset2 S;}}{\\colortbl;}x\\par}",
                    u"RU", u"\u0414a"),
            "{\\rtf1\\ansi{\\fonttbl{\\f0\\froman\\fcharset0 T;}{\\f3\\fcharset2 S;}{\\f4\\froman\\fcharset204 "
            "T;}}{\\colortbl;}{\\f4\\'c4a}\\par}");
  EXPECT_EQ(rebuilt("{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0 T;}{\\f9\\fcharset128 T;}}{\\colortbl;}x\\par}", u"JA",
                    u"\u8868"),
            "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0 T;}{\\f9\\fcharset128 T;}}{\\colortbl;}{\\f9\\'95\\'5c}\\par}")
      << "there is one already";
}

TEST_F(RtfTarget, TheLanguageOfTextFollows) {
  EXPECT_EQ(rebuilt("{\\rtf1\\deflang2057{\\colortbl;}{\\lang1033\\langfe1033 a}{\\lang1031 b}{\\lang1024 c}\\par}",
                    u"FR-CA", u""),
            "{\\rtf1\\deflang3084{\\colortbl;}{\\lang3084\\langfe1033 a}{\\lang1031 b}{\\lang1024 c}\\par}")
      << "other languages stay";
  EXPECT_NE(rebuilt("{\\rtf1\\lang1033 a}", u"DE", u"").find("\\lang1031 "), std::string::npos) << "a country is told";
  EXPECT_NE(rebuilt("{\\rtf1\\lang1033\\langfe1033 a}", u"JA", u"").find("\\lang1041\\langfe1041"), std::string::npos);
}

TEST_F(RtfTarget, RightToLeft) {
  const std::string head = "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset177 T;}}{\\colortbl;}";
  EXPECT_EQ(rebuilt(head + "\\pard\\ltrpar a\\par\\pard b\\par}", u"HE", u"\u05D0 1"),
            head + "\\pard\\rtlpar\\rtlpar {\\rtlch\\'e0 1}\\par\\pard\\rtlpar {\\rtlch\\'e0 1}\\par}");
  EXPECT_EQ(rebuilt(head + "a\\par}", u"HE", u"abc"), head + "\\rtlpar abc\\par}") << "no word tells the direction";
}

TEST_F(RtfTarget, TheFontMapReplacesFonts) {
  const std::string document =
      "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0{\\*\\panose 02}Arial;}{\\f1 Times;}}{\\colortbl;}x\\par}";
  set_map("\xEF\xBB\xBF; fonts\r\nARIAL = Deja Vu , 238\r\n\r\nno line\r\nTimes=\r\n", 1);
  EXPECT_EQ(rebuilt(document, u"PL", u"\u0105"),
            "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0{\\*\\panose 02}Deja Vu;}{\\f1 Times;}{\\f2\\fcharset238 Deja "
            "Vu;}{\\f3\\fcharset238 Times;}}{\\colortbl;}{\\f2\\'b9}\\par}");
  set_map("Arial=B\n", 0);
  EXPECT_NE(rebuilt(document, u"FR", u"a").find("Arial"), std::string::npos) << "not allowed";
}

TEST_F(RtfTarget, EachStatusHasItsColour) {
  const SegmentColours colours = {0x000000FF, 0x0000A5FF, 0x00008000, 0x00FF0000};
  EXPECT_EQ(
      rebuilt("{\\rtf1{\\colortbl;\\red1\\green2\\blue3;}\\pard\\cf1 a\\par b {\\b\\cf0 c}\\par d\\par e\\par f\\par}",
              u"FR", u"", colours),
      "{\\rtf1{\\colortbl;\\red1\\green2\\blue3;\\red255\\green0\\blue0;\\red255\\green165\\blue0;\\red0\\green128\\"
      "blue0;\\red0\\green0\\blue255;}\\pard\\cf1 \\cf5 a\\cf1 \\par \\cf3 b {\\b\\cf3 c}\\cf1 \\par \\cf4 "
      "d\\cf1 \\par \\cf2 e\\cf1 \\par f\\par}");
  EXPECT_EQ(rebuilt("{\\rtf1{\\info{\\title t}}\\pard a\\par}", u"FR", u"z", colours),
            "{\\rtf1{\\info{\\title z}}\\pard "
            "{\\colortbl;\\red255\\green0\\blue0;\\red255\\green165\\blue0;\\red0\\green128\\"
            "blue0;\\red0\\green0\\blue255;}\\cf4 z\\cf0 \\par}")
      << "a document without colours, and a title that can have none";
}

}  // namespace
}  // namespace kavo::test
