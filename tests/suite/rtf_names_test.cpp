// What a text of an RTF document is known by: its bookmark or form field, its destination, its cell and its style.
#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "platform/unicode.h"
#include "suite/document/tud_format.h"
#include "suite/suite_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

class RtfNames : public SuiteTest {
 protected:
  static Road rtf_road() { return {.filter = u"K19RTF", .source_code_page = 1252}; }

  // "text|name|element" of each unit, of a document that comes back unchanged whatever the size of the blocks.
  std::vector<std::string> units(std::string_view document) {
    return same_for_every_block_size(document.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      put(u"a.rtf", document);
      const std::u16string tud = convert(u"a.rtf", rtf_road());
      EXPECT_EQ(rebuild(tud, rtf_road()), document);
      struct : TudEvents {
        void unit(const TudUnit& unit) override {
          const std::u16string source = to_host_text(unit.source);
          units.push_back(to_utf8(source) + "|" + unit.name + "|" + unit.element);
        }
        std::vector<std::string> units;
      } events;
      read_tud(tud, events);
      return events.units;
    });
  }
};

const std::string kStyles =
    "{\\rtf1\\ansi\\ansicpg1252{\\stylesheet{\\ql\\snext0 Normal;}{\\s1\\b heading 1,h1;}{\\*\\cs16 Key;}"
    "{\\s3 \\'dcber\\u269?;}{\\*\\ts11 Grid;}{\\s99999 Far;}}";

struct Case {
  const char* name;
  std::string body;
  std::vector<std::string> units;
};

const Case kCases[] = {
    {"a bookmark in front of the text",
     "\\pard{\\*\\bkmkstart intro}Text{\\*\\bkmkend intro}\\par}",
     {"Text|intro|Normal"}},
    {"in the text", "\\pard Te{\\*\\bkmkstart intro}xt\\par}", {"Te<1/>xt|intro|Normal"}},
    {"the first of several", "\\pard{\\*\\bkmkstart a}{\\*\\bkmkstart b}Text\\par}", {"Text|a|Normal"}},
    {"over several paragraphs",
     "\\pard{\\*\\bkmkstart a}One\\par Two{\\*\\bkmkend a}\\par}",
     {"One|a|Normal", "Two||Normal"}},
    {"of an empty paragraph", "\\pard{\\*\\bkmkstart a}\\par One\\par}", {"One||Normal"}},
    {"the word processor's own", "\\pard{\\*\\bkmkstart _Toc12345}{\\*\\bkmkstart a}One\\par}", {"One|a|Normal"}},
    {"in other characters", "\\pard{\\*\\bkmkstart \\'dcber_\\u269?}One\\par}", {"One|\u00DCber_\u010D|Normal"}},
    {"of a column", "\\pard{\\*\\bkmkstart\\bkmkcolf1\\bkmkcoll2 a}One\\par}", {"One|a|Normal"}},
    {"without an end", "\\pard{\\*\\bkmkstart a", {}},
    {"too long", "\\pard{\\*\\bkmkstart " + std::string(2000, 'a') + "}One\\par}", {"One||Normal"}},
    {"in a footnote",
     "\\pard One{\\footnote{\\*\\bkmkstart a}\\pard\\s1 Note} two\\par}",
     {"Note|a|footnote/heading 1", "One<1/> two||Normal"}},
    {"around a footnote",
     "\\pard{\\*\\bkmkstart a}One{\\footnote\\pard Note} two\\par}",
     {"Note||footnote/Normal", "One<1/> two|a|Normal"}},
    {"styles",
     "\\pard\\s1 One\\par Two\\par\\pard Three\\par{\\s3 Four}\\par\\s99999 Five\\par}",
     {"One||heading 1", "Two||heading 1", "Three||Normal", "Four||\u00DCber\u010D", "Five||"}},
    {"cells",
     "\\pard\\intbl\\s1{\\*\\bkmkstart a}One\\cell\\pard\\intbl Two\\cell\\row\\pard Three\\par}",
     {"One|a|cell/heading 1", "Two||cell/Normal", "Three||Normal"}},
    {"a header", "{\\headerl\\pard\\s1 One\\par}\\pard Two\\par}", {"One||headerl/heading 1", "Two||Normal"}},
    {"a title has no paragraph", "{\\info{\\title One}}}", {"One||title"}},
    {"form fields",
     "\\pard{\\field{\\*\\fldinst FORMTEXT{\\*\\formfield{\\*\\ffname name}{\\*\\ffdeftext One}{\\*\\ffhelptext "
     "Two}}}{\\fldrslt Three}}{\\field{\\*\\fldinst FORMTEXT{\\*\\formfield{\\*\\ffdeftext Four}}}} five\\par}",
     {"One|name|ffdeftext", "Two|name|ffhelptext", "Four||ffdeftext", "<1>Three</1><2/> five||Normal"}},
};

TEST_F(RtfNames, OfTexts) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(units(kStyles + c.body), c.units);
  }
}

TEST_F(RtfNames, ADocumentWithoutStylesHasNone) {
  EXPECT_EQ(units("{\\rtf1 One\\par}"), (std::vector<std::string>{"One||"}));
}

TEST_F(RtfNames, AStyleSheetOfAnyLengthIsRead) {
  std::string document = "{\\rtf1{\\stylesheet";
  for (int i = 1; i < 30'000; ++i) document += "{\\s" + std::to_string(i) + " Style " + std::to_string(i) + ";}";
  document += "}\\pard\\s29999 One\\par}";
  put(u"a.rtf", document);
  const std::u16string tud = convert(u"a.rtf", rtf_road());
  EXPECT_NE(files.get(tud).find("Style 29999</context>"), std::string::npos);
  EXPECT_EQ(rebuild(tud, rtf_road()), document);
}

}  // namespace
}  // namespace kavo::test
