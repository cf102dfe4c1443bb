// Which files beside a page may be replaced without asking.
#include "html/scripts/protected_pair.h"

#include <gtest/gtest.h>

#include "asp2html_run.h"
#include "html/repair/clsHTMLValidate.h"
#include "platform/failure.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kPage = u"C:\\WORK\\a.asp";
constexpr std::u16string_view kHtml = u"C:\\WORK\\a_asp.htm";
constexpr std::u16string_view kScript = u"C:\\WORK\\a_asp.scr";
constexpr std::string_view kSource = "<p><b><i>one</b></i> <%=x%>\r\n<td <%=y%>>two < three\r\n";

class ProtectedPairTest : public testing::Test {
 protected:
  ProtectedPairTest() {
    run.files.put(kPage, kSource);
    names.page = kPage;
    complete_from_page(names);
  }
  void protect() {
    clsASP2HTML converter;
    converter.ASPFile(kPage);
    ASSERT_EQ(converter.ASP2HTML(), 0);
  }
  void repair() {
    clsHTMLValidate validation;
    validation.Filename(kHtml);
    ASSERT_EQ(validation.HTMLValidate(), 0);
    ASSERT_NE(validation.repairs(), 0u);
  }
  // Returns what may be lost, and checks that the look leaves every file as it is.
  std::u16string work() {
    const auto before = contents();
    const std::u16string result = work_beside_page(names);
    EXPECT_EQ(contents(), before);
    EXPECT_EQ(is_our_untouched_pair(names), result.empty());
    return result;
  }
  std::string contents() {
    std::string all;
    for (const std::u16string& path : run.files.all_files()) all += path_to_host(path) + run.files.get(path);
    return all;
  }

  MemoryRun run;
  PageNames names;
};

TEST_F(ProtectedPairTest, NothingThere) { EXPECT_EQ(work(), u""); }

TEST_F(ProtectedPairTest, FilesMadeByProtectionMayBeReplaced) {
  protect();
  EXPECT_EQ(work(), u"");
}

TEST_F(ProtectedPairTest, FilesMadeByPreparationMayBeReplaced) {
  protect();
  repair();
  EXPECT_EQ(work(), u"");
  run.files.put(kPage, "<p>no script < at all");
  protect();
  repair();
  run.files.put(kScript, " \r\n");
  EXPECT_EQ(work(), u"");
}

TEST_F(ProtectedPairTest, APageThatEndsInAScript) {
  run.files.put(kPage, "<p><b>one</p> < <% x");
  protect();
  EXPECT_EQ(work(), u"");
}

TEST_F(ProtectedPairTest, ATranslatedPageIsWork) {
  protect();
  std::string html = run.files.get(kHtml);
  html.replace(html.find("one"), 3, "uno");
  run.files.put(kHtml, html);
  EXPECT_EQ(work(), kHtml);
}

TEST_F(ProtectedPairTest, AChangedScriptFileIsWork) {
  protect();
  run.files.put(kScript, run.files.get(kScript) + " ");
  EXPECT_EQ(work(), kScript);
}

TEST_F(ProtectedPairTest, FilesOfAnEarlierStateOfThePageMayBeWork) {
  protect();
  run.files.put(kPage, "<p>new</p>");
  EXPECT_EQ(work(), kScript);
}

TEST_F(ProtectedPairTest, OneFileAlone) {
  protect();
  run.files.remove_file(kScript);
  EXPECT_EQ(work(), u"");
  run.files.put(kHtml, "<p>the user's own</p>");
  EXPECT_EQ(work(), kHtml);
  run.files.remove_file(kHtml);
  run.files.put(kScript, "a script file of another program");
  EXPECT_EQ(work(), kScript);
}

TEST_F(ProtectedPairTest, BlankFilesHoldNoWork) {
  run.files.put(kHtml, "");
  run.files.put(kScript, " \r\n\t");
  EXPECT_EQ(work(), u"");
}

TEST_F(ProtectedPairTest, APageThatCannotBeProtected) {
  run.files.put(kHtml, "<p>");
  run.files.put(kPage, std::string_view("\xFF\xFE<\0", 4));
  EXPECT_EQ(work(), kHtml);
  run.files.remove_file(kPage);
  EXPECT_THROW(work_beside_page(names), failure);
}

}  // namespace
}  // namespace kavo::test
