// Translations that would change a script, as the command and a host meet them: no page is written, and the message
// names the document, the segment and its place.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/fnv_hash.h"
#include "platform/ports.h"
#include "suite/document/bilingual_document.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class ChangedScripts : public testing::Test {
 protected:
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  void prepare(std::u16string_view name, std::string_view page, std::vector<std::string> options = {}) {
    const std::vector<std::string> arguments{
        "prepare", path_to_host(folder.write(name, page)), "--source", "EN-US", "--target", "FR"};
    options.insert(options.begin(), arguments.begin(), arguments.end());
    const Ran ran = run_kavo(options);
    ASSERT_EQ(ran.code, 0) << ran.errors;
  }
  void translate(std::u16string_view tud, std::string_view text) {
    BilingualDocument document(folder.path(tud));
    ASSERT_EQ(document.size(), 1u);
    document.set_segment(0, text, TranslationStatus::kTranslated, 0);
    document.save();
  }
  // Changes a skeleton as somebody would who knows its format, checksum and all.
  void change_skeleton(std::u16string_view name, std::string_view what, std::string_view with) {
    std::string skeleton = folder.read(name);
    const std::size_t at = skeleton.find(what);
    ASSERT_NE(at, std::string::npos) << skeleton;
    ASSERT_EQ(what.size(), with.size());
    skeleton.replace(at, what.size(), with);
    skeleton.resize(skeleton.rfind(' ') + 1);
    folder.write(name, skeleton + std::to_string(fnv_hash(skeleton)) + "\n");
  }
  void expect_refused(std::u16string_view tud, std::u16string_view target, const std::string& message) {
    const Ran ran = run_kavo({"rebuild", path(tud)});
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.errors.find(message), std::string::npos) << ran.errors;
    EXPECT_FALSE(folder.exists(target));
  }
  TempFolder folder;
};

// Its texts get the escapes of the other language. Each of them is one literal of that language; only the whole script
// shows what became of it.
TEST_F(ChangedScripts, ASkeletonThatNamesAnotherLanguage) {
  const struct {
    const char* name;
    const char16_t* page;
    std::string_view script;
    std::string_view context;  // in the skeleton, with the text behind it
    std::string_view changed;
    std::string_view translation;
    std::string message;
  } cases[] = {
      {"VBScript as JavaScript", u"a.asp", "<% x = 1\r\nMsgBox \"Hi there, friend\" %>", "10000Hi", "20000Hi",
       "Salut \" : Quit ' you", "a_asp_scr_FR.tud: segment 1 (line 4, column 9): "},
      {"PHP as VBScript", u"b.php", "<?php\n$x = 1;\necho \"Hi there, friend\"; ?>", "4@000Hi", "1@000Hi", "Salut $x",
       "b_php_scr_FR.tud: segment 1 (line 5, column 7): "},
      {"single quotes as double ones", u"c.htm", "<script>alert('Hi there, friend'); f('')</script>", "21011Hi",
       "21000Hi", "l'ami', '", "c_htm_scr_FR.tud: segment 1 (line 3, column 16): "},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    const std::u16string page = row.page;
    const std::u16string stem = page.substr(0, 1) + u"_" + page.substr(2);
    prepare(page, "<html lang=\"en\"><body><p>Hello</p>\r\n" + std::string(row.script) + "\r\n</body></html>\r\n");
    translate(stem + u"_scr_FR.tud", row.translation);
    ASSERT_EQ(run_kavo({"rebuild", path(stem + u"_htm_FR.tud")}).code, 0) << "it is right as it was prepared";
    const std::u16string target = page.substr(0, 1) + u"_FR" + page.substr(1);
    ports().files->remove_file(folder.path(target));
    change_skeleton(stem + u"_scr_FR.tud.skl", row.context, row.changed);
    expect_refused(stem + u"_htm_FR.tud", target, row.message + "the translation would change the script around it");
  }
}

// Nothing is known of its escapes.
TEST_F(ChangedScripts, ALanguageWithoutALexer) {
  prepare(u"a.asp", "<%@ language=PerlScript %><% print \"Hello there, friend\"; $x = 1; %>\r\n", {"--scripts", "all"});
  for (const std::string_view text : {"Salut\", 'vous", "Salut\"; exit; $y = \"", "Salut %> vous", "Salut\nvous"}) {
    translate(u"a_asp_scr_FR.tud", text);
    expect_refused(u"a_asp_htm_FR.tud", u"a_FR.asp", "a_asp_scr_FR.tud: segment 1 (line 5, column 11): ");
  }
  translate(u"a_asp_scr_FR.tud", "Salut, vous");
  EXPECT_EQ(run_kavo({"rebuild", path(u"a_asp_htm_FR.tud")}).code, 0);
}

// An editor that shows placeholders lets a translator type one.
TEST_F(ChangedScripts, WhatIsTypedIsNoPlaceholder) {
  constexpr std::string_view kTyped = "<!-- ASP2HTML 1 -->";
  prepare(u"a.php",
          "<?php secret(); ?><html lang=\"en\"><body><p title=\"Hello there\">Hello <?php x(); ?></p>\r\n"
          "<a onclick=\"alert('It is done')\"><?= 'Come here' ?></a></body></html>\r\n");
  BilingualDocument document(folder.path(u"a_php_htm_FR.tud"));
  ASSERT_EQ(document.size(), 4u);
  for (std::size_t i = 0; i < document.size(); ++i)
    document.set_segment(i, std::string(document.segment(i).source) + std::string(kTyped),
                         TranslationStatus::kTranslated, 0);
  document.save();
  const Ran ran = run_kavo({"rebuild", path(u"a_php_htm_FR.tud")});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  const std::string page = folder.read(u"a_FR.php");
  EXPECT_EQ(page.find("secret()"), page.rfind("secret()")) << page;
  EXPECT_NE(page.find("Hello there&#60;!-- ASP2HTML 1 --&gt;\""), std::string::npos) << page;
}

}  // namespace
}  // namespace kavo::test
