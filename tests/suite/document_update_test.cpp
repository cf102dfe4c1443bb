// A document whose source has changed, filled with what the old one has.
#include "suite/memory/document_update.h"

#include <gtest/gtest.h>

#include <map>

#include "suite/suite_fixture.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

// What was translated before: the old document, other documents, removed texts.
struct Known final : KnownTexts {
  TextMemory& documents() override { return documents_; }
  TextMemory& removed() override { return removed_; }
  TextMemory documents_{TextUnits::kWords};
  TextMemory removed_{TextUnits::kWords};
};

class DocumentUpdateTest : public SuiteTest {
 protected:
  static constexpr std::u16string_view kPage = u"a.htm";
  const Road road{u"K19HTM"};

  // The first version, translated: "Text" to "[Text]" unless a translation is given; "" leaves a text untranslated.
  void translate(std::string_view bytes, const std::map<std::u16string, std::u16string>& translations = {},
                 TranslationStatus status = TranslationStatus::kTranslated) {
    put(kPage, bytes);
    tud = convert(kPage, road);
    BilingualDocument document(tud);
    for (std::size_t i = 0; i < document.size(); ++i) {
      const std::u16string source = to_host_text(document.segment(i).source);
      const auto found = translations.find(source);
      const std::u16string target = found == translations.end() ? u"[" + source + u"]" : found->second;
      if (!target.empty()) document.set_segment(i, from_host_text(target), status, 0);
    }
    document.save();
  }
  void details(std::size_t index, XliffDetails given) {
    BilingualDocument document(tud);
    document.set_details(index, std::move(given));
    document.save();
  }

  // Converts the second version and updates it.
  DocumentUpdate update(std::string_view bytes) {
    const OldDocument old = read_old_document(tud);
    add_translations(known.documents_, old.units);
    put(kPage, bytes);
    EXPECT_EQ(convert(kPage, road), tud);
    return update_document(tud, &old, known);
  }
  // "state target" of each unit.
  std::u16string units() {
    const BilingualDocument document(tud);
    std::u16string all;
    constexpr char16_t kStates[] = u"nLtfeA";
    for (std::size_t i = 0; i < document.size(); ++i) {
      const BilingualSegment segment = document.segment(i);
      all += std::u16string(1, kStates[static_cast<std::size_t>(segment.status)]) + u" " +
             to_host_text(segment.target) + u"\n";
    }
    return all;
  }
  static UpdateCounts counts(std::uint64_t kept, std::uint64_t moved, std::uint64_t similar, std::uint64_t added,
                             std::uint64_t removed) {
    return {kept, moved, similar, added, removed};
  }

  Known known;
  std::u16string tud;
};

TEST_F(DocumentUpdateTest, KeepsWhatIsInItsPlace) {
  translate("<p>One</p><p>Two</p><p>Three</p><p>Four</p>", {{u"Two", u""}}, TranslationStatus::kApproved);
  details(2, {"needs-l10n", "", false, {{"a question", " from=\"Zoe\""}}});
  EXPECT_EQ(update("<h1>New</h1><p>One</p><p>Two</p><p>Three</p><p>Four</p>").counts, counts(4, 0, 0, 1, 0));
  EXPECT_EQ(units(), u"n New\nA [One]\nn Two\nf [Three]\nA [Four]\n");
  EXPECT_NE(files.get(tud).find("state=\"needs-l10n\""), std::string::npos);
  EXPECT_NE(files.get(tud).find("<note from=\"Zoe\">a question</note>"), std::string::npos);
  EXPECT_EQ(rebuild(tud, road), "<h1>New</h1><p>[One]</p><p>Two</p><p>[Three]</p><p>[Four]</p>");
}

TEST_F(DocumentUpdateTest, KeepsTheNotesOfAnUntranslatedText) {
  translate("<p>One</p>", {{u"One", u""}});
  details(0, {"", "", false, {{"what is this?", " from=\"Zoe\""}}});
  update("<p>New</p><p>One</p>");
  EXPECT_EQ(units(), u"n New\nn One\n");
  EXPECT_NE(files.get(tud).find("<note from=\"Zoe\">what is this?</note>"), std::string::npos);
}

TEST_F(DocumentUpdateTest, KeepsLocks) {
  translate("<p>One</p><p>Two</p>", {{u"One", u""}, {u"Two", u""}});
  BilingualDocument document(tud);
  document.set_segment(0, "One", TranslationStatus::kLocked, 0);
  document.save();
  update("<p>One</p><p>Two</p><p>New</p>");
  EXPECT_EQ(units(), u"L One\nn Two\nn New\n");
}

TEST_F(DocumentUpdateTest, ReportsWhetherAnythingHasChanged) {
  const struct {
    const char* name;
    const char* page;
    bool expected;
  } cases[] = {
      {"nothing", "<p>One</p><p>Two</p>", true},
      {"a text", "<p>One</p><p>Too</p>", false},
      {"a tag", "<p>One</p><h1>Two</h1>", false},
      {"a blank between tags", "<p>One</p> <p>Two</p>", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    translate("<p>One</p><p>Two</p>", {{u"Two", u""}});
    const OldDocument old = read_old_document(tud);
    put(kPage, c.page);
    convert(kPage, road);
    EXPECT_EQ(says_the_same(tud, old), c.expected);
  }
}

TEST_F(DocumentUpdateTest, TheSameSourceGivesTheSameTranslations) {
  translate("<p>One</p><p>Two</p>", {{u"Two", u""}}, TranslationStatus::kApproved);
  const std::u16string before = units();
  EXPECT_EQ(update("<p>One</p><p>Two</p>").counts, counts(2, 0, 0, 0, 0));
  EXPECT_EQ(units(), before);
}

TEST_F(DocumentUpdateTest, NeverCarriesAnApprovalElsewhere) {
  translate("<h1>Shop</h1><p>One</p><p>Two</p><p>Three</p>", {}, TranslationStatus::kApproved);
  EXPECT_EQ(update("<p>One</p><p>Two</p><p>Three</p><h1>Shop</h1><p>Five</p><p>One</p>").counts, counts(3, 2, 0, 1, 0));
  EXPECT_EQ(units(), u"A [One]\nA [Two]\nA [Three]\ne [Shop]\nn Five\ne [One]\n");
}

TEST_F(DocumentUpdateTest, ATextWhoseTranslationsDisagreeIsForReviewWithAllOfThem) {
  translate("<p>Two</p>");
  known.documents_.add("Home", "Accueil", true);
  known.documents_.add("Home", "Maison", true);
  known.documents_.add("Home", "Maison", true);
  known.documents_.add("Home", "Domicile?", false);
  known.documents_.add("Draft", "Brouillon", false);
  EXPECT_EQ(update("<p>Home</p><p>Draft</p><p>Two</p>").counts, counts(1, 2, 0, 0, 0));
  EXPECT_EQ(units(), u"f Maison\nf Brouillon\nt [Two]\n");
  const std::string xml = files.get(tud);
  EXPECT_NE(xml.find("<target state=\"needs-review-translation\" state-qualifier=\"exact-match\">Maison</target>"
                     "<alt-trans match-quality=\"100\" origin=\"K19Suite\"><source>Home</source><target>Maison</target>"
                     "</alt-trans><alt-trans match-quality=\"100\" origin=\"K19Suite\"><source>Home</source>"
                     "<target>Accueil</target></alt-trans>"),
            std::string::npos)
      << xml;
}

TEST_F(DocumentUpdateTest, RemovedTextsAreLookedUpLast) {
  translate("<p>Two</p>");
  known.removed_.add("Home", "Removed", true);
  known.removed_.add("Back again", "De retour", true);
  known.documents_.add("Home", "Accueil", true);
  update("<p>Home</p><p>Back again</p><p>Two</p>");
  EXPECT_EQ(units(), u"e Accueil\ne De retour\nt [Two]\n");
}

TEST_F(DocumentUpdateTest, ASimilarTextIsForReviewWithTheOldOneBesideIt) {
  translate("<p>You can save the file as often as you like.</p>", {}, TranslationStatus::kApproved);
  const DocumentUpdate done = update("<p>You can save the page as often as you like.</p>");
  EXPECT_EQ(done.counts, counts(0, 0, 1, 0, 0));
  EXPECT_EQ(units(), u"f [You can save the file as often as you like.]\n");
  EXPECT_NE(files.get(tud).find("<alt-trans match-quality=\"90\" origin=\"K19Suite\"><source>You can save the file as "
                                "often as you like.</source><target>[You can save the file as often as you like.]"
                                "</target></alt-trans>"),
            std::string::npos);
  ASSERT_EQ(done.removed.size(), 1u) << "the old text may come back";
  EXPECT_EQ(done.removed[0].source, "You can save the file as often as you like.");
}

TEST_F(DocumentUpdateTest, TheTextInTheSamePlaceGoesBeforeEquallySimilarOnes) {
  known.documents_.add("The price of 5 apples is 9 francs today", "elsewhere", true);
  translate("<p>A</p><p>The price of 5 apples is 7 francs today</p><p>B</p>");
  update("<p>A</p><p>The price of 6 apples is 8 francs today</p><p>B</p>");
  EXPECT_EQ(units(), u"t [A]\nf [The price of 5 apples is 7 francs today]\nt [B]\n");
}

TEST_F(DocumentUpdateTest, AdaptsCodes) {
  const struct {
    const char* name;
    const char* old_page;
    std::u16string source;
    std::u16string translation;
    const char* new_page;
    std::u16string expected;
  } cases[] = {
      {"the same codes, in the translation's order", "<p>Press <b>this</b> and then <i>that</i> at once</p>",
       u"Press <1>this</1> and then <2>that</2> at once", u"<2>cela</2> puis <1>ceci</1>",
       "<p>Press <b>this</b> and then <i>those</i> at once</p>", u"f <2>cela</2> puis <1>ceci</1>\n"},
      {"an optional code dropped by the translator", "<p>Press <b>this</b> and then that at once</p>",
       u"Press <1>this</1> and then that at once", u"ceci", "<p>Press <b>this</b> and then those at once</p>",
       u"f ceci\n"},
      {"a code added", "<p>Press this and then that at once</p>", u"Press this and then that at once", u"ceci cela",
       "<p>Press <b>this</b> and then that at once</p>", u"f ceci cela\n"},
      {"a code removed", "<p>Press <b>this</b> and then that at once</p>", u"Press <1>this</1> and then that at once",
       u"<1>ceci</1> cela", "<p>Press this and then that at once</p>", u"f ceci cela\n"},
      {"another kind of code with the same text around it", "<p>Press <b>this</b> now</p>", u"Press <1>this</1> now",
       u"<1>ceci</1> !", "<p>Press <i>this</i> now</p>", u"t <1>ceci</1> !\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    known.documents_ = TextMemory(TextUnits::kWords);
    translate(c.old_page, {{c.source, c.translation}});
    update(c.new_page);
    EXPECT_EQ(units(), c.expected);
    EXPECT_NO_THROW(rebuild(tud, road));
  }
}

TEST_F(DocumentUpdateTest, ACodeThatMustComeBackIsPutAfterTheText) {
  // A script's placeholder is required.
  translate("<p>Dear customer, you have ordered today</p>",
            {{u"Dear customer, you have ordered today", u"Cher client"}});
  update("<p>Dear customer, you have <KAVOObj1 /> ordered today</p>");
  EXPECT_NO_THROW(rebuild(tud, road));
  EXPECT_EQ(rebuild(tud, road).find("<p>Cher client"), 0u) << rebuild(tud, road);
}

TEST_F(DocumentUpdateTest, TextsThatCannotBeRebuiltAreOnlyOffered) {
  // A character that the document's code page does not have, and text files have no other way to write.
  Road latin{u"K19TXT", 1252};
  put(u"t.txt", "The first line of this text\n");
  tud = convert(u"t.txt", latin);
  put(u"t.txt", "The second line of this text\n");
  known.documents_.add("The first line of this text", "\xE4\xB8\x80", true);
  convert(u"t.txt", latin);
  const DocumentUpdate done = update_document(tud, nullptr, known);
  EXPECT_EQ(units(), u"n The second line of this text\n");
  EXPECT_EQ(done.counts, counts(0, 0, 1, 0, 0));
  EXPECT_NE(files.get(tud).find("<target>\xE4\xB8\x80</target></alt-trans>"), std::string::npos);
  EXPECT_EQ(rebuild(tud, latin), "The second line of this text\n");
}

TEST_F(DocumentUpdateTest, RemembersWhatIsGone) {
  translate("<p>One</p><p>Two</p><p>OK</p><p>OK</p><p>Later</p>", {{u"Later", u""}});
  const DocumentUpdate done = update("<p>Two</p><p>OK</p>");
  EXPECT_EQ(done.counts, counts(2, 0, 0, 0, 2));
  ASSERT_EQ(done.removed.size(), 1u) << "what was never translated is not worth keeping, OK is still there";
  EXPECT_EQ(done.removed[0].target, "[One]");
}

TEST_F(DocumentUpdateTest, TwoTranslationsOfOneTextBothSurvive) {
  translate("<p>A</p><p>OK</p><p>B</p><p>OK</p><p>C</p>");
  BilingualDocument document(tud);
  document.set_segment(3, "D'accord", TranslationStatus::kApproved, 0);
  document.save();
  const DocumentUpdate done = update("<p>A</p><p>OK</p><p>B</p><p>C</p>");
  EXPECT_EQ(units(), u"t [A]\nt [OK]\nt [B]\nt [C]\n");
  ASSERT_EQ(done.removed.size(), 1u);
  EXPECT_EQ(done.removed[0].target, "D'accord");
}

TEST_F(DocumentUpdateTest, AnUpdatedDocumentIsUpdatedAgain) {
  translate("<p>You can save the file as often as you like.</p><p>Two</p>");
  update("<p>You can save the page as often as you like.</p><p>Two</p>");
  const std::string once = files.get(tud);
  known.documents_ = TextMemory(TextUnits::kWords);
  update("<p>New</p><p>You can save the page as often as you like.</p><p>Two</p>");
  EXPECT_EQ(units(), u"n New\nf [You can save the file as often as you like.]\nt [Two]\n");
  const auto offered = [](const std::string& xml) {
    const std::size_t begin = xml.find("<alt-trans");
    return xml.substr(begin, xml.find("</alt-trans>") - begin);
  };
  EXPECT_EQ(offered(files.get(tud)), offered(once)) << "what is offered stays until somebody has looked at it";
}

TEST_F(DocumentUpdateTest, DocumentsOfEditorsAreUpdated) {
  translate("<p>Press <b>this</b> now</p><p>Two</p>");
  // Another prefix, segments, a code in an editor's own form.
  std::string xml = files.get(tud);
  const std::size_t begin = xml.find("<trans-unit id=\"1\"");
  const std::size_t end = xml.find("</trans-unit>", begin);
  xml.replace(
      begin, end - begin,
      "<trans-unit id='1' approved='yes'><source>Press <g id='1'>this</g> now</source><seg-source><mrk mtype='seg' "
      "mid='0'>Press <g id='1'>this</g> now</mrk></seg-source><target state='final'><mrk mtype='seg' mid='0'>"
      "<g id='1'>Ceci</g>!</mrk></target><note from='E'>n</note>");
  files.put(tud, xml);
  update("<p>New</p><p>Press <b>this</b> now</p><p>Two</p>");
  EXPECT_EQ(units(), u"n New\nA <1>Ceci</1>!\nt [Two]\n");
  EXPECT_NE(files.get(tud).find("approved=\"yes\""), std::string::npos);
  EXPECT_NE(files.get(tud).find("state=\"final\""), std::string::npos);
  EXPECT_EQ(rebuild(tud, road), "<p>New</p><p><b>Ceci</b>!</p><p>[Two]</p>");
}

TEST_F(DocumentUpdateTest, ATranslationIsNeverAttachedToAnotherText) {
  // Documents of the same few paragraphs, changed at random: what is kept or moved is the translation of its own text.
  std::uint32_t state = 11;
  const auto random = [&](std::uint32_t bound) { return (state = state * 1664525 + 1013904223) / 65536 % bound; };
  for (int round = 0; round < 60; ++round) {
    const auto paragraph = [&] {
      const char* const words[] = {"Save", "Open", "the <b>file</b>", "page", "5", "12", "now", "<br>"};
      std::string text = "<p>Word";
      for (std::uint32_t i = random(6); i > 0; --i) text += std::string(" ") + words[random(8)];
      return text + "</p>";
    };
    std::vector<std::string> page;
    for (std::uint32_t i = 3 + random(10); i > 0; --i) page.push_back(paragraph());
    const auto bytes = [&] {
      std::string all;
      for (const std::string& each : page) all += each;
      return all;
    };
    known.documents_ = TextMemory(TextUnits::kWords);
    translate(bytes());
    for (std::uint32_t i = random(5); i > 0; --i) {
      const std::size_t at = random(static_cast<std::uint32_t>(page.size()));
      switch (random(3)) {
        case 0:
          page.insert(page.begin() + static_cast<std::ptrdiff_t>(at), paragraph());
          break;
        case 1:
          page[at] = paragraph();
          break;
        default:
          std::swap(page[at], page.back());
      }
    }
    const DocumentUpdate done = update(bytes());
    const BilingualDocument document(tud);
    for (std::size_t i = 0; i < document.size(); ++i) {
      const BilingualSegment segment = document.segment(i);
      if (segment.status != TranslationStatus::kTranslated && segment.status != TranslationStatus::kExact) continue;
      EXPECT_EQ(to_host_text(segment.target), u"[" + to_host_text(segment.source) + u"]");
    }
    EXPECT_EQ(done.counts.kept + done.counts.moved + done.counts.similar + done.counts.fresh, document.size());
    EXPECT_NO_THROW(rebuild(tud, road));
  }
}

// --- documents of earlier versions

TEST_F(DocumentUpdateTest, TheFirstFormatIsUpdated) {
  for (const std::u16string_view name : {u"note.txt", u"note_txt_FR.tud", u"note_txt_FR.tud.skl"})
    put(name, read_file(path_from_host(KAVO_FIRST_FORMAT) + u"\\" + std::u16string(name)));
  tud = in_folder(u"note_txt_FR.tud");
  BilingualDocument document(tud);
  document.set_segment(0, "Une ligne", TranslationStatus::kApproved, 0);
  document.save();
  const OldDocument old = read_old_document(tud);
  put(u"note.txt", "New\r\n" + get(u"note.txt"));
  const Road latin{u"K19TXT", 1252};
  convert(u"note.txt", latin);
  EXPECT_EQ(update_document(tud, &old, known).counts, counts(2, 0, 0, 1, 0));
  EXPECT_EQ(units(), u"n New\nA Une ligne\nn Another one \u00E9t\u00E9\n");
  EXPECT_EQ(rebuild(tud, latin).substr(0, 16), "New\r\nUne ligne\nA");
}

TEST_F(DocumentUpdateTest, LinesOfScriptGiveTheirTextsAway) {
  for (const std::u16string_view name : {u"shop_asp.scr", u"shop_asp_scr_FR.tud", u"shop_asp_scr_FR.tud.skl"})
    put(name, read_file(path_from_host(KAVO_EARLIER_SCRIPTS) + u"\\" + std::u16string(name)));
  tud = in_folder(u"shop_asp_scr_FR.tud");
  BilingualDocument document(tud);
  document.set_segment(1, from_host_text(u"<1/>\"Bonjour \"<2/>\", bienvenue\"<3/>"), TranslationStatus::kApproved, 0);
  document.set_segment(4, from_host_text(u"<1/>'Le champ est vide'<2/>\"no\"<3/>"), TranslationStatus::kTranslated, 0);
  document.save();
  const OldDocument old = read_old_document(tud);
  EXPECT_TRUE(old.holds_lines);
  add_translations(known.documents_, old.units);
  const Road latin{u"K19TXT", 1252};
  convert(u"shop_asp.scr", latin);
  EXPECT_FALSE(says_the_same(tud, old)) << "the same source, taken apart in another way";
  update_document(tud, &old, known);
  EXPECT_EQ(units(), u"A Bonjour <1/>, bienvenue\nt Le champ est vide\n");
  const std::string rebuilt = rebuild(tud, latin);
  EXPECT_NE(rebuilt.find("\"Bonjour \" & name & \", bienvenue\""), std::string::npos) << rebuilt;
}

}  // namespace
}  // namespace kavo::test
