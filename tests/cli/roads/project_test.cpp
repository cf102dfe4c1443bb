// kavo.json: what it can hold, what has precedence over it, what it must not hold.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "cli/site_test.h"
#include "suite/filters/filter_options.h"
#include "workflow/project_keys.h"

namespace kavo::test {
namespace {

class Project : public SiteTest {
 protected:
  void put_site() const {
    put("site/index.htm", "<html><body><p>Welcome</p></body></html>\r\n");
    put("site/shop/notes.txt", "One\nTwo\n");
    put("site/drafts/a.txt", "Draft\n");
  }
};

constexpr const char* kProject =
    "{\n \"version\": 1,\n \"sources\": \"site\",\n \"recursive\": true,\n \"exclude\": [\"drafts\"],\n"
    " \"source\": \"en-US\",\n \"target\": [\"FR\", \"DE\"],\n \"output\": \"work\",\n \"rebuilt\": "
    "\"site-{lang}\"\n}\n";

TEST_F(Project, SaysAllThatPreparingAndRebuildingNeed) {
  put_site();
  put("kavo.json", kProject);
  const Ran prepared = kavo({"prepare"});
  EXPECT_EQ(prepared.code, 0) << prepared.errors;
  EXPECT_TRUE(holds(prepared.output, "2 documents prepared, 0 up to date")) << prepared.output;
  EXPECT_TRUE(has("work/shop/notes_txt_DE.tud"));
  EXPECT_FALSE(has("work/drafts"));
  const Ran pseudo = kavo({"pseudo"});
  EXPECT_EQ(pseudo.code, 0) << pseudo.errors;
  EXPECT_EQ(kavo({"stats"}).code, 0);
  const Ran rebuilt = kavo({"rebuild"});
  EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
  EXPECT_TRUE(has("site-FR/shop/notes.txt"));
  EXPECT_TRUE(has("site-DE/index.htm"));
  const Ran verified = kavo({"verify"});
  EXPECT_EQ(verified.code, 0) << verified.output << verified.errors;
  EXPECT_TRUE(holds(verified.output, "2 of 2 files survive")) << verified.output;
  EXPECT_EQ(kavo({"export"}).code, 0);
  EXPECT_TRUE(has("work/shop/notes_txt_FR.xlf"));
}

TEST_F(Project, OfTheCurrentFolderLeavesItsOwnOutputsOut) {
  put("index.htm", "<html><body><p>Welcome</p></body></html>\r\n");
  const Ran made =
      kavo({"init", "--source", "EN-US", "--target", "FR,DE", "--output", "work", "--rebuilt", "out-{lang}"});
  EXPECT_EQ(made.code, 0) << made.errors;
  const nlohmann::json project = nlohmann::json::parse(get("kavo.json"));
  EXPECT_EQ(project, nlohmann::json::parse(R"({"version": 1, "source": "EN-US", "target": ["FR", "DE"],
      "output": "work", "rebuilt": "out-{lang}", "sources": ["."], "recursive": true})"));
  ASSERT_EQ(kavo({"prepare"}).code, 0);
  ASSERT_EQ(kavo({"rebuild"}).code, 0);
  ASSERT_TRUE(has("out-FR/index.htm"));
  const Ran again = kavo({"prepare"});
  EXPECT_EQ(again.output, "0 documents prepared, 1 up to date\n") << again.errors;
}

TEST_F(Project, IsFoundInAFolderAbove) {
  put_site();
  put("kavo.json", kProject);
  fs::create_directories(path("site/shop/deep"));
  const fs::path before = fs::current_path();
  fs::current_path(path("site/shop/deep"));
  const Ran prepared = run_kavo({"prepare"});
  fs::current_path(before);
  EXPECT_EQ(prepared.code, 0) << prepared.errors;
  EXPECT_TRUE(holds(prepared.errors, "works in the project ../../../kavo.json")) << prepared.errors;
  EXPECT_TRUE(has("work/shop/notes_txt_FR.tud"));
}

TEST_F(Project, TheCommandLineGoesBeforeIt) {
  put_site();
  put("kavo.json", kProject);
  const Ran prepared = kavo({"prepare", "--target", "JA", "--exclude", "shop", "--output-dir", "other"});
  EXPECT_EQ(prepared.code, 0) << prepared.errors;
  EXPECT_TRUE(has("other/index_htm_htm_JA.tud"));
  EXPECT_TRUE(has("other/drafts/a_txt_JA.tud"));
  EXPECT_FALSE(has("other/shop"));
  EXPECT_FALSE(has("work"));
  const Ran without = kavo({"prepare", "--no-project"});
  EXPECT_EQ(without.code, 2);
  EXPECT_TRUE(holds(without.errors, "is required")) << without.errors;
}

TEST_F(Project, AFileThatIsNamedKeepsItsPlaceInTheTree) {
  put_site();
  put("kavo.json", kProject);
  const Ran prepared = kavo({"prepare", "site/shop/notes.txt"});
  EXPECT_EQ(prepared.code, 0) << prepared.errors;
  EXPECT_TRUE(has("work/shop/notes_txt_FR.tud"));
  const Ran rebuilt = kavo({"rebuild", "work/shop/notes_txt_FR.tud"});
  EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
  EXPECT_TRUE(has("site-FR/shop/notes.txt"));
  EXPECT_FALSE(has("work/index_htm_htm_FR.tud"));
}

TEST_F(Project, GoesBeforeTheSettingsOfTheUserAndLeavesThem) {
  put("a.htm", "<html><body><p data-x=\"Secret\" data-y=\"Open\">Welcome</p></body></html>\r\n");
  ASSERT_EQ(kavo({"settings", "html.text-attributes=data-x"}).code, 0);
  const auto prepared_text = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments{"prepare", "a.htm", "--source", "EN-US", "--target", "FR", "--fresh"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Ran ran = kavo(arguments);
    EXPECT_EQ(ran.code, 0) << ran.errors;
    return get("a_htm_htm_FR.tud");
  };
  EXPECT_TRUE(holds(prepared_text({}), "Secret"));
  put("kavo.json", R"({"version": 1, "profile": {"html": {"text-attributes": ["data-y"]}}})");
  EXPECT_TRUE(holds(prepared_text({}), "Open"));
  EXPECT_FALSE(holds(prepared_text({}), "Secret"));
  EXPECT_TRUE(holds(prepared_text({"--filter-option", "html.text-attributes=data-x"}), "Secret"));
  EXPECT_TRUE(holds(kavo({"settings", "html.text-attributes"}).output, "=data-x")) << "the user's is as it was";
  ASSERT_EQ(kavo({"settings", "html.text-attributes=default"}).code, 0);
}

TEST_F(Project, WhatIsWrongIsNamedWithFileLineAndTheNearestKey) {
  put("a.txt", "One\n");
  const struct {
    const char* name;
    const char* project;
    const char* problem;
  } cases[] = {
      {"an unknown key", "{\n\"version\": 1,\n\"taget\": \"FR\"\n}",
       "kavo.json:3: there is no key \"taget\"; the nearest is \"target\""},
      {"another version", "{\"version\": 2}", "kavo.json:1: \"version\" can be the number 1"},
      {"no version", "{}", "kavo.json: the key \"version\" is missing"},
      {"a list", "[]", "kavo.json: a project file must be a JSON object"},
      {"no JSON", "{\"version\": 1,\n\"target\" \"FR\"}", "kavo.json:2: this is not JSON"},
      {"a key twice", "{\"version\": 1,\n\"target\": \"FR\",\n\"target\": \"DE\"}",
       "kavo.json:3: the key \"target\" occurs twice in the same object"},
      {"a wrong type", "{\"version\": 1,\n\"target\":\n [1]}",
       "kavo.json:2: \"target\" can be a language, or a list of languages, such as [\"FR\", \"DE\", \"JA\"]"},
      {"an unknown code page", "{\"version\": 1,\n\"target-code-page\": {\"JA\": \"none\"}}", "kavo.json:2: "},
      {"a switch", "{\"version\": 1,\n\"recursive\": \"yes\"}", "kavo.json:2: \"recursive\" can be true or false"},
      {"a filter", "{\"version\": 1,\n\"profile\": {\n\"htm\": {}}}",
       "kavo.json:3: there is no filter \"htm\" with options; the nearest is \"html\""},
      {"an option of a filter", "{\"version\": 1,\n\"profile\": {\"html\": {\n\"text-attribute\": \"a\"}}}",
       "kavo.json:3: there is no setting \"html.text-attribute\"; the nearest is \"html.text-attributes\""},
      {"a value of an option", "{\"version\": 1,\n\"profile\": {\"scripts\": {\n\"offer\": \"most\"}}}",
       "kavo.json:3: scripts.offer can be likely, all or none"},
      {"a list for one value", "{\"version\": 1,\n\"profile\": {\"scripts\": {\n\"offer\": [\"all\"]}}}",
       "kavo.json:3: scripts.offer can be likely, all or none"},
      {"a program", "{\"version\": 1,\n\"settings\": {\n\"editor.command\": \"rm -r /\"}}",
       "kavo.json:3: \"editor.command\" names a program that is started"},
      {"a filter's option among the settings", "{\"version\": 1,\n\"settings\": {\n\"mif.markers\": \"Index\"}}",
       "kavo.json:3: \"mif.markers\" is an option of a filter: \"profile\": {\"mif\": {\"markers\": ...}}"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    put("kavo.json", c.project);
    const Ran ran = kavo({"prepare", "a.txt", "--target", "FR", "--source", "EN-US"});
    EXPECT_EQ(ran.code, 2) << ran.errors;
    EXPECT_TRUE(holds(ran.errors, c.problem)) << ran.errors;
    EXPECT_FALSE(has("a_txt_FR.tud"));
    EXPECT_EQ(kavo({"prepare", "--help"}).code, 0) << "help needs no project";
  }
  put("kavo.json", "{\"version\": 1,\n\"source\": \"EN-US\",\n\"target\": \"Klingon\"}");
  const Ran unknown = kavo({"prepare", "a.txt"});
  EXPECT_EQ(unknown.code, 2);
  EXPECT_TRUE(holds(unknown.errors, "kavo.json:3: ")) << unknown.errors;
}

TEST_F(Project, InitNeverReplacesOneAndRefusesWhatReadingWould) {
  put("kavo.json", kProject);
  const Ran again = kavo({"init", "--target", "JA"});
  EXPECT_EQ(again.code, 1);
  EXPECT_TRUE(holds(again.errors, "kavo.json exists already")) << again.errors;
  EXPECT_EQ(get("kavo.json"), kProject);
  fs::remove(path("kavo.json"));
  const Ran made = kavo({"init", "--target-code-page", "JA=932,RU=1251", "--code-page", "1252"});
  EXPECT_EQ(made.code, 0) << made.errors;
  const nlohmann::json project = nlohmann::json::parse(get("kavo.json"));
  EXPECT_EQ(project["target-code-page"], nlohmann::json::parse(R"({"JA": 932, "RU": 1251})"));
  EXPECT_EQ(project["code-page"], 1252);
  fs::remove(path("kavo.json"));
  EXPECT_EQ(kavo({"init", "--recursive", "maybe"}).code, 1);
  EXPECT_FALSE(has("kavo.json"));
}

// The rows of docs/project-file.md. A row that differs is shown as it must stand there.
TEST(ProjectKeys, TheDocumentationHasTheSameRows) {
  std::ifstream page(KAVO_PROJECT_PAGE);
  ASSERT_TRUE(page) << KAVO_PROJECT_PAGE;
  std::string documented, expected;
  for (std::string line; std::getline(page, line);)
    if (line.starts_with("| `")) documented += line + "\n";
  for (const ProjectKey& key : project_keys()) {
    expected += "| `" + std::string(key.key) + "` | " + std::string(values_of(key.kind)) + " | " +
                std::string(key.summary) + " | `" + std::string(key.example) + "` |\n";
    EXPECT_TRUE(nlohmann::json::accept(key.example)) << key.key;
  }
  EXPECT_EQ(documented, expected);
}

// A document in which each option makes a difference.
struct ProfileCase {
  const char* key;
  const char* value;  // JSON
  const char* file;
  std::string document;
  const char* shown;     // the bilingual document, or the rebuilt one
  const char* text;      // that is in it with the option
  bool without = false;  // or only without it
};

std::string page(const std::string& body) { return "<html><body>" + body + "</body></html>\r\n"; }

const std::string kDialog =
    "LANGUAGE 9,1\n#pragma code_page(1252)\nA DIALOGEX 0,0,1,1\nFONT 8, \"MS Shell Dlg\", 400, 0, 0x1\n"
    "{ LTEXT \"a\",1,0,0,1,1 }\n";

const std::string kMarkers =
    "<MIFFile 9.00>\n<Marker <MTypeName `Index'> <MText `pump;valve'>>\n<Marker <MTypeName `Heading'> <MText `A "
    "word'>>\n<TextLine <String `a'>>\n";

TEST_F(Project, EachKeyOfTheProfileChangesWhatItSays) {
  const ProfileCase cases[] = {
      {"html.code-patterns", R"(["[[*]]"])", "a.htm", page("<p>Take [[this one]] now</p>"), "a_htm_htm_FR.tud",
       "<source>Take [[this one]] now</source>", true},
      {"html.excluded-elements", R"(["code"])", "a.htm", page("<p>Take</p><code>Hidden words</code>"),
       "a_htm_htm_FR.tud", "Hidden words", true},
      {"html.inline-elements", R"(["div"])", "a.htm", page("<p>One <div>two</div> three</p>"), "a_htm_htm_FR.tud",
       "<source>two</source>", true},
      {"html.note-comments", R"(["Translators:*"])", "a.htm", page("<!-- A word to authors --><p>Text</p>"),
       "a_htm_htm_FR.tud", "A word to authors", true},
      {"html.open-codes", "true", "a.htm", page("<p>12 345</p>"), "a_htm_htm_FR.tud", "translate=\"no\"", true},
      {"html.text-attributes", R"(["data-hint"])", "a.htm", page("<p data-hint=\"A hint\">Text</p>"),
       "a_htm_htm_FR.tud", "A hint"},
      {"html.text-elements", R"(["button"])", "a.htm", page("<p translate=no>a<button>Press here</button></p>"),
       "a_htm_htm_FR.tud", "<source>Press here</source>"},
      {"mif.markers", R"(["Heading"])", "a.mif", kMarkers, "KAVO_ix_mif_FR.tud", "<source>A word</source>"},
      {"mif.split", R"("semicolon")", "a.mif", kMarkers, "KAVO_ix_mif_FR.tud", "<source>pump</source>"},
      {"mif.page-types", R"(["body", "reference"])", "a.mif",
       "<MIFFile 9.00>\n<Page <PageType ReferencePage> <TextLine <String `a'>>>\n", "a_mif_FR.tud", "translate=\"no\"",
       true},
      {"rc.dialog-charset", "128", "a.rc", kDialog, "a_FR.rc", "400, 0, 128"},
      {"rc.dialog-font", R"("MS UI Gothic")", "a.rc", kDialog, "a_FR.rc", "MS UI Gothic"},
      {"rc.dialog-font-size", "9", "a.rc", kDialog, "a_FR.rc", "FONT 9"},
      {"rtf.excluded-styles", R"(["Code"])", "a.rtf",
       "{\\rtf1\\ansi{\\stylesheet{\\s1 Code;}}\\pard\\plain Open words\\par\\pard\\s1 Hidden words\\par}",
       "a_rtf_FR.tud", "Hidden words", true},
      {"scripts.never", R"(["MsgBox"])", "a.asp", page("<% MsgBox \"Hello there my friend\" %>"), "a_asp_scr_FR.tud",
       "Hello there my friend", true},
      {"scripts.offer", R"("none")", "a.asp", page("<% MsgBox \"Hello there my friend\" %>"), "a_asp_scr_FR.tud",
       "Hello there my friend", true},
      {"scripts.texts", R"(["Tell"])", "a.asp", page("<% Tell(\"welcome\") %>"), "a_asp_scr_FR.tud", "welcome"},
      {"text.paragraphs", R"("blank")", "a.txt", "One line\nand two\n\nThree\n", "a_txt_FR.tud",
       "<source>One line</source>", true},
  };
  std::set<std::string_view> known;
  for (const ProfileCase& c : cases) {
    SCOPED_TRACE(c.key);
    known.insert(c.key);
    const std::string key = c.key;
    put(c.file, c.document);
    const auto prepared_text = [&](const std::string& project) {
      put("kavo.json", project);
      const Ran ran = kavo({"prepare", c.file, "--source", "EN-US", "--target", "FR", "--fresh", "--overwrite"});
      EXPECT_EQ(ran.code, 0) << ran.errors;
      if (c.document == kDialog) {
        const Ran rebuilt = kavo({"rebuild", "a_rc_FR.tud", "--overwrite"});
        EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
      }
      return get(c.shown);
    };
    EXPECT_EQ(holds(prepared_text(R"({"version": 1})"), c.text), c.without);
    const std::size_t dot = key.find('.');
    const std::string profile = "{\"version\": 1, \"profile\": {\"" + key.substr(0, dot) + "\": {\"" +
                                key.substr(dot + 1) + "\": " + c.value + "}}}";
    EXPECT_EQ(holds(prepared_text(profile), c.text), !c.without) << get(c.shown);
    for (const fs::directory_entry& entry : fs::directory_iterator(path(""))) fs::remove_all(entry.path());
  }
  // Those of workbooks need an Office program: tests/office/libreoffice tries them.
  for (const FilterOption& option : filter_options())
    if (!option.key.starts_with("xls.")) {
      EXPECT_EQ(known.contains(option.key), is_lasting(option)) << option.key << " is tried by no document";
    }
}

TEST_F(Project, AWrongKeyOrFormInTheProfileIsRefusedByName) {
  put("a.txt", "One\n");
  std::vector<std::string> keys{"mif.markers", "mif.split",   "xls.formulas", "xls.hidden",
                                "xls.order",   "xls.ungroup", "xls.tolerance"};
  for (const FilterOption& option : filter_options())
    if (is_lasting(option)) keys.emplace_back(option.key);
  const auto refusal = [&](const std::string& key, const std::string& value) {
    const std::size_t dot = key.find('.');
    put("kavo.json", "{\"version\": 1, \"profile\": {\"" + key.substr(0, dot) + "\": {\n\"" + key.substr(dot + 1) +
                         "\": " + value + "}}}");
    const Ran ran = kavo({"prepare", "a.txt", "--target", "FR", "--source", "EN-US"});
    EXPECT_EQ(ran.code, 2) << key << value;
    return ran.errors;
  };
  for (const std::string& key : keys) {
    const std::string wrong = refusal(key + "x", "\"a\"");
    EXPECT_TRUE(holds(wrong, "kavo.json:2: there is no setting \"" + key + "x\"; the nearest is \"" + key + "\""))
        << wrong;
    for (const char* const value : {"{}", "null", "1.5", "[[\"a\"]]", "[true]"}) {
      const std::string form = refusal(key, value);
      EXPECT_TRUE(holds(form, "kavo.json:2: " + key + " can be ")) << form;
    }
  }
  for (const char* const list : {"html.note-comments", "html.text-elements", "mif.markers", "rc.dialog-font"}) {
    const std::string form = refusal(list, "true");
    EXPECT_TRUE(holds(form, "kavo.json:2: " + std::string(list) + " can be ")) << form;
  }
  // A setting of hosts, which leaves a bilingual document as it is.
  const std::string for_hosts = refusal("mif.objects", "false");
  EXPECT_TRUE(holds(for_hosts,
                    "kavo.json:2: mif.objects changes nothing in a bilingual document: store it with kavo "
                    "settings"))
      << for_hosts;
  EXPECT_FALSE(has("a_txt_FR.tud"));
}

}  // namespace
}  // namespace kavo::test
