// kavo prepare on a source that has changed: what was translated is kept.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "suite/document/bilingual_document.h"

namespace kavo::test {
namespace {

class UpdateCommand : public testing::Test {
 protected:
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  Ran prepare(std::vector<std::string> files, std::vector<std::string> more = {}) {
    files.insert(files.begin(), "prepare");
    files.insert(files.end(), {"--source", "EN-US", "--target", "FR", "--code-page", "utf-8"});
    files.insert(files.end(), more.begin(), more.end());
    return run_kavo(files);
  }
  // The counts of the last document of a run.
  nlohmann::json update(std::vector<std::string> files) {
    const Ran ran = prepare(std::move(files), {"--json"});
    EXPECT_EQ(ran.code, 0) << ran.output;
    std::istringstream lines(ran.output);
    nlohmann::json last;
    for (std::string line; std::getline(lines, line);) last = nlohmann::json::parse(line);
    return last["update"];
  }
  // Every file with its bytes and its time.
  std::map<std::string, std::pair<std::string, std::filesystem::file_time_type>> everything() {
    std::map<std::string, std::pair<std::string, std::filesystem::file_time_type>> all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path_to_host(folder.path())))
      if (entry.is_regular_file())
        all[entry.path().string()] = {read_file(path_from_host(entry.path().string())), entry.last_write_time()};
    return all;
  }
  void translate(std::u16string_view tud, std::string_view source, std::string_view target,
                 TranslationStatus status = TranslationStatus::kTranslated) {
    BilingualDocument document(folder.path(tud));
    for (std::size_t i = 0; i < document.size(); ++i)
      if (document.segment(i).source == source) document.set_segment(i, target, status, 0);
    document.save();
  }
  std::string target_of(std::u16string_view tud, std::string_view source) {
    const BilingualDocument document(folder.path(tud));
    for (std::size_t i = 0; i < document.size(); ++i)
      if (const BilingualSegment segment = document.segment(i); segment.source == source)
        return std::to_string(static_cast<int>(segment.status)) + std::string(segment.target);
    return "not there";
  }
  TempFolder folder;
};

TEST_F(UpdateCommand, WithoutAChangeNothingIsWritten) {
  const std::string page = "<html><body><p>Hello</p><% MsgBox \"Hi\" %></body></html>\r\n";
  const std::vector<std::string> files{
      path_to_host(folder.write(u"p.asp", page)), path_to_host(folder.write(u"t.txt", "One\nTwo\n")),
      path_to_host(folder.write(
          u"m.mif",
          "<MIFFile 7.00>\r\n<VariableFormats \r\n <VariableFormat \r\n  <VariableName `Product'>\r\n  <VariableDef "
          "`Apple'>\r\n >\r\n>\r\n<TextFlow \r\n <Para \r\n  <ParaLine \r\n   <String `Text'>\r\n  >\r\n >\r\n>\r\n"))};
  ASSERT_EQ(prepare(files).code, 0);
  translate(u"t_txt_FR.tud", "One", "Un", TranslationStatus::kApproved);
  const auto before = everything();
  const Ran ran = prepare(files);
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_NE(ran.output.find("t_txt_FR.tud"), std::string::npos) << "the documents are there";
  EXPECT_EQ(everything(), before);
  const nlohmann::json counts = update({files[1]});
  EXPECT_EQ(counts["unchanged"], true);
  EXPECT_EQ(counts["kept"], 2);
}

TEST_F(UpdateCommand, AFileThatIsMissingIsMadeAgain) {
  const std::string page = path_to_host(folder.write(u"p.asp", "<html><body><p>Hello</p></body></html>\r\n"));
  ASSERT_EQ(prepare({page}).code, 0);
  translate(u"p_asp_htm_FR.tud", "Hello", "Salut");
  for (const std::u16string_view name : {u"p_asp.htm", u"p_asp_htm_FR.tud.skl", u"p_asp_scr_FR.tud"}) {
    std::filesystem::remove(path(name));
    EXPECT_EQ(prepare({page}).code, 0);
    EXPECT_TRUE(folder.exists(name));
    EXPECT_EQ(target_of(u"p_asp_htm_FR.tud", "Hello"), "2Salut");
  }
}

TEST_F(UpdateCommand, ASetIsUpdatedAsOne) {
  const std::string page =
      path_to_host(folder.write(u"p.asp", "<html><body><p>Hello</p><% MsgBox \"Good morning\" %></body></html>\r\n"));
  ASSERT_EQ(prepare({page}).code, 0);
  translate(u"p_asp_htm_FR.tud", "Hello", "Salut", TranslationStatus::kApproved);
  translate(u"p_asp_scr_FR.tud", "Good morning", "Bonjour", TranslationStatus::kApproved);
  folder.write(u"p.asp", "<html><body><p>New</p><p>Hello</p><% MsgBox \"Good morning\" %></body></html>\r\n");
  const Ran refused = run_kavo({"rebuild", path(u"p_asp_htm_FR.tud"), "--output", path(u"old.asp")});
  EXPECT_NE(refused.errors.find("has changed since it was prepared"), std::string::npos) << refused.errors;
  const nlohmann::json counts = update({page});
  EXPECT_EQ(counts["kept"], 2);
  EXPECT_EQ(counts["new"], 1);
  EXPECT_EQ(target_of(u"p_asp_htm_FR.tud", "Hello"), "5Salut");
  EXPECT_EQ(target_of(u"p_asp_scr_FR.tud", "Good morning"), "5Bonjour");
  const Ran rebuilt = run_kavo({"rebuild", path(u"p_asp_htm_FR.tud")});
  EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
  EXPECT_EQ(folder.read(u"p_FR.asp"), "<html><body><p>New</p><p>Salut</p><% MsgBox \"Bonjour\" %></body></html>\r\n");
}

TEST_F(UpdateCommand, EachTypeKeepsItsTranslations) {
  const std::string script = "LANGUAGE LANG_ENGLISH, SUBLANG_ENGLISH_US\r\nSTRINGTABLE\r\nBEGIN\r\n";
  const std::string translated_script = "LANGUAGE LANG_FRENCH, SUBLANG_FRENCH\r\nSTRINGTABLE\r\nBEGIN\r\n";
  const auto manual = [](const std::string& text) { return "<Para \n <ParaLine \n  <String `" + text + "'>\n >\n>\n"; };
  const struct {
    const char16_t* name;
    const char16_t* tud;
    const char16_t* target;
    std::string before, after, rebuilt;
  } cases[] = {
      {u"a.rtf", u"a_rtf_FR.tud", u"a_FR.rtf", "{\\rtf1\\ansi\\ansicpg1252 Hello\\par}",
       "{\\rtf1\\ansi\\ansicpg1252 New\\par Hello\\par}", "{\\rtf1\\ansi\\ansicpg1252 New\\par Salut\\par}"},
      {u"a.rc", u"a_rc_FR.tud", u"a_FR.rc", script + "  1 \"Hello\"\r\nEND\r\n",
       script + "  2 \"New\"\r\n  1 \"Hello\"\r\nEND\r\n",
       translated_script + "  2 \"New\"\r\n  1 \"Salut\"\r\nEND\r\n"},
      {u"a.mif", u"a_mif_FR.tud", u"a_FR.mif", "<MIFFile 9.00>\n" + manual("Hello"),
       "<MIFFile 9.00>\n" + manual("New") + manual("Hello"), "<MIFFile 9.00>\n" + manual("New") + manual("Salut")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(path(c.name));
    const std::string file = path_to_host(folder.write(c.name, c.before));
    ASSERT_EQ(prepare({file}).code, 0);
    translate(c.tud, "Hello", "Salut", TranslationStatus::kApproved);
    folder.write(c.name, c.after);
    const nlohmann::json counts = update({file});
    EXPECT_EQ(counts["kept"], 1);
    EXPECT_EQ(counts["new"], 1);
    EXPECT_EQ(target_of(c.tud, "Hello"), "5Salut");
    const Ran rebuilt = run_kavo({"rebuild", path(c.tud)});
    EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
    EXPECT_EQ(folder.read(c.target), c.rebuilt);
  }
}

TEST_F(UpdateCommand, AFileThatMovedFindsItsTranslations) {
  folder.write(u"old.txt", "The first line\nThe second line\nThe third line\n");
  ASSERT_EQ(prepare({path(u"old.txt")}).code, 0);
  translate(u"old_txt_FR.tud", "The first line", "Premier", TranslationStatus::kApproved);
  translate(u"old_txt_FR.tud", "The second line", "Deuxi\xC3\xA8me");
  std::filesystem::rename(path(u"old.txt"), path(u"new.txt"));
  const nlohmann::json counts = update({path(u"new.txt")});
  EXPECT_EQ(counts["moved"], 2);
  EXPECT_EQ(target_of(u"new_txt_FR.tud", "The first line"), "4Premier") << "an approval is not carried";
  EXPECT_EQ(target_of(u"new_txt_FR.tud", "The second line"), "4Deuxi\xC3\xA8me");
  EXPECT_EQ(target_of(u"new_txt_FR.tud", "The third line"), "0The third line") << "two of three words are too few";
}

TEST_F(UpdateCommand, WhatWasRemovedComesBack) {
  const std::string first = path_to_host(folder.write(u"a.txt", "One\nThe removed line\n"));
  ASSERT_EQ(prepare({first}).code, 0);
  translate(u"a_txt_FR.tud", "The removed line", "Partie", TranslationStatus::kApproved);
  folder.write(u"a.txt", "One\n");
  EXPECT_EQ(update({first})["removed"], 1);
  ASSERT_TRUE(folder.exists(u"removed.tmx"));
  const std::string removed = folder.read(u"removed.tmx");
  EXPECT_NE(removed.find("<seg>Partie</seg>"), std::string::npos);
  const std::string second = path_to_host(folder.write(u"b.txt", "The removed line\n"));
  EXPECT_EQ(update({second})["moved"], 1);
  EXPECT_EQ(target_of(u"b_txt_FR.tud", "The removed line"), "4Partie");
  EXPECT_EQ(folder.read(u"removed.tmx"), removed);
}

TEST_F(UpdateCommand, ADamagedMemoryOfRemovedTextsStopsBeforeAnythingIsWritten) {
  const std::string file = path_to_host(folder.write(u"a.txt", "One\nTwo\n"));
  ASSERT_EQ(prepare({file}).code, 0);
  translate(u"a_txt_FR.tud", "One", "Un");
  folder.write(u"removed.tmx", "<tmx version='1.4'><header/><body><tu>");
  folder.write(u"a.txt", "Two\nThree\n");
  const auto before = everything();
  const Ran ran = prepare({file});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("removed.tmx"), std::string::npos) << ran.errors;
  EXPECT_EQ(everything(), before);
  std::filesystem::remove(path(u"removed.tmx"));
  EXPECT_EQ(prepare({file}).code, 0);
  EXPECT_NE(folder.read(u"removed.tmx").find("<seg>Un</seg>"), std::string::npos);
}

TEST_F(UpdateCommand, ADocumentThatCannotBeReadIsNamedAndLeftOut) {
  folder.write(u"a.txt", "One\n");
  ASSERT_EQ(prepare({path(u"a.txt")}).code, 0);
  folder.write(u"x_txt_FR.tud", "no XML");
  folder.write(u"a.txt", "One\nTwo\n");
  const Ran ran = prepare({path(u"a.txt")});
  EXPECT_EQ(ran.code, 0);
  EXPECT_NE(ran.errors.find("x_txt_FR.tud cannot be read"), std::string::npos) << ran.errors;
}

TEST_F(UpdateCommand, ADamagedDocumentIsReplacedOnlyWhenAskedAndWithAMessage) {
  folder.write(u"a.txt", "One\n");
  ASSERT_EQ(prepare({path(u"a.txt")}).code, 0);
  folder.write(u"a_txt_FR.tud", "no XML");
  EXPECT_EQ(prepare({path(u"a.txt")}).code, 1);
  const Ran ran = prepare({path(u"a.txt")}, {"--overwrite"});
  EXPECT_EQ(ran.code, 0);
  EXPECT_NE(ran.errors.find("a_txt_FR.tud is replaced, because it cannot be read: "), std::string::npos) << ran.errors;
  EXPECT_EQ(target_of(u"a_txt_FR.tud", "One"), "0One");
}

TEST_F(UpdateCommand, AFreshStartTakesNothingOver) {
  folder.write(u"a.txt", "One\n");
  ASSERT_EQ(prepare({path(u"a.txt")}).code, 0);
  translate(u"a_txt_FR.tud", "One", "Un");
  folder.write(u"a.txt", "One\nTwo\n");
  ASSERT_EQ(prepare({path(u"a.txt")}, {"--fresh"}).code, 0);
  EXPECT_EQ(target_of(u"a_txt_FR.tud", "One"), "0One");
  EXPECT_FALSE(folder.exists(u"removed.tmx"));
}

TEST_F(UpdateCommand, SeveralFilesAreSummedUp) {
  const std::vector<std::string> files{path_to_host(folder.write(u"a.txt", "One\n")),
                                       path_to_host(folder.write(u"b.txt", "Two\n"))};
  ASSERT_EQ(prepare(files).code, 0);
  folder.write(u"a.txt", "One\nAgain\n");
  const nlohmann::json counts = update(files);
  EXPECT_EQ(counts["files"], 2);
  EXPECT_EQ(counts["kept"], 2);
  EXPECT_EQ(counts["new"], 1);
}

}  // namespace
}  // namespace kavo::test
