// File names of all kinds in the header of a bilingual document.
#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/unicode.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

class TudFileName : public SuiteTest {};

TEST_F(TudFileName, AnyNameComesBack) {
  const struct {
    const char* name;
    std::u16string base;  // of "BASE.txt"
    std::string written;
  } cases[] = {
      {"plain", u"page one", "page one"},
      {"letters beyond ASCII", u"\u00E9t\u00E9 \u65E5\u672C", "\xC3\xA9t\xC3\xA9 \xE6\x97\xA5\xE6\x9C\xAC"},
      {"markup", u"a&b<c>\"d'", "a&amp;b&lt;c&gt;&quot;d'"},
      {"a byte that is no UTF-8", u"caf\xDCE9", "caf%E9"},
      {"a code point that is no character", u"a\uFFFFb", "a%EF%BF%BFb"},
      {"percent", u"100% sure", "100% sure"},
      {"what looks escaped", u"a%41b%%20%", "a%2541b%%2520%"},
      {"an escape made of parts", u"%4%\uFFFF", "%4%%EF%BF%BF"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    put(c.base + u".txt", "One\n");
    const std::u16string tud = convert(c.base + u".txt");
    EXPECT_NE(files.get(tud).find("<file original=\"" + c.written + ".txt\""), std::string::npos) << files.get(tud);
    const BilingualDocument document(tud);
    EXPECT_EQ(document.target_name(), in_folder(c.base + u"_FR.txt"));
    const auto skeleton = document.locate_skeleton();
    ASSERT_TRUE(skeleton);
    EXPECT_EQ(skeleton->path, tud + u".skl");
    EXPECT_EQ(rebuild(tud), "One\n");
  }
}

// One that another system would read otherwise is refused before anything is written.
TEST_F(TudFileName, ANameThatIsNotPlainEverywhereIsNotConverted) {
  constexpr char16_t kEscapedBackslash = 0xDC5C;
  for (const std::u16string& base : std::vector<std::u16string>{
           u"a\u0001b", u"a\nb", u"nul",
           path_from_host("a\\b") == u"a\\b" ? u"c:d" : kEscapedBackslash + std::u16string(u"b")}) {
    const std::u16string name = base + u".txt";
    files.put(u"C:\\work\\" + name, "One\n");
    const std::size_t count = files.all_files().size();
    EXPECT_NE(reason_of([&] { convert(name); }).find(u"cannot be a name in a bilingual document"), std::u16string::npos)
        << to_utf8(name);
    EXPECT_EQ(files.all_files().size(), count);
  }
}

}  // namespace
}  // namespace kavo::test
