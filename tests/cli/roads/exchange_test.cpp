// kavo export and kavo import: what goes to an editor, and what is taken over from one.
#include <gtest/gtest.h>

#include <algorithm>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class Exchange : public testing::Test {
 protected:
  std::string put(std::u16string_view name, std::string_view bytes) { return path_to_host(folder.write(name, bytes)); }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  void prepare(const std::string& file, const std::string& target = "FR") {
    const Ran ran = run_kavo({"prepare", file, "--source", "EN-US", "--target", target, "--code-page", "1252"});
    ASSERT_EQ(ran.code, 0) << ran.errors;
  }
  // Writes NAME.xlf with the bilingual document's text, changed.
  void hand_back(std::u16string_view tud, std::vector<std::pair<std::string, std::string>> changes) {
    std::string xml = folder.read(tud);
    for (const auto& [old, now] : changes) {
      ASSERT_NE(xml.find(old), std::string::npos) << old << "\n" << xml;
      xml.replace(xml.find(old), old.size(), now);
    }
    folder.write(u"back.xlf", xml);
  }
  Ran import_into(std::u16string_view tud) { return run_kavo({"import", path(u"back.xlf"), "--to", path(tud)}); }
  static constexpr std::string_view kPage =
      "<html lang=en><body><p>Hello <b>you</b> <%= name %></p><% MsgBox \"Hi\" %></body></html>\r\n";
  TempFolder folder;
};

TEST_F(Exchange, ExportReplacesAFileOnlyWhenAskedTo) {
  prepare(put(u"a.txt", "One\n"));
  put(u"a_txt_FR.xlf", "the translation that came back");
  const Ran refused = run_kavo({"export", path(u"a_txt_FR.tud")});
  EXPECT_EQ(refused.code, 1);
  EXPECT_NE(refused.errors.find("--overwrite"), std::string::npos) << refused.errors;
  EXPECT_EQ(folder.read(u"a_txt_FR.xlf"), "the translation that came back");
  EXPECT_EQ(run_kavo({"export", path(u"a_txt_FR.tud"), "--overwrite"}).code, 0);
  EXPECT_EQ(folder.read(u"a_txt_FR.xlf"), folder.read(u"a_txt_FR.tud"));
}

TEST_F(Exchange, ExportNeverReplacesAFileThatBelongsToADocument) {
  prepare(put(u"index.asp", kPage));
  prepare(put(u"b.txt", "One\n"));
  for (const std::u16string_view file :
       {u"index_asp_htm_FR.tud", u"index_asp_htm_FR.tud.skl", u"index_asp_scr_FR.tud", u"index_asp_scr_FR.tud.skl",
        u"index.asp", u"index_asp.htm", u"index_asp.scr", u"b_txt_FR.tud.skl"})
    for (const bool inside : {false, true}) {
      SCOPED_TRACE(path(file));
      const std::string before = folder.read(file);
      std::vector<std::string> arguments{"export", path(u"index_asp_htm_FR.tud"), "--overwrite", "--to", path(file)};
      if (inside) arguments.push_back("--with-skeleton");
      const Ran ran = run_kavo(arguments);
      EXPECT_EQ(ran.code, 1);
      EXPECT_NE(ran.errors.find("The file to write must not be"), std::string::npos) << ran.errors;
      EXPECT_EQ(folder.read(file), before);
    }
}

// What a note says about a unit's codes holds only for its own document.
TEST_F(Exchange, ImportTakesNotesOfPeopleAndNotThoseOfTheSuite) {
  prepare(put(u"a.htm", "<p>Hello <b>you</b></p>"));
  const std::string_view codes = "<note from=\"K19Suite\">{1} &lt;b&gt;</note>";
  ASSERT_NE(folder.read(u"a_htm_htm_FR.tud").find(codes), std::string::npos) << folder.read(u"a_htm_htm_FR.tud");
  hand_back(u"a_htm_htm_FR.tud", {{"{1} &lt;b&gt;", "{1} something else"},
                                  {">Hello <g id=\"1\" ctype=\"bold\" equiv-text=\"&lt;b&gt;\">you</g></target>",
                                   ">Bonjour <g id=\"1\">toi</g></target>"},
                                  {"</trans-unit>", "<note from=\"Ann\">ask</note></trans-unit>"}});
  const Ran ran = import_into(u"a_htm_htm_FR.tud");
  EXPECT_EQ(ran.code, 0) << ran.errors;
  const std::string xml = folder.read(u"a_htm_htm_FR.tud");
  EXPECT_NE(xml.find(">Bonjour <g id=\"1\" ctype=\"bold\" equiv-text=\"&lt;b&gt;\">toi</g></target>"),
            std::string::npos)
      << xml;
  EXPECT_NE(xml.find("<note from=\"Ann\">ask</note>"), std::string::npos) << xml;
  EXPECT_NE(xml.find(codes), std::string::npos) << xml;
  EXPECT_EQ(xml.find("something else"), std::string::npos) << xml;
  EXPECT_NE(xml.find("<context context-type=\"sourcefile\">a.htm</context>"), std::string::npos) << xml;
}

TEST_F(Exchange, APageIsRebuiltFromOneFileInAnEmptyFolder) {
  prepare(put(u"index.asp", kPage));
  ASSERT_EQ(run_kavo({"pseudo", path(u"index_asp_htm_FR.tud"), path(u"index_asp_scr_FR.tud")}).code, 0);
  ASSERT_EQ(run_kavo({"rebuild", path(u"index_asp_htm_FR.tud")}).code, 0);
  const std::string expected = folder.read(u"index_FR.asp");
  ASSERT_NE(expected.find("[H"), std::string::npos);
  const Ran out = run_kavo({"export", path(u"index_asp_htm_FR.tud"), path(u"index_asp_scr_FR.tud"), "--with-skeleton"});
  EXPECT_EQ(out.code, 0) << out.errors;
  EXPECT_EQ(out.output, path(u"index_asp_htm_FR.xlf") + "\n");
  EXPECT_NE(out.errors.find("it is exported with the document that it belongs to"), std::string::npos);

  const TempFolder empty;
  const std::string alone = path_to_host(empty.write(u"sent.xlf", folder.read(u"index_asp_htm_FR.xlf")));
  const Ran ran = run_kavo({"rebuild", alone});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(empty.read(u"index_FR.asp"), expected);
  EXPECT_EQ(ran.output.substr(0, ran.output.find('\t')), path_to_host(empty.path(u"index_FR.asp")));
  EXPECT_EQ(empty.entry_count(), 2u);

  empty.write(u"index_FR.asp", "mine");
  const Ran refused = run_kavo({"rebuild", alone});
  EXPECT_EQ(refused.code, 1);
  EXPECT_NE(refused.errors.find("exists already"), std::string::npos) << refused.errors;
  EXPECT_EQ(empty.read(u"index_FR.asp"), "mine");
  EXPECT_EQ(run_kavo({"rebuild", alone, "--overwrite"}).code, 0);
  EXPECT_EQ(empty.read(u"index_FR.asp"), expected);
  EXPECT_EQ(run_kavo({"rebuild", alone, "--output", path_to_host(empty.path(u"other.asp"))}).code, 0);
  EXPECT_EQ(empty.read(u"other.asp"), expected);
  EXPECT_EQ(empty.entry_count(), 3u);
}

TEST_F(Exchange, AManualIsRebuiltFromOneFileInAnEmptyFolder) {
  prepare(put(u"m.mif",
              "<MIFFile 7.00>\r\n<VariableFormats \r\n <VariableFormat \r\n  <VariableName `Product'>\r\n"
              "  <VariableDef `Apple'>\r\n >\r\n>\r\n<TextFlow \r\n <Para \r\n  <ParaLine \r\n   <String `Text'>\r\n"
              "  >\r\n >\r\n>\r\n"));
  ASSERT_EQ(run_kavo({"pseudo", path(u"m_mif_FR.tud"), path(u"KAVO_va_mif_FR.tud")}).code, 0);
  ASSERT_EQ(run_kavo({"rebuild", path(u"m_mif_FR.tud")}).code, 0);
  const std::string expected = folder.read(u"m_FR.mif");
  const Ran out = run_kavo({"export", path(u"m_mif_FR.tud"), "--with-skeleton"});
  EXPECT_EQ(out.code, 0) << out.errors;
  const TempFolder empty;
  const Ran ran = run_kavo({"rebuild", path_to_host(empty.write(u"sent.xlf", folder.read(u"m_mif_FR.xlf")))});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(empty.read(u"m_FR.mif"), expected);
  EXPECT_EQ(expected.find("`Apple'"), std::string::npos);
  EXPECT_EQ(empty.entry_count(), 2u);
}

TEST_F(Exchange, APageWithoutTheDocumentOfItsScriptsIsNotSentAway) {
  prepare(put(u"index.asp", kPage));
  ports().files->remove_file(folder.path(u"index_asp_scr_FR.tud"));
  const Ran ran = run_kavo({"export", path(u"index_asp_htm_FR.tud"), "--with-skeleton"});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("index_asp_SCR_FR.tud is missing"), std::string::npos) << ran.errors;
  EXPECT_FALSE(folder.exists(u"index_asp_htm_FR.xlf"));
}

TEST_F(Exchange, EachDocumentTakesItsPartOfAPackage) {
  prepare(put(u"index.asp", kPage));
  prepare(put(u"other.txt", "One\n"));
  ASSERT_EQ(run_kavo({"export", path(u"index_asp_htm_FR.tud"), "--with-skeleton"}).code, 0);
  hand_back(u"index_asp_htm_FR.xlf", {{"<target state=\"new\">Hello ", "<target state=\"translated\">Salut "},
                                      {"<target state=\"new\">Hi<", "<target state=\"final\">Allo<"}});
  for (const std::u16string_view tud : {u"index_asp_htm_FR.tud", u"index_asp_scr_FR.tud"}) {
    const Ran ran = import_into(tud);
    EXPECT_EQ(ran.code, 0) << ran.errors;
    EXPECT_NE(ran.output.find("1 translation taken over, 0 refused"), std::string::npos) << ran.output;
  }
  ASSERT_EQ(run_kavo({"rebuild", path(u"index_asp_htm_FR.tud")}).code, 0);
  EXPECT_EQ(folder.read(u"index_FR.asp"),
            "<html lang=fr><body><p>Salut <b>you</b> <%= name %></p><% MsgBox \"Allo\" %></body></html>\r\n");
  const Ran other = import_into(u"other_txt_FR.tud");
  EXPECT_EQ(other.code, 1);
  EXPECT_NE(other.errors.find("none of the documents in it belongs to"), std::string::npos) << other.errors;
}

TEST_F(Exchange, AnotherLanguageOrDocumentIsRefused) {
  const std::string document = put(u"a.txt", "One\nTwo\n");
  prepare(document);
  prepare(document, "DE");
  prepare(put(u"b.txt", "One\nTwo\nThree\n"));
  const std::string before = folder.read(u"a_txt_DE.tud");
  const struct {
    const char* name;
    std::u16string_view from;
    std::vector<std::pair<std::string, std::string>> changes;
    const char* reason;
  } cases[] = {
      {"French for German", u"a_txt_FR.tud", {}, "from EN-US to FR"},
      {"French without our notes",
       u"a_txt_FR.tud",
       {{"<note from=\"K19Suite\">target-language=FR</note>\n", ""}},
       "from EN-US to fr"},
      {"another source language",
       u"a_txt_DE.tud",
       {{">source-language=EN-US<", ">source-language=IT<"}},
       "from IT to DE"},
      {"another document", u"b_txt_FR.tud", {{">target-language=FR<", ">target-language=DE<"}}, "another document"},
      {"another name without a checksum",
       u"a_txt_DE.tud",
       {{"original=\"a.txt\"", "original=\"c.txt\""}, {">checksum=", ">other="}},
       "another document: c.txt"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    auto changes = c.changes;
    changes.push_back({">Two</target>", ">Deux</target>"});
    hand_back(c.from, changes);
    const Ran ran = import_into(u"a_txt_DE.tud");
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.errors.find(c.reason), std::string::npos) << ran.errors;
    EXPECT_EQ(folder.read(u"a_txt_DE.tud"), before);
  }
}

TEST_F(Exchange, WhatDoesNotFitIsNamedAndTheRestIsTaken) {
  prepare(put(u"a.txt", "One\nTwo\nThree\n"));
  prepare(put(u"p.asp", kPage));
  const std::string xml = folder.read(u"a_txt_FR.tud");
  const std::size_t begin = xml.find("<trans-unit id=\"3\"");
  const std::string last = xml.substr(begin, xml.find("</body>") - begin);
  const std::pair<std::string, std::string> good{"<target state=\"new\">One<", "<target state=\"translated\">Un<"};
  const struct {
    const char* name;
    std::vector<std::pair<std::string, std::string>> changes;
    std::string message;
  } cases[] = {
      {"a unit that does not exist", {{"id=\"3\"", "id=\"77\""}}, "unit 77: the document has no such unit"},
      {"a unit with an id that is no number", {{"id=\"3\"", "id=\"x3\""}}, "unit x3: the document has no such unit"},
      {"a missing unit", {{last, ""}}, "unit 3: it is missing"},
      {"a unit that is there twice", {{last, last + last}}, "unit 3: it occurs 2 times"},
      {"another source text", {{"<source>Three", "<source>Thre"}}, "unit 3: its source text is another one"},
      {"a character that the code page lacks",
       {{"\"new\">Three", "\"new\">\xE6\x97\xA5"}},
       "unit 3: code page 1252 has no character"},
      {"a code that the source lacks", {{"\"new\">Three", "\"new\">Trois <x id=\"1\"/>"}}, "unit 3: code 1 is not"},
  };
  const std::string before = folder.read(u"a_txt_FR.tud");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    folder.write(u"a_txt_FR.tud", before);
    auto changes = c.changes;
    changes.push_back(good);
    hand_back(u"a_txt_FR.tud", changes);
    const Ran ran = import_into(u"a_txt_FR.tud");
    EXPECT_EQ(ran.code, 3) << ran.errors;
    EXPECT_NE(ran.errors.find(c.message), std::string::npos) << ran.errors;
    EXPECT_NE(ran.output.find("1 translation taken over, "), std::string::npos) << ran.output;
    std::string expected = before;
    expected.replace(expected.find(good.first), good.first.size(), good.second);
    EXPECT_EQ(folder.read(u"a_txt_FR.tud"), expected);
    EXPECT_EQ(run_kavo({"rebuild", path(u"a_txt_FR.tud"), "--overwrite"}).code, 0);
    EXPECT_EQ(folder.read(u"a_FR.txt"), "Un\nTwo\nThree\n");
  }
}

// An editor may leave a code out, but the page cannot be rebuilt without its script.
TEST_F(Exchange, ATextThatLostAScriptIsRefused) {
  prepare(put(u"p.asp", kPage));
  const std::string before = folder.read(u"p_asp_htm_FR.tud");
  const std::size_t target = before.find("<target"), end = before.find("</target>");
  const std::string text = before.substr(target, end - target);
  hand_back(u"p_asp_htm_FR.tud", {{text, "<target state=\"translated\">Salut"}});
  const Ran ran = import_into(u"p_asp_htm_FR.tud");
  EXPECT_EQ(ran.code, 3);
  EXPECT_NE(ran.errors.find("unit 1: code 2 is missing"), std::string::npos) << ran.errors;
  EXPECT_EQ(folder.read(u"p_asp_htm_FR.tud"), before);
  // A translator may leave out the bold text.
  const std::string script = text.substr(text.find("<ph"));
  hand_back(u"p_asp_htm_FR.tud", {{text, "<target state=\"translated\">Salut " + script}});
  EXPECT_EQ(import_into(u"p_asp_htm_FR.tud").code, 0);
  EXPECT_EQ(run_kavo({"rebuild", path(u"p_asp_htm_FR.tud")}).code, 0);
  EXPECT_EQ(folder.read(u"p_FR.asp"),
            "<html lang=fr><body><p>Salut <%= name %></p><% MsgBox \"Hi\" %></body></html>\r\n");
}

TEST_F(Exchange, NotesAndStatesAreKeptByImportAndWhatComesLater) {
  prepare(put(u"a.txt", "One\nTwo\nThree\nFour\n"));
  hand_back(u"a_txt_FR.tud",
            {{"<target state=\"new\">One</target>",
              "<target state=\"needs-l10n\">Un</target><note from=\"Zo\xC3\xAB &amp; Co\" xml:lang=\"fr\">une "
              "question &lt;1></note>"},
             {"<target state=\"new\">Two<", "<target state=\"final\" state-qualifier=\"leveraged-tm\">Deux<"},
             {"<trans-unit id=\"3\" ", "<trans-unit id=\"3\" approved=\"yes\" "},
             {"<target state=\"new\">Three<", "<target state=\"final\">Trois<"},
             {"\">Four</target>", "\">Four</target><note>only a note</note>"}});
  const Ran ran = import_into(u"a_txt_FR.tud");
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_NE(ran.output.find("3 translations taken over, 0 refused"), std::string::npos) << ran.output;
  const auto expect_kept = [&](const std::string& xml) {
    for (const char* kept :
         {"<target state=\"needs-l10n\">",
          "<note xml:lang=\"fr\" from=\"Zo\xC3\xAB &amp; Co\">une question &lt;1&gt;</note>",
          "<target state=\"final\" state-qualifier=\"leveraged-tm\">", "approved=\"yes\"><source>Three</source>",
          "<target state=\"final\">", "<note>only a note</note>"}) {
      const std::size_t first = xml.find(kept);
      EXPECT_NE(first, std::string::npos) << kept << "\n" << xml;
    }
    EXPECT_EQ(xml.find("only a note", xml.find("only a note") + 1), std::string::npos) << "written twice";
  };
  expect_kept(folder.read(u"a_txt_FR.tud"));
  // Importing the same once more changes nothing, and another text with the same state keeps the state.
  const std::string once = folder.read(u"a_txt_FR.tud");
  EXPECT_NE(import_into(u"a_txt_FR.tud").output.find("0 translations taken over"), std::string::npos);
  EXPECT_EQ(folder.read(u"a_txt_FR.tud"), once);
  hand_back(u"a_txt_FR.tud", {{">Un<", ">Une<"}, {">Deux<", ">Les deux<"}, {">Trois<", ">Les trois<"}});
  EXPECT_EQ(import_into(u"a_txt_FR.tud").code, 0);
  expect_kept(folder.read(u"a_txt_FR.tud"));
}

}  // namespace
}  // namespace kavo::test
