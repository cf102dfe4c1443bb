// Whole sites: the manifest of a run, changed options, files that are not documents, and what translators return.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>

#include "cli/site_test.h"

namespace kavo::test {
namespace {

class Sites : public SiteTest {
 protected:
  void SetUp() override {
    put("site/index.htm", "<html><body><p data-x=\"A hint\">Welcome here</p></body></html>\r\n");
    put("site/shop/notes.txt", "One thing\nTwo\n");
    put("site/shop/logo.gif", "GIF89a");
    put("site/style.css", "p {}");
  }
};

TEST_F(Sites, TheManifestSaysWhatWasPreparedAndARunWithoutAChangeLeavesIt) {
  ASSERT_EQ(prepare().code, 0);
  const std::string text = get("work/manifest.json");
  const nlohmann::json manifest = nlohmann::json::parse(text);
  EXPECT_EQ(manifest["version"], 1);
  ASSERT_EQ(manifest["files"].size(), 2u);
  const nlohmann::json& notes = manifest["files"]["shop/notes.txt"];
  ASSERT_EQ(notes.size(), 2u);
  const nlohmann::json& document = notes["FR"]["documents"]["shop/notes_txt_FR.tud"];
  EXPECT_EQ(document["segments"], 2);
  EXPECT_EQ(document["words"], 3);
  EXPECT_EQ(notes["FR"]["checksum"].get<std::string>().size(), 16u);
  EXPECT_EQ(notes["FR"]["checksum"], notes["DE"]["checksum"]);

  const auto written = fs::last_write_time(path("work/manifest.json"));
  ASSERT_EQ(kavo({"pseudo", "work", "-r"}).code, 0);
  EXPECT_EQ(prepare().output, "0 documents prepared, 2 up to date\n");
  EXPECT_EQ(prepare({"--overwrite"}).code, 0);
  EXPECT_EQ(get("work/manifest.json"), text);
  EXPECT_EQ(fs::last_write_time(path("work/manifest.json")), written);

  ASSERT_EQ(prepare({}, "JA").code, 0);
  const nlohmann::json more = nlohmann::json::parse(get("work/manifest.json"));
  EXPECT_EQ(more["files"]["shop/notes.txt"]["FR"], notes["FR"]) << "languages that are not named stay";
  EXPECT_TRUE(more["files"]["shop/notes.txt"].contains("JA"));

  fs::remove(path("work/manifest.json"));
  EXPECT_EQ(prepare().output, "0 documents prepared, 2 up to date\n");
  EXPECT_EQ(get("work/manifest.json"), text) << "made again of the documents that are there";
}

TEST_F(Sites, ARunThatWasKilledBeforeItsManifestLeavesNoOldEntry) {
  ASSERT_EQ(prepare().code, 0);
  const std::string old = get("work/manifest.json");
  put("site/shop/notes.txt", "One thing\nTwo\nThree\n");
  ASSERT_EQ(prepare().code, 0);
  const std::string now = get("work/manifest.json");
  ASSERT_NE(now, old);
  put("work/manifest.json", old);
  EXPECT_EQ(prepare().output, "0 documents prepared, 2 up to date\n");
  EXPECT_EQ(get("work/manifest.json"), now);
}

TEST_F(Sites, AnotherFileOfThatNameIsNotReplaced) {
  put("work/manifest.json", "{\"name\": \"An app\"}");
  const Ran ran = prepare();
  EXPECT_EQ(ran.code, 1);
  EXPECT_TRUE(holds(ran.errors, "manifest.json was not written by this command, or it is damaged")) << ran.errors;
  EXPECT_EQ(get("work/manifest.json"), "{\"name\": \"An app\"}");
  EXPECT_FALSE(has("work/index.htm"));
}

TEST_F(Sites, OtherOptionsAreNoticedAndTranslationsKept) {
  ASSERT_EQ(prepare().code, 0);
  ASSERT_EQ(kavo({"pseudo", "work", "-r", "-q"}).code, 0);
  const std::string notes = get("work/shop/notes_txt_FR.tud");
  const Ran other = prepare({"--filter-option", "html.text-attributes=data-x"});
  EXPECT_EQ(other.code, 0) << other.errors;
  EXPECT_TRUE(holds(other.output, "2 documents prepared, 0 up to date")) << other.output;
  EXPECT_TRUE(holds(get("work/index_htm_htm_FR.tud"), "A hint"));
  EXPECT_TRUE(holds(get("work/index_htm_htm_FR.tud"), "<target")) << "translations stay";
  EXPECT_EQ(get("work/shop/notes_txt_FR.tud"), notes) << "nothing is different in it";
  EXPECT_EQ(prepare({"--filter-option", "html.text-attributes=data-x"}).output, "0 documents prepared, 2 up to date\n");
  EXPECT_TRUE(holds(prepare({"--target-code-page", "65001"}).output, "2 documents prepared"));
}

TEST_F(Sites, TheOtherFilesAreCopiedOnce) {
  ASSERT_EQ(prepare().code, 0);
  const std::vector<std::string> command{"rebuild", "work", "-r", "--output-dir", "out-{lang}", "--copy-rest", "site"};
  const Ran first = kavo(command);
  EXPECT_EQ(first.code, 0) << first.errors;
  EXPECT_TRUE(holds(first.output, "4 other files copied, 0 left as they are")) << first.output;
  for (const char* const language : {"out-FR", "out-DE"}) {
    EXPECT_EQ(get(std::string(language) + "/shop/logo.gif"), "GIF89a");
    EXPECT_EQ(get(std::string(language) + "/style.css"), "p {}");
    EXPECT_EQ(get(std::string(language) + "/shop/notes.txt"), "One thing\nTwo\n");
  }
  put("out-FR/style.css", "mine");
  std::vector<std::string> again = command;
  again.insert(again.end(), {"--target", "FR", "--overwrite"});
  std::vector<std::string> refused = command;
  refused.insert(refused.end(), {"--target", "FR"});
  const Ran kept = kavo(refused);
  EXPECT_EQ(kept.code, 1);
  EXPECT_TRUE(holds(kept.errors, "style.css exists and differs from")) << kept.errors;
  EXPECT_EQ(get("out-FR/style.css"), "mine");
  EXPECT_EQ(kavo(again).code, 0);
  EXPECT_EQ(get("out-FR/style.css"), "p {}");
  EXPECT_EQ(kavo({"rebuild", "work", "-r", "--copy-rest", "site"}).code, 2);
}

TEST_F(Sites, ARunThatWasKilledWhileItCopiedIsClearedUp) {
  put("site/pictures/logo.gif", "GIF89a");
  ASSERT_EQ(prepare().code, 0);
  const std::vector<std::string> command{"rebuild",     "work", "-r",       "--output-dir", "out-{lang}",
                                         "--copy-rest", "site", "--target", "FR",           "--overwrite"};
  ASSERT_EQ(kavo(command).code, 0);
  put("out-FR/pictures/.kavo-run/journal", std::string("KAVO run 1\0working\0end\0", 23));
  put("out-FR/pictures/.kavo-run/1/logo.gif", "GIF");
  const Ran next = kavo(command);
  EXPECT_EQ(next.code, 0) << next.errors;
  EXPECT_TRUE(holds(next.errors, "was stopped before its end")) << next.errors;
  EXPECT_FALSE(has("out-FR/pictures/.kavo-run"));
  EXPECT_EQ(get("out-FR/pictures/logo.gif"), "GIF89a");
}

TEST_F(Sites, NothingThatTheCommandMadeIsARest) {
  ASSERT_EQ(kavo({"prepare", "site", "-r", "--source", "EN-US", "--target", "FR"}).code, 0);
  const Ran ran = kavo({"rebuild", "site", "-r", "--output-dir", "site/fr", "--copy-rest", "site"});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  std::vector<std::string> names;
  for (const auto& entry : fs::recursive_directory_iterator(path("site/fr")))
    if (entry.is_regular_file()) names.push_back(entry.path().filename().string());
  std::ranges::sort(names);
  EXPECT_EQ(names, (std::vector<std::string>{"index.htm", "logo.gif", "notes.txt", "style.css"}));
}

TEST_F(Sites, EachReturnedFileFindsItsDocument) {
  put("site/notes.txt", "Another text\n");
  ASSERT_EQ(prepare().code, 0);
  ASSERT_EQ(kavo({"pseudo", "work", "-r", "-q"}).code, 0);
  // As translators return them: beside each other under names of their own, or in the folders that they came in.
  fs::create_directories(path("returned/shop"));
  fs::rename(path("work/index_htm_htm_FR.tud"), path("returned/done by Anne.xlf"));
  fs::rename(path("work/notes_txt_FR.tud"), path("returned/a.xlf"));
  fs::rename(path("work/shop/notes_txt_FR.tud"), path("returned/shop/b.xliff"));
  put("returned/readme.txt", "Hello");
  ASSERT_EQ(prepare({"--fresh"}).code, 0);
  const Ran ran = kavo({"import", "returned", "-r", "--to", "work"});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  for (const char* const tud : {"work/index_htm_htm_FR.tud", "work/notes_txt_FR.tud", "work/shop/notes_txt_FR.tud"})
    EXPECT_TRUE(holds(get(tud), "state=\"translated\"")) << tud;
  EXPECT_FALSE(holds(get("work/shop/notes_txt_DE.tud"), "state=\"translated\""));

  fs::create_directories(path("elsewhere"));
  fs::rename(path("returned/a.xlf"), path("elsewhere/deep.xlf"));
  fs::create_directories(path("returned/unknown"));
  fs::copy(path("elsewhere/deep.xlf"), path("returned/unknown/c.xlf"));
  const Ran several = kavo({"import", "returned", "-r", "--to", "work"});
  EXPECT_EQ(several.code, 1);
  EXPECT_TRUE(holds(several.errors, "several documents of the name notes_txt_FR.tud are in work")) << several.errors;
  fs::remove(path("work/index_htm_htm_FR.tud"));
  const Ran none = kavo({"import", "returned/done by Anne.xlf", "--to", "work"});
  EXPECT_EQ(none.code, 1);
  EXPECT_TRUE(holds(none.errors, "there is no index_htm_htm_FR.tud in work")) << none.errors;
}

TEST_F(Sites, EachDocumentOfAReturnedPackageFindsItsOwn) {
  put("site/page.asp", "<html><body><p>Hello there</p><% MsgBox \"Good morning\" %></body></html>\r\n");
  ASSERT_EQ(prepare().code, 0);
  ASSERT_EQ(kavo({"pseudo", "work", "-r", "-q"}).code, 0);
  fs::create_directories(path("returned"));
  ASSERT_EQ(kavo({"export", "work/page_asp_htm_FR.tud", "--with-skeleton", "--to", "returned/all.xliff"}).code, 0);
  ASSERT_EQ(prepare({"--fresh"}).code, 0);
  const Ran ran = kavo({"import", "returned", "--to", "work"});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  for (const char* const tud : {"work/page_asp_htm_FR.tud", "work/page_asp_scr_FR.tud"})
    EXPECT_TRUE(holds(get(tud), "state=\"translated\"")) << tud;

  // One of them has no place: nothing is taken over.
  ASSERT_EQ(prepare({"--fresh"}).code, 0);
  const std::string before = get("work/page_asp_htm_FR.tud");
  fs::remove(path("work/page_asp_scr_FR.tud"));
  const Ran none = kavo({"import", "returned", "--to", "work"});
  EXPECT_EQ(none.code, 1);
  EXPECT_TRUE(holds(none.errors, "there is no page_asp_scr_FR.tud in work")) << none.errors;
  EXPECT_EQ(get("work/page_asp_htm_FR.tud"), before);
}

TEST_F(Sites, ARunThatFailsLeavesNothing) {
  // Not valid UTF-16, in spite of its mark.
  put("other/deep/odd.htm", "\xFF\xFE<");
  const Ran failed = kavo({"prepare", "other", "-r", "--output-dir", "work", "--source", "EN-US", "--target", "FR"});
  EXPECT_EQ(failed.code, 1) << failed.errors;
  EXPECT_TRUE(holds(failed.output, "0 documents prepared")) << failed.output;
  EXPECT_FALSE(has("work"));

  ASSERT_EQ(prepare().code, 0);
  for (const char* const skeleton : {"work/index_htm_htm_FR.tud.skl", "work/shop/notes_txt_FR.tud.skl"})
    put(skeleton, "damaged");
  const Ran rebuilt = kavo({"rebuild", "work", "-r", "--target", "FR", "--output-dir", "out/{lang}"});
  EXPECT_EQ(rebuilt.code, 1);
  EXPECT_FALSE(has("out"));
  fs::create_directories(path("out"));
  EXPECT_EQ(kavo({"rebuild", "work", "-r", "--target", "FR", "--output-dir", "out/{lang}", "--jobs", "2"}).code, 1);
  EXPECT_TRUE(has("out")) << "was there before";
  EXPECT_FALSE(has("out/FR"));
}

TEST_F(Sites, WhatOthersTakeAlongNeedsNoWord) {
  put("site/page.asp", "<html><body><p>Hello there</p><% MsgBox \"Good morning\" %></body></html>\r\n");
  ASSERT_EQ(prepare().code, 0);
  const Ran ran = kavo({"rebuild", "work", "-r", "--output-dir", "out-{lang}"});
  EXPECT_EQ(ran.code, 0);
  EXPECT_FALSE(holds(ran.errors, "left out")) << ran.errors;
  const Ran named = kavo({"rebuild", "work/page_asp_scr_FR.tud"});
  EXPECT_EQ(named.code, 0);
  EXPECT_TRUE(holds(named.errors, "left out")) << named.errors;
}

}  // namespace
}  // namespace kavo::test
