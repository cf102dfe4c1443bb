#include <gtest/gtest.h>

#include "mif/mif_fixture.h"
#include "mif/object_file.h"
#include "platform/unicode.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

constexpr std::string_view kNoObjects = "<KAVOObj End>\r\n";

class ObjectsTest : public MifTest {
 protected:
  void SetUp() override { utilities.MIFFile(in_folder(u"m.mif")); }

  std::string removed(std::string_view document) {
    put(u"m.mif", document);
    put(u"m.obj", "");  // of another document
    EXPECT_EQ(utilities.RemoveObjects(), 0);
    return get(u"m.mif");
  }
  std::string inserted(std::string_view document, std::string_view objects) {
    put(u"m.mif", document);
    put(u"m.obj", objects);
    EXPECT_EQ(utilities.InsertObjects(), 0);
    return get(u"m.mif");
  }
};

TEST_F(ObjectsTest, AFileWithoutObjectsComesOutUnchanged) {
  for (const std::string_view document : {"a\nb\r\nc", "", "\r", " =not at the beginning\n"}) {
    EXPECT_EQ(removed(document), document);
    EXPECT_EQ(get(u"m.obj"), kNoObjects);
    EXPECT_EQ(utilities.InsertObjects(), 0);
    EXPECT_EQ(get(u"m.mif"), document);
  }
}

TEST_F(ObjectsTest, ObjectsLeaveNumberedPlaceholders) {
  const std::string document =
      "<ImportObject\r\n=FrameVector\r\n&%v\r\n&\\x\r\n=GIF\r\n&x\r\n=EndInset\r\n>\r\n=OLE2\r\n=EndInset\r\nend\r\n";
  EXPECT_EQ(removed(document), "<ImportObject\r\n<KAVOObj 1>\r\n>\r\n<KAVOObj 2>\r\nend\r\n");
  EXPECT_EQ(get(u"m.obj"),
            "<KAVOObj 1>\r\n=FrameVector\r\n&%v\r\n&\\x\r\n=GIF\r\n&x\r\n=EndInset\r\n"
            "<KAVOObj 2>\r\n=OLE2\r\n=EndInset\r\n<KAVOObj End>\r\n");
  EXPECT_EQ(utilities.counts().objects_removed, 2);
  EXPECT_EQ(utilities.InsertObjects(), 0);
  EXPECT_EQ(get(u"m.mif"), document);
  EXPECT_EQ(utilities.counts().objects_inserted, 2);
}

TEST_F(ObjectsTest, EveryLineComesBackWhateverTheLineEndsAndBlocks) {
  const std::string text = "one\n=FrameVector\n&`['>#\n\n=EndInset\n\ntwo\n=GIF\n=EndInset with more\nthree\n";
  for (const LineEnd& line_end : kLineEnds) {
    for (const bool terminated : {true, false}) {
      std::string document = with_line_end(text, line_end);
      if (!terminated) document.resize(document.size() - line_end.bytes.size());
      std::string expected = with_line_end(text, {"CR LF", "\r\n"});
      if (!terminated) expected.resize(expected.size() - 2);
      const std::string back = same_for_every_block_size(document.size(), [&](std::size_t size) {
        BlockSizeScope blocks(size);
        removed(document);
        EXPECT_EQ(utilities.InsertObjects(), 0);
        return get(u"m.mif");
      });
      EXPECT_EQ(back, expected) << line_end.name;
    }
  }
}

TEST_F(ObjectsTest, AnObjectThatEndsTheFileWithoutALineEnd) {
  const std::string document = "a\r\n=GIF\r\n&\r\n=EndInset";
  EXPECT_EQ(removed(document), "a\r\n<KAVOObj 1>");
  EXPECT_EQ(utilities.InsertObjects(), 0);
  EXPECT_EQ(get(u"m.mif"), document);
}

TEST_F(ObjectsTest, AnEndWithoutAnObjectIsAnOrdinaryLine) {
  const std::string document = "=EndInset\r\n=GIF\r\n=EndInset\r\n=EndInset of nothing\r\n";
  EXPECT_EQ(removed(document), "=EndInset\r\n<KAVOObj 1>\r\n=EndInset of nothing\r\n");
  EXPECT_EQ(utilities.InsertObjects(), 0);
  EXPECT_EQ(get(u"m.mif"), document);
}

TEST_F(ObjectsTest, AFileThatEndsInsideAnObjectIsLeftAsItIs) {
  const std::string document = "a\n=GIF\n=EndInset\nb\n=GIF\n&x\n";
  put(u"m.mif", document);
  put(u"m.obj", "old");
  EXPECT_EQ(utilities.RemoveObjects(), 1);
  EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3039});
  EXPECT_EQ(utilities.ErrorList()[0].line, 5);
  EXPECT_EQ(get(u"m.mif"), document);
  EXPECT_EQ(get(u"m.obj"), "old");
  EXPECT_EQ(files.all_files().size(), 2u);
}

TEST_F(ObjectsTest, ASecondRemovalDoesNotLoseTheObjectsOfTheFirst) {
  removed("=GIF\r\n=EndInset\r\n");
  const std::string objects = get(u"m.obj");
  EXPECT_EQ(utilities.RemoveObjects(), 1);
  EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3040});
  EXPECT_EQ(get(u"m.obj"), objects);
  EXPECT_EQ(get(u"m.mif"), "<KAVOObj 1>\r\n");
}

TEST_F(ObjectsTest, AnObjectThatHoldsTheBeginningOfAPlaceholderIsLeft) {
  const std::string document = "=GIF\r\n<KAVOObj \r\n=EndInset\r\n";
  put(u"m.mif", document);
  EXPECT_EQ(utilities.RemoveObjects(), 1);
  EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3040});
  EXPECT_EQ(get(u"m.mif"), document);
}

TEST_F(ObjectsTest, AMissingObjectBecomesTheClosingLine) {
  EXPECT_EQ(inserted("a\r\n<KAVOObj 7>\r\nb\r\n", "<KAVOObj 1>\r\n=GIF\r\n=EndInset\r\n<KAVOObj End>\r\n"),
            "a\r\n=EndInset\r\nb\r\n");
  EXPECT_TRUE(utilities.ErrorList().empty());
  EXPECT_EQ(utilities.counts().objects_missing, 1);
}

TEST_F(ObjectsTest, APlaceholderWithoutItsObjectStaysWhenThatIsWanted) {
  const std::string document = "a\r\n<KAVOObj 1>\r\nb <KAVOObj 2> c <KAVOObj 3>d\r\n<KAVOObj 1>\r\n";
  const std::string first = "<KAVOObj 1>\r\n=GIF\r\n&x\r\n=EndInset\r\n", object = "=GIF\r\n&x\r\n=EndInset\r\n";
  const std::string with_first = "a\r\n" + object + "b <KAVOObj 2> c <KAVOObj 3>d\r\n" + object;
  struct Case {
    const char* name;
    std::string objects, expected, first_missing;
    std::int64_t line;
  };
  const Case cases[] = {
      {"an empty object file", "", document, "<KAVOObj 1>", 2},
      {"an object file without objects", std::string(kNoObjects), document, "<KAVOObj 1>", 2},
      {"cut behind the first object", first, with_first, "<KAVOObj 2>", 3},
      {"cut behind a placeholder", first + "<KAVOObj 2>\r\n", with_first, "<KAVOObj 2>", 3},
      {"cut inside an object", first + "<KAVOObj 2>\r\n=PNG\r\n&y", with_first, "<KAVOObj 2>", 3},
      {"cut inside the closing line", first + "<KAVOObj 2>\r\n=PNG\r\n&y\r\n=EndIns", with_first, "<KAVOObj 2>", 3},
      {"an object without its end in the middle",
       first + "<KAVOObj 2>\r\n=PNG\r\n<KAVOObj 3>\r\n=BMP\r\n=EndInset\r\n<KAVOObj End>\r\n",
       "a\r\n" + object + "b <KAVOObj 2> c \r\n=BMP\r\n=EndInset\r\nd\r\n" + object, "<KAVOObj 2>", 3},
  };
  utilities.keep_placeholders();
  for (const Case& test : cases) {
    put(u"m.obj", test.objects);
    const std::string result = same_for_every_block_size(test.objects.size() + 1, [&](std::size_t size) {
      BlockSizeScope blocks(size);
      put(u"m.mif", document);
      utilities.ClearErrors();
      EXPECT_EQ(utilities.InsertObjects(), 1) << test.name;
      return get(u"m.mif");
    });
    EXPECT_EQ(result, test.expected) << test.name;
    ASSERT_EQ(message_numbers(), std::vector<std::int32_t>{3046}) << test.name;
    EXPECT_TRUE(utilities.ErrorList()[0].text.ends_with(to_utf16("C:\\book\\m.mif, " + test.first_missing)));
    EXPECT_EQ(utilities.ErrorList()[0].line, test.line) << test.name;
    EXPECT_EQ(get(u"m.obj"), test.objects);
  }
  utilities.ClearErrors();
  put(u"m.mif", with_first);
  put(u"m.obj", "<KAVOObj 3>\r\n=B\r\n=EndInset\r\n<KAVOObj 2>\r\n=C\r\n=EndInset\r\n<KAVOObj End>\r\n");
  EXPECT_EQ(utilities.InsertObjects(), 0) << "the rest, from an object file that has them";
  EXPECT_EQ(get(u"m.mif"), "a\r\n" + object + "b \r\n=C\r\n=EndInset\r\n c \r\n=B\r\n=EndInset\r\nd\r\n" + object);
  EXPECT_TRUE(utilities.ErrorList().empty());
}

TEST_F(ObjectsTest, PlaceholdersAreFoundAsTheyAreInserted) {
  struct Case {
    const char* name;
    std::string_view document;
    bool is_found;
  };
  const Case cases[] = {{"on a line of its own", "a\r\n<KAVOObj 1>\r\n", true},
                        {"behind a blank", "a\r\n <KAVOObj 1>\r\n", true},
                        {"behind a text", "x<KAVOObj 12>", true},
                        {"in a string, as a text", "<String `<KAVOObj 1\\>'>\r\n", false},
                        {"another statement", "<KAVOObject>\r\n", false},
                        {"without an end", "<KAVOObj 1\r\n>", false},
                        {"nothing", "", false}};
  for (const Case& test : cases) {
    put(u"m.mif", test.document);
    EXPECT_EQ(holds_object_placeholder(in_folder(u"m.mif"), nullptr), test.is_found) << test.name;
    put(u"m.obj", "");
    EXPECT_EQ(utilities.InsertObjects(), 0);
    EXPECT_EQ(get(u"m.mif") != test.document, test.is_found) << test.name;
  }
}

TEST_F(ObjectsTest, ATextThatLooksLikeAPlaceholderIsKept) {
  const std::string text = "<String `see <KAVOObj 1\\>'>\r\n";
  EXPECT_EQ(inserted(text + "<KAVOObj 1>\r\n", "<KAVOObj 1>\r\n=GIF\r\n=EndInset\r\n<KAVOObj End>\r\n"),
            text + "=GIF\r\n=EndInset\r\n");
  EXPECT_EQ(removed(text + "=GIF\r\n=EndInset\r\n"), text + "<KAVOObj 1>\r\n");
}

TEST_F(ObjectsTest, AFileThatIsNotTheObjectFileOfThisDocumentIsNotReplaced) {
  struct Case {
    const char* name;
    std::string old;
  };
  const Case cases[] = {
      {"an RTF document's objects", "{\\v\\mor OBJ 1 }\r\n{\\pict 0123456789}\r\n{\\v\\mor OBJ 2 }\r\n"},
      {"another MIF document's objects", "<KAVOObj 1>\r\n=PNG\r\n=EndInset\r\n<KAVOObj End>\r\n"},
      {"a compiler's object file", std::string("\x64\x86\x02\0\0", 5) + std::string(64, 'o')},
      {"a MIF document", "<MIFFile 7.00>\n"},
      {"a short text", "x"},
  };
  const std::string document = "=GIF\r\n=EndInset\r\n";
  for (const Case& test : cases) {
    put(u"m.obj", test.old);
    put(u"m.mif", document);
    utilities.ClearErrors();
    EXPECT_EQ(utilities.RemoveObjects(), 1) << test.name;
    EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3032}) << test.name;
    EXPECT_EQ(get(u"m.obj"), test.old);
    EXPECT_EQ(get(u"m.mif"), document);
    EXPECT_EQ(files.all_files().size(), 2u);
  }
  utilities.overwrite_object_file();
  EXPECT_EQ(removed(document), "<KAVOObj 1>\r\n");
  EXPECT_EQ(get(u"m.obj"), "<KAVOObj 1>\r\n=GIF\r\n=EndInset\r\n<KAVOObj End>\r\n");
}

TEST_F(ObjectsTest, AnObjectFileThatLosesNothingIsReplaced) {
  const std::string document = "=GIF\r\n=EndInset\r\n";
  const std::string objects = "<KAVOObj 1>\r\n=GIF\r\n=EndInset\r\n<KAVOObj End>\r\n";
  struct Case {
    const char* name;
    std::string old;
  };
  for (const Case& test :
       {Case{"of an earlier copy of the document", objects}, Case{"of a document without objects", kNoObjects.data()},
        Case{"of an RTF document without objects", "{\\v\\mor OBJ 1 }\r\n"}, Case{"of no bytes", ""}}) {
    put(u"m.obj", test.old);
    EXPECT_EQ(removed(document), "<KAVOObj 1>\r\n") << test.name;
    EXPECT_EQ(get(u"m.obj"), objects) << test.name;
  }
}

TEST_F(ObjectsTest, PlaceholdersInAnyOrderAreFound) {
  const std::string objects =
      "<KAVOObj 1>\r\n=A\r\n=EndInset\r\n<KAVOObj 2>\r\n=B\r\n=EndInset\r\n<KAVOObj 3>\r\n=C\r\n=EndInset\r\n"
      "<KAVOObj 10>\r\n=J\r\n=EndInset\r\n<KAVOObj End>\r\n";
  struct Case {
    const char* name;
    std::string order, expected;
  };
  const Case cases[] = {{"forward", "1 2 3 10", "ABCJ"},     {"one moved up", "2 1 3", "BAC"},
                        {"backward", "10 3 2 1", "JCBA"},    {"doubled", "2 2 2 1 1", "BBBAA"},
                        {"some missing", "4 1 4 3", "-A-C"}, {"skipping", "3 10 1", "CJA"}};
  for (const Case& test : cases) {
    std::string document, expected;
    for (std::size_t at = 0; at < test.order.size();) {
      const std::size_t end = std::min(test.order.find(' ', at), test.order.size());
      document += "<KAVOObj " + test.order.substr(at, end - at) + ">\r\n";
      at = end + 1;
    }
    for (const char object : test.expected)
      expected += object == '-' ? "=EndInset\r\n" : std::string("=") + object + "\r\n=EndInset\r\n";
    for (const std::size_t block : {1, 7, 4096}) {
      BlockSizeScope blocks(block);
      EXPECT_EQ(inserted(document, objects), expected) << test.name;
    }
  }
}

TEST_F(ObjectsTest, TheNextOfSeveralObjectsWithOneNumberIsTaken) {
  const std::string objects =
      "<KAVOObj 1>\r\n=A\r\n=EndInset\r\n<KAVOObj 2>\r\n=B\r\n=EndInset\r\n<KAVOObj 1>\r\n=C\r\n=EndInset\r\n";
  EXPECT_EQ(inserted("<KAVOObj 2>\r\n<KAVOObj 1>\r\n<KAVOObj 1>\r\n", objects),
            "=B\r\n=EndInset\r\n=C\r\n=EndInset\r\n=A\r\n=EndInset\r\n");
}

TEST_F(ObjectsTest, AnObjectEndsAtTheNextPlaceholderOrTheFileEnd) {
  EXPECT_EQ(inserted("<KAVOObj 1>\r\n<KAVOObj 2>\r\n", "<KAVOObj 1>\r\n=A\r\n<KAVOObj 2>\r\n=B\r\n&x"),
            "=A\r\n=EndInset\r\n=B\r\n&x\r\n=EndInset\r\n");
}

TEST_F(ObjectsTest, TextBesideAPlaceholderIsKeptOnLinesOfItsOwn) {
  const std::string objects = "<KAVOObj 1>\r\n=A\r\n=EndInset\r\n<KAVOObj 2>\r\n=B\r\n=EndInset\r\n";
  EXPECT_EQ(inserted("before<KAVOObj 1>after\r\n", objects), "before\r\n=A\r\n=EndInset\r\nafter\r\n");
  EXPECT_EQ(inserted("<KAVOObj 1><KAVOObj 2>x", objects), "=A\r\n=EndInset\r\n=B\r\n=EndInset\r\nx");
  EXPECT_EQ(inserted("a<KAVOObj 1>b<KAVOObj 2>", objects), "a\r\n=A\r\n=EndInset\r\nb\r\n=B\r\n=EndInset");
  EXPECT_EQ(inserted("<KAVOObj 1 \r\n<KAVOObj 1>\r\n", objects), "<KAVOObj 1 \r\n=A\r\n=EndInset\r\n");
}

TEST_F(ObjectsTest, LongLinesKeepTheirPlaceholders) {
  const std::string objects = "<KAVOObj 123456>\r\n=A\r\n=EndInset\r\n";
  for (std::size_t before = LinePieces::kWholeLine - 80; before < LinePieces::kWholeLine + 4; ++before) {
    const std::string x(before, 'x');
    BlockSizeScope blocks(LinePieces::kWholeLine / 2);
    ASSERT_EQ(inserted(x + "<KAVOObj 123456>" + x + x + "\r\n", objects),
              x + "\r\n=A\r\n=EndInset\r\n" + x + x + "\r\n");
  }
}

TEST_F(ObjectsTest, LongLinesInsideObjects) {
  const std::string line(300000, '&');
  const std::string document = "=" + line + "\r\n" + line + "\r\n=EndInset" + line + "\r\n" + line;
  for (const std::size_t block : {1000, 65536, 1 << 20}) {
    BlockSizeScope blocks(block);
    EXPECT_EQ(removed(document), "<KAVOObj 1>\r\n" + line);
    EXPECT_EQ(utilities.InsertObjects(), 0);
    EXPECT_EQ(get(u"m.mif"), document);
  }
}

TEST_F(ObjectsTest, ObjectFileNameIsDerivedFromTheFileName) {
  struct Case {
    std::u16string mif, expected;
  };
  for (const Case& test : {Case{u"C:\\book\\a.b.mif", u"C:\\book\\a.b.obj"},
                           Case{u"C:\\v1.2\\manual", u"C:\\v1.2\\manual.obj"}, Case{u"manual", u"manual.obj"}}) {
    files.put(test.mif, "x");
    utilities.MIFFile(test.mif);
    utilities.ObjFile(u"");
    EXPECT_EQ(utilities.RemoveObjects(), 0);
    EXPECT_EQ(utilities.ObjFile(), test.expected);
    EXPECT_TRUE(files.has(test.expected));
  }
}

TEST_F(ObjectsTest, TheObjectFileIsNeverTheDocument) {
  put(u"m.obj", "=GIF\r\n=EndInset\r\n");
  utilities.MIFFile(in_folder(u"M.obj"));
  EXPECT_EQ(utilities.RemoveObjects(), 1);
  EXPECT_EQ(message_numbers(), std::vector<std::int32_t>{3030});
  EXPECT_EQ(get(u"m.obj"), "=GIF\r\n=EndInset\r\n");
}

TEST_F(ObjectsTest, FailuresOfBothOperations) {
  struct Case {
    std::int16_t (clsMIFUtilities::*run)();
  };
  for (const Case& test : {Case{&clsMIFUtilities::RemoveObjects}, Case{&clsMIFUtilities::InsertObjects}}) {
    utilities.ClearErrors();
    utilities.ObjFile(u"");
    utilities.MIFFile(u"");
    EXPECT_EQ((utilities.*test.run)(), 1);
    utilities.MIFFile(in_folder(u"missing.mif"));
    EXPECT_EQ((utilities.*test.run)(), 1);
    files.add_folder(in_folder(u"folder.mif"));
    utilities.MIFFile(in_folder(u"folder.mif"));
    EXPECT_EQ((utilities.*test.run)(), 1);
    EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3026, 3027, 3028}));
  }
}

TEST_F(ObjectsTest, RemovalNeedsAnObjectFileAndATemporaryFile) {
  const std::string document = "=GIF\r\n=EndInset\r\n";
  put(u"m.mif", document);
  utilities.ObjFile(u"C:\\no such folder\\m.obj");
  EXPECT_EQ(utilities.RemoveObjects(), 1);
  files.add_folder(in_folder(u"folder.obj"));
  utilities.ObjFile(in_folder(u"folder.obj"));
  EXPECT_EQ(utilities.RemoveObjects(), 1);
  utilities.ObjFile(in_folder(u"m.obj"));
  files.set_temporary_folder(u"C:\\no such folder");
  EXPECT_EQ(utilities.RemoveObjects(), 1);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3030, 3032, 3031}));
  EXPECT_EQ(get(u"m.mif"), document);
  EXPECT_FALSE(has(u"m.obj"));
}

TEST_F(ObjectsTest, InsertionNeedsTheObjectFileAndATemporaryFile) {
  put(u"m.mif", "<KAVOObj 1>\r\n");
  EXPECT_EQ(utilities.InsertObjects(), 1);
  put(u"m.obj", "<KAVOObj 1>\r\n=A\r\n=EndInset\r\n");
  files.set_temporary_folder(u"C:\\no such folder");
  EXPECT_EQ(utilities.InsertObjects(), 1);
  EXPECT_EQ(message_numbers(), (std::vector<std::int32_t>{3029, 3031}));
  EXPECT_EQ(get(u"m.mif"), "<KAVOObj 1>\r\n");
}

TEST_F(ObjectsTest, ProgressIsRaisedInGrowingPercents) {
  std::vector<std::int16_t> seen;
  utilities.Progress([&](std::int16_t percent) { seen.push_back(percent); });
  std::string document = "=GIF\r\n=EndInset\r\n";
  for (int i = 0; i < 20000; ++i) document += "a line of text\r\n";
  removed(document);
  for (int run = 0; run < 2; ++run) {
    ASSERT_GT(seen.size(), 50u);
    for (std::size_t i = 1; i < seen.size(); ++i) EXPECT_LT(seen[i - 1], seen[i]);
    EXPECT_EQ(seen.back(), 100);
    if (run == 1) break;
    seen.clear();
    EXPECT_EQ(utilities.InsertObjects(), 0);
  }
}

TEST_F(ObjectsTest, AnInterruptionLeavesEverythingAsItWas) {
  const std::string document = "=GIF\r\n=EndInset\r\n" + std::string(50000, 'x');
  put(u"m.mif", document);
  utilities.Progress([](std::int16_t percent) {
    if (percent > 50) throw interruption();
  });
  EXPECT_THROW(utilities.RemoveObjects(), interruption);
  EXPECT_EQ(get(u"m.mif"), document);
  EXPECT_EQ(files.all_files().size(), 1u);
}

}  // namespace
}  // namespace kavo::test
