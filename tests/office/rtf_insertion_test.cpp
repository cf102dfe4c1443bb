#include "office/rtf_insertion.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "office/clsRTFUtil.h"
#include "office/rtf_fixture.h"
#include "office/rtf_model.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

struct Case {
  const char* name;
  std::int32_t result;
  std::string_view document;
  std::string_view objects;
  std::string_view expected;
};

constexpr std::string_view kThree =
    "{\\v\\mor OBJ 1 }\r\none\r\n{\\v\\mor OBJ 2 }\r\n{\\pict\r\n\r\n}\r\n{\\v\\mor OBJ 3 }\r\nthree\r\n{\\v\\mor OBJ "
    "4 }\r\n";

const Case kCases[] = {
    {"markers are replaced", 0, R"({\rtf1 a{\v\mor OBJ 1 }b{\v\mor OBJ 2 }c{\v\mor OBJ 3 }})", kThree,
     "{\\rtf1 aoneb{\\pict\r\n\r\n}cthree}"},
    {"markers that changed their order find their objects", 0,
     R"({\rtf1 {\v\mor OBJ 3 }{\v\mor OBJ 1 }{\v\mor OBJ 2 })", kThree, "{\\rtf1 threeone{\\pict\r\n\r\n}"},
    {"a marker that was copied gives its object again", 0, R"({\rtf1 {\v\mor OBJ 1 }{\v\mor OBJ 1 })", kThree,
     R"({\rtf1 oneone)"},
    {"a marker that was deleted takes its object with it", 0, R"({\rtf1 {\v\mor OBJ 3 })", kThree, R"({\rtf1 three)"},
    {"a marker without an object stays and the others are replaced", 1,
     R"({\rtf1 {\v\mor OBJ 9 }{\v\mor OBJ 2 }{\v\mor OBJ 12345678901234567890 })", kThree,
     "{\\rtf1 {\\v\\mor OBJ 9 }{\\pict\r\n\r\n}{\\v\\mor OBJ 12345678901234567890 }"},
    {"a number beyond 32 bits is not one within them", 1, R"({\rtf1 {\v\mor OBJ 4294967297 })", kThree,
     R"({\rtf1 {\v\mor OBJ 4294967297 })"},
    {"the closing marker line is no object", 1, R"({\rtf1 {\v\mor OBJ 4 })", kThree, R"({\rtf1 {\v\mor OBJ 4 })"},
    {"a marker that was changed stays", 1,
     R"({\rtf1 {\v\mor OBJ 1}{\v\mor OBJ  1 }{\v\mor OBJ 01 }{\v\mor OBJ x}{\v\mor OBJ )", kThree,
     R"({\rtf1 {\v\mor OBJ 1}{\v\mor OBJ  1 }{\v\mor OBJ 01 }{\v\mor OBJ x}{\v\mor OBJ )"},
    {"a marker behind a broken one is found", 1, R"({\rtf1 {\v\mor OBJ {\v\mor OBJ 1 })", kThree,
     R"({\rtf1 {\v\mor OBJ one)"},
    {"a document without markers is copied", 0, R"({\rtf1 text{\v hidden}})", kThree, R"({\rtf1 text{\v hidden}})"},
    {"a byte order mark and white space may stand before the document", 0,
     "\xEF\xBB\xBF \r\n{\\rtf1 {\\v\\mor OBJ 1 }}", kThree, "\xEF\xBB\xBF \r\n{\\rtf1 one}"},
    {"the first bytes of an object may be a line end", 0, R"({\rtf1 {\v\mor OBJ 1 })",
     "{\\v\\mor OBJ 1 }\r\n\r\nx\r\n{\\v\\mor OBJ 2 }\r\n", "{\\rtf1 \r\nx"},
    {"an empty object", 0, R"({\rtf1 {\v\mor OBJ 1 }{\v\mor OBJ 2 }.)",
     "{\\v\\mor OBJ 1 }\r\n{\\v\\mor OBJ 2 }\r\n\r\n{\\v\\mor OBJ 3 }\r\n", R"({\rtf1 .)"},
    {"one number twice: the next from the current place, then from the start again", 0,
     R"({\rtf1 {\v\mor OBJ 1 }{\v\mor OBJ 1 }{\v\mor OBJ 1 }{\v\mor OBJ 2 }{\v\mor OBJ 1 })",
     "{\\v\\mor OBJ 1 }\r\na\r\n{\\v\\mor OBJ 2 }\r\nb\r\n{\\v\\mor OBJ 1 }\r\nc\r\n{\\v\\mor OBJ 3 }\r\n",
     R"({\rtf1 acabc)"},
    {"a side file that lost its end keeps what is whole", 1, R"({\rtf1 {\v\mor OBJ 1 }{\v\mor OBJ 2 })",
     "{\\v\\mor OBJ 1 }\r\na\r\n{\\v\\mor OBJ 2 }\r\nb", R"({\rtf1 a{\v\mor OBJ 2 })"},
    {"text before the first marker line is no object", 0, R"({\rtf1 {\v\mor OBJ 1 })",
     "note {\\v\\mor OBJ 1 }\r\nno\r\n{\\v\\mor OBJ 1 }\r\nyes\r\n{\\v\\mor OBJ 2 }\r\n", R"({\rtf1 yes)"},
    {"inserted text is not searched for markers", 0, R"({\rtf1 {\v\mor OBJ 1 })",
     "{\\v\\mor OBJ 1 }\r\n<{\\v\\mor OBJ 1 }>\r\n{\\v\\mor OBJ 2 }\r\n", R"({\rtf1 <{\v\mor OBJ 1 }>)"},
    {"an empty side file has no objects", 1, R"({\rtf1 {\v\mor OBJ 1 })", "", R"({\rtf1 {\v\mor OBJ 1 })"},
    {"zero bytes are kept", 0, "{\\rtf1 \0{\\v\\mor OBJ 1 }\0"sv,
     "{\\v\\mor OBJ 1 }\r\n\0\0\r\n{\\v\\mor OBJ 2 }\r\n"sv, "{\\rtf1 \0\0\0\0"sv},
};

class RtfInsertionTest : public RtfFixture {};

TEST_F(RtfInsertionTest, CasesCutEverywhere) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    const auto got =
        same_for_every_block_size(std::max(c.document.size(), c.objects.size()), [&](std::size_t block_size) {
          BlockSizeScope scope(block_size);
          return insert(c.document, c.objects);
        });
    EXPECT_EQ(got, (RtfOutcome{c.result, std::string(c.expected), std::string(c.objects), 2}));
    EXPECT_EQ(got.rtf, model_insert(c.document, c.objects).rtf);
    EXPECT_EQ(got.result, model_insert(c.document, c.objects).result);
  }
}

TEST_F(RtfInsertionTest, ADocumentThatIsNotRtfFailsWithAMessageAndStays) {
  for (const std::string_view document : {"", "text", R"(text {\v\mor OBJ 1 })"}) {
    SCOPED_TRACE(document);
    files.put(kDocument, document);
    files.put(kObjects, kThree);
    clsRTFUtil util;
    util.RTFFile(kDocument);
    EXPECT_EQ(util.InsertObjects(), 1);
    ASSERT_EQ(util.ErrorList().size(), 1u);
    EXPECT_EQ(util.ErrorList()[0].text, u"This is not an RTF document: it does not begin with {\\rtf");
    EXPECT_EQ(outcome(1), (RtfOutcome{1, std::string(document), std::string(kThree), 2}));
  }
}

TEST_F(RtfInsertionTest, MarkersOfAnyDocumentAreSeen) {
  const struct {
    std::string_view document;
    bool expected;
  } cases[] = {{"", false},
               {"made", false},
               {R"({\rtf1 {\pict 0}})", false},
               {R"({\rtf1 {\v\mor OBJ 1 }})", true},
               {R"({\rtf1 {\v\mor OBJ x)", true},
               {R"(text {\v\mor OBJ 1 })", true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.document);
    files.put(kDocument, c.document);
    EXPECT_EQ(same_for_every_block_size(c.document.size(),
                                        [&](std::size_t block_size) {
                                          BlockSizeScope scope(block_size);
                                          return holds_object_markers(kDocument);
                                        }),
              c.expected);
  }
}

TEST_F(RtfInsertionTest, WithoutASideFileEveryMarkerStays) {
  const std::string_view document = R"({\rtf1 a{\v\mor OBJ 1 }b{\v\mor OBJ 2 }})";
  files.put(kDocument, document);
  clsRTFUtil util;
  util.RTFFile(kDocument);
  EXPECT_EQ(util.InsertObjects(), 1);
  EXPECT_EQ(util.object_count(), 0u);
  ASSERT_EQ(util.ErrorList().size(), 1u);
  EXPECT_TRUE(util.ErrorList()[0].text.starts_with(u"The object file cannot be opened: "));
  EXPECT_EQ(files.get(kDocument), document);
  EXPECT_EQ(files.all_files().size(), 1u);
}

TEST_F(RtfInsertionTest, ADocumentWithoutMarkersNeedsNoSideFile) {
  files.put(kDocument, "{\\rtf1 text}");
  EXPECT_EQ(insert().result, 0);
}

TEST_F(RtfInsertionTest, ObjectsWithoutAMarkerAreReported) {
  const struct {
    const char* name;
    std::string_view document;
    std::string_view objects;
    std::u16string_view expected;  // "" for no message
  } cases[] = {
      {"every object has its place", R"({\rtf1 {\v\mor OBJ 3 }{\v\mor OBJ 1 }{\v\mor OBJ 2 })", kThree, u""},
      {"a marker was deleted", R"({\rtf1 {\v\mor OBJ 3 }{\v\mor OBJ 1 })", kThree,
       u"1 of the 3 objects of the object file have no marker in the document and are left out"},
      {"all markers are gone", R"({\rtf1 text})", kThree,
       u"3 of the 3 objects of the object file have no marker in the document and are left out"},
      {"a copied marker stands for one object", R"({\rtf1 {\v\mor OBJ 1 }{\v\mor OBJ 1 }{\v\mor OBJ 1 })", kThree,
       u"2 of the 3 objects of the object file have no marker in the document and are left out"},
      {"an object file without objects", R"({\rtf1 text})", "{\\v\\mor OBJ 1 }\r\n", u""},
      {"a file that is no object file", R"({\rtf1 text})", "a compiler's", u""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    files.put(kDocument, c.document);
    files.put(kObjects, c.objects);
    clsRTFUtil util;
    util.RTFFile(kDocument);
    EXPECT_EQ(util.InsertObjects(), 0);
    ASSERT_EQ(util.ErrorList().size(), c.expected.empty() ? 0u : 1u);
    if (!c.expected.empty()) {
      EXPECT_EQ(util.ErrorList()[0].text, c.expected);
    }
  }
}

TEST_F(RtfInsertionTest, OneMessageSaysHowManyObjectsAreMissing) {
  files.put(kDocument, R"({\rtf1 {\v\mor OBJ 7 }{\v\mor OBJ 1 }{\v\mor OBJ 8 })");
  files.put(kObjects, kThree);
  clsRTFUtil util;
  util.RTFFile(kDocument);
  EXPECT_EQ(util.InsertObjects(), 1);
  EXPECT_EQ(util.object_count(), 1u);
  ASSERT_EQ(util.ErrorList().size(), 1u);
  EXPECT_EQ(util.ErrorList()[0].text,
            u"The object file lacks 2 of the document's objects, the first at the marker {\\v\\mor OBJ 7 }: name the "
            u"object file that was made from this document");
}

TEST_F(RtfInsertionTest, AMarkerSplitByABlockBoundaryIsStillFound) {
  for (std::size_t start = 4096 - 40; start <= 4096 + 2; ++start) {
    std::string document = "{\\rtf1 ";
    document.resize(start, 'x');
    const std::string tail(9000, 'y');
    EXPECT_EQ(insert(document + "{\\v\\mor OBJ 3 }" + tail, kThree).rtf, document + "three" + tail);
  }
}

TEST_F(RtfInsertionTest, LargeObjectsAreCopiedInBlocks) {
  std::string objects;
  std::string expected = "{\\rtf1 ";
  std::string document = "{\\rtf1 ";
  for (int i = 1; i <= 5; ++i) {
    const std::string object =
        "{\\pict " + std::string(300'000u * static_cast<unsigned>(i), static_cast<char>('0' + i)) + "}";
    objects += "{\\v\\mor OBJ " + std::to_string(i) + " }\r\n" + object + "\r\n";
    document += "{\\v\\mor OBJ " + std::to_string(i) + " }";
    expected += object;
  }
  objects += "{\\v\\mor OBJ 6 }\r\n";
  EXPECT_EQ(insert(document, objects), (RtfOutcome{0, expected, objects, 2}));
  EXPECT_GT(desktop.process_messages_calls, 10u);
}

}  // namespace
}  // namespace kavo::test
