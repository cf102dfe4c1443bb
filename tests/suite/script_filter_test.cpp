#include "suite/filters/script/script_filter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "common/block_reader.h"
#include "platform/unicode.h"
#include "suite/components/filter_catalogue.h"
#include "suite/components/tud_document.h"
#include "suite/document/pseudo_translation.h"
#include "suite/suite_fixture.h"
#include "support/corpus.h"
#include "support/failures.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class ScriptFilterTest : public SuiteTest {
 protected:
  // A script file of one block.
  static std::string block(std::string_view script) {
    return "\r\n<!-- ASP2HTML 1 -->\r\n" + std::string(script) + "\r\n";
  }
  std::vector<std::u16string> texts(std::u16string_view name, std::string_view script) {
    put(name, block(script));
    const std::u16string tud = convert(name);
    EXPECT_EQ(rebuild(tud), block(script));
    return sources(tud);
  }
  // The script with its only text translated.
  std::string with(std::u16string_view name, std::string_view script, std::u16string_view translation,
                   const Road& road = {}) {
    const auto translate = [&](std::u16string) { return std::u16string(translation); };
    const std::string file = translated(name, block(script), translate, road);
    EXPECT_TRUE(file.starts_with("\r\n<!-- ASP2HTML 1 -->\r\n") && file.ends_with("\r\n"));
    return file.substr(23, file.size() - 25);
  }
  std::u16string refusal(std::u16string_view name, std::string_view script, std::u16string_view translation) {
    return reason_of([&] { with(name, script, translation); });
  }
};

TEST_F(ScriptFilterTest, TextsOfAFile) {
  put(u"a_asp.scr",
      "\r\n<!-- ASP2HTML 1 -->\r\n<% Response.Write \"Hello \" & name & \", welcome\" ' it's \"no text\"\r\n"
      "x = Session(\"key\") %>\r\n<!-- ASP2HTML 2 Q -->\r\n<%= Show(\"Approved\") %>\r\n<!-- ASP2HTML 3 -->\r\n"
      "<script>alert('It\\'s')</script>\r\n");
  const std::u16string tud = convert(u"a_asp.scr");
  EXPECT_EQ(rebuild(tud), get(u"a_asp.scr"));
  EXPECT_EQ(sources(tud), (std::vector<std::u16string>{u"Hello <1/>, welcome", u"Approved", u"It's"}));
  const BilingualDocument document(tud);
  EXPECT_EQ(document.header().datatype, "x-script");
  EXPECT_EQ(document.segment(0).status, TranslationStatus::kUntranslated);
  EXPECT_EQ(document.segment(1).status, TranslationStatus::kLocked);
  const std::string xml = get(u"a_asp_scr_FR.tud");
  EXPECT_NE(xml.find("Is this read by people? one word"), std::string::npos) << xml;
  EXPECT_NE(xml.find("extradata=\"3:20\""), std::string::npos) << xml;
}

TEST_F(ScriptFilterTest, WhatABlockWritesIntoATagIsNoText) {
  put(u"a_asp.scr",
      "\r\n<!-- ASP2HTML 1 Q -->\r\n<%= IIf(a, \"odd\", \"even\") %>\r\n<!-- ASP2HTML 2 -->\r\n<%= IIf(a, \"first\", "
      "\"last\") %>\r\n<!-- ASP2HTML 3 -->\r\n<%= IIf(a, \"many\", \"few\") %>\r\n<!-- ASP2HTML 4 -->\r\n"
      "<% If a Then Response.Write \"none\" %>\r\n");
  put(u"a_asp.htm",
      "<tr class=\"<!-- ASP2HTML 1 Q -->\"><td title='<!-- ASP2HTML 2 -->'><!-- ASP2HTML 3 --><a <!-- ASP2HTML 4 -->>");
  const Road alone;
  EXPECT_EQ(sources(convert(u"a_asp.scr", alone)).size(), 7u);
  const Road beside{.options = {{"companion", "C:\\work\\a_asp.htm"}}};
  for (const std::size_t size : {1, 7, 4096}) {
    const BlockSizeScope scope(size);
    EXPECT_EQ(sources(convert(u"a_asp.scr", beside)),
              (std::vector<std::u16string>{u"first", u"last", u"many", u"few", u"none"}))
        << size;
  }
  // PHP writes a value with a statement.
  put(u"b_php.scr",
      "\r\n<!-- ASP2HTML 1 Q -->\r\n<?php echo $a ? 'odd' : 'even' ?>\r\n<!-- ASP2HTML 2 -->\r\n"
      "<?php echo $a ? 'many' : 'few' ?>\r\n");
  put(u"b_php.htm", "<tr class=\"<!-- ASP2HTML 1 Q -->\"><td><!-- ASP2HTML 2 -->");
  EXPECT_EQ(sources(convert(u"b_php.scr", Road())).size(), 4u);
  EXPECT_EQ(sources(convert(u"b_php.scr", Road{.options = {{"companion", "C:\\work\\b_php.htm"}}})),
            (std::vector<std::u16string>{u"many", u"few"}));
}

TEST_F(ScriptFilterTest, UnitsHaveTheirPlaceInTheAuthorsPage) {
  put(u"a.asp", "one\r\n<%= a %>\r\rtwo\n<% b\n\n  MsgBox \"Well done\"\n%>\n<%= a %><% MsgBox \"Again, friend\" %>");
  put(u"a_asp.scr",
      "\r\n<!-- ASP2HTML 1 -->\r\n<%= a %>\r\n<!-- ASP2HTML 2 -->\r\n<% b\n\n  MsgBox \"Well done\"\n%>\r\n"
      "<!-- ASP2HTML 3 -->\r\n<%= a %>\r\n<!-- ASP2HTML 4 -->\r\n<% MsgBox \"Again, friend\" %>\r\n");
  ConversionRequest request;
  request.document = in_folder(u"a_asp.scr");
  request.author_document = in_folder(u"a.asp");
  request.tud = tud_name_of(request.document, u"FR");
  request.source_language = u"EN-US";
  request.target_language = u"FR";
  request.filter = u"K19TXT";
  for (const std::size_t size : {1, 3, 4096}) {
    const BlockSizeScope scope(size);
    ProgressEvent progress;
    convert_document(request, progress);
    const std::string xml = files.get(request.tud);
    EXPECT_NE(xml.find("\"linenumber\">7<"), std::string::npos) << xml;
    EXPECT_NE(xml.find("\"linenumber\">9<"), std::string::npos) << xml;
    EXPECT_NE(xml.find("\"element\">MsgBox()<"), std::string::npos) << xml;
    EXPECT_NE(xml.find("extradata=\"7:11\""), std::string::npos) << xml;
  }
}

TEST_F(ScriptFilterTest, TranslationsAreWrittenInTheirLanguage) {
  const struct {
    const char16_t* name;
    std::string_view script;
    const char16_t* translation;
    std::string_view expected;
  } cases[] = {
      {u"a_asp.scr", "<% MsgBox \"Hi you\" %>", u"\"A\"\nb %> c",
       "<% MsgBox \"\"\"A\"\"\" & vbCrLf & \"b %\" & \"> c\" %>"},
      {u"a_asp.scr", "<% MsgBox \"Hi \" & a & \" and \" & b & \"!\" %>", u"<2/>, <1/>",
       "<% MsgBox \"\" & b & \", \" & a & \"\" %>"},
      {u"a_asp.scr", "<% MsgBox \"Hi \" + \"you\" %>", u"Salut", "<% MsgBox \"Salut\" %>"},
      {u"a_htm.scr", "<script>alert('Hi \\'you\\'')</script>", u"'A' \"b\" \\ <</script>",
       "<script>alert('\\'A\\' \"b\" \\\\ <\\/script>')</script>"},
      {u"a_htm.scr", "<script>alert(`Hi ${you}, yes`)</script>", u"<1/> ${a} `",
       "<script>alert(`${you} \\${a} \\``)</script>"},
      {u"a_htm.scr", "<script>alert('Hi ' + a + \", and \" + b + ' too')</script>", u"A <2/> b <1/> c \"'",
       "<script>alert('A ' + \"\" + b + ' b ' + a + \" c \\\"'\" + '')</script>"},
      {u"a_asp.scr", "<script>alert('Hi <%=f(\"'\")%>, you')</script>", u"<1/>, 'a'",
       "<script>alert('<%=f(\"'\")%>, \\'a\\'')</script>"},
      {u"a_asp.scr", "<script>alert(\"Hi <% ' it's \"5\" %> and \" + a + ' too')</script>", u"<2/> b <1/>",
       "<script>alert(\"\" + a + ' b ' + \"<% ' it's \"5\" %>\" + '')</script>"},
      {u"a_asp.scr", "<script>alert('Hi <%=a%> and <%=b%> too <%-- c --%>.')</script>", u"<3/><2/><1/>",
       "<script>alert('<%-- c --%><%=b%><%=a%>')</script>"},
      {u"a_php.scr", "<script>alert(\"Hi <?php echo '\"'; ?> you\")</script>", u"\"<1/>\"",
       "<script>alert(\"\\\"<?php echo '\"'; ?>\\\"\")</script>"},
      {u"a_jsp.scr", "<% out.print(\"Hi you\"); %>", u"\"A\" \\ %>", "<% out.print(\"\\\"A\\\" \\\\ %\\u003e\"); %>"},
      {u"a_jsp.scr", "<% out.print(\"Hi you\"); %>", u"<<!-- a <<b> 1 << 2 <<",
       "<% out.print(\"&lt;!-- a &lt;b> 1 < 2 &lt;\"); %>"},
      {u"a_htm.scr", "<script>alert('Hi you')</script>", u"a\u2028b\u2029c",
       "<script>alert('a\\u2028b\\u2029c')</script>"},
      {u"a_htm.scr", "<script>alert('Hi you')</script>", u"<<script> <<!-- ",
       "<script>alert('<\\script> <\\!-- ')</script>"},
      {u"a_php.scr", "<?php echo 'Hi you'; ?>", u"'A' $b \\", "<?php echo '\\'A\\' $b \\\\'; ?>"},
      {u"a_php.scr", "<?php echo \"Hi $you, yes\"; ?>", u"$a <1/>b \"c\" {",
       "<?php echo \"\\$a {$you}b \\\"c\\\" {\"; ?>"},
      {u"a_php.scr", "<?php echo \"Hi $you, yes\"; ?>", u"a {<1/>", "<?php echo \"a \\x7b$you\"; ?>"},
      {u"a_php.scr", "<?php echo <<<E\nHi $you, yes\nE;\n?>", u"A\nE;<1/>", "<?php echo <<<E\nA\\nE;$you\nE;\n?>"},
      {u"a_php.scr", "<?php echo '<p>Tom &amp; you</p>'; ?>", u"A & <<b", "<?php echo '<p>A &amp; &lt;b</p>'; ?>"},
      {u"a_php.scr", "<?php echo '<img alt=\"Tom you\">'; ?>", u"\"A\" 'b'",
       "<?php echo '<img alt=\"&quot;A&quot; \\'b\\'\">'; ?>"},
      {u"a_asp.scr", "<% Response.Write \"<input type=submit value=Send>\" %>", u"A b",
       "<% Response.Write \"<input type=submit value=\"\"A b\"\">\" %>"},
  };
  for (const auto& row : cases) EXPECT_EQ(with(row.name, row.script, row.translation), row.expected) << row.script;
}

TEST_F(ScriptFilterTest, CharactersThatTheCodingLacks) {
  const Road road{.source_code_page = 1252, .target_code_page = 1252};
  EXPECT_EQ(with(u"a_htm.scr", "<script>alert('Hi you')</script>", u"\u0436 \u00E9", road),
            "<script>alert('\\u0436 \xE9')</script>");
  EXPECT_EQ(with(u"a_asp.scr", "<% MsgBox \"Hi you\" %>", u"a\u0436", road), "<% MsgBox \"a\" & ChrW(1078) & \"\" %>");
  EXPECT_EQ(with(u"a_php.scr", "<?php echo '<b>Hi</b> you'; ?>", u"\u0436", road), "<?php echo '&#1078;'; ?>");
  const std::u16string reason = reason_of([&] { with(u"a_php.scr", "<?php echo 'Hi you'; ?>", u"\u0436", road); });
  EXPECT_NE(reason.find(u"segment 1 (line 3, column 13)"), std::u16string::npos) << to_utf8(reason);
  EXPECT_NE(reason.find(u"U+0436"), std::u16string::npos);
}

TEST_F(ScriptFilterTest, ConstantsStaySingleLiterals) {
  const std::string_view script = "<% Private Const kTitle = \"Hi you\", kOther = 1 %>";
  EXPECT_EQ(with(u"a_asp.scr", script, u"A \"b\" 100% >"),
            "<% Private Const kTitle = \"A \"\"b\"\" 100% >\", kOther = 1 %>");
  for (const char16_t* translation : {u"a %> b", u"a\nb", u"a <<% b"})
    EXPECT_EQ(to_utf8(refusal(u"a_asp.scr", script, translation)).find("segment 1 (line 3, column 28): "), 0u)
        << to_utf8(refusal(u"a_asp.scr", script, translation));
  // Markup has its own way to write such characters.
  EXPECT_EQ(with(u"a_asp.scr", "<% Const kTitle = \"<b>Hi</b> you\" %>", u"a %> \u0436", {.target_code_page = 1252}),
            "<% Const kTitle = \"a %&gt; &#1078;\" %>");
  EXPECT_EQ(with(u"a_asp.scr", "<% Const kSize = 1\nMsgBox \"Hi you\" %>", u"a\nb"),
            "<% Const kSize = 1\nMsgBox \"a\" & vbCrLf & \"b\" %>");
}

TEST_F(ScriptFilterTest, ValuesComeBackExactlyOnceAndInTheirOrder) {
  EXPECT_NE(refusal(u"a_asp.scr", "<% MsgBox \"Hi \" & a & \", you\" %>", u"Hi").find(u"code 1 is missing"),
            std::u16string::npos);
  EXPECT_NE(refusal(u"a_asp.scr", "<% MsgBox \"Hi \" & a & \", you\" %>", u"<1/><1/>").find(u"code 1 is doubled"),
            std::u16string::npos);
  const std::string_view sum = "<script>alert(n + 1 + ' of ' + m + ' items, ' + l + ' left')</script>";
  EXPECT_EQ(with(u"a_htm.scr", sum, u"A <1/> b <2/> c"),
            "<script>alert(n + 1 + ' A ' + m + ' b ' + l + ' c')</script>");
  EXPECT_NE(refusal(u"a_htm.scr", sum, u"A <2/> b <1/> c").find(u"cannot change places"), std::u16string::npos);
}

TEST_F(ScriptFilterTest, TextsInOperands) {
  const std::string script = "<% MsgBox \"You have \" & IIf(n = 1, \"one item\", \"many items\") & \" left\" %>";
  EXPECT_EQ(texts(u"a_asp.scr", script),
            (std::vector<std::u16string>{u"one item", u"many items", u"You have <1/> left"}));
  const auto translate = [](std::u16string source) { return u"[" + source + u"]"; };
  EXPECT_EQ(translated(u"a_asp.scr", block(script), translate, {}),
            block("<% MsgBox \"[You have \" & IIf(n = 1, \"[one item]\", \"[many items]\") & \" left]\" %>"));
}

TEST_F(ScriptFilterTest, HostsSeeQuotesAroundTexts) {
  put(u"a_htm.scr", block("<script>alert('It\\'s \"so\"')</script>"));
  const std::u16string tud = convert(u"a_htm.scr");
  TUDDocument host;
  Argument open[] = {by_value(tud)};
  ASSERT_EQ(as_number(host.invoke(u"Open", open)), 0);
  Argument get[] = {by_value(1), by_reference(std::u16string()), by_reference(std::u16string()),
                    by_reference(std::int32_t{0}), by_reference(std::int32_t{0})};
  ASSERT_EQ(as_number(host.invoke(u"GetSegment", get)), 0);
  EXPECT_EQ(as_text(get[1].value), u"\"It's \"so\"\"");
  for (const auto& [given, kept] : {std::pair(u"\"A \"b\"\"", u"A \"b\""), std::pair(u"A", u"A"),
                                    std::pair(u"\"A", u"\"A"), std::pair(u"\"\"A\"\"", u"\"A\"")}) {
    Argument set[] = {by_value(1), by_value(std::u16string(given)), by_value(2), by_value(0)};
    ASSERT_EQ(as_number(host.invoke(u"SetSegment", set)), 0);
    ASSERT_EQ(as_number(host.invoke(u"GetSegment", get)), 0);
    EXPECT_EQ(as_text(get[2].value), u"\"" + std::u16string(kept) + u"\"");
  }
}

TEST_F(ScriptFilterTest, WhichTextsAreOffered) {
  const std::string script = block("<% Response.Write \"Hello you\" : foo \"Approved\" : bar \"Refused\" %>");
  const auto offered = [&](ScriptSettings scripts) {
    put(u"a_asp.scr", script);
    ConversionRequest request;
    request.document = in_folder(u"a_asp.scr");
    request.tud = tud_name_of(request.document, u"FR");
    request.source_language = u"EN-US";
    request.target_language = u"FR";
    request.filter = u"K19TXT";
    request.scripts = std::move(scripts);
    ProgressEvent progress;
    convert_document(request, progress);
    EXPECT_EQ(rebuild(request.tud), script);
    const BilingualDocument document(request.tud);
    std::string result;
    for (std::size_t i = 0; i < document.size(); ++i)
      result += std::string(document.segment(i).source) +
                (document.segment(i).status == TranslationStatus::kLocked ? "-" : "+");
    return result;
  };
  using Offer = ScriptSettings::Offer;
  EXPECT_EQ(offered({}), "Hello you+Approved-Refused-");
  EXPECT_EQ(offered({.offer = Offer::kAll}), "Hello you+Approved+Refused+");
  EXPECT_EQ(offered({.offer = Offer::kNone}), "");
  EXPECT_EQ(offered({.texts = "foo", .never = "bar"}), "Hello you+Approved+");
}

// Documents that were prepared when the segments of script files were lines can still be rebuilt.
TEST_F(ScriptFilterTest, LinesOfEarlierVersions) {
  const auto stored = [](const char* name) {
    std::ifstream file(std::string(KAVO_EARLIER_SCRIPTS "/") + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  };
  put(u"shop_asp_scr_FR.tud", stored("shop_asp_scr_FR.tud"));
  put(u"shop_asp_scr_FR.tud.skl", stored("shop_asp_scr_FR.tud.skl"));
  const std::u16string tud = in_folder(u"shop_asp_scr_FR.tud");
  EXPECT_EQ(rebuild(tud), stored("shop_asp.scr"));
  BilingualDocument document(tud);
  ASSERT_EQ(document.size(), 6u);
  document.set_segment(1, from_host_text(u"<1/>\"Bonjour \"<2/>\" !\"<3/>"), TranslationStatus::kTranslated, 0);
  document.save();
  EXPECT_NE(rebuild(tud).find("<% Response.Write \"Bonjour \" & name & \" !\" %>"), std::string::npos);
  ProgressEvent progress;
  EXPECT_EQ(pseudo_translate(tud, progress), 2u);
}

// Of a language that is not known only quotes are: what they hold is locked, and comes back as it was typed.
TEST_F(ScriptFilterTest, LanguagesThatAreNotKnown) {
  const std::string file =
      "\r\n<!-- ASP2HTML 1 -->\r\n<%@ language=PerlScript %>\r\n<!-- ASP2HTML 2 -->\r\n"
      "<% print \"Hello there, $name\\n\"; $x{'key'} = 1; %>\r\n";
  put(u"a_asp.scr", file);
  const std::u16string tud = convert(u"a_asp.scr");
  EXPECT_EQ(rebuild(tud), file);
  BilingualDocument document(tud);
  ASSERT_EQ(document.size(), 1u);
  EXPECT_EQ(document.segment(0).source, "Hello there, $name");
  EXPECT_EQ(document.segment(0).status, TranslationStatus::kLocked);
  document.set_segment(0, "Bonjour, $name", TranslationStatus::kTranslated, 0);
  document.save();
  EXPECT_NE(rebuild(tud).find("print \"Bonjour, $name\\n\"; $x{'key'} = 1;"), std::string::npos);
  for (const std::string_view broken : {"a \" b", "a %> b", "a\nb"}) {
    BilingualDocument again(tud);
    again.set_segment(0, broken, TranslationStatus::kTranslated, 0);
    again.save();
    EXPECT_NE(reason_of([&] { rebuild(tud); }).find(u"segment 1 (line "), std::u16string::npos) << broken;
  }
}

TEST_F(ScriptFilterTest, AHostIsToldWhereATranslationWouldChangeAScript) {
  put(u"a_asp.scr", block("<%@ language=PerlScript %>") + "<!-- ASP2HTML 2 -->\r\n<% print \"Hi there\"; %>\r\n");
  const std::u16string tud = convert(u"a_asp.scr");
  BilingualDocument document(tud);
  ASSERT_EQ(document.size(), 1u);
  document.set_segment(0, "Salut\"; exit; $a = \"", TranslationStatus::kTranslated, 0);
  document.save_open_tag(in_folder(u"a.otf"));
  put(u"b.scr", "old");
  const auto text = [](std::u16string_view value) { return by_value(std::u16string(value)); };
  Argument target[] = {text(in_folder(u"b.scr")), text(in_folder(u"a.otf")), text(skeleton_name_of(tud)), text(u"FR"),
                       text(u"K19TXT")};
  FilterCatalogue catalogue;
  EXPECT_EQ(failure_number([&] { catalogue.invoke(u"CreateTarget", target); }), 5);
  EXPECT_EQ(reason_of([&] { catalogue.invoke(u"CreateTarget", target); }),
            u"segment 1 (line 5, column 11): the translation would change the script around it");
  EXPECT_EQ(get(u"b.scr"), "old");
}

// Hostile texts in every text of every script file: values and the rest of the scripts stay as they are.
TEST_F(ScriptFilterTest, HostileTranslationsLeaveScriptsAsTheyAre) {
  std::mt19937 random(1913);
  const std::u16string_view bits[] = {u"\"",  u"'",      u"`",      u"\\",         u"$",     u"{",  u"}", u"${", u"{$",
                                      u"%>",  u"?>",     u"<<%",    u"<</script>", u"<<!--", u"\n", u"a", u"$a", u"[0]",
                                      u"->b", u"\u0436", u"\u00E9", u"\u00A0",     u"&",     u"//", u"/*"};
  const std::pair<const char16_t*, std::string_view> scripts[] = {
      {u"a_asp.scr", "<% MsgBox \"Hi \" & a & \" and \" & f(\"some words\", b) & \" too\" : y = 1 %>"},
      {u"b_htm.scr",
       "<script>alert('Hi ' + a + \" and \" + f('some words', b) + `to ${c} x` + ' too'); y = 1</script>"},
      {u"c_jsp.scr", "<% out.print(\"Hi \" + a + \" and \" + f(\"some words\") + \" too\"); y = 1; %>"},
      {u"d_php.scr", "<?php echo \"Hi $a and $b[0] and {$c['d']} too\" . $e . 'so it is'; $y = 1; ?>"},
      {u"f_asp.scr", "<script>alert('Hi <%=f(\"'\")%> and <% ' it %> too' + a + \" <%'\"%> it is\"); y = 1</script>"},
      {u"e_php.scr", "<?php echo <<<E\nHi $a and $b->c too\nE;\n$y = 1; ?>"},
  };
  for (int round = 0; round < 60; ++round)
    for (const auto& [name, script] : scripts) {
      put(name, block(script));
      const std::u16string tud = convert(name);
      BilingualDocument document(tud);
      std::u16string all;
      for (std::size_t i = 0; i < document.size(); ++i) {
        std::u16string text;
        std::u16string codes = to_host_text(document.segment(i).source);
        for (std::size_t at = 0; at < codes.size(); ++at) {
          for (unsigned n = random() % 4; n != 0; --n) text += bits[random() % std::size(bits)];
          at = codes.find(u'<', at);
          if (at == std::u16string::npos) break;
          const std::size_t end = codes.find(u'>', at);
          text += codes.substr(at, end - at + 1);
          at = end;
        }
        document.set_segment(i, from_host_text(text), TranslationStatus::kTranslated, 0);
        all += text + u'\n';
      }
      document.save();
      std::string rebuilt;
      ASSERT_NO_THROW(rebuilt = rebuild(tud)) << script << '\n' << to_utf8(all);
      const bool is_php = script.starts_with("<?");
      const std::string closer = is_php ? "?>" : script.starts_with("<%") ? "%>" : "</script>";
      EXPECT_EQ(rebuilt.find(closer), rebuilt.rfind(closer)) << rebuilt;
      EXPECT_NE(rebuilt.find("y = 1"), std::string::npos) << rebuilt;
    }
}

// Every script of the corpus comes back, untranslated and with every text replaced.
TEST(ScriptFilterCorpus, ComesBack) {
  std::vector<std::u16string> pages;
  for (const std::u16string_view kind : {u"asp", u"jsp", u"php"})
    for (const std::u16string& page : corpus_files(kind, {})) pages.push_back(page);
  if (pages.empty()) GTEST_SKIP() << kNoCorpus;
  const TempFolder folder;
  for (const std::u16string& page : pages) {
    // The whole page becomes one block of a script file, which is as hard as many blocks.
    const std::string bytes = "\r\n<!-- ASP2HTML 1 -->\r\n" + read_file(page) + "\r\n";
    const std::u16string copy = folder.write(u"a_asp.scr", bytes);
    ConversionRequest request{copy, folder.path(u"a.tud"), u"", u"EN-US", u"FR", 1252, 0, u"K19TXT"};
    ProgressEvent progress;
    convert_document(request, progress);
    const auto rebuilt = [&] {
      BilingualDocument document(request.tud);
      TargetRequest target;
      target.target = folder.path(u"b.scr");
      target.open_tag = folder.path(u"a.otf");
      target.skeleton = document.locate_skeleton()->path;
      document.save_open_tag(target.open_tag);
      create_target(target, progress);
      return read_file(target.target);
    };
    EXPECT_EQ(rebuilt(), bytes);
    pseudo_translate(request.tud, progress);
    EXPECT_NO_THROW(rebuilt()) << to_utf8(page);
  }
}

}  // namespace
}  // namespace kavo::test
