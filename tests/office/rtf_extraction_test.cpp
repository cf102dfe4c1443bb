#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "office/clsRTFUtil.h"
#include "office/rtf_fixture.h"
#include "office/rtf_model.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

struct Case {
  const char* name;
  std::string_view document;
  std::string_view rtf;
  std::string_view objects;
};

const Case kCases[] = {
    {"a document without pictures or objects is copied unchanged", R"({\rtf1 Hello {\b world}.\par})",
     R"({\rtf1 Hello {\b world}.\par})", "{\\v\\mor OBJ 1 }\r\n"},
    {"a picture leaves its marker", R"({\rtf1 a{\pict\wmetafile8 0123}b})", R"({\rtf1 a{\v\mor OBJ 1 }b})",
     "{\\v\\mor OBJ 1 }\r\n{\\pict\\wmetafile8 0123}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"pictures and objects are numbered in document order", R"({\rtf1{\object{\*\objdata 01}}{\pict 2}{\object 3}})",
     R"({\rtf1{\v\mor OBJ 1 }{\v\mor OBJ 2 }{\v\mor OBJ 3 }})",
     "{\\v\\mor OBJ 1 }\r\n{\\object{\\*\\objdata 01}}\r\n{\\v\\mor OBJ 2 }\r\n{\\pict 2}\r\n"
     "{\\v\\mor OBJ 3 }\r\n{\\object 3}\r\n{\\v\\mor OBJ 4 }\r\n"},
    {"a picture nested inside an object group is part of that object",
     R"({\rtf1 {\object\objemb{\result{\pict 00}}{\pict 11}} text})", R"({\rtf1 {\v\mor OBJ 1 } text})",
     "{\\v\\mor OBJ 1 }\r\n{\\object\\objemb{\\result{\\pict 00}}{\\pict 11}}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"start texts are compared with case", R"({\rtf1 {\PICT a}{\Object b}{ \pict c}{\*\pict d}})",
     R"({\rtf1 {\PICT a}{\Object b}{ \pict c}{\*\pict d}})", "{\\v\\mor OBJ 1 }\r\n"},
    {"a start text that is cut short is none", R"({\rtf1 {\pic t}{\objec t}{\)", R"({\rtf1 {\pic t}{\objec t}{\)",
     "{\\v\\mor OBJ 1 }\r\n"},
    {"escaped braces count as they stand", R"({\rtf1 {\pict \{ a}} b})", R"({\rtf1 {\v\mor OBJ 1 } b})",
     "{\\v\\mor OBJ 1 }\r\n{\\pict \\{ a}}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"an escaped closing brace ends the group", R"({\rtf1 {\pict \} a} b})", R"({\rtf1 {\v\mor OBJ 1 } a} b})",
     "{\\v\\mor OBJ 1 }\r\n{\\pict \\}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"braces in raw data are data", R"({\rtf1 {\pict\bin5 }}}{{} b})", R"({\rtf1 {\v\mor OBJ 1 } b})",
     "{\\v\\mor OBJ 1 }\r\n{\\pict\\bin5 }}}{{}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"raw data begins behind the number when no blank ends it", R"({\rtf1 {\pict\bin2}}} b})",
     R"({\rtf1 {\v\mor OBJ 1 } b})", "{\\v\\mor OBJ 1 }\r\n{\\pict\\bin2}}}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"no raw data without a number, with a negative one or of length 0",
     R"({\rtf1 {\pict\bin }{\pict\bin-3 }{\pict\bin0 }{\pict\bin} b})",
     R"({\rtf1 {\v\mor OBJ 1 }{\v\mor OBJ 2 }{\v\mor OBJ 3 }{\v\mor OBJ 4 } b})",
     "{\\v\\mor OBJ 1 }\r\n{\\pict\\bin }\r\n{\\v\\mor OBJ 2 }\r\n{\\pict\\bin-3 }\r\n{\\v\\mor OBJ 3 }\r\n"
     "{\\pict\\bin0 }\r\n{\\v\\mor OBJ 4 }\r\n{\\pict\\bin}\r\n{\\v\\mor OBJ 5 }\r\n"},
    {"an escaped backslash begins no control word", R"({\rtf1 {\pict\\bin3 } b}c)", R"({\rtf1 {\v\mor OBJ 1 } b}c)",
     "{\\v\\mor OBJ 1 }\r\n{\\pict\\\\bin3 }\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"a control word that only begins like the data word is none", R"({\rtf1 {\pict\binary3 } b}c)",
     R"({\rtf1 {\v\mor OBJ 1 } b}c)", "{\\v\\mor OBJ 1 }\r\n{\\pict\\binary3 }\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"a number longer than any number of RTF announces nothing", R"({\rtf1 {\pict\bin00000000001 } b}c)",
     R"({\rtf1 {\v\mor OBJ 1 } b}c)", "{\\v\\mor OBJ 1 }\r\n{\\pict\\bin00000000001 }\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"raw data may hold anything", "{\\rtf1 {\\object\\bin16 \0{\\pict\\bin9\\\\\r\n}} b}"sv,
     "{\\rtf1 {\\v\\mor OBJ 1 }} b}",
     "{\\v\\mor OBJ 1 }\r\n{\\object\\bin16 \0{\\pict\\bin9\\\\\r\n}\r\n{\\v\\mor OBJ 2 }\r\n"sv},
    {"a document that ends inside a group closes the object with a line end", R"({\rtf1 a{\pict 01{)",
     R"({\rtf1 a{\v\mor OBJ 1 })", "{\\v\\mor OBJ 1 }\r\n{\\pict 01{\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"a document that ends inside raw data does too", R"({\rtf1 a{\pict\bin99 }})", R"({\rtf1 a{\v\mor OBJ 1 })",
     "{\\v\\mor OBJ 1 }\r\n{\\pict\\bin99 }}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"a byte order mark may stand before the document", "\xEF\xBB\xBF{\\rtf1 {\\pict 0}}",
     "\xEF\xBB\xBF{\\rtf1 {\\v\\mor OBJ 1 }}", "{\\v\\mor OBJ 1 }\r\n{\\pict 0}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"white space may stand before the document", " \t\r\n\v\f{\\rtf1 {\\pict 0}}",
     " \t\r\n\v\f{\\rtf1 {\\v\\mor OBJ 1 }}", "{\\v\\mor OBJ 1 }\r\n{\\pict 0}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"both may stand before the document", "\xEF\xBB\xBF\r\n{\\rtf1 {\\pict 0}}",
     "\xEF\xBB\xBF\r\n{\\rtf1 {\\v\\mor OBJ 1 }}", "{\\v\\mor OBJ 1 }\r\n{\\pict 0}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"a second document in the first is kept", R"({\rtf1 a}{\rtf1 b{\pict 0}})", R"({\rtf1 a}{\rtf1 b{\v\mor OBJ 1 }})",
     "{\\v\\mor OBJ 1 }\r\n{\\pict 0}\r\n{\\v\\mor OBJ 2 }\r\n"},
    {"zero bytes and text behind the last brace are kept", "{\\rtf1 a\0{\\pict \0}\0}\0tail\r\n"sv,
     "{\\rtf1 a\0{\\v\\mor OBJ 1 }\0}\0tail\r\n"sv, "{\\v\\mor OBJ 1 }\r\n{\\pict \0}\r\n{\\v\\mor OBJ 2 }\r\n"sv},
    {"the bytes of no code page are kept", "{\\rtf1 \x81\xFF{\\pict \x80\xFE}\xC3}"sv,
     "{\\rtf1 \x81\xFF{\\v\\mor OBJ 1 }\xC3}"sv, "{\\v\\mor OBJ 1 }\r\n{\\pict \x80\xFE}\r\n{\\v\\mor OBJ 2 }\r\n"sv},
};

class RtfExtractionTest : public RtfFixture {};

TEST_F(RtfExtractionTest, CasesCutEverywhere) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    const auto got = same_for_every_block_size(c.document.size(), [&](std::size_t block_size) {
      BlockSizeScope scope(block_size);
      return extract(c.document);
    });
    EXPECT_EQ(got, (RtfOutcome{0, std::string(c.rtf), std::string(c.objects), 2}));
    const auto model = model_extract(c.document);
    ASSERT_TRUE(model);
    EXPECT_EQ(got.rtf, model->rtf);
    EXPECT_EQ(got.objects, model->objects);
    EXPECT_EQ(insert().rtf, c.document);
  }
}

TEST_F(RtfExtractionTest, EveryLineEndComesThrough) {
  const std::string_view document =
      "{\\rtf1 a\n{\\object\n{\\result\n{\\pict\n00\n}\n}\n}\nb\n{\\pict\\bin3 \n}\n}\n}\n";
  for (const LineEnd& line_end : kLineEnds) {
    SCOPED_TRACE(line_end.name);
    std::string text = with_line_end(document, line_end);
    if (line_end.bytes.size() == 2) text.replace(text.find("\\bin3"), 5, "\\bin5");
    const auto got = same_for_every_block_size(text.size(), [&](std::size_t block_size) {
      BlockSizeScope scope(block_size);
      return extract(text);
    });
    EXPECT_EQ(got.rtf, with_line_end("{\\rtf1 a\n{\\v\\mor OBJ 1 }\nb\n{\\v\\mor OBJ 2 }\n}\n", line_end));
    EXPECT_EQ(insert().rtf, text);
  }
}

TEST_F(RtfExtractionTest, AStartTextSplitByAChunkBoundaryIsStillFound) {
  // The smallest block is 4096 bytes: the start text lies at every place around its end.
  for (const std::string_view group : {"{\\pict 0123}", "{\\object 0123}"}) {
    for (std::size_t start = 4096 - 40; start <= 4096 + 2; ++start) {
      std::string document = "{\\rtf1 ";
      document.resize(start, 'x');
      document += group;
      document += std::string(9000, 'y') + "}";
      const auto got = extract(document);
      ASSERT_EQ(got.result, 0);
      EXPECT_EQ(got.rtf.find("0123"), std::string::npos) << "start at " << start;
      EXPECT_EQ(insert().rtf, document);
    }
  }
}

TEST_F(RtfExtractionTest, WithoutAFileNothingIsDone) {
  clsRTFUtil util;
  EXPECT_EQ(util.ExtractObjects(), 1);
  EXPECT_EQ(util.InsertObjects(), 1);
  EXPECT_EQ(util.ErrorList().size(), 1u);
  EXPECT_EQ(util.ObjFile(), u"");
  EXPECT_TRUE(files.all_files().empty());
}

TEST_F(RtfExtractionTest, ObjectFileNameIsMadeFromTheDocuments) {
  files.put(u"C:\\WORK\\a.b\\c.d.rtf", "{\\rtf1 }");
  clsRTFUtil util;
  util.RTFFile(u"C:\\WORK\\a.b\\c.d.rtf");
  EXPECT_EQ(util.ExtractObjects(), 0);
  EXPECT_EQ(util.ObjFile(), u"C:\\WORK\\a.b\\c.d.obj");
  EXPECT_EQ(files.get(util.ObjFile()), "{\\v\\mor OBJ 1 }\r\n");
}

TEST_F(RtfExtractionTest, ObjectFileNameCanBeChosen) {
  files.put(kDocument, "{\\rtf1 {\\pict 0}}");
  clsRTFUtil util;
  util.RTFFile(kDocument);
  util.ObjFile(u"C:\\TEMP\\objects.bin");
  EXPECT_EQ(util.ExtractObjects(), 0);
  EXPECT_EQ(util.object_count(), 1u);
  EXPECT_FALSE(files.has(kObjects));
  EXPECT_EQ(files.get(u"C:\\TEMP\\objects.bin"), "{\\v\\mor OBJ 1 }\r\n{\\pict 0}\r\n{\\v\\mor OBJ 2 }\r\n");
}

TEST_F(RtfExtractionTest, TheObjectsOfAMifDocumentAreNotReplaced) {
  const std::string objects = "<KAVOObj 1>\r\n=GIF\r\n=EndInset\r\n<KAVOObj End>\r\n";
  files.put(kObjects, objects);
  files.put(kDocument, "{\\rtf1 {\\pict 0}}");
  clsRTFUtil util;
  util.RTFFile(kDocument);
  EXPECT_EQ(util.ExtractObjects(), 1);
  EXPECT_EQ(files.get(kObjects), objects);
  EXPECT_EQ(files.get(kDocument), "{\\rtf1 {\\pict 0}}");
}

TEST_F(RtfExtractionTest, ADocumentThatIsNotRtfFailsWithAMessageAndNothingIsMade) {
  const std::string_view documents[] = {"",
                                        "plain {\\pict 00} text",
                                        "{\\rt",
                                        "{\\RTF1 {\\pict 0}}",
                                        "\xEF\xBB\xBF",
                                        "\xEF\xBB{\\rtf1 {\\pict 0}}",
                                        " \xEF\xBB\xBF{\\rtf1 {\\pict 0}}",
                                        "\r\n ",
                                        "x{\\rtf1 {\\pict 0}}"};
  for (const std::string_view document : documents) {
    SCOPED_TRACE(document);
    EXPECT_FALSE(model_extract(document));
    EXPECT_EQ(same_for_every_block_size(document.size(),
                                        [&](std::size_t block_size) {
                                          BlockSizeScope scope(block_size);
                                          return extract(document);
                                        }),
              (RtfOutcome{1, std::string(document), std::string(kNoObjects), 2}));
  }
  files.remove_file(kObjects);
  clsRTFUtil util;
  util.RTFFile(kDocument);
  EXPECT_EQ(util.ExtractObjects(), 1);
  ASSERT_EQ(util.ErrorList().size(), 1u);
  EXPECT_EQ(util.ErrorList()[0].text, u"This is not an RTF document: it does not begin with {\\rtf");
  EXPECT_EQ(files.all_files().size(), 1u);
}

TEST_F(RtfExtractionTest, AnyAmountOfWhiteSpaceMayStandBeforeTheDocument) {
  const std::string blanks(1'000'000, ' ');
  EXPECT_EQ(extract(blanks + "{\\rtf1 {\\pict 0}}").rtf, blanks + "{\\rtf1 {\\v\\mor OBJ 1 }}");
  EXPECT_EQ(extract(blanks).result, 1);
}

TEST_F(RtfExtractionTest, AnObjectFileThatHoldsAnythingElseIsReplacedOnlyOnRequest) {
  const std::string_view document = R"({\rtf1 {\pict 0}{\object 1}})";
  const std::string made =
      "{\\v\\mor OBJ 1 }\r\n{\\pict 0}\r\n{\\v\\mor OBJ 2 }\r\n{\\object 1}\r\n{\\v\\mor OBJ 3 }\r\n";
  const struct {
    const char* name;
    std::string old;
    bool is_replaced;
  } cases[] = {
      {"that of the same objects", made, true},
      {"one without objects", std::string(kNoObjects), true},
      {"one with an object more", made + "{\\pict 2}\r\n{\\v\\mor OBJ 4 }\r\n", false},
      {"one with another object", "{\\v\\mor OBJ 1 }\r\n{\\pict 9}\r\n{\\v\\mor OBJ 2 }\r\n", false},
      {"one with the same objects under other numbers",
       "{\\v\\mor OBJ 1 }\r\n{\\object 1}\r\n{\\v\\mor OBJ 2 }\r\n{\\pict 0}\r\n{\\v\\mor OBJ 3 }\r\n", false},
      {"a compiler's", std::string("\x64\x86\x02\0\0\0\0\0", 8), false},
      {"a note", "keep me", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    for (const std::size_t block_size : {0u, 1u, 3u, 40u}) {
      BlockSizeScope scope(block_size);
      files.put(kDocument, document);
      files.put(kObjects, c.old);
      clsRTFUtil util;
      util.RTFFile(kDocument);
      if (!c.is_replaced) {
        EXPECT_EQ(util.ExtractObjects(), 1);
        ASSERT_EQ(util.ErrorList().size(), 1u);
        EXPECT_TRUE(util.ErrorList()[0].text.starts_with(u"The object file " + to_utf16(path_to_host(kObjects)) +
                                                         u" is not replaced. It contains something other"));
        EXPECT_EQ(outcome(1), (RtfOutcome{1, std::string(document), c.old, 2}));
        util.overwrite_object_file();
      }
      EXPECT_EQ(util.ExtractObjects(), 0);
      EXPECT_EQ(outcome(0), (RtfOutcome{0, R"({\rtf1 {\v\mor OBJ 1 }{\v\mor OBJ 2 }})", made, 2}));
    }
  }
}

TEST_F(RtfExtractionTest, TheObjectsOfTheSameDocumentMoveAgain) {
  const std::string_view document = R"({\rtf1 {\pict 0}{\object 1}})";
  ASSERT_EQ(extract(document).result, 0);
  ASSERT_EQ(insert().rtf, document);
  clsRTFUtil util;
  util.RTFFile(kDocument);
  EXPECT_EQ(util.ExtractObjects(), 0) << "nothing has to be allowed";
}

TEST_F(RtfExtractionTest, LeftOverTemporaryFileIsReplaced) {
  files.put(u"C:\\WORK\\letter.rtf.kavo.tmp", "left over");
  files.set_read_only(u"C:\\WORK\\letter.rtf.kavo.tmp", true);
  EXPECT_EQ(
      extract("{\\rtf1 {\\pict 0}}"),
      (RtfOutcome{0, "{\\rtf1 {\\v\\mor OBJ 1 }}", "{\\v\\mor OBJ 1 }\r\n{\\pict 0}\r\n{\\v\\mor OBJ 2 }\r\n", 2}));
}

TEST_F(RtfExtractionTest, ObjectFileThatIsTheDocumentIsRefused) {
  files.put(u"C:\\WORK\\odd.obj", "{\\rtf1 {\\pict 0}}");
  clsRTFUtil util;
  util.RTFFile(u"C:\\WORK\\odd.OBJ");
  EXPECT_EQ(util.ExtractObjects(), 1);
  EXPECT_EQ(util.InsertObjects(), 1);
  EXPECT_EQ(files.get(u"C:\\WORK\\odd.obj"), "{\\rtf1 {\\pict 0}}");
  EXPECT_EQ(files.all_files().size(), 1u);
}

TEST_F(RtfExtractionTest, ObjectFileThatIsAnotherNameOfTheDocumentIsRefused) {
  files.put(kDocument, "{\\rtf1 {\\pict 0}}");
  files.link_file(kDocument, kObjects);
  clsRTFUtil util;
  util.RTFFile(kDocument);
  util.overwrite_object_file();
  EXPECT_EQ(util.ExtractObjects(), 1);
  EXPECT_EQ(util.InsertObjects(), 1);
  EXPECT_EQ(outcome(1), (RtfOutcome{1, "{\\rtf1 {\\pict 0}}", "{\\rtf1 {\\pict 0}}", 2}));
}

TEST_F(RtfExtractionTest, MissingDocumentIsReported) {
  clsRTFUtil util;
  util.RTFFile(kDocument);
  EXPECT_EQ(util.ExtractObjects(), 1);
  ASSERT_EQ(util.ErrorList().size(), 1u);
  EXPECT_NE(util.ErrorList()[0].text, u"");
  EXPECT_TRUE(files.all_files().empty());
}

TEST_F(RtfExtractionTest, AnObjectFileThatCannotBeMadeIsReported) {
  files.put(kDocument, "{\\rtf1 {\\pict 0}}");
  clsRTFUtil util;
  util.RTFFile(kDocument);
  util.ObjFile(u"C:\\missing\\letter.obj");
  EXPECT_EQ(util.ExtractObjects(), 1);
  ASSERT_EQ(util.ErrorList().size(), 1u);
  EXPECT_TRUE(util.ErrorList()[0].text.starts_with(u"The object file cannot be made: "));
  EXPECT_EQ(files.get(kDocument), "{\\rtf1 {\\pict 0}}");
  EXPECT_EQ(files.all_files().size(), 1u);
}

TEST_F(RtfExtractionTest, DocumentThatHoldsAMarkerIsLeftAlone) {
  const std::string_view documents[] = {
      // Extracted already: its objects live in the side file that a second extraction would replace.
      R"({\rtf1 a{\v\mor OBJ 1 }b})",
      R"({\rtf1 {\pict 0}{\v\mor OBJ 1 }})",
      R"({\rtf1 {\pict 0}{\v\mor OBJ )",
      // Inside an object the marker would be taken for the object's end.
      "{\\rtf1 {\\object a\r\n{\\v\\mor OBJ 2 }\r\nb}}",
      "{\\rtf1 {\\pict\\bin40 0123456789012345\r\n{\\v\\mor OBJ 1 }\r\n34567}}",
      "{\\rtf1 {\\pict 0\r\n{\\v\\mor OBJ 2 }",
  };
  for (const std::string_view document : documents) {
    SCOPED_TRACE(document);
    EXPECT_FALSE(model_extract(document));
    const auto got = same_for_every_block_size(document.size(), [&](std::size_t block_size) {
      BlockSizeScope scope(block_size);
      return extract(document);
    });
    EXPECT_EQ(got, (RtfOutcome{1, std::string(document), std::string(kNoObjects), 2}));
  }
}

TEST_F(RtfExtractionTest, TextThatIsLikeAMarkerComesBack) {
  const std::string_view documents[] = {
      R"({\rtf1 {\v\mor obj 1 }{\v \mor OBJ 1 }\{\v\mor OB{\pict 0}J 1 })",
      "{\\rtf1 {\\object a\n{\\v\\mor OBJ 2 }\n{\\v\\mor OBJ 2 } \r\n x{\\v\\mor OBJ 2 }\r\n\r\n{\\v\\mor OBJ 02 "
      "}\r\n}}",
      "{\\rtf1 {\\v\\mor OBJ{\\pict 0} 1 }{\\pict\\bin16 {\\v\\mor OBJ 1 }\r}}",
  };
  for (const std::string_view document : documents) {
    SCOPED_TRACE(document);
    const auto got = extract(document);
    EXPECT_EQ(got.result, 0);
    EXPECT_EQ(got.objects, model_extract(document)->objects);
    EXPECT_EQ(insert(), (RtfOutcome{0, std::string(document), got.objects, 2}));
  }
}

TEST_F(RtfExtractionTest, ReadOnlyDocumentIsRewritten) {
  files.put(kDocument, "{\\rtf1 {\\pict 0}}");
  files.set_read_only(kDocument, true);
  clsRTFUtil util;
  util.RTFFile(kDocument);
  EXPECT_EQ(util.ExtractObjects(), 0);
  EXPECT_EQ(files.get(kDocument), "{\\rtf1 {\\v\\mor OBJ 1 }}");
}

TEST_F(RtfExtractionTest, ProgressGrowsToTheEnd) {
  files.put(kDocument, "{\\rtf1 " + std::string(1'000'000, 'x') + "}");
  std::vector<std::int16_t> seen;
  clsRTFUtil util;
  util.RTFFile(kDocument);
  util.Progress([&](std::int16_t percent) { seen.push_back(percent); });
  EXPECT_EQ(util.ExtractObjects(), 0);
  ASSERT_GT(seen.size(), 50u);
  EXPECT_TRUE(std::ranges::is_sorted(seen));
  EXPECT_EQ(seen.back(), 100);
  EXPECT_GE(desktop.process_messages_calls, seen.size());
}

TEST_F(RtfExtractionTest, InterruptionLeavesBothFilesAsTheyWere) {
  std::string document = "{\\rtf1 ";
  for (int i = 0; i < 2000; ++i) document += "{\\pict 00112233445566778899}text";
  files.put(kDocument, document);
  files.put(kObjects, kNoObjects);
  // At each of the first and last moments at which messages are processed.
  std::size_t moments = 0;
  for (std::size_t moment = 1;; ++moment) {
    desktop.process_messages_calls = 0;
    desktop.on_process_messages = [&] {
      if (desktop.process_messages_calls == moment) throw interruption();
    };
    clsRTFUtil util;
    util.RTFFile(kDocument);
    try {
      EXPECT_EQ(util.ExtractObjects(), 0);
      break;
    } catch (const interruption&) {
      ++moments;
      ASSERT_EQ(outcome(0), (RtfOutcome{0, document, std::string(kNoObjects), 2}));
    }
  }
  EXPECT_GT(moments, 10u);
}

}  // namespace
}  // namespace kavo::test
