// A year in the life of a site: prepared, translated with an editor, handed back, rebuilt; then the sources change and
// all of it happens once more. It is small when it runs with the other tests; with KAVO_FULL_YEAR set it has a
// realistic size.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "suite/document/bilingual_document.h"
#include "suite/document/coded_text.h"

namespace kavo::test {
namespace {

namespace fs = std::filesystem;

// A text whose words depend on the number, always the same for the same number.
std::string sentence(int number) {
  static constexpr const char* kWords[] = {"river",  "mountain", "window", "garden", "letter",  "engine", "market",
                                           "forest", "silver",   "candle", "bridge", "harbour", "planet", "winter",
                                           "circle", "danger",   "method", "number", "orange",  "pencil"};
  std::string text = "Text";
  unsigned value = static_cast<unsigned>(number) * 7919 + 13;  // unsigned, because it wraps around
  for (int i = 0; i < 9; ++i, value = value * 31 + 7) (text += ' ') += kWords[value / 16 % 20];
  return text + " end" + std::string(1, static_cast<char>('a' + number % 26)) +
         std::string(1, static_cast<char>('a' + number / 26 % 26)) +
         std::string(1, static_cast<char>('a' + number / 676 % 26));
}

struct Site {
  std::map<std::string, std::string> files;  // by path in the site
};

constexpr int kTextsOfPage = 8;

std::string page(const std::vector<std::string>& texts, int number) {
  std::string html = "<html><head><title>" + texts[0] + "</title></head><body>\r\n<table>\r\n";
  for (std::size_t i = 1; i < texts.size(); ++i) {
    html += "<tr><td>" + texts[i] + "</td><td>OK</td></tr>\r\n";
  }
  html += "</table>\r\n<p>Press <b>this</b> and <i>then</i> page" + std::to_string(number) + "</p>\r\n";
  return html + "<% MsgBox \"Hello from the page\" %>\r\n</body></html>\r\n";
}

std::string manual(const std::vector<std::string>& texts) {
  std::string mif =
      "<MIFFile 7.00>\r\n<VariableFormats \r\n <VariableFormat \r\n  <VariableName `Product'>\r\n  <VariableDef `The "
      "product name'>\r\n >\r\n>\r\n<TextFlow \r\n";
  for (const std::string& text : texts) mif += " <Para \r\n  <ParaLine \r\n   <String `" + text + "'>\r\n  >\r\n >\r\n";
  return mif + ">\r\n";
}

std::string lines(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += text + "\r\n";
  return all;
}

std::vector<std::string> texts_from(int first, int count) {
  std::vector<std::string> texts;
  for (int i = 0; i < count; ++i) texts.push_back(sentence(first + i));
  return texts;
}

class YearRoad : public testing::Test {
 protected:
  YearRoad() {
    if (std::getenv("KAVO_FULL_YEAR")) pages_ = 200, manuals_ = 20, texts_ = 10;
  }

  // One of the two versions of the site. The numbers decide what is edited, inserted, moved, deleted and added in the
  // second.
  Site version(bool second) {
    Site site;
    edited_.clear();
    const auto texts_of = [&](int number, int count) {
      std::vector<std::string> texts = texts_from(number * 100, count);
      if (!second) return texts;
      if (number % 3 == 0) {
        std::string& text = texts[2];
        text.replace(text.find(' ') + 1, text.find(' ', 6) - 5, "changed");
        edited_.insert(text);
      }
      if (number % 4 == 0) texts.insert(texts.begin() + 1, "Quite a new row, number " + sentence(number * 100 + 50));
      if (number % 5 == 0) texts.erase(texts.begin() + 4);
      return texts;
    };
    for (int i = 0; i < pages_; ++i) {
      if (second && i % 10 == 7) continue;  // deleted
      const bool is_moved = second && i % 10 == 4;
      const std::string name = (is_moved     ? "moved"
                                : i % 2 == 0 ? "even"
                                             : "odd") +
                               std::string("/page") + std::to_string(i) + (i % 2 == 0 ? ".asp" : ".htm");
      site.files[name] = page(texts_of(i, kTextsOfPage), i);
    }
    for (int i = 0; i < manuals_; ++i)
      site.files["book/ch" + std::to_string(i) + ".mif"] = manual(texts_of(1000 + i, 6));
    for (int i = 0; i < texts_; ++i) site.files["text/t" + std::to_string(i) + ".txt"] = lines(texts_of(2000 + i, 6));
    if (second) site.files["odd/added.htm"] = page(texts_from(300'000, kTextsOfPage), 999);
    return site;
  }

  // Replaces the folder's sources by those of the site. Other files stay, as on a translator's disk.
  void lay_out(const Site& site) {
    for (const auto& [name, bytes] : sources_.files)
      if (!site.files.contains(name)) fs::remove(root_ / name);
    for (const auto& [name, bytes] : site.files) {
      std::u16string path = path_from_host(name);
      folder_.write(path, bytes);
    }
    sources_ = site;
  }

  std::vector<std::string> source_paths() const {
    std::vector<std::string> paths;
    for (const auto& [name, bytes] : sources_.files) paths.push_back((root_ / name).string());
    return paths;
  }

  void run(std::vector<std::string> arguments, std::vector<std::string> files) {
    arguments.insert(arguments.end(), files.begin(), files.end());
    arguments.insert(arguments.end(), {"--progress", "none"});
    const Ran ran = run_kavo(arguments);
    ASSERT_EQ(ran.code, 0) << arguments[0] << ": " << ran.errors;
  }

  // The text files are lists. Whether their lines belong together must not depend on their look, which may change with
  // the next version.
  void prepare(const std::string& language) {
    run({"prepare", "--paragraphs", "lines", "--source", "EN-US", "--target", language}, source_paths());
  }

  // The bilingual documents of a language whose sources are there.
  std::vector<fs::path> documents(const std::string& language) const {
    std::vector<fs::path> found;
    for (const auto& entry : fs::recursive_directory_iterator(root_)) {
      const std::string name = entry.path().filename().string();
      if (!name.ends_with("_" + language + ".tud")) continue;
      const TudHeader header = header_of(path_from_host(entry.path().string()));
      if (fs::exists(entry.path().parent_path() / header.set.author_document)) found.push_back(entry.path());
    }
    return found;
  }

  static std::string translated(const std::string& language, std::string_view plain) {
    return language + ":" + std::string(plain);
  }

  // What an editor does with a document: some units as they are, some approved, some for review; notes; segments; codes
  // dropped and moved; a coding of its own. Handed back through the import.
  void translate(const fs::path& tud, const std::string& language) {
    struct Editor final : TudEvents {
      explicit Editor(const std::string& given) : language(given) {}
      void unit(const TudUnit& unit) override {
        if (!unit.translate || status_of(unit) != TranslationStatus::kUntranslated) return;
        ++number;
        std::string text;
        for (const char c : plain_text(unit.source)) text += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
        text = translated(language, text);
        std::string source = text.substr(language.size() + 1);
        const bool has_codes = !unit.inlines.empty();
        // Codes: dropped in every second document, else moved after the text.
        std::string target = text;
        bool keeps_codes = !drops;
        if (has_codes && keeps_codes) {
          for (const TudUnit::Inline& code : unit.inlines)
            if (code.kind == CodeKind::kOpen)
              target += "<g id='" + code.id + "'>x</g>";
            else if (code.kind == CodeKind::kStandalone)
              target += "<x id='" + code.id + "'/>";
        }
        const char* const states[] = {"translated", "signed-off", "needs-review-translation", "final"};
        const bool approved = number % 4 == 1;
        units += "<trans-unit id='" + unit.id + "'" + (approved ? " approved='yes'" : "") + "><source>" +
                 coded(unit.source) + "</source>";
        if (number % 3 == 0 && !has_codes)
          units += "<seg-source><mrk mtype='seg' mid='0'>" + source + "</mrk></seg-source><target state='" +
                   states[number % 4] + "'><mrk mtype='seg' mid='0'>" + target + "</mrk></target>";
        else
          units += std::string("<target state='") + states[number % 4] + "'>" + target + "</target>";
        if (number % 5 == 0) units += "<note from='Zoe'>look here</note>";
        units += "</trans-unit>\n";
      }
      static std::string coded(std::string_view text) {
        std::string xml;
        CodedTextReader reader(text);
        for (CodedPart part; reader.next(part);) {
          if (!part.is_code) {
            for (const char c : part.text) xml += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
          } else if (part.kind == CodeKind::kClose) {
            xml += "</g>";
          } else {
            xml += (part.kind == CodeKind::kOpen ? "<g id='" : "<x id='") + std::string(part.text) +
                   (part.kind == CodeKind::kOpen ? "'>" : "'/>");
          }
        }
        return xml;
      }
      std::string language;
      std::string units;
      bool drops = false;
      int number = 0;
    };
    Editor editor(language);
    editor.drops = tud.filename().string().size() % 2 == 0;
    const std::u16string path = path_from_host(tud.string());
    const TudHeader header = header_of(path);
    read_tud(path, editor);
    std::string xml =
        "<?xml version='1.0'?>\n<xliff version='1.2' xmlns='urn:oasis:names:tc:xliff:document:1.2'><file "
        "original='" +
        header.original + "' source-language='en-US' target-language='" + language + "' datatype='x'><body>\n" +
        editor.units + "</body></file></xliff>\n";
    if (editor.drops) {  // UTF-16 with its mark
      std::string wide = "\xFF\xFE";
      xml.replace(xml.find("?>"), 0, " encoding='UTF-16'");
      for (const char c : xml) (wide += c) += '\0';
      xml = wide;
    }
    const std::u16string back = folder_.write(u"back.xlf", xml);
    const Ran ran = run_kavo({"import", path_to_host(back), "--to", tud.string()});
    ASSERT_EQ(ran.code == 0 || ran.errors.find("it is missing") != std::string::npos, true) << ran.errors;
  }

  void rebuild(const std::string& language) {
    std::vector<std::string> files;
    for (const fs::path& tud : documents(language)) {
      const std::string name = tud.filename().string();
      const bool is_taken_along =
          name.find("_asp_scr_") != name.npos || name.find("_htm_scr_") != name.npos || name.starts_with("KAVO_");
      if (!is_taken_along) files.push_back(tud.string());
    }
    run({"rebuild", "--overwrite"}, files);
  }

  struct Unit {
    std::string target;
    std::string state;
    bool approved;
    std::vector<std::string> notes;
    std::size_t alternatives;
    bool operator==(const Unit&) const = default;
  };
  // By document and text; of equal texts in a document all, in order.
  using Units = std::map<std::pair<std::string, std::string>, std::vector<Unit>>;
  Units units(const std::string& language) const {
    struct Reader final : TudEvents {
      Reader(Units& to, std::string name) : all(to), document(std::move(name)) {}
      void unit(const TudUnit& unit) override {
        Unit taken{std::string(translation_of(unit)), unit.state, unit.approved, {}, unit.alternatives.size()};
        for (const TudNote& note : unit.notes)
          if (!is_own_note(note)) taken.notes.push_back(note.text);
        all[{document, unit.source}].push_back(taken);
      }
      Units& all;
      std::string document;
    };
    Units all;
    for (const fs::path& tud : documents(language)) {
      Reader reader(all, fs::relative(tud, root_).generic_string());
      read_tud(path_from_host(tud.string()), reader);
    }
    return all;
  }

  void expect_sources_as_they_were() const {
    for (const auto& [name, bytes] : sources_.files)
      EXPECT_EQ(read_file(path_from_host((root_ / name).string())) == bytes, true) << name;
  }

  TempFolder folder_;
  fs::path root_ = path_to_host(folder_.path());
  Site sources_;
  std::set<std::string> edited_;  // texts of the second version
  int pages_ = 10;
  int manuals_ = 2;
  int texts_ = 2;
};

TEST_F(YearRoad, TranslationsSurviveTheNextVersion) {
  const std::vector<std::string> languages{"FR", "DE", "JA"};
  lay_out(version(false));
  std::map<std::string, Units> before;
  for (const std::string& language : languages) {
    prepare(language);
    for (const fs::path& tud : documents(language)) translate(tud, language);
    rebuild(language);
    before[language] = units(language);
  }
  expect_sources_as_they_were();

  lay_out(version(true));
  for (const std::string& language : languages) {
    prepare(language);
    std::size_t same = 0, kept = 0, edited = 0, offered = 0, moved = 0, carried = 0;
    for (const auto& [key, now] : units(language)) {
      const auto& [document, source] = key;
      const std::string plain = plain_text(source);
      const auto old = before[language].find(key);
      // Texts that the same document had before, as often as it had them.
      const std::size_t count = old == before[language].end() ? 0 : std::min(old->second.size(), now.size());
      same += count;
      std::size_t as_before = 0;
      for (std::size_t i = 0; i < now.size(); ++i) {
        if (count != 0 && std::ranges::find(old->second, now[i]) != old->second.end()) ++as_before;
        // Whatever was taken over unseen is the translation of this very text.
        if (now[i].state != "new" && !now[i].state.starts_with("needs-") && plain_text(now[i].target) != plain) {
          EXPECT_EQ(plain_text(now[i].target).find(translated(language, plain)), 0u) << document;
        }
        if (edited_.contains(plain)) {
          const bool is_offered = now[i].state == "needs-review-translation" && now[i].alternatives != 0;
          EXPECT_TRUE(is_offered) << document << ": " << plain << " is " << now[i].state << ": " << now[i].target;
          ++edited;
          offered += is_offered;
        }
        if (document.starts_with("moved/") && !edited_.contains(plain) && plain.starts_with("Text")) {
          ++moved;
          carried += now[i].state != "new";
          EXPECT_FALSE(now[i].approved) << plain;
        }
      }
      kept += std::min(as_before, count);
    }
    EXPECT_GT(same, 50u);
    EXPECT_GE(kept * 100, same * 99) << language << ": " << kept << " of " << same;
    EXPECT_GT(edited, 2u);
    EXPECT_EQ(offered, edited) << language;
    EXPECT_GT(moved, 0u);
    EXPECT_EQ(carried, moved) << language;
    std::printf("%s: %zu of %zu unchanged texts kept, %zu of %zu edited ones offered, %zu of %zu moved ones found\n",
                language.c_str(), kept, same, offered, edited, carried, moved);
    rebuild(language);
  }
  expect_sources_as_they_were();
}

}  // namespace
}  // namespace kavo::test
