// Documents that an earlier version prepared: of texts, whose segments were lines, and of MIF, where letters that stand
// closer were a pair of codes, texts of reference pages were offered, and building blocks were text.
#include <gtest/gtest.h>

#include <fstream>

#include "platform/unicode.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

std::string stored(const std::u16string& name) {
  std::ifstream file(std::string(KAVO_FIRST_FORMAT "/") + to_utf8(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

struct EarlierDocument {
  const char* name;
  const char16_t* source;
  const char16_t* tud;
  std::size_t count;        // of its segments
  std::size_t segment;      // one of them
  const char16_t* coded;    // as it was offered
  const char16_t* now;      // its translation
  const char* source_part;  // what stands in the source
  const char* target_part;  // and in the target instead
};

class EarlierSegments : public SuiteTest, public testing::WithParamInterface<EarlierDocument> {};

TEST_P(EarlierSegments, AreRebuiltUnchangedAndTranslated) {
  const EarlierDocument& c = GetParam();
  const std::u16string tud_name(c.tud);
  for (const std::u16string& name : {tud_name, tud_name + u".skl"}) put(name, stored(name));
  const std::string source = stored(c.source);
  ASSERT_FALSE(source.empty());
  const std::u16string tud = in_folder(tud_name);
  EXPECT_EQ(rebuild(tud), source);
  BilingualDocument document(tud);
  ASSERT_EQ(document.size(), c.count);
  EXPECT_EQ(to_host_text(document.segment(c.segment).source), c.coded);
  document.set_segment(c.segment, from_host_text(c.now), TranslationStatus::kTranslated, 0);
  document.save();
  std::string expected = source;
  const std::size_t place = expected.find(c.source_part);
  ASSERT_NE(place, std::string::npos);
  expected.replace(place, std::string_view(c.source_part).size(), c.target_part);
  EXPECT_EQ(rebuild(tud), expected);
}

INSTANTIATE_TEST_SUITE_P(
    , EarlierSegments,
    testing::Values(
        EarlierDocument{
            "LinesOfText", u"care.txt", u"care_txt_FR.tud", 6, 2,
            u"caf\u00E9 run off. A pump that is closed under pressure does no harm to the",
            u"Une ligne qui est plus longue que toutes les autres lignes de ce texte de caf\u00E9 l\u00E0",
            "caf\xC3\xA9 run off. A pump that is closed under pressure does no harm to the",
            "Une ligne qui est plus longue que toutes les autres lignes de ce texte de caf\xC3\xA9 l\xC3\xA0"},
        EarlierDocument{"ReferencePage", u"pump.mif", u"pump_mif_FR.tud", 3, 1, u"A reference text",
                        u"Un t\u00E9l\u00E9phone", "`A reference text'", "`Un t\\x8e l\\x8e phone'"},
        EarlierDocument{"CloserLetters", u"pump.mif", u"pump_mif_FR.tud", 3, 2,
                        u"Do <1>not</1> spray the caf\u00E9<2/>.", u"Ne <1>pas</1> arroser<2/> !",
                        "   <String `Do '>\n   <Font \n    <FTag `'>\n    <FDW -2.0%>\n   > # end of Font\n"
                        "   <String `not'>\n   <Font \n    <FTag `'>\n   > # end of Font\n"
                        "   <String ` spray the caf\\x8e '>\n   <Variable \n    <VariableName `Current Page #'>\n"
                        "   > # end of Variable\n   <String `.'>\n",
                        "   <String `Ne '>\n   <Font \n    <FTag `'>\n    <FDW -2.0%>\n   >\n"
                        "   <String `pas'>\n   <Font \n    <FTag `'>\n   >\n"
                        "   <String ` arroser'>\n   <Variable \n    <VariableName `Current Page #'>\n"
                        "   >\n   <String ` !'>\n"},
        EarlierDocument{"BuildingBlocks", u"KAVO_va.mif", u"KAVO_va_mif_FR.tud", 1, 0,
                        u"Page <<$curpagenum> of <<$lastpagenum>", u"Page <<$curpagenum> sur <<$lastpagenum>",
                        "<String `Page <$curpagenum\\> of <$lastpagenum\\>'>",
                        "<String `Page <$curpagenum\\> sur <$lastpagenum\\>'>"}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace kavo::test
