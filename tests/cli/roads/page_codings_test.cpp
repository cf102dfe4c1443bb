// A page's own coding governs its texts and those of its scripts, however it is declared.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "cli/run_kavo.h"
#include "formats/text/euc_japanese.h"
#include "formats/text/text_coding.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "suite/document/bilingual_document.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

struct Coding {
  const char* name;    // as pages write it
  const char* number;  // as CodePage= wants it
  unsigned code_page;
  const char* source;  // a word, UTF-8
  const char* target;  // its translation
};
constexpr Coding kCodings[] = {
    {"utf-8", "65001", kUtf8CodePage, "\u0416\u0151\u5B57", "caf\u00E9 \u03A9 \u6F22"},
    {"windows-1252", "1252", 1252, "caf\u00E9", "\u00E0 la cr\u00E8me \u20AC"},
    {"iso-8859-1", "28591", 1252, "caf\u00E9", "d\u00E9j\u00E0"},
    {"windows-1250", "1250", 1250, "\u0159\u00ED\u010D", "\u0142\u00F3d\u017A"},
    {"windows-1251", "1251", 1251, "\u0436\u0443\u043A", "\u044E\u0433 \u0438 \u0441"},
    {"windows-1253", "1253", 1253, "\u03B1\u03B2\u03B3", "\u03BB\u03CC\u03B3\u03BF\u03C2"},
    {"windows-1254", "1254", 1254, "\u011F\u0131\u015F", "\u0130stanbul \u015Fi"},
    // Trail bytes that look like a backslash.
    {"shift_jis", "932", 932, "\u30BD\u8868", "\u4E88\u5B9A\u8868"},
    {"euc-jp", "51932", kEucJapanese, "\u30BD\u8868", "\u4E88\u5B9A\u8868"},
    {"gb2312", "936", 936, "\u6C49\u5B57", "\u4FE1\u606F"},
    {"euc-kr", "949", 949, "\uD55C\uAE00", "\uC815\uBCF4"},
    {"big5", "950", 950, "\u6F22\u529F", "\u8A31\u8CC7\u8A0A"},
};

struct Way {
  const char* name;
  const char16_t* page;
  std::string (*head)(const Coding& coding);
  bool needs_option = false;
};
std::string in(const char* before, std::string_view value, const char* behind) {
  return before + std::string(value) + behind;
}
const Way kWays[] = {
    {"CodePage", u"a.asp",
     [](const Coding& c) { return in("<%@ Language=VBScript CodePage=\"", c.number, "\" %>\r\n"); }},
    {"pageEncoding", u"a.jsp", [](const Coding& c) { return in("<%@page pageEncoding='", c.name, "'%>\n"); }},
    {"declare", u"a.php", [](const Coding& c) { return in("<?php declare(encoding='", c.name, "'); ?>\n"); }},
    {"XML declaration", u"a.asp",
     [](const Coding& c) { return in("<?xml version=\"1.0\" encoding=\"", c.name, "\"?>\n"); }},
    {"contentType", u"a.jsp",
     [](const Coding& c) { return in("<%@ page contentType=\"text/html;charset=", c.name, "\" %>\n"); }},
    {"meta charset", u"a.asp", [](const Coding& c) { return in("<meta charset=", c.name, ">\n"); }},
    {"meta http-equiv", u"a.php",
     [](const Coding& c) {
       return in("<meta http-equiv=\"Content-Type\" content=\"text/html; charset=", c.name, "\">\n");
     }},
    {"Response.Charset", u"a.asp", [](const Coding& c) { return in("<% Response.Charset = \"", c.name, "\" %>\n"); }},
    {"header", u"a.php",
     [](const Coding& c) { return in("<?php header('Content-Type: text/html; charset=", c.name, "'); ?>\n"); }},
    {"--code-page", u"a.asp", [](const Coding&) { return std::string(); }, true},
};

class PageCodings : public testing::Test {
 protected:
  static std::string encoded(const Coding& coding, std::string_view utf8) {
    std::string bytes;
    TextCoding(coding.code_page).encode(utf8, bytes, [&](std::string_view missing, std::string&) {
      ADD_FAILURE() << coding.name << " has no " << missing;
    });
    return bytes;
  }
  // The text of bytes that are all valid.
  static std::string decoded(const Coding& coding, std::string_view bytes) {
    const TextCoding text(coding.code_page);
    std::string utf8;
    while (!bytes.empty()) {
      bool is_valid = false;
      bytes.remove_prefix(text.decode_one(bytes, utf8, is_valid));
      if (!is_valid) return "invalid bytes behind " + utf8;
    }
    return utf8;
  }
  static std::string script(std::u16string_view page, const std::string& word) {
    if (page.ends_with(u"jsp")) return "<% out.print(\"A message " + word + " for you\"); %>";
    if (page.ends_with(u"php")) return "<?php echo \"A message " + word + " for you\"; ?>";
    return "<% Response.Write \"A message " + word + " for you\" %>";
  }
  static std::string page(const Way& way, const Coding& coding, const std::string& word) {
    return way.head(coding) + "<html><body><p>Hello " + word + "</p>" + script(way.page, word) + "</body></html>\n";
  }
  void translate(std::u16string_view tud, const Coding& coding) {
    BilingualDocument document(folder.path(tud));
    for (std::size_t i = 0; i < document.size(); ++i) {
      std::string text(document.segment(i).source);
      const std::size_t at = text.find(coding.source);
      ASSERT_NE(at, std::string::npos) << text;
      text.replace(at, std::string_view(coding.source).size(), coding.target);
      document.set_segment(i, text, TranslationStatus::kTranslated, 0);
    }
    document.save();
  }
  TempFolder folder;
};

// All pages of a coding go through one call, because there are more than a hundred.
TEST_F(PageCodings, EveryCodingByEveryWayOfDeclaringIt) {
  for (const Coding& coding : kCodings)
    for (const bool needs_option : {false, true}) {
      SCOPED_TRACE(coding.name);
      // Names of code pages are our own numbers; not every one of them is an option.
      const bool is_option = std::to_string(coding.code_page) == coding.number && coding.code_page != kEucJapanese;
      if (needs_option && !is_option) continue;
      std::vector<std::string> prepare{"prepare", "--source", "EN-US", "--target", "FR", "--overwrite"};
      if (needs_option) prepare.insert(prepare.end(), {"--code-page", coding.number});
      std::vector<std::string> rebuild{"rebuild", "--overwrite"};
      const auto stem_of = [](std::size_t way) { return u"p" + to_utf16(std::to_string(way)); };
      const auto tud_of = [&](std::size_t way, const char16_t* kind) {
        return stem_of(way) + u"_" + std::u16string(kWays[way].page).substr(2) + kind;
      };
      for (std::size_t way = 0; way < std::size(kWays); ++way) {
        if (kWays[way].needs_option != needs_option) continue;
        const std::u16string name = stem_of(way) + std::u16string(kWays[way].page).substr(1);
        prepare.push_back(path_to_host(folder.write(name, encoded(coding, page(kWays[way], coding, coding.source)))));
        rebuild.push_back(path_to_host(folder.path(tud_of(way, u"_htm_FR.tud"))));
      }
      const Ran prepared = run_kavo(prepare);
      ASSERT_EQ(prepared.code, 0) << prepared.errors;
      EXPECT_EQ(prepared.errors.find("does not have"), std::string::npos) << prepared.errors;
      for (std::size_t way = 0; way < std::size(kWays); ++way) {
        if (kWays[way].needs_option != needs_option) continue;
        translate(tud_of(way, u"_htm_FR.tud"), coding);
        translate(tud_of(way, u"_scr_FR.tud"), coding);
      }
      const Ran rebuilt = run_kavo(rebuild);
      ASSERT_EQ(rebuilt.code, 0) << rebuilt.errors;
      for (std::size_t way = 0; way < std::size(kWays); ++way) {
        if (kWays[way].needs_option != needs_option) continue;
        const std::u16string target = stem_of(way) + u"_FR" + std::u16string(kWays[way].page).substr(1);
        EXPECT_EQ(decoded(coding, folder.read(target)), page(kWays[way], coding, coding.target)) << kWays[way].name;
      }
    }
}

TEST_F(PageCodings, AMarkGoesBeforeEverything) {
  const Coding& coding = kCodings[0];
  const std::string bytes = "\xEF\xBB\xBF<%@ CodePage=1252 %><p>Hello " + std::string(coding.source) + "</p>" +
                            script(u"a.asp", coding.source);
  const Ran prepared =
      run_kavo({"prepare", path_to_host(folder.write(u"a.asp", bytes)), "--source", "EN-US", "--target", "FR"});
  ASSERT_EQ(prepared.code, 0) << prepared.errors;
  EXPECT_NE(prepared.errors.find("the byte order mark declares the coding utf-8, the page's directive declares 1252"),
            std::string::npos)
      << prepared.errors;
  translate(u"a_asp_htm_FR.tud", coding);
  translate(u"a_asp_scr_FR.tud", coding);
  ASSERT_EQ(run_kavo({"rebuild", path_to_host(folder.path(u"a_asp_htm_FR.tud"))}).code, 0);
  EXPECT_EQ(folder.read(u"a_FR.asp"), "\xEF\xBB\xBF<%@ CodePage=1252 %><p>Hello " + std::string(coding.target) +
                                          "</p>" + script(u"a.asp", coding.target));
}

TEST_F(PageCodings, ErrorsAreReportedWithTheirPlace) {
  const struct {
    const char* name;
    std::string page;
    const char* told;
  } cases[] = {
      {"two that disagree", "<%@ codepage=65001 %><meta charset=windows-1252><p>One two</p>",
       "declares the coding 65001, <meta> declares windows-1252: the first declaration counts"},
      {"two names of one coding", "<%@ codepage=1252 %><meta charset=iso-8859-1><p>One two</p>", nullptr},
      {"a coding that is not known", "<meta charset=x-klingon><p>One two</p>",
       "declares the coding x-klingon, which is not supported"},
      {"invalid bytes", "<meta charset=utf-8>\r\n<p>One two</p>\r\n<% x = \"\xE9\" %>\r\n\xFF", "a.asp:3:9: "},
      {"how many", "<meta charset=utf-8>\r\n<p>One two</p>\r\n<% x = \"\xE9\" %>\r\n\xFF", "stay as they are: 2"},
  };
  for (const auto& row : cases) {
    const Ran ran = run_kavo({"prepare", path_to_host(folder.write(u"a.asp", row.page)), "--source", "EN-US",
                              "--target", "FR", "--overwrite", "--fresh"});
    EXPECT_EQ(ran.code, 0) << row.name;
    if (row.told != nullptr)
      EXPECT_NE(ran.errors.find(row.told), std::string::npos) << row.name << ": " << ran.errors;
    else
      EXPECT_EQ(ran.errors, "") << row.name;
  }
}

// No filter rewrites what a script declares, so the page keeps that coding; what the page itself declares is rewritten.
TEST_F(PageCodings, ADeclarationInAScriptGoesBeforeTheChosenCoding) {
  const std::string told =
      "A script of the page declares the coding windows-1252, so the translated page keeps it and the chosen one, "
      "windows-1250, is not used";
  const struct {
    const char16_t* name;
    std::string head;
    bool is_told;
    std::string expected_head;
    const char* e_acute;
  } cases[] = {
      {u"a.asp", "<% Response.Charset = \"windows-1252\" %>", true, "<% Response.Charset = \"windows-1252\" %>",
       "\xE9"},
      {u"b.asp", "<%@ CodePage=1252 %>", true, "<%@ CodePage=1252 %>", "\xE9"},
      {u"c.php", "<?php header('Content-Type: text/html; charset=windows-1252'); ?>", true,
       "<?php header('Content-Type: text/html; charset=windows-1252'); ?>", "\xE9"},
      {u"d.asp", "<meta charset=windows-1252>", false, "<meta charset=windows-1250>", "\xE9"},
      {u"e.asp", "<% Response.Charset = \"windows-1250\" %>", false, "<% Response.Charset = \"windows-1250\" %>",
       "\xE9"},
  };
  for (const auto& row : cases) {
    const Ran ran = run_kavo({"prepare", path_to_host(folder.write(row.name, row.head + "<p>Hello you</p>")),
                              "--source", "EN-US", "--target", "FR", "--target-code-page", "1250"});
    ASSERT_EQ(ran.code, 0) << ran.errors;
    EXPECT_EQ(ran.errors.find(told) != std::string::npos, row.is_told) << ran.errors;
    const std::u16string stem = std::u16string(row.name).replace(1, 1, u"_");
    const std::u16string tud = folder.path(stem + u"_htm_FR.tud");
    BilingualDocument document(tud);
    document.set_segment(0, "\u00E9", TranslationStatus::kTranslated, 0);
    document.save();
    ASSERT_EQ(run_kavo({"rebuild", path_to_host(tud)}).code, 0);
    EXPECT_EQ(folder.read(std::u16string(row.name).insert(1, u"_FR")),
              row.expected_head + "<p>" + row.e_acute + "</p>");
  }
}

// A French text of a Western page is written in its coding, in the page and in its script alike; what the coding lacks
// becomes a reference where there is markup, an escape of the language elsewhere.
TEST_F(PageCodings, CharactersThatTheCodingLacks) {
  const struct {
    const char16_t* page;
    std::string script;
    std::string expected;
  } cases[] = {
      {u"a.asp", "<% MsgBox \"Hello you\" %>", "<% MsgBox \"Hello \xE9 \" & ChrW(1078) & \"\" %>"},
      {u"a.jsp", "<% show.alert(\"Hello you\"); %>", "<% show.alert(\"Hello \xE9 \\u0436\"); %>"},
      {u"a.htm", "<script>alert('Hello you')</script>", "<script>alert('Hello \xE9 \\u0436')</script>"},
      {u"a.php", "<?php echo '<b>Hello you</b>'; ?>", "<?php echo '<b>Hello \xE9 &#1078;</b>'; ?>"},
  };
  for (const auto& row : cases) {
    const std::string head = "<meta charset=windows-1252><p>Hello you</p>";
    const std::string page = path_to_host(folder.write(row.page, head + row.script));
    ASSERT_EQ(
        run_kavo({"prepare", page, "--source", "EN-US", "--target", "FR", "--overwrite", "--scripts", "all"}).code, 0);
    const std::u16string stem = u"a_" + std::u16string(row.page).substr(2);
    for (const std::u16string_view kind : {u"_htm_FR.tud", u"_scr_FR.tud"}) {
      BilingualDocument document(folder.path(stem + std::u16string(kind)));
      ASSERT_EQ(document.size(), 1u) << row.script;
      document.set_segment(0, "Hello \u00E9 \u0436", TranslationStatus::kTranslated, 0);
      document.save();
    }
    const Ran rebuilt = run_kavo({"rebuild", path_to_host(folder.path(stem + u"_htm_FR.tud")), "--overwrite"});
    ASSERT_EQ(rebuilt.code, 0) << rebuilt.errors;
    EXPECT_EQ(folder.read(u"a_FR" + std::u16string(row.page).substr(1)),
              "<meta charset=windows-1252><p>Hello \xE9 &#1078;</p>" + row.expected);
  }
}

}  // namespace
}  // namespace kavo::test
