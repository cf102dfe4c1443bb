// Texts whose paragraphs are several lines.
#include <gtest/gtest.h>

#include <algorithm>

#include "common/block_reader.h"
#include "platform/unicode.h"
#include "suite/document/pseudo_translation.h"
#include "suite/filter_road.h"
#include "suite/filters/text/line_joint.h"
#include "suite/filters/text/line_look.h"
#include "suite/filters/text/wrapping.h"
#include "suite/suite_fixture.h"
#include "support/corpus.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;
using Texts = std::vector<std::u16string>;

class TextParagraphsTest : public SuiteTest {
 protected:
  static Road text_road(std::string paragraphs) {
    Road road;
    road.options["text.paragraphs"] = std::move(paragraphs);
    return road;
  }
  // The texts of a document that comes back unchanged, whatever the size of the blocks.
  Texts texts_of(std::string_view document, std::string paragraphs) {
    const Road road = text_road(std::move(paragraphs));
    return same_for_every_block_size(document.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      put(u"a.txt", document);
      const std::u16string tud = convert(u"a.txt", road);
      EXPECT_EQ(rebuild(tud, road), document);
      return sources(tud);
    });
  }
};

// Filled at 72 columns.
constexpr std::string_view kProse =
    "The rooms of the house are open to everybody who has a key, and to all\n"
    "who come with somebody who has one. Whoever is the last to leave puts\n"
    "out the lights.\n";

TEST_F(TextParagraphsTest, EmptyLinesPartParagraphs) {
  const struct {
    const char* name;
    std::string_view document;
    Texts texts;
  } cases[] = {
      {"two paragraphs", "One\ntwo\n \nThree\n", {u"One two", u"Three"}},
      {"CR LF, blanks at the ends of lines", "One \r\ntwo\t\r\n\r\nThree", {u"One two", u"Three"}},
      {"CR", "One\rtwo\r\rThree\r", {u"One two", u"Three"}},
      {"bullets begin paragraphs and are none of their texts",
       "- One\n  two\n- Three\n* Four\n1. Five\nsix\n2.1. Seven\n(b) Eight\n",
       {u"One two", u"Three", u"Four", u"Five six", u"Seven", u"Eight"}},
      {"a first line that stands further in", "  One\ntwo\nthree\n  Four\nfive\n", {u"One two three", u"Four five"}},
      {"a line that stands further in than the text before it begins a paragraph",
       "One\ntwo\n    Three\n    four\n",
       {u"One two", u"Three four"}},
      {"titles that are centred are several",
       "                         One two\n                    Three\n",
       {u"One two", u"Three"}},
      {"a word that is broken behind its hyphen", "a well-\nknown word\n", {u"a well-known word"}},
      {"a dash is no hyphen", "a word -\nknown\n", {u"a word - known"}},
      {"blanks between the words of a paragraph count as one", "One   two.  Three\nfour\n", {u"One two. Three four"}},
      {"Chinese joins without a blank, Korean does not",
       "\xE4\xB8\xAD\xE6\x96\x87\n\xE4\xB8\xAD\n\n\xED\x95\x9C\n\xEA\xB8\x80\n",
       {u"\u4E2D\u6587\u4E2D", u"\uD55C \uAE00"}},
      {"UTF-16, a bullet that is not ASCII",
       "\xFF\xFE"
       "a\0\r\0\n\0b\0\n\0\n\0\x22\x20\x20\0c\0\n\0"sv,
       {u"a b", u"c"}},
      {"UTF-16 big endian", "\xFE\xFF\0a\0\n\0b\0\n\0\n\x20\x22\0\x20\0c\0\n\0d"sv, {u"a b", u"c d"}},
      {"invalid bytes",
       "a\xFF\n\xFE"
       "b\n",
       {u"a<1/> <2/>b"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(texts_of(c.document, "blank"), c.texts);
  }
}

TEST_F(TextParagraphsTest, ATranslationIsWrappedAtTheWidthOfItsParagraph) {
  const struct {
    const char* name;
    std::string_view document;
    std::u16string translation;
    std::string_view expected;
  } cases[] = {
      {"longer", "One two\nthree\n", u"Eins zwei drei vier", "Eins\nzwei\ndrei\nvier\n"},
      {"shorter", "One two\nthree\n", u"Eins", "Eins\n"},
      {"the bullet, the indentation and the line end stay", "- One two\r\n  three\r\n", u"eins zwei drei",
       "- eins\r\n  zwei\r\n  drei\r\n"},
      {"the first line stands further in", "    One\ntwo three\nfour\n", u"Eins zwei drei vier",
       "    Eins\nzwei drei\nvier\n"},
      {"a word longer than the line has a line of its own", "One\ntwo\n", u"a Donaudampfschiff b",
       "a\nDonaudampfschiff\nb\n"},
      {"line ends of the translation are blanks", "One two\nthree\n", u"a\r\nb c", "a  b c\n"},
      {"nothing that would be taken for a bullet begins a line", "One two\nthree\n", u"one two - tree",
       "one two -\ntree\n"},
      {"a hyphen is a place to break", "One two\nthree\n", u"well-known is", "well-\nknown\nis\n"},
      {"wide characters count twice, and closing ones begin no line",
       "\xE4\xB8\xAD\xE6\x96\x87\xE4\xB8\xAD\n\xE6\x96\x87\n", u"\u4E2D\u6587\u4E2D\u3002\u6587\u4E2D",
       "\xE4\xB8\xAD\xE6\x96\x87\n\xE4\xB8\xAD\xE3\x80\x82\xE6\x96\x87\n\xE4\xB8\xAD\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(translated(
                  u"a.txt", c.document, [&](std::u16string) { return c.translation; }, text_road("blank")),
              c.expected);
  }
}

TEST_F(TextParagraphsTest, AnotherCodePageLeavesTheLinesOfAnUnchangedParagraph) {
  Road road = text_road("blank");
  road.source_code_page = 1252;
  road.target_code_page = 65001;
  put(u"a.txt", "caf\xE9  au\nlait longer line\nb\n");
  EXPECT_EQ(rebuild(convert(u"a.txt", road), road), "caf\xC3\xA9  au\nlait longer line\nb\n");
  EXPECT_EQ(translated(
                u"a.txt", "caf\xE9\nlait\n", [](std::u16string) { return u"th\u00E9 \u0416 x"; }, road),
            "th\xC3\xA9\n\xD0\x96 x\n");
}

TEST_F(TextParagraphsTest, FilledLinesAreFoundByThemselves) {
  const std::string prose(kProse);
  const std::u16string text =
      u"The rooms of the house are open to everybody who has a key, and to all who come with somebody who has one. "
      u"Whoever is the last to leave puts out the lights.";
  EXPECT_EQ(texts_of(prose, "auto"), Texts{text});
  EXPECT_EQ(texts_of(prose, "lines").size(), 3u);
  EXPECT_EQ(
      texts_of(prose + "\n| a | b |\n| c | d |\n\nName      Price\nApple     1\n-------\nTitle\n=====\n", "auto"),
      (Texts{text, u"| a | b |", u"| c | d |", u"Name      Price", u"Apple     1", u"-------", u"Title", u"====="}))
      << "tables, rules and titles";
  EXPECT_EQ(texts_of(prose + "\nThe House\n12 Main Street\nSpringfield\n", "auto"),
            (Texts{text, u"The House", u"12 Main Street", u"Springfield"}))
      << "an address";
  EXPECT_EQ(
      texts_of(prose + "\n> What they wrote was quoted here, and it went on for more than a line of\n> this\n", "auto"),
      (Texts{text, u"What they wrote was quoted here, and it went on for more than a line of", u"this"}))
      << "a quoted mail";
  EXPECT_EQ(texts_of(prose + "\nint main() {\n  return a_function_with_a_long_name_and_one_argument(1);\n}\n", "auto"),
            (Texts{text, u"int main() {", u"return a_function_with_a_long_name_and_one_argument(1);", u"}"}))
      << "code";
}

TEST_F(TextParagraphsTest, LinesThatAreNotFilledStayLines) {
  for (const std::string_view document :
       {"Field one,Field two,Field three,Field four,Field five\nValue one,Value,Value,Value,Value\n"sv,
        "The quick brown fox jumps over the lazy dog at noon.\nThen it sleeps.\nThe dog is not amused, but says "
        "nothing "
        "of it.\nEnd.\n"sv,
        "Roses are red,\nviolets are blue,\nsugar is sweet\nand so are you.\n"sv,
        "A paragraph that is one line, as editors that wrap lines for themselves write it, and that goes on and on and "
        "on for more than any printer could print.\nAnother one of these lines, which is not quite as long as the "
        "first one, but long.\n"sv})
    EXPECT_EQ(texts_of(document, "auto"), texts_of(document, "lines")) << document;
}

TEST_F(TextParagraphsTest, AnUnknownWordIsRefused) {
  put(u"a.txt", "a");
  EXPECT_EQ(reason_of([&] { convert(u"a.txt", text_road("pages")); }),
            u"\"pages\" is not a way to find the paragraphs of texts; write lines, blank or auto");
}

TEST(TextParagraphsCorpus, RealTextsComeBackAndKeepTheirTextsTranslated) {
  std::vector<std::u16string> documents = corpus_files(u"txt", {u"txt"});
  if (documents.empty()) GTEST_SKIP() << kNoCorpus;
  for (const std::u16string& path : documents) {
    SCOPED_TRACE(to_utf8(path));
    std::string bytes;
    for (BlockReader reader(path); reader.more(); reader.consume(reader.window().size())) bytes += reader.window();
    FilterRoad road(u"K19TXT", u".txt", path.ends_with(u"cp866.txt") ? 866 : 65001);
    const std::vector<std::string> texts = road.take_apart(bytes);
    EXPECT_EQ(road.put_together({}), bytes);
    const PseudoTranslation pseudo(road.header());
    std::vector<std::string> wanted;
    for (const std::string& text : texts) wanted.push_back(pseudo.of(text));
    EXPECT_EQ(broken_texts(wanted, road.take_apart(road.put_together(wanted))), "");
    std::printf("%s: %zu texts\n", to_utf8(path).c_str(), texts.size());
  }
}

TEST(LineLookTest, WhatBeginsAListEntry) {
  for (const std::string_view bullet : {"- a", "* a", "\xE2\x80\xA2 a", "1. a", "12) a", "1.2. a", "3.1 a", "(a) a",
                                        "(iv) a", "(12) a", "a) a", "b. a", "> a"})
    EXPECT_EQ(bullet_length(bullet), bullet.size() - 1) << bullet;
  for (const std::string_view text : {"-a", "2024. a", "A. Smith", "1 a", "(see a", "word) a", "(and) a", "-", "1."})
    EXPECT_EQ(bullet_length(text), 0u) << text;
}

}  // namespace
}  // namespace kavo::test
