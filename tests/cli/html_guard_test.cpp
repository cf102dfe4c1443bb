// The verbs of pages never lose scripts, somebody's work, or the only original.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr std::string_view kPage = "<p>One <%=a%> two <%=b%></p>\r\n";

class HtmlGuard : public testing::Test {
 protected:
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  Ran kavo(std::string verb, std::u16string_view name, std::vector<std::string> options = {}) {
    std::vector<std::string> arguments{"html", std::move(verb), path(name)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run_kavo(arguments);
  }
  void protect() {
    folder.write(u"a.asp", kPage);
    ASSERT_EQ(kavo("protect", u"a.asp").code, 0);
  }
  // Expects only a message, which names the option that does it nevertheless.
  static void expect_refused(const Ran& ran, const std::string& file, std::string_view option) {
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.output, "");
    EXPECT_NE(ran.errors.find(file), std::string::npos) << ran.errors;
    EXPECT_NE(ran.errors.find(option), std::string::npos) << ran.errors;
  }
  TempFolder folder;
};

TEST_F(HtmlGuard, RestoreWritesNoPageWithoutItsScripts) {
  protect();
  const std::string script = folder.read(u"a_asp.scr");
  for (const std::string& damaged :
       {std::string(), script.substr(0, script.rfind("<!--")), script.substr(0, script.size() - 4)}) {
    folder.write(u"a_asp.scr", damaged);
    expect_refused(kavo("restore", u"a_asp.htm"), path(u"a_asp.scr"), "--force");
    EXPECT_EQ(folder.read(u"a.asp"), kPage);
    EXPECT_EQ(folder.entry_count(), 3u);
  }
}

TEST_F(HtmlGuard, RestoreWritesNoPageThatIsCutShort) {
  protect();
  const std::string html = folder.read(u"a_asp.htm");
  folder.write(u"a_asp.htm", html.substr(0, html.find("two")));
  expect_refused(kavo("restore", u"a_asp.htm"), path(u"a_asp.htm"), "--force");
  EXPECT_EQ(folder.read(u"a.asp"), kPage);
  EXPECT_EQ(folder.entry_count(), 3u);
}

TEST_F(HtmlGuard, RestoreWritesItWhenForced) {
  protect();
  folder.write(u"a_asp.scr", "");
  const Ran ran = kavo("restore", u"a_asp.htm", {"--force"});
  EXPECT_EQ(ran.code, 0);
  EXPECT_EQ(folder.read(u"a.asp"), "<p>One  two </p>\r\n");
  EXPECT_NE(ran.errors.find("<!-- ASP2HTML 1 --> and 1 more"), std::string::npos) << ran.errors;
}

TEST_F(HtmlGuard, RestoreWritesAScriptTwiceWhereItsPlaceholderStandsTwice) {
  protect();
  std::string html = folder.read(u"a_asp.htm");
  folder.write(u"a_asp.htm", html.insert(html.find("two"), "<!-- ASP2HTML 1 -->"));
  const Ran ran = kavo("restore", u"a_asp.htm");
  EXPECT_EQ(ran.code, 0);
  EXPECT_EQ(folder.read(u"a.asp"), "<p>One <%=a%> <%=a%>two <%=b%></p>\r\n");
  EXPECT_NE(ran.errors.find("more than once"), std::string::npos) << ran.errors;
}

TEST_F(HtmlGuard, ProtectTwiceGivesTheSame) {
  protect();
  const std::string html = folder.read(u"a_asp.htm");
  EXPECT_EQ(kavo("protect", u"a.asp").code, 0);
  EXPECT_EQ(folder.read(u"a_asp.htm"), html);
  EXPECT_EQ(folder.entry_count(), 3u);
}

TEST_F(HtmlGuard, ProtectAsksBeforeItReplacesATranslatedPage) {
  protect();
  const std::string html = folder.read(u"a_asp.htm");
  std::string translated = html;
  translated.replace(translated.find("One"), 3, "Un");
  folder.write(u"a_asp.htm", translated);
  expect_refused(kavo("protect", u"a.asp"), path(u"a_asp.htm"), "--overwrite");
  EXPECT_EQ(folder.read(u"a_asp.htm"), translated);
  EXPECT_EQ(folder.entry_count(), 3u);
  EXPECT_EQ(kavo("protect", u"a.asp", {"--overwrite"}).code, 0);
  EXPECT_EQ(folder.read(u"a_asp.htm"), html);
}

TEST_F(HtmlGuard, ProtectAsksBeforeItReplacesAPageOfTheUsersOwn) {
  folder.write(u"x.htm", "<p>x</p>");
  folder.write(u"x_htm.htm", "<p>mine</p>");
  expect_refused(kavo("protect", u"x.htm"), path(u"x_htm.htm"), "--overwrite");
  EXPECT_EQ(folder.read(u"x_htm.htm"), "<p>mine</p>");
  EXPECT_EQ(folder.entry_count(), 2u);
}

TEST_F(HtmlGuard, ProtectAsksBeforeItReplacesAnotherScriptFile) {
  folder.write(u"a.asp", kPage);
  folder.write(u"a_asp.scr", "mine");
  expect_refused(kavo("protect", u"a.asp"), path(u"a_asp.scr"), "--overwrite");
  EXPECT_EQ(folder.read(u"a_asp.scr"), "mine");
}

TEST_F(HtmlGuard, ProtectNamesTheFileThatFailed) {
  folder.write(u"a.asp", kPage);
  folder.make_folder(u"a_asp.scr");
  for (const std::vector<std::string>& options : {std::vector<std::string>{}, {"--overwrite"}}) {
    const Ran ran = kavo("protect", u"a.asp", options);
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.errors.find(path(u"a_asp.scr")), std::string::npos) << ran.errors;
  }
  EXPECT_EQ(folder.entry_count(), 2u);
}

TEST_F(HtmlGuard, ValidateKeepsEveryBackup) {
  const std::string first = "<b><i>1</b></i>\n", second = "<p>2 < 3</p>\n", third = "<p>3 > 2</p>\n";
  folder.write(u"a.htm", first);
  ASSERT_EQ(kavo("validate", u"a.htm", {"--backup"}).code, 0);
  const std::string repaired = folder.read(u"a.htm");
  EXPECT_NE(repaired, first);
  EXPECT_EQ(kavo("validate", u"a.htm", {"--backup"}).code, 0);
  EXPECT_EQ(folder.read(u"a.htm.bak"), first);
  EXPECT_EQ(folder.read(u"a.htm"), repaired);
  EXPECT_EQ(folder.entry_count(), 2u) << "a page that needs no repair needs no further backup";

  folder.write(u"a.htm", second);
  const Ran ran = kavo("validate", u"a.htm", {"--backup"});
  EXPECT_EQ(ran.code, 0);
  EXPECT_NE(ran.errors.find(path(u"a.htm.bak2")), std::string::npos) << ran.errors;
  folder.write(u"a.htm", third);
  EXPECT_EQ(kavo("validate", u"a.htm", {"--backup"}).code, 0);
  EXPECT_EQ(folder.read(u"a.htm.bak"), first);
  EXPECT_EQ(folder.read(u"a.htm.bak2"), second);
  EXPECT_EQ(folder.read(u"a.htm.bak3"), third);
  EXPECT_EQ(folder.entry_count(), 4u);
}

}  // namespace
}  // namespace kavo::test
