// Repairs stay in their branch of a script's condition.
#include <gtest/gtest.h>

#include "asp2html_run.h"
#include "html/repair/clsHTMLValidate.h"

namespace kavo::test {
namespace {

struct Repaired {
  std::string page;
  std::vector<std::u16string> left;  // what was left for another branch
  bool is_torn = false;              // the page was left as it is
};

// `page` with its scripts put back as they stand in it.
Repaired repaired(std::string_view page, script::Language language, bool keeps_branches = true) {
  MemoryRun run;
  run.files.put(u"C:\\WORK\\a.asp", page);
  clsASP2HTML converter;
  converter.ASPFile(u"C:\\WORK\\a.asp");
  EXPECT_EQ(converter.ASP2HTML(), 0);
  clsHTMLValidate validation;
  validation.Filename(u"C:\\WORK\\a_asp.htm");
  if (keeps_branches) validation.scripts(u"C:\\WORK\\a_asp.scr", language);
  EXPECT_EQ(validation.HTMLValidate(), 0);
  Repaired result;
  for (const Message& message : validation.ErrorList())
    if (message.text.find(u"another branch") != std::u16string::npos) result.left.push_back(message.text);
  for (const Message& message : validation.ErrorList())
    result.is_torn = result.is_torn || message.text.find(u"what follows may be code") != std::u16string::npos;
  converter.HTMFile(u"C:\\WORK\\a_asp.htm");
  converter.SCRFile(u"C:\\WORK\\a_asp.scr");
  converter.ASPFile(u"C:\\WORK\\b.asp");
  EXPECT_EQ(converter.HTML2ASP(), 0);
  result.page = run.files.get(u"C:\\WORK\\b.asp");
  return result;
}

// PHP goes on after a "?>" in a literal, and a repair there would change its code.
TEST(BranchRepair, LeavesAPageAloneWhoseScriptContinuesBeyondItsEnd) {
  const struct {
    const char* name;
    const char* page;
    bool is_torn;
  } cases[] = {
      {"double quotes", "<div><b>x</div><?php echo \"a ?> c\"; if ($a <b && $c> d) f(); ?>", true},
      {"single quotes", "<div><b>x</div><?php echo 'a ?> c'; ?>", true},
      {"heredoc", "<div><b>x</div><?php echo <<<E\na ?> c\nE;\n?>", true},
      {"comment", "<div><b>x</div><?php /* ?> */ f($a <b && $c> d); ?>", true},
      {"in a tag", "<div><b>x</div><p class=\"<?php echo \"?>\" ?>\">", true},
      {"a later block", "<?php f('a'); ?><div><b>x</div><?php g(\"?>\"); ?>", true},
      {"an opening in a literal", "<div><b>x</div><?php echo '<?php a <b'; if ($a <b) f(); ?>", true},
      {"comment of a line", "<div><b>x</div><?php // 'a ?>y", false},
      {"whole literals", "<div><b>x</div><?php echo \"a\", 'b', <<<E\nc\nE;\n/* d */ ?>y", false},
      {"end of the file", "<div><b>x</div><?php echo 'a", false},
      {"another language", "<div><b>x</div><% f(\"a %> c\") %>", false},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    const Repaired result = repaired(row.page, script::Language::kPhp);
    EXPECT_EQ(result.is_torn, row.is_torn);
    EXPECT_EQ(result.page == row.page, row.is_torn) << result.page;
    EXPECT_FALSE(repaired(row.page, script::Language::kPhp, false).is_torn);
  }
}

TEST(BranchRepair, WritesNoEndTagIntoAnotherBranch) {
  const struct {
    const char* name;
    const char* page;
    const char* expected;
    std::size_t left;
    script::Language language = script::Language::kVbScript;
  } cases[] = {
      {"same branch", "<div><% If a Then %><b>x</div><% End If %>", "<div><% If a Then %><b>x</B></div><% End If %>",
       0},
      {"ends in the condition", "<div><b>x<% If a Then %></div><% End If %>",
       "<div><b>x<% If a Then %></div><% End If %>", 1},
      {"began in the other branch", "<div><% If a Then %><i>x<% Else %><b>y</div><% End If %>",
       "<div><% If a Then %><i>x<% Else %><b>y</div><% End If %>", 1},
      {"end of the page", "<% If a Then %><b>x<% End If %>y", "<% If a Then %><b>x<% End If %>y", 1},
      {"after a whole condition", "<div><b>x<% If a Then %>y<% End If %></div>",
       "<div><b>x<% If a Then %>y<% End If %></B></div>", 0},
      {"condition of one line", "<div><b>x<% If a Then n = 1 %></div>", "<div><b>x<% If a Then n = 1 %></B></div>", 0},
      {"a value", "<div><b>x<%= n %></div>", "<div><b>x<%= n %></B></div>", 0},
      {"loop", "<ul><b><% For Each a In c %></ul><% Next %>", "<ul><b><% For Each a In c %></ul><% Next %>", 1},
      {"condition in a tag", "<div <% If a Then %>id=a <% End If %> class=c><b>x</div>",
       "<div <% If a Then %>id=a <% End If %> class=c><b>x</B></div>", 0},
      {"Java", "<div><b>x<% if (a) { %></div><% } %>", "<div><b>x<% if (a) { %></div><% } %>", 1,
       script::Language::kJava},
  };
  for (const auto& row : cases) {
    const Repaired result = repaired(row.page, row.language);
    EXPECT_TRUE(result.page.starts_with(row.expected)) << row.name << "\n" << result.page;
    EXPECT_EQ(result.left.size(), row.left) << row.name;
  }
}

TEST(BranchRepair, IsTheSameHoweverThePageIsCut) {
  constexpr std::string_view kPage =
      "<div><b>x<% If a Then %></div><% Else %><i>y</div><% End If %><div><b>z<% If b Then %></div><% End If %>";
  const std::string expected = repaired(kPage, script::Language::kVbScript).page;
  for (std::size_t size = 1; size < 64; ++size) {
    const BlockSizeScope scope(size);
    EXPECT_EQ(repaired(kPage, script::Language::kVbScript).page, expected) << size;
  }
}

TEST(BranchRepair, AnyRepairWithoutTheScripts) {
  const Repaired result = repaired("<div><b>x<% If a Then %></div><% End If %>", script::Language::kVbScript, false);
  EXPECT_TRUE(result.page.starts_with("<div><b>x<% If a Then %></B></div>")) << result.page;
}

}  // namespace
}  // namespace kavo::test
