#include "ui/terminal/terminal_presenter.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <sstream>

#include "html/frmHTMLOptions.h"
#include "mif/frmMIFOptions.h"
#include "office/frmExcelOptions.h"
#include "platform/files.h"
#include "ui/frmSetLanguage.h"
#include "ui/terminal/terminal_desktop.h"
#include "ui/wizard_fixture.h"

namespace kavo::test {
namespace {

class TerminalTest : public WizardFixture {
 protected:
  // Shows the form to somebody who types these lines; what was shown to them.
  std::string type(Form& form, const std::string& lines) {
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe(ends.data()), 0);
    EXPECT_EQ(::write(ends[1], lines.data(), lines.size()), static_cast<ssize_t>(lines.size()));
    ::close(ends[1]);
    std::ostringstream output;
    TerminalPresenter presenter(ends[0], output);
    form_presenter(&presenter);
    form.show();
    form_presenter(&person);
    ::close(ends[0]);
    return output.str();
  }
};

TEST_F(TerminalTest, TheEndOfTheInputCancels) {
  frmMIFOptions form;
  const std::string output = type(form, "");
  EXPECT_TRUE(form.Cancelled());
  EXPECT_FALSE(form.shown());
  EXPECT_NE(output.find("== MIF Options =="), std::string::npos);
}

TEST_F(TerminalTest, EmptyLinesGoThroughTheFormAndConfirmAtOk) {
  frmMIFOptions form;
  form.SplitOptions(1);
  form.Markers(u"Index\t");
  type(form, "\n\n\n\n\n\n\n\n\n\n\n\n");
  EXPECT_FALSE(form.Cancelled());
  EXPECT_EQ(form.SplitOptions(), 1);
  EXPECT_EQ(form.Markers(), u"Index\t");
}

TEST_F(TerminalTest, AnswersReachTheControls) {
  frmMIFOptions form;
  form.Markers(u"Index\t");
  // Split, objects, a new marker and its Add, one more, then on and OK.
  const std::string output = type(form, "3\ny\nHeading\ny\nSubject\r\ny\n:ok\n");
  EXPECT_FALSE(form.Cancelled());
  EXPECT_EQ(form.SplitOptions(), 2);
  EXPECT_TRUE(form.ProcessObjects());
  EXPECT_EQ(form.Markers(), u"Index\tHeading\tSubject\t");
  EXPECT_NE(output.find("Remove embedded [o]bjects from files? (y/N)"), std::string::npos) << output;
}

TEST_F(TerminalTest, ItemsAreChosenByTheBeginningOfTheirText) {
  frmSetLanguage form;
  type(form, "jap\n\n\n:ok\n");
  EXPECT_FALSE(form.Cancelled());
  EXPECT_EQ(form.morLang.LanguageCode(), u"JA");
}

TEST_F(TerminalTest, AWrongItemIsAskedAgain) {
  frmMIFOptions form;
  form.SplitOptions(0);
  const std::string output = type(form, "9\nsplit\n:list\n2\n:ok\n");
  EXPECT_EQ(form.SplitOptions(), 1);
  EXPECT_NE(output.find("no item, or more than one, begins with that"), std::string::npos);
  EXPECT_NE(output.find("* 1 Don't split"), std::string::npos);
}

TEST_F(TerminalTest, OptionButtonsAreOneQuestion) {
  frmExcelOptions form;
  const std::string output = type(form, "7\n2\nn\n\n\n12a3\n:ok\n");
  EXPECT_FALSE(form.Cancelled());
  EXPECT_TRUE(form.optOrder[1].Value());
  EXPECT_FALSE(form.chkExportHidden.Value());
  EXPECT_TRUE(form.chkExportFormulas.Value());
  EXPECT_EQ(form.txtBlankCellTolerance.Text(), u"123");
  EXPECT_NE(output.find("there is no such number"), std::string::npos);
}

TEST_F(TerminalTest, CommandsGoBackAndToKeysAndExplain) {
  frmHTMLOptions form;
  form.Tags(u"B|0,FONT|1,");
  const std::string output = type(form, "?\n:x\n:o\ny\n:back\nn\n:c\ny\n:back\n:empty\n:cancel\n");
  EXPECT_TRUE(form.Cancelled());
  EXPECT_EQ(form.Tags(), u"");
  EXPECT_NE(output.find(":back"), std::string::npos);
  EXPECT_NE(output.find(":x: no such command"), std::string::npos);
}

TEST_F(TerminalTest, ADisabledOkIsNotPossibleYet) {
  frmWizard form(services);
  const std::string output = type(form, ":ok\n");
  EXPECT_TRUE(form.Cancelled());
  EXPECT_NE(output.find("OK is not possible yet"), std::string::npos);
}

TEST_F(TerminalTest, TheWizardTakesAPathAsTheSystemWritesItAndSaysAnUnknownType) {
  frmWizard form(services);
  const std::string output = type(form, "/docs/manual.foo\n\n\n\n\n\n\n:f\n/docs/page.htm\n:ok\n");
  EXPECT_FALSE(form.Cancelled());
  EXPECT_EQ(form.txtSourceFile.Text(), ports().files->absolute(path_from_host("/docs/page.htm")));
  EXPECT_NE(output.find("Unrecognised file type"), std::string::npos);
  EXPECT_NE(output.find("[S]ource language: English (U.S.)"), std::string::npos) << output;
}

TEST_F(TerminalTest, BrowsingAsksForThePathUntilItIsThereOrGivenUp) {
  const std::u16string there = ports().files->absolute(path_from_host("/docs/page.htm"));
  files.put(there, "x");
  frmWizard form(services);
  const std::string output = type(form, "\ny\n/docs/none.htm\n/docs/page.htm\n:ok\n");
  EXPECT_EQ(form.txtSourceFile.Text(), there);
  EXPECT_NE(output.find("there is no such file"), std::string::npos);
  frmWizard again(services);
  type(again, "\ny\n\n:cancel\n");
  EXPECT_EQ(again.txtSourceFile.Text(), u"");
}

TEST_F(TerminalTest, AFormInsideAFormIsAskedInBetween) {
  frmWizard form(services);
  type(form, "/a.txt\n\n\ny\nDanish\n\n\n\ny\n:ok\n");
  EXPECT_FALSE(form.Cancelled());
  EXPECT_EQ(form.morLang[0].LanguageCode(), u"EN-US");
}

TEST_F(TerminalTest, TextThatBeginsWithAColonIsWrittenWithTwo) {
  frmHTMLOptions form;
  type(form, "::o:p\ny\n:ok\n");
  EXPECT_EQ(form.Tags(), u":O:P|0,");
}

TEST_F(TerminalTest, ControlCInterrupts) {
  frmMIFOptions form;
  request_interrupt();
  try {
    type(form, "\n");
    FAIL();
  } catch (const interruption&) {
  }
  form_presenter(&person);
  EXPECT_FALSE(form.shown());
  EXPECT_EQ(form.view(), nullptr);
}

TEST_F(TerminalTest, ASavedNameGetsItsExtensionAndReplacingIsAsked) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  const std::string lines = "/docs/shop\nn\n/docs/shop\ny\n/docs/fresh.tmx\n";
  ASSERT_EQ(::write(ends[1], lines.data(), lines.size()), static_cast<ssize_t>(lines.size()));
  ::close(ends[1]);
  const std::u16string there = ports().files->absolute(path_from_host("/docs/shop.tmx"));
  files.put(there, "x");
  TerminalInput input(ends[0]);
  std::ostringstream output;
  TerminalDesktop terminal(desktop, input, output);
  FileQuestion question;
  question.to_save = true;
  question.extension = u"tmx";
  EXPECT_EQ(terminal.ask_file(question), there);
  EXPECT_EQ(terminal.ask_file(question), ports().files->absolute(path_from_host("/docs/fresh.tmx")));
  EXPECT_EQ(terminal.ask_file(question), std::nullopt) << "the input has ended";
  ::close(ends[0]);
}

}  // namespace
}  // namespace kavo::test
