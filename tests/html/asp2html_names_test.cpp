// File names, messages and the other members of clsASP2HTML.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "asp2html_run.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

struct NamesCase {
  const char* name;
  std::u16string_view input, page, html, script;
};

std::ostream& operator<<(std::ostream& out, const NamesCase& c) { return out << c.name; }

constexpr NamesCase kProtectNames[] = {
    {"Asp", u"C:\\web\\index.asp", u"C:\\web\\index.asp", u"C:\\web\\index_asp.htm", u"C:\\web\\index_asp.scr"},
    {"TwoDots", u"C:\\a.b\\c.tar.php", u"C:\\a.b\\c.tar.php", u"C:\\a.b\\c.tar_php.htm", u"C:\\a.b\\c.tar_php.scr"},
    {"NoExtension", u"C:\\a.b\\page", u"C:\\a.b\\page", u"C:\\a.b\\page_.htm", u"C:\\a.b\\page_.scr"},
};
constexpr NamesCase kRestoreNames[] = {
    {"Asp", u"C:\\web\\index_asp.htm", u"C:\\web\\index.asp", u"C:\\web\\index_asp.htm", u"C:\\web\\index_asp.scr"},
    {"Jsp", u"C:\\web\\a_b_JSP.htm", u"C:\\web\\a_b.JSP", u"C:\\web\\a_b_JSP.htm", u"C:\\web\\a_b_JSP.scr"},
    {"LongerExtension", u"C:\\x_html.htm", u"C:\\x.html", u"C:\\x_html.htm", u"C:\\x_html.scr"},
    {"Wsp", u"C:\\x_wsp.htm", u"C:\\x.wsp", u"C:\\x_wsp.htm", u"C:\\x_wsp.scr"},
    {"OtherEnd", u"C:\\x_php.htm", u"C:\\x_php.asp", u"C:\\x_php.htm", u"C:\\x_php.scr"},
    {"NoMark", u"C:\\x.htm", u"C:\\x.asp", u"C:\\x.htm", u"C:\\x.scr"},
};

class NamesTest : public PortsFixture, public testing::WithParamInterface<NamesCase> {};
class ProtectNamesTest : public NamesTest {};
class RestoreNamesTest : public NamesTest {};

TEST_P(ProtectNamesTest, AreMadeFromThePage) {
  files.put(GetParam().input, "x");
  clsASP2HTML converter;
  converter.ASPFile(GetParam().input);
  EXPECT_EQ(converter.ASP2HTML(), 0);
  EXPECT_EQ(converter.ASPFile(), GetParam().page);
  EXPECT_EQ(converter.HTMFile(), GetParam().html);
  EXPECT_EQ(converter.SCRFile(), GetParam().script);
  EXPECT_EQ(files.get(GetParam().html), "x");
  EXPECT_EQ(files.get(GetParam().script), "\r\n");
  EXPECT_EQ(files.get(GetParam().page), "x");
}

TEST_P(RestoreNamesTest, AreMadeFromTheProtectedPage) {
  files.put(GetParam().html, "x");
  files.put(GetParam().script, "\r\n");
  clsASP2HTML converter;
  converter.HTMFile(GetParam().input);
  EXPECT_EQ(converter.HTML2ASP(), 0);
  EXPECT_EQ(converter.ASPFile(), GetParam().page);
  EXPECT_EQ(converter.HTMFile(), GetParam().html);
  EXPECT_EQ(converter.SCRFile(), GetParam().script);
  EXPECT_EQ(files.get(GetParam().page), "x");
}

const auto kCaseName = [](const auto& test) { return std::string(test.param.name); };
INSTANTIATE_TEST_SUITE_P(Cases, ProtectNamesTest, testing::ValuesIn(kProtectNames), kCaseName);
INSTANTIATE_TEST_SUITE_P(Cases, RestoreNamesTest, testing::ValuesIn(kRestoreNames), kCaseName);

class Asp2HtmlTest : public PortsFixture {
 protected:
  static constexpr std::u16string_view kPage = u"C:\\WORK\\x.asp", kHtml = u"C:\\WORK\\x_asp.htm",
                                       kScript = u"C:\\WORK\\x_asp.scr";
  clsASP2HTML converter;
};

TEST_F(Asp2HtmlTest, NamesThatAreGivenStay) {
  files.put(kPage, "a<%b%>");
  converter.ASPFile(kPage);
  converter.HTMFile(u"C:\\WORK\\one.htm");
  converter.SCRFile(u"C:\\WORK\\two.scr");
  ASSERT_EQ(converter.ASP2HTML(), 0);
  EXPECT_EQ(files.get(u"C:\\WORK\\one.htm"), "a<!-- ASP2HTML 1 -->");
  EXPECT_EQ(files.get(u"C:\\WORK\\two.scr"), "\r\n<!-- ASP2HTML 1 -->\r\n<%b%>\r\n");
}

TEST_F(Asp2HtmlTest, WithBothOtherNamesGivenThePageNameIsNotMade) {
  files.put(kHtml, "x");
  files.put(kScript, "\r\n");
  converter.HTMFile(kHtml);
  converter.SCRFile(kScript);
  EXPECT_EQ(converter.HTML2ASP(), 1);
  EXPECT_EQ(converter.ASPFile(), u"");
  EXPECT_EQ(files.all_files().size(), 2u);
}

TEST_F(Asp2HtmlTest, EmptyNamesAreAnError) {
  EXPECT_EQ(converter.ASP2HTML(), 1);
  ASSERT_EQ(converter.ErrorList().size(), 2u);
  EXPECT_EQ(converter.GetError(1), u"ASP2HTML : ");
  EXPECT_EQ(converter.GetError(2), u"More >>");
  EXPECT_EQ(converter.HTML2ASP(), 1);
  ASSERT_EQ(converter.ErrorList().size(), 2u);
  EXPECT_EQ(converter.GetError(1), u"HTML2ASP : ");
  EXPECT_EQ(converter.GetError(2), u"More >>");
}

TEST_F(Asp2HtmlTest, GetErrorAnswersNothingOutsideTheList) {
  converter.ASP2HTML();
  for (const std::int32_t index : {-1, 0, 3, std::numeric_limits<std::int32_t>::max()})
    EXPECT_EQ(converter.GetError(index), u"") << index;
}

TEST_F(Asp2HtmlTest, EveryListBeginsWithTheCall) {
  files.put(kPage, "x");
  converter.ASPFile(kPage);
  EXPECT_EQ(converter.ASP2HTML(), 0);
  EXPECT_EQ(converter.ASP2HTML(), 0);
  ASSERT_EQ(converter.ErrorList().size(), 1u);
  EXPECT_EQ(converter.GetError(1), u"ASP2HTML : C:\\WORK\\x.asp");
  EXPECT_EQ(converter.HTML2ASP(), 0);
  ASSERT_EQ(converter.ErrorList().size(), 1u);
  EXPECT_EQ(converter.GetError(1), u"HTML2ASP : C:\\WORK\\x_asp.htm");
}

TEST_F(Asp2HtmlTest, MissingFileIsNamedWithTheSystemsDescription) {
  converter.ASPFile(kPage);
  EXPECT_EQ(converter.ASP2HTML(), 1);
  ASSERT_EQ(converter.ErrorList().size(), 2u);
  std::u16string reason;
  try {
    files.open(kPage, Access::kRead);
  } catch (const failure& missing) {
    reason = missing.description();
  }
  EXPECT_EQ(converter.GetError(2), u"<< LessC:\\WORK\\x.asp\r\n" + reason);
  EXPECT_TRUE(files.all_files().empty());
}

TEST_F(Asp2HtmlTest, MissingScriptFileIsNamedAndThePageStays) {
  files.put(kHtml, "<!-- ASP2HTML 1 -->");
  files.put(kPage, "old");
  converter.HTMFile(kHtml);
  EXPECT_EQ(converter.HTML2ASP(), 1);
  EXPECT_TRUE(converter.GetError(2).starts_with(u"<< LessC:\\WORK\\x_asp.scr\r\n"));
  EXPECT_EQ(files.get(kPage), "old");
  EXPECT_EQ(files.all_files().size(), 2u);
}

TEST_F(Asp2HtmlTest, OutputThatCannotBeMadeIsNamed) {
  files.put(kPage, "x");
  converter.ASPFile(kPage);
  converter.HTMFile(u"C:\\nowhere\\x.htm");
  EXPECT_EQ(converter.ASP2HTML(), 1);
  EXPECT_TRUE(converter.GetError(2).starts_with(u"<< LessC:\\nowhere\\x.htm\r\n"));
  EXPECT_EQ(files.all_files().size(), 1u);
}

TEST_F(Asp2HtmlTest, OldOutputsAreReplacedReadOnlyOrNot) {
  files.put(kPage, "<%new%>");
  files.put(kHtml, "old and longer than the new one will ever be");
  files.put(kScript, "old");
  files.set_read_only(kHtml, true);
  files.set_read_only(kScript, true);
  converter.ASPFile(kPage);
  ASSERT_EQ(converter.ASP2HTML(), 0);
  EXPECT_EQ(files.get(kHtml), "<!-- ASP2HTML 1 -->");
  EXPECT_EQ(files.get(kScript), "\r\n<!-- ASP2HTML 1 -->\r\n<%new%>\r\n");
  EXPECT_EQ(files.all_files().size(), 3u);
}

TEST_F(Asp2HtmlTest, OneNameForTwoFilesIsRefused) {
  files.put(kPage, "<%a%>");
  for (const bool as_script : {false, true}) {
    clsASP2HTML shared;
    shared.ASPFile(kPage);
    as_script ? shared.SCRFile(u"C:\\work\\X.ASP") : shared.HTMFile(u"C:\\work\\X.ASP");
    EXPECT_EQ(shared.ASP2HTML(), 1);
    EXPECT_EQ(shared.GetError(2), u"<< LessC:\\work\\X.ASP\r\nThe file is already open");
  }
  EXPECT_EQ(files.get(kPage), "<%a%>");
  EXPECT_EQ(files.all_files().size(), 1u);
}

TEST_F(Asp2HtmlTest, Utf16PagesAreRefusedAndLeftAlone) {
  for (const std::string_view text : {std::string_view("\xFF\xFE<\0%\0", 6), std::string_view("\xFE\xFF\0<\0%", 6)}) {
    files.put(kPage, text);
    clsASP2HTML refused;
    refused.ASPFile(kPage);
    EXPECT_EQ(refused.ASP2HTML(), 1);
    EXPECT_NE(refused.GetError(2).find(u"UTF-16"), std::u16string::npos);
    EXPECT_EQ(files.get(kPage), text);
    EXPECT_EQ(files.all_files().size(), 1u);
  }
}

TEST_F(Asp2HtmlTest, Utf16TranslationsAreRefusedAndLeftAlone) {
  constexpr std::string_view wide("\xFF\xFE<\0", 4);
  for (const bool page_is_wide : {true, false}) {
    files.put(kHtml, page_is_wide ? wide : "x");
    files.put(kScript, page_is_wide ? "x" : wide);
    clsASP2HTML refused;
    refused.HTMFile(kHtml);
    EXPECT_EQ(refused.HTML2ASP(), 1);
    EXPECT_NE(refused.GetError(2).find(u"UTF-16"), std::u16string::npos);
    EXPECT_EQ(files.all_files().size(), 2u);
  }
}

TEST_F(Asp2HtmlTest, ProgressGrowsToOneHundredAndTheHostMayRepaint) {
  files.put(kPage, std::string(1'000'000, 'x'));
  converter.ASPFile(kPage);
  std::vector<std::int16_t> seen;
  converter.Progress([&](std::int16_t percent) { seen.push_back(percent); });
  for (const auto call : {&clsASP2HTML::ASP2HTML, &clsASP2HTML::HTML2ASP}) {
    seen.clear();
    desktop.process_messages_calls = 0;
    ASSERT_EQ((converter.*call)(), 0);
    ASSERT_GT(seen.size(), 10u);
    EXPECT_EQ(seen.back(), 100);
    EXPECT_TRUE(std::ranges::is_sorted(seen));
    EXPECT_EQ(std::ranges::adjacent_find(seen), seen.end());
    EXPECT_EQ(desktop.process_messages_calls, seen.size());
  }
}

TEST_F(Asp2HtmlTest, SmallPageReportsOneHundred) {
  files.put(kPage, "x");
  converter.ASPFile(kPage);
  std::vector<std::int16_t> seen;
  converter.Progress([&](std::int16_t percent) { seen.push_back(percent); });
  ASSERT_EQ(converter.ASP2HTML(), 0);
  EXPECT_EQ(seen, std::vector<std::int16_t>{100});
}

TEST_F(Asp2HtmlTest, InterruptionPassesThroughAndLeavesNothing) {
  files.put(kPage, "<%a%>");
  files.put(kHtml, "old");
  converter.ASPFile(kPage);
  converter.SCRFile(kScript);
  desktop.on_process_messages = [] { throw interruption(); };
  const auto expect_interruption = [&](auto call) {
    try {
      (converter.*call)();
      ADD_FAILURE() << "not interrupted";
    } catch (const interruption&) {
    }
  };
  expect_interruption(&clsASP2HTML::ASP2HTML);
  EXPECT_EQ(files.get(kHtml), "old");
  EXPECT_EQ(files.all_files().size(), 2u);
  files.put(kScript, "\r\n");
  expect_interruption(&clsASP2HTML::HTML2ASP);
  EXPECT_EQ(files.get(kPage), "<%a%>");
  EXPECT_EQ(files.all_files().size(), 3u);
}

}  // namespace
}  // namespace kavo::test
