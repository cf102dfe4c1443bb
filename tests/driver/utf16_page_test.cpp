// Server pages in UTF-16 on the whole way.
#include <gtest/gtest.h>

#include "driver/road_fixture.h"
#include "formats/text/text_coding.h"

namespace kavo::test {
namespace {

class Utf16Page : public RoadFixture {
 protected:
  static std::string in_utf16(std::string_view utf8, unsigned code_page) {
    std::string bytes = code_page == kUtf16BigEndian ? "\xFE\xFF" : "\xFF\xFE";
    TextCoding(code_page).encode(utf8, bytes, [](std::string_view, std::string&) {});
    return bytes;
  }
};

constexpr std::string_view kPage =
    "<html><body>\r\n<p>Gr\xC3\xBC\xC3\x9F Gott \xE6\x9D\xB1</p>\r\n<% MsgBox \"Sch\xC3\xB6n\" "
    "%>\r\n</body></html>\r\n";

TEST_F(Utf16Page, ComesBackByteForByteAndTranslatedInItsCoding) {
  for (const unsigned code_page : {kUtf16LittleEndian, kUtf16BigEndian}) {
    const std::string page = in_utf16(kPage, code_page);
    const std::vector<std::u16string> tuds = prepare(u"index.asp", page);
    ASSERT_EQ(tuds.size(), 2u);
    EXPECT_EQ(files.get(in(u"index.asp")), page);
    EXPECT_TRUE(files.get(in(u"index_asp.htm")).starts_with(page.substr(0, 2))) << "the prepared page keeps the coding";
    Rebuilt rebuilt = rebuild(tuds[0]);
    ASSERT_EQ(rebuilt.result, 0) << testing::PrintToString(messages);
    EXPECT_EQ(files.get(rebuilt.target), page);

    // A host sees a text of a script between its quotes.
    const auto longer = [](std::u16string text) {
      return text.insert(text.ends_with(u'"') ? text.size() - 1 : text.size(), u"\u0416");
    };
    for (const std::u16string& tud : tuds) translate(tud, longer);
    rebuilt = rebuild(tuds[0]);
    ASSERT_EQ(rebuilt.result, 0) << testing::PrintToString(messages);
    EXPECT_EQ(files.get(rebuilt.target),
              in_utf16("<html><body>\r\n<p>Gr\xC3\xBC\xC3\x9F Gott \xE6\x9D\xB1\xD0\x96</p>\r\n<% MsgBox "
                       "\"Sch\xC3\xB6n\xD0\x96\" %>\r\n</body></html>\r\n",
                       code_page));
    for (const std::u16string& path : files.all_files()) files.remove_file(path);
  }
}

TEST_F(Utf16Page, BytesThatAreNoUtf16AreRefusedWithTheirLine) {
  files.put(in(u"index.asp"), std::string("\xFF\xFE<\0\n\0\x00\xD8<\0", 10));
  EXPECT_EQ(pre_process(*object, in(u"index.asp")), 3);
  ASSERT_FALSE(messages.empty());
  EXPECT_NE(messages.back().find("index.asp (line 2) holds bytes that are not valid UTF-16"), std::string::npos)
      << messages.back();
  EXPECT_EQ(files.all_files().size(), 1u);
}

}  // namespace
}  // namespace kavo::test
