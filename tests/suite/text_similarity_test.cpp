// What counts as a similar text.
#include "suite/memory/text_similarity.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/unicode.h"
#include "suite/document/coded_text.h"
#include "suite/memory/text_memory.h"

namespace kavo::test {
namespace {

int similar(std::u16string_view a, std::u16string_view b, std::string_view language = "EN-US") {
  std::vector<TextToken> first, second;
  append_tokens(first, from_host_text(a), text_units_of(language));
  append_tokens(second, from_host_text(b), text_units_of(language));
  std::uint64_t budget = 1'000'000;
  return similarity(first, second, budget);
}

TEST(TextSimilarity, CountsWordsAndLetsNumbersAndCodesStandForEachOther) {
  const struct {
    const char* name;
    std::u16string a;
    std::u16string b;
    int percent;
    const char* language = "EN-US";
  } cases[] = {
      {"equal", u"Save the file now", u"Save the file now", 100},
      {"one of four words", u"Save the file now", u"Save the page now", 75},
      {"two of four words", u"Save the file now", u"Save this page now", 0},
      {"one word more", u"one two three four", u"one two three four five", 80},
      {"one word in front", u"one two three four", u"zero one two three four", 80},
      {"letter case of A to Z", u"Save File", u"save file", 100},
      {"numbers", u"Page 5 of 10", u"Page 6 of 1,200.50", 100},
      {"a number is no word", u"Page five of 10 in all", u"Page 5 of 10 in all", 83},
      {"punctuation weighs little", u"Do you want to go?", u"Do you want to go", 95},
      {"codes weigh little", u"Click <1>here</1> to go on", u"Click here to go on", 90},
      {"codes stand for each other", u"Total: <1/> in all", u"Total: <2/> in all", 100},
      {"white space does not matter", u"one two", u"one  two ", 100},
      {"numbers alone are no text", u"12 34", u"12 35", 0},
      {"nothing", u"", u"", 0},
      {"a short word", u"Yes", u"No", 0},
      {"characters of Japanese", u"ファイルを保存します", u"ファイルを保存しない", 80, "JA"},
      {"characters of Chinese", u"保存文件", u"保存文档", 75, "ZH-CN"},
      {"another Chinese text", u"保存文件", u"删除文档", 0, "ZH-CN"},
      {"characters of Thai", u"บันทึกไฟล์นี้", u"บันทึกไฟล์นั้", 92, "TH"},
      {"Thai by words is one word", u"บันทึกไฟล์นี้", u"บันทึกไฟล์นั้", 0, "EN-US"},
      {"numbers in Japanese", u"第12章です", u"第3章です", 100, "JA"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(similar(c.a, c.b, c.language), c.percent);
    EXPECT_EQ(similar(c.b, c.a, c.language), c.percent) << "the other way round";
  }
}

TEST(TextSimilarity, StopsAtItsBudget) {
  std::vector<TextToken> a, b;
  std::string text, other;
  for (int i = 0; i < 2000; ++i) text += "a" + std::to_string(i) + "x ", other += "b" + std::to_string(i) + "x ";
  append_tokens(a, text, TextUnits::kWords);
  append_tokens(b, other, TextUnits::kWords);
  std::uint64_t budget = 1'000'000;
  EXPECT_EQ(similarity(a, b, budget), 0);
  EXPECT_EQ(budget, 1'000'000u) << "nothing was begun";
  // An edit inside a huge text is found all the same: what both begin and end with costs nothing.
  std::vector<TextToken> edited = a;
  edited[1000] = b[1000];
  EXPECT_EQ(similarity(a, edited, budget), 99);
}

TEST(TextMemory, FindsTextsAndKeepsTheirTranslationsApart) {
  TextMemory memory(TextUnits::kWords);
  memory.add("Home", "Accueil", true);
  memory.add("Home", "Maison", true);
  memory.add("Home", "Accueil", true);
  memory.add("Draft", "Brouillon", false);
  memory.add("Save", "Enregistrer", true);
  memory.add("Save", "Sauver", false);
  const auto targets = [&](std::string_view source) {
    std::string all;
    for (const KnownTranslation& each : memory.exact(source))
      all += std::string(each.target) + (each.is_reviewed ? "" : "?") + " ";
    return all;
  };
  EXPECT_EQ(targets("Home"), "Accueil Maison ");
  EXPECT_EQ(targets("Draft"), "Brouillon? ");
  EXPECT_EQ(targets("Save"), "Enregistrer ") << "what is reviewed goes before what is not";
  EXPECT_EQ(targets("home"), "");
  EXPECT_TRUE(memory.has("Save", "Sauver"));
  EXPECT_FALSE(memory.has("Save", "Garder"));
  EXPECT_EQ(memory.size(), 3u);
}

TEST(TextMemory, OffersTheMostSimilarTextAndOfEquallySimilarOnesTheFirst) {
  TextMemory memory(TextUnits::kWords);
  memory.add("You can save the file as often as you like", "1", true);
  memory.add("You can save the page as often as you like", "2", true);
  memory.add("You can delete the file as often as they like", "3", true);
  memory.add("Quite another sentence that has nothing to do with it", "4", true);
  const auto best = memory.similar("You can save the text as often as you like");
  ASSERT_TRUE(best);
  EXPECT_EQ(best->translations.front().target, "1");
  EXPECT_EQ(best->percent, 90);
  EXPECT_EQ(memory.similar("You can delete the file as often as they want")->translations.front().target, "3");
  EXPECT_FALSE(memory.similar("Nothing like the others"));
  EXPECT_FALSE(memory.similar(""));
  const auto other_case = memory.similar("you can save the file as often as you like");
  ASSERT_TRUE(other_case);
  EXPECT_EQ(other_case->percent, 99) << "another text is never quite the same";
}

TEST(TextMemory, FindsWhatItsIndexHolds) {
  // Every text with one word of eight changed is found, whatever else is there.
  for (const TextUnits units : {TextUnits::kWords, TextUnits::kCharacters}) {
    const auto text = [&](int number, bool changed) {
      std::string result;
      for (int word = 0; word < 8; ++word) {
        const int value =
            (number * 31 + word * word * 7 + number * word) % 97 + (changed && word == number % 8 ? 500 : 0);
        if (units == TextUnits::kWords)
          result += "w" + std::string(1, static_cast<char>('a' + value % 26)) + std::to_string(value) + " ";
        else
          result += to_utf8(std::u16string(1, static_cast<char16_t>(0x4E00 + value)));
      }
      return result;
    };
    TextMemory memory(units);
    for (int i = 0; i < 500; ++i) memory.add(text(i, false), std::to_string(i), true);
    for (int i = 0; i < 500; ++i) EXPECT_TRUE(memory.similar(text(i, true))) << i;
  }
}

TEST(TextMemory, OfEquallySimilarTextsTheFirstIsOfferedEveryTime) {
  for (int run = 0; run < 20; ++run) {
    TextMemory memory(TextUnits::kWords);
    for (int line = 0; line < 500; ++line) {
      const std::string number = std::to_string(line);
      memory.add("Line " + number + " of the first edition", "Ligne " + number, false);
    }
    const auto found = memory.similar("Line 7 of the second edition");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->source, "Line 0 of the first edition") << run;
  }
}

}  // namespace
}  // namespace kavo::test
