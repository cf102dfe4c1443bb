#include <gtest/gtest.h>

#include "html/frmHTMLOptions.h"
#include "mif/frmMIFOptions.h"
#include "office/frmExcelOptions.h"
#include "platform/program_folder.h"
#include "ui/frmSetLanguage.h"
#include "ui/wizard_fixture.h"

namespace kavo::test {
namespace {

using Text = std::u16string;

class WizardTest : public WizardFixture {};

TEST_F(WizardTest, ShowsItsCaptions) {
  const frmWizard form(services);
  EXPECT_EQ(form.Caption(), u"Start translation");
  EXPECT_EQ(form.lblLabel[0].Caption(), u"Please select the &file you wish to translate:");
  EXPECT_EQ(form.lblLabel[1].Caption(), u"&Source language");
  EXPECT_EQ(form.lblLabel[2].Caption(), u"&Target language");
  EXPECT_EQ(form.lblLabel[3].Caption(), u"T&M (optional)");
  EXPECT_EQ(form.cmdClear.Caption(), u"&Clear");
  EXPECT_EQ(form.cmdNew.Caption(), u"&New...");
  EXPECT_EQ(form.cmdOpen.Caption(), u"&Open...");
  EXPECT_EQ(form.cmdOptions.Caption(), u"Options...");
  EXPECT_EQ(form.cmdOK.Caption(), u"OK");
  EXPECT_EQ(form.cmdCancel.Caption(), u"Cancel");
  EXPECT_EQ(form.txtTM.Text(), u"<none>");
  EXPECT_FALSE(form.cmdKAVO.Visible());
}

TEST_F(WizardTest, WithAnEmptyRegistryThePickersStartAtEnglishAndFrench) {
  const frmWizard form(services);
  EXPECT_EQ(form.morLang[0].LanguageCode(), u"EN-US");
  EXPECT_EQ(form.morLang[1].LanguageCode(), u"FR");
  EXPECT_EQ(form.morLang[0].CharSetNumber(), 1252);
  EXPECT_EQ(form.morLang[1].CharSetNumber(), 1252);
  EXPECT_EQ(form.txtLang[0].Text(), u"English (U.S.)");
  EXPECT_EQ(form.txtLang[1].Text(), u"French");
}

TEST_F(WizardTest, RememberedLanguagesAreShown) {
  remember(u"DefSourceLanguage", Text(u"JA"));
  remember(u"DefTransLanguage", Text(u"EN-GB"));
  remember(u"DefSourceEncoding", 932);
  remember(u"DefTransEncoding", 1250);
  const frmWizard form(services);
  EXPECT_EQ(form.txtLang[0].Text(), u"Japanese");
  EXPECT_EQ(form.txtLang[1].Text(), u"English (U.K.)");
  EXPECT_EQ(form.morLang[0].CharSetNumber(), 932);
  EXPECT_EQ(form.morLang[1].CharSetNumber(), 1250);
}

TEST_F(WizardTest, ClearingTheFileDisablesOkAndTypingAPathEnablesItAndRemembersItsFolder) {
  frmWizard form(services);
  EXPECT_FALSE(form.cmdOK.Enabled());
  form.txtSourceFile.Text(u"C:\\docs\\page.htm");
  EXPECT_TRUE(form.cmdOK.Enabled());
  EXPECT_EQ(setting(u"InitDir"), u"C:\\docs\\");
  form.txtSourceFile.Text(u"");
  EXPECT_FALSE(form.cmdOK.Enabled());
  EXPECT_EQ(setting(u"InitDir"), u"C:\\docs\\") << "an empty box has no folder to remember";
}

TEST_F(WizardTest, ATypeWithoutOptionsLeavesTheButtonDisabled) {
  struct Case {
    std::u16string_view file;
    bool enabled;
  };
  frmWizard form(services);
  EXPECT_FALSE(form.cmdOptions.Enabled());
  for (const Case& test : {Case{u"C:\\a.htm", true}, Case{u"C:\\a.asp", true}, Case{u"C:\\a.mif", true},
                           Case{u"C:\\a.xls", true}, Case{u"C:\\a.txt", false}, Case{u"C:\\a.exe", false}}) {
    form.txtSourceFile.Text(test.file);
    EXPECT_EQ(form.cmdOptions.Enabled(), test.enabled);
  }
  type_with_settings = 7;
  form.txtSourceFile.Text(u"C:\\b.txt");
  EXPECT_TRUE(form.cmdOptions.Enabled()) << "its filter has settings";
  form.txtSourceFile.Text(u"");
  EXPECT_FALSE(form.cmdOptions.Enabled());
}

TEST_F(WizardTest, AnUnknownTypeIsSaidBesideTheBox) {
  frmWizard form(services);
  EXPECT_EQ(form.lblFileType.Caption(), u"");
  form.txtSourceFile.Text(u"C:\\a.exe");
  EXPECT_EQ(form.lblFileType.Caption(), u"Unrecognised file type");
  EXPECT_TRUE(form.cmdOK.Enabled());
  form.txtSourceFile.Text(u"C:\\a.txt");
  EXPECT_EQ(form.lblFileType.Caption(), u"");
  form.txtSourceFile.Text(u"C:\\a.");
  form.txtSourceFile.Text(u"");
  EXPECT_EQ(form.lblFileType.Caption(), u"");
}

TEST_F(WizardTest, ADroppedFileFillsTheBox) {
  frmWizard form(services);
  form.on_drop(u"C:\\docs\\page.htm");
  EXPECT_EQ(form.txtSourceFile.Text(), u"C:\\docs\\page.htm");
  EXPECT_EQ(form.SourceType(), 3);
}

TEST_F(WizardTest, BrowsingAsksInTheLastFolderAndCancelLeavesEverything) {
  kWizardSettings.save(u"InitDir", u"C:\\last\\");
  frmWizard form(services);
  form.cmdBrowse.Click();
  EXPECT_EQ(form.txtSourceFile.Text(), u"");
  ASSERT_EQ(desktop.file_questions.size(), 1u);
  EXPECT_EQ(desktop.file_questions[0].folder, u"C:\\last\\");
  EXPECT_FALSE(desktop.file_questions[0].to_save);
  EXPECT_EQ(desktop.file_questions[0].filter,
            u"Translatable files|*.doc;*.rtf;*.htm;*.html;*.asp;*.jsp;*.mif;*.rc;*.txt;*.ppt;*.xls||");
  desktop.file_answers = {Text(u"C:\\new\\page.htm")};
  form.cmdBrowse.Click();
  EXPECT_EQ(form.txtSourceFile.Text(), u"C:\\new\\page.htm");
  EXPECT_EQ(setting(u"InitDir"), u"C:\\new\\");
}

TEST_F(WizardTest, MemoriesComeFromTheSuitesComponent) {
  memories.created = u"C:\\new.tmx";
  memories.opened = u"C:\\old.tmx";
  frmWizard form(services);
  form.cmdNew.Click();
  EXPECT_EQ(form.txtTM.Text(), u"C:\\new.tmx");
  EXPECT_EQ(form.TM(), u"C:\\new.tmx");
  form.cmdOpen.Click();
  EXPECT_EQ(form.TM(), u"C:\\old.tmx");
  EXPECT_EQ(memories.calls, (std::vector<std::string>{"CreateNew", "OpenExisting"}));
  memories.opened.clear();
  form.cmdOpen.Click();
  EXPECT_EQ(form.TM(), u"C:\\old.tmx") << "the user gave up";
  form.cmdClear.Click();
  EXPECT_EQ(form.txtTM.Text(), u"<none>");
  EXPECT_EQ(form.TM(), u"");
}

TEST_F(WizardTest, AMemoryThatFailsIsReported) {
  memories.fails = true;
  frmWizard form(services);
  form.cmdOpen.Click();
  EXPECT_EQ(form.TM(), u"");
  ASSERT_EQ(desktop.message_boxes.size(), 1u);
  EXPECT_EQ(desktop.message_boxes[0].text, u"The table cannot be read");
}

TEST_F(WizardTest, AnInterruptionAtTheMemorysQuestionIsNotAFailure) {
  memories.is_interrupted = true;
  frmWizard form(services);
  EXPECT_THROW(form.cmdOpen.Click(), interruption);
  EXPECT_TRUE(desktop.message_boxes.empty());
}

TEST_F(WizardTest, ATypedMemoryIsTakenAndAnEmptyBoxShowsNone) {
  frmWizard form(services);
  form.txtTM.Text(u"D:\\typed.tmx");
  EXPECT_EQ(form.TM(), u"D:\\typed.tmx");
  form.txtTM.Text(u"");
  EXPECT_EQ(form.txtTM.Text(), u"<none>");
  EXPECT_EQ(form.TM(), u"");
}

TEST_F(WizardTest, WithoutAMemoryComponentTheRowIsHiddenAsAGroup) {
  const frmWizard with(services);
  automation.factories.erase(u"K19Suite.TranslationMemory");
  const frmWizard without(services);
  for (const frmWizard* form : {&with, &without})
    for (const Control* control : std::initializer_list<const Control*>{&form->lblLabel[3], &form->txtTM,
                                                                        &form->cmdClear, &form->cmdNew, &form->cmdOpen})
      EXPECT_EQ(control->Visible(), form == &with);
  EXPECT_LT(without.size().height, with.size().height);
}

TEST_F(WizardTest, TheLastMemoryIsTakenFromItsDescription) {
  struct Case {
    std::u16string_view description, name;
  };
  for (const Case& test :
       {Case{u"name=\"C:\\shop.tmx\" type=\"TMX\"", u"C:\\shop.tmx"},
        Case{u"type=\"TMX\" name=\"C:\\a b.tmx\"", u"C:\\a b.tmx"}, Case{u"x name=\"unclosed", u"unclosed"},
        Case{u"name=shop", u""}, Case{u"", u""}, Case{u"name=\"\"", u""}}) {
    frmWizard form(services);
    form.SetLastTM(test.description);
    EXPECT_EQ(form.TM(), test.name);
    EXPECT_EQ(form.txtTM.Text(), test.name.empty() ? u"<none>" : test.name);
  }
}

TEST_F(WizardTest, OkRemembersTheMemoryAndACleanRunKeepsIt) {
  {
    frmWizard form(services);
    form.txtSourceFile.Text(u"C:\\a.txt");
    form.SetLastTM(u"name=\"C:\\shop.tmx\" type=\"TMX\"");
    form.cmdOK.Click();
  }
  EXPECT_EQ(setting(u"LastTM"), u"name=\"C:\\shop.tmx\" type=\"TMX\"");
  frmWizard form(services);
  EXPECT_EQ(form.LastTM(), u"name=\"C:\\shop.tmx\" type=\"TMX\"");
  EXPECT_EQ(form.TM(), u"") << "offered only when the caller says so";
  form.txtSourceFile.Text(u"C:\\a.txt");
  form.cmdOK.Click();
  EXPECT_EQ(setting(u"LastTM"), u"name=\"C:\\shop.tmx\" type=\"TMX\"");
}

TEST_F(WizardTest, ChangingALanguageGoesThroughTheDialog) {
  frmWizard form(services);
  person.next<frmSetLanguage>([](frmSetLanguage& dialog) {
    EXPECT_EQ(dialog.morLang.LanguageCode(), u"FR");
    EXPECT_EQ(dialog.morLang.CharSetNumber(), 1252);
    dialog.morLang.LanguageCode(u"JA");
    dialog.cmdOK.Click();
  });
  form.cmdChangeLang[1].Click();
  EXPECT_EQ(form.morLang[1].LanguageCode(), u"JA");
  EXPECT_EQ(form.morLang[1].CharSetNumber(), 932);
  EXPECT_EQ(form.txtLang[1].Text(), u"Japanese");
  EXPECT_EQ(form.txtLang[0].Text(), u"English (U.S.)");
  person.next<frmSetLanguage>([](frmSetLanguage& dialog) {
    dialog.morLang.LanguageCode(u"DA");
    dialog.cmdCancel.Click();
  });
  form.cmdChangeLang[0].Click();
  EXPECT_EQ(form.morLang[0].LanguageCode(), u"EN-US") << "cancelled";
}

TEST_F(WizardTest, OkStoresTheLanguagesAndCancelDoesNot) {
  {
    frmWizard form(services);
    form.morLang[0].LanguageCode(u"JA");
    form.cmdCancel.Click();
    form.close_box();
    EXPECT_TRUE(form.Cancelled());
  }
  EXPECT_EQ(remembered(u"DefSourceLanguage"), cRegistry::Variant());
  frmWizard form(services);
  form.txtSourceFile.Text(u"C:\\a.txt");
  form.morLang[0].LanguageCode(u"JA");
  form.cmdOK.Click();
  EXPECT_FALSE(form.Cancelled());
  EXPECT_EQ(remembered(u"DefSourceLanguage"), cRegistry::Variant(Text(u"JA")));
  EXPECT_EQ(remembered(u"DefTransLanguage"), cRegistry::Variant(Text(u"FR")));
  EXPECT_EQ(remembered(u"DefSourceEncoding"), cRegistry::Variant(932));
  EXPECT_EQ(remembered(u"DefTransEncoding"), cRegistry::Variant(1252));
}

TEST_F(WizardTest, OkNamesTheFileAndAMemoryThatIsAFileFromTheRoot) {
  struct Case {
    std::u16string_view typed, memory, file_after, memory_after;
  };
  files.put(u"C:\\WORK\\shop.tmx", "memory");
  for (const Case& test : {Case{u"page.htm", u"shop.tmx", u"C:\\WORK\\page.htm", u"C:\\WORK\\shop.tmx"},
                           Case{u"..\\docs\\page.htm", u"server memory", u"C:\\docs\\page.htm", u"server memory"},
                           Case{u"C:\\a.txt", u"", u"C:\\a.txt", u""}}) {
    frmWizard form(services);
    form.txtSourceFile.Text(test.typed);
    form.txtTM.Text(test.memory);
    form.cmdOK.Click();
    EXPECT_FALSE(form.Cancelled());
    EXPECT_EQ(form.txtSourceFile.Text(), test.file_after);
    EXPECT_EQ(form.TM(), test.memory_after);
    EXPECT_EQ(setting(u"InitDir"), test.file_after.substr(0, test.file_after.rfind(u'\\') + 1));
  }
  frmWizard form(services);
  form.txtSourceFile.Text(u"page.htm");
  form.cmdCancel.Click();
  EXPECT_EQ(form.txtSourceFile.Text(), u"page.htm");
}

TEST_F(WizardTest, OptionsShowTheDialogOfTheTypeAndThenTheFilters) {
  frmWizard form(services);
  for (const std::u16string_view file : {u"C:\\a.htm", u"C:\\a.asp", u"C:\\a.mif", u"C:\\a.xls"}) {
    form.txtSourceFile.Text(file);
    form.cmdOptions.Click();
  }
  EXPECT_EQ(person.shown,
            (std::vector<Text>{u"frmHTMLOptions", u"frmHTMLOptions", u"frmMIFOptions", u"frmExcelOptions"}));
  EXPECT_EQ(settings_shown, (std::vector<std::int32_t>{3, 4, 5, 9}));
  type_with_settings = 7;
  form.txtSourceFile.Text(u"C:\\a.txt");
  form.cmdOptions.Click();
  EXPECT_EQ(person.shown.size(), 4u);
  EXPECT_EQ(settings_shown.back(), 7);
  settings_fail = true;
  form.cmdOptions.Click();
  EXPECT_EQ(desktop.message_boxes.size(), 1u);
}

TEST_F(WizardTest, TheTagTableHoldsForTheRun) {
  frmWizard form(services);
  form.txtSourceFile.Text(u"C:\\a.htm");
  person.next<frmHTMLOptions>([](frmHTMLOptions& dialog) {
    dialog.Tags(u"NOBR|0,");
    dialog.cmdOK.Click();
  });
  form.cmdOptions.Click();
  EXPECT_EQ(form.HTMLTags(), u"NOBR|0,");
}

TEST_F(WizardTest, TheEditorButtonStartsTheEditorAndCancels) {
  frmWizard form(services);
  form.cmdKAVO.Click();
  EXPECT_TRUE(shell.started.empty()) << "it is hidden";
  person.next<frmWizard>([](frmWizard& shown) {
    shown.cmdKAVO.Visible(true);
    shown.cmdKAVO.Click();
    EXPECT_FALSE(shown.shown());
  });
  form.show();
  EXPECT_TRUE(form.Cancelled());
  EXPECT_EQ(shell.started, (std::vector<FakeShell::Words>{{program_folder() + u"\\KAVO.EXE", u"NW"}}));
}

TEST_F(WizardTest, AnEditorThatCannotBeStartedIsReportedAndTheFormStays) {
  shell.can_start = false;
  frmWizard form(services);
  person.next<frmWizard>([](frmWizard& shown) {
    shown.cmdKAVO.Visible(true);
    shown.cmdKAVO.Click();
    EXPECT_TRUE(shown.shown());
  });
  form.show();
  EXPECT_EQ(desktop.message_boxes.size(), 1u);
}

TEST_F(WizardTest, WithoutLanguagesTheFormStillWorks) {
  automation.factories.erase(u"K19Suite.LanguageInformation");
  frmWizard form(services);
  EXPECT_EQ(form.txtLang[0].Text(), u"");
  form.txtSourceFile.Text(u"C:\\a.txt");
  form.cmdOK.Click();
  EXPECT_FALSE(form.Cancelled());
}

}  // namespace
}  // namespace kavo::test
