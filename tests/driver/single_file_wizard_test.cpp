#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/file_type.h"
#include "common/folder_run.h"
#include "common/program_settings.h"
#include "driver/driver_fixture.h"
#include "driver/filter_table.h"
#include "forms/fake_presenter.h"
#include "html/frmHTMLOptions.h"
#include "platform/program_folder.h"
#include "platform/unicode.h"
#include "ui/fake_languages.h"
#include "ui/frmProgress.h"
#include "ui/frmWizard.h"

namespace kavo::test {
namespace {

using Text = std::u16string;

// A suite whose catalogue writes down what it converts, and can be told to fail.
class SingleFileWizardTest : public DriverFixture {
 protected:
  SingleFileWizardTest() {
    automation.factories[u"K19Suite.LanguageInformation"] = [] {
      std::vector<ListedLanguage> languages = five_languages();
      languages.push_back({u"French", u"FR", 1252, 0x0C});
      return make_language_information(languages, three_code_pages());
    };
    automation.factories[u"K19Suite.FilterCatalogue"] = [this] { return catalogue(); };
    automation.factories[u"K19Suite.TranslationMemory"] = [] {
      return std::make_shared<FakeObject>(std::vector<Member>{});
    };
    automation.factories[u"K19Suite.TUDDocument"] = [this] { return script_document(); };
    files.put(launcher, "MZ");
    files.put(u"C:\\a.txt", "text");
    files.put(u"C:\\page.asp", "<p><% x = 1 %></p>\r\n");
  }

  ObjectRef catalogue() {
    const std::vector<Text> filters = {u"K19HTM", u"K19MIF", u"K19TXT"};
    std::vector<Member> members{
        {u"Enumerate", MemberKind::kMethod, 5, 5,
         [=](std::span<Argument> arguments) -> Value {
           const auto index = static_cast<std::size_t>(as_number(arguments[0].value));
           if (index >= filters.size()) return std::int32_t{0};
           arguments[3].value = filters[index];
           return std::int32_t{1};
         }},
        {u"Convert", MemberKind::kMethod, 9, 9,
         [this](std::span<Argument> arguments) -> Value {
           std::vector<Text> call;
           for (const Argument& argument : arguments)
             call.push_back(FolderRun::without_scratch_folder(as_text(argument.value)));
           conversions.push_back(call);
           if (on_convert) on_convert();
           if (conversions.size() == failing_conversion) throw failure(1004, u"The page has no text", u"Suite");
           files.put(call[1], "tud");
           files.put(call[2], "skeleton");
           return std::int32_t{1};
         }},
        {u"Settings", MemberKind::kMethod, 1, 1, [](std::span<Argument>) -> Value { return std::int32_t{0}; }}};
    if (says_settings)
      members.push_back({u"HasSettings", MemberKind::kMethod, 1, 1, [](std::span<Argument> arguments) -> Value {
                           return as_text(arguments[0].value) == u"K19TXT";
                         }});
    return std::make_shared<FakeObject>(members);
  }

  static ObjectRef script_document() {
    const auto done = [](std::span<Argument>) -> Value { return std::int32_t{0}; };
    return std::make_shared<FakeObject>(
        std::vector<Member>{{u"Open", MemberKind::kMethod, 1, 1, done},
                            {u"SegmentCount", MemberKind::kPropertyGet, 0, 0, done},
                            {u"Close", MemberKind::kMethod, 0, 0, done},
                            {u"LastError", MemberKind::kPropertyGet, 0, 0, [](auto) -> Value { return Text(); }}});
  }

  // What the user does to the wizard.
  void user(std::function<void(frmWizard&)> act) { person.next<frmWizard>(std::move(act)); }
  void user_takes(Text file) {
    user([file](frmWizard& form) {
      form.txtSourceFile.Text(file);
      form.cmdOK.Click();
    });
  }
  void user_cancels() {
    user([](frmWizard& form) { form.cmdCancel.Click(); });
  }
  std::int32_t run(std::int32_t bits = 0, Text file = u"") {
    K19FPWObj object;
    object.QuietMode(quiet);
    const std::int32_t result = object.SingleFileWizard(file, bits);
    listed = file_list(object);
    return result;
  }

  // A path as people are told it.
  static Text told(const Text& path) { return to_utf16(path_to_host(path)); }

  const Text launcher = program_folder() + u"\\K19Subst.exe";
  std::vector<std::vector<Text>> conversions;
  std::size_t failing_conversion = 0;
  std::function<void()> on_convert;
  bool says_settings = false;
  std::int32_t quiet = 0;
  std::vector<Text> listed;
  FakePresenter person;
};

TEST_F(SingleFileWizardTest, ATextGoesFromTheDialogToTheEditor) {
  user_takes(u"C:\\a.txt");
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(conversions,
            (std::vector<std::vector<Text>>{{u"C:\\a.txt", u"C:\\a_txt_FR.tud", u"C:\\a_txt_FR.tud.skl", u"EN-US",
                                             u"1252", u"FR", u"1252", u"K19TXT", u"Paragraph"}}));
  EXPECT_EQ(shell.opened, (std::vector<FakeShell::Opened>{{launcher, u"\"C:\\a_txt_FR.tud\""}}));
  EXPECT_TRUE(desktop.message_boxes.empty());
  EXPECT_EQ(person.shown, std::vector<Text>{u"frmWizard"});
}

TEST_F(SingleFileWizardTest, TheMemoryChosenGoesToTheEditor) {
  user([](frmWizard& form) {
    form.txtSourceFile.Text(u"C:\\a.txt");
    form.txtTM.Text(u"C:\\my shop.tmx");
    form.cmdOK.Click();
  });
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(shell.opened, (std::vector<FakeShell::Opened>{{launcher, u"\"C:\\a_txt_FR.tud\" /t\"C:\\my shop.tmx\""}}));
}

// Every combination of how the run ends, bits 1 and 2, and a memory that was used before.
TEST_F(SingleFileWizardTest, TheLauncherIsStartedAsResultBitsAndMemorySay) {
  const Text tud = u"\"C:\\a_txt_FR.tud\"", memory = u"/t\"C:\\shop.tmx\"";
  enum class End { kDone, kCancelled, kUnknownType, kConversionFails };
  for (const End end : {End::kDone, End::kCancelled, End::kUnknownType, End::kConversionFails})
    for (const bool even_after_failure : {false, true})
      for (const bool offers_memory : {false, true})
        for (const bool has_memory : {false, true}) {
          SCOPED_TRACE(testing::Message()
                       << static_cast<int>(end) << even_after_failure << offers_memory << has_memory);
          shell.opened.clear();
          conversions.clear();
          kWizardSettings.save(u"LastTM", has_memory ? u"name=\"C:\\shop.tmx\" type=\"TMX\"" : u"");
          failing_conversion = end == End::kConversionFails ? 1 : 0;
          if (end == End::kCancelled)
            user_cancels();
          else
            user_takes(end == End::kUnknownType ? u"C:\\a.foo" : u"C:\\a.txt");
          const std::int32_t result = run((even_after_failure ? 2 : 0) | (offers_memory ? 4 : 0));
          EXPECT_EQ(
              result,
              (std::map<End, std::int32_t>{
                  {End::kDone, 0}, {End::kCancelled, 1}, {End::kUnknownType, 2}, {End::kConversionFails, 200}})[end]);
          std::vector<FakeShell::Opened> expected;
          if (end == End::kDone)
            expected = {{launcher, offers_memory && has_memory ? tud + u" " + memory : tud}};
          else if (even_after_failure)
            expected = {{launcher, !offers_memory ? u"" : has_memory ? memory : u"/t\"\""}};
          EXPECT_EQ(shell.opened, expected);
        }
}

TEST_F(SingleFileWizardTest, WithTheLauncherMissingTheEditorIsNeverStarted) {
  files.remove_file(launcher);
  user_takes(u"C:\\a.txt");
  EXPECT_EQ(run(2), 0);
  user_cancels();
  EXPECT_EQ(run(2), 1);
  EXPECT_TRUE(shell.opened.empty());
}

TEST_F(SingleFileWizardTest, AnEditorThatDoesNotStartIsReportedAndTheResultStays) {
  shell.open_result = 2;
  user_takes(u"C:\\a.txt");
  EXPECT_EQ(run(), 0);
  ASSERT_EQ(desktop.message_boxes.size(), 1u);
  EXPECT_NE(desktop.message_boxes[0].text.find(told(launcher)), Text::npos);
}

TEST_F(SingleFileWizardTest, AFailureOnProducedFile1Gives201AndKeepsTheFirstDocument) {
  failing_conversion = 2;
  user_takes(u"C:\\page.asp");
  EXPECT_EQ(run(), 201);
  EXPECT_TRUE(files.info(u"C:\\page_asp_htm_FR.tud"));
  ASSERT_EQ(conversions.size(), 2u);
  ASSERT_EQ(desktop.message_boxes.size(), 1u);
  const FakeDesktop::MessageBox& box = desktop.message_boxes[0];
  EXPECT_EQ(box.caption, u"KAVO");
  EXPECT_EQ(box.icon, MessageIcon::kExclamation);
  EXPECT_NE(box.text.find(told(listed[1])), Text::npos) << "where";
  EXPECT_NE(box.text.find(u"The page has no text"), Text::npos) << "why";
  EXPECT_NE(box.text.find(u"Please make sure"), Text::npos) << "what to do";
}

TEST_F(SingleFileWizardTest, AServerPageHandsOverItsPage) {
  user_takes(u"C:\\page.asp");
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(listed.size(), 2u);
  EXPECT_EQ(shell.opened, (std::vector<FakeShell::Opened>{{launcher, u"\"" + conversions[0][1] + u"\""}}));
}

TEST_F(SingleFileWizardTest, APreparationThatFailsGives100AndItsResult) {
  user_takes(u"C:\\missing.htm");
  EXPECT_EQ(run(), 103);
  user_takes(u"C:\\missing.mif");
  EXPECT_EQ(run(), 104);
  EXPECT_TRUE(conversions.empty());
  EXPECT_TRUE(listed.empty());
  ASSERT_EQ(desktop.message_boxes.size(), 2u);
  EXPECT_NE(desktop.message_boxes[0].text.find(told(u"C:\\missing.htm")), Text::npos);
}

TEST_F(SingleFileWizardTest, AnUnknownTypeGives2AndIsReported) {
  user_takes(u"C:\\a.foo");
  EXPECT_EQ(run(), 2);
  ASSERT_EQ(desktop.message_boxes.size(), 1u);
  EXPECT_NE(desktop.message_boxes[0].text.find(told(u"C:\\a.foo")), Text::npos);
}

TEST_F(SingleFileWizardTest, QuietModeShowsNoMessageBox) {
  quiet = 1;
  user_takes(u"C:\\a.foo");
  EXPECT_EQ(run(), 2);
  EXPECT_TRUE(desktop.message_boxes.empty());
}

TEST_F(SingleFileWizardTest, ATypeWithoutAFilterGives200) {
  user_takes(u"C:\\a.doc");
  EXPECT_EQ(run(), 200);
  EXPECT_NE(desktop.message_boxes.at(0).text.find(u"No filter is installed"), Text::npos);
}

TEST_F(SingleFileWizardTest, TheFileGivenIsOfferedWhenItExists) {
  struct Case {
    Text given, offered;
  };
  files.put(u"C:\\folder\\inner.txt", "x");
  for (const Case& test : {Case{u"C:\\a.txt", u"C:\\a.txt"}, Case{u"  C:\\a.txt ", u"C:\\a.txt"},
                           Case{u"C:\\none.txt", u""}, Case{u"", u""}, Case{u"   ", u""}, Case{u"C:\\*.txt", u""}}) {
    user([&](frmWizard& form) {
      EXPECT_EQ(form.txtSourceFile.Text(), test.offered);
      form.cmdCancel.Click();
    });
    EXPECT_EQ(run(0, test.given), 1);
  }
}

TEST_F(SingleFileWizardTest, Bit0ShowsTheEditorButtonAndBit2OffersTheLastMemory) {
  kWizardSettings.save(u"LastTM", u"name=\"C:\\shop.tmx\" type=\"TMX\"");
  for (const std::int32_t bits : {0, 1, 4, 5}) {
    user([&](frmWizard& form) {
      EXPECT_EQ(form.cmdKAVO.Visible(), (bits & 1) != 0);
      EXPECT_EQ(form.TM(), (bits & 4) != 0 ? u"C:\\shop.tmx" : u"");
    });
    EXPECT_EQ(run(bits), 1) << "closed by its title bar";
  }
}

TEST_F(SingleFileWizardTest, OptionsAreThereForAFilterThatSaysItHasSettings) {
  const auto look = [this](bool expected) {
    user([expected](frmWizard& form) {
      form.txtSourceFile.Text(u"C:\\a.txt");
      EXPECT_EQ(form.cmdOptions.Enabled(), expected);
      form.cmdOptions.Click();
    });
    run();
  };
  look(false);
  EXPECT_EQ(filter_table(kPlainText).reserved, 0);
  says_settings = true;
  look(true);
  EXPECT_EQ(filter_table(kPlainText).reserved, 1) << "marked as configured";
}

TEST_F(SingleFileWizardTest, TheTagTableOfTheOptionsHoldsForThisRunOnly) {
  files.put(u"C:\\page.htm", "<b><i>x</b></i>");
  person.next<frmWizard>([](frmWizard& form) {
    form.txtSourceFile.Text(u"C:\\page.htm");
    form.cmdOptions.Click();
    form.cmdOK.Click();
  });
  person.next<frmHTMLOptions>([](frmHTMLOptions& form) {
    form.cmdClear.Click();
    form.cmdOK.Click();
  });
  // The wizard's act runs first and shows the options form within it.
  EXPECT_EQ(run(), 0);
  const Text page = listed.at(0);
  EXPECT_NE(files.get(page).find("x</b></i>"), std::string::npos) << "nothing was checked";
  user_takes(u"C:\\page.htm");
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(files.get(page).find("x</b></i>"), std::string::npos);
}

TEST_F(SingleFileWizardTest, CancellingBesideTheProgressIsACancelledRun) {
  for (const bool filter_notices : {true, false}) {
    frmProgress* progress = nullptr;
    person.on_open = [&](Form& form) { progress = &dynamic_cast<frmProgress&>(form); };
    on_convert = [&] {
      progress->cmdCancel.Click();
      if (filter_notices) ports().desktop->process_messages();
    };
    user_takes(u"C:\\a.txt");
    EXPECT_EQ(run(), 1);
    EXPECT_TRUE(desktop.message_boxes.empty());
    EXPECT_TRUE(shell.opened.empty());
    EXPECT_FALSE(interrupt_requested());
  }
}

TEST_F(SingleFileWizardTest, TheProgressNamesTheFile) {
  Text told;
  person.on_open = [](Form&) {};
  K19FPWObj object;
  std::vector<int> percents;
  std::vector<Text> converted;
  object.observe({[&](std::u16string_view file, int percent) {
                    told = file;
                    percents.push_back(percent);
                  },
                  {},
                  [&](std::u16string_view file, int percent) {
                    converted.emplace_back(file);
                    percents.push_back(percent);
                  }});
  user_takes(u"C:\\page.asp");
  Text file;
  std::int32_t bits = 0;
  EXPECT_EQ(object.SingleFileWizard(file, bits), 0);
  EXPECT_EQ(told, u"C:\\page.asp");
  ASSERT_FALSE(percents.empty());
  EXPECT_TRUE(std::ranges::is_sorted(percents));
  EXPECT_THAT(std::span(percents).last(3), testing::ElementsAre(50, 50, 75)) << "half of the whole is the preparation";
  EXPECT_EQ(converted, file_list(object));
}

TEST_F(SingleFileWizardTest, AnInterruptionOfTheProgramIsRaised) {
  on_convert = [] {
    request_interrupt();
    ports().desktop->process_messages();
  };
  user_takes(u"C:\\a.txt");
  EXPECT_EQ(failure_number([&] { run(); }), 18);
}

TEST_F(SingleFileWizardTest, WithoutAPresenterItIsCancelled) {
  form_presenter(nullptr);
  EXPECT_EQ(run(), 1);
  form_presenter(&person);
}

}  // namespace
}  // namespace kavo::test
