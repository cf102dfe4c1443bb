// What a translator sees of a page: which texts are offered and locked, and what is said beside each.
#include <gtest/gtest.h>

#include "suite/html_filter_fixture.h"
#include "support/holds.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class HtmlUnits : public HtmlFilterTest {
 protected:
  // The bilingual document of C:\work\a_asp.htm.
  std::string units(std::string_view page, FilterOptions options = {}) {
    put(u"a_asp.htm", page);
    ConversionRequest request;
    request.document = in_folder(u"a_asp.htm");
    request.tud = tud_ = tud_name_of(request.document, u"FR");
    request.source_language = u"EN-US";
    request.target_language = u"FR";
    request.source_code_page = 65001;
    request.filter = u"K19HTM";
    request.options = std::move(options);
    messages_.clear();
    request.tell = [this](const Message& message) { messages_.push_back(message.text); };
    ProgressEvent progress;
    convert_document(request, progress);
    EXPECT_EQ(rebuild(tud_, html_road()), page);
    return files.get(tud_);
  }
  std::string units(std::string_view page, std::string_view scripts) {
    put(u"a_asp.scr", scripts);
    return units(page);
  }
  std::vector<std::u16string> texts() { return sources(tud_); }
  std::vector<bool> locks() {
    const BilingualDocument document(tud_);
    std::vector<bool> locks;
    for (std::size_t i = 0; i < document.size(); ++i)
      locks.push_back(document.segment(i).status == TranslationStatus::kLocked);
    return locks;
  }

  using Texts = std::vector<std::u16string>;
  std::u16string tud_;
  std::vector<std::u16string> messages_;
};

constexpr std::string_view kScripts =
    "\r\n<!-- ASP2HTML 1 -->\r\n<%= rs(\"name\") %>\r\n<!-- ASP2HTML 2 -->\r\n<% If n > 1 _\n Then %>\r\n"
    "<!-- ASP2HTML 3 -->\r\n<% Else %>\r\n<!-- ASP2HTML 4 -->\r\n<% End If %>\r\n<!-- ASP2HTML 5 -->\r\n<%= url %>\r\n";
constexpr std::string_view kPage =
    "<p>Hello <!-- ASP2HTML 1 -->, you have <!-- ASP2HTML 2 -->many<!-- ASP2HTML 3 -->few<!-- ASP2HTML 4 --> <a "
    "href=\"<!-- ASP2HTML 5 -->?a\">new files</a> today</p>";

TEST_F(HtmlUnits, PlaceholdersShowTheirScriptAndConditionsEndAText) {
  const std::string xml = units(kPage, kScripts);
  EXPECT_EQ(texts(), (Texts{u"Hello <1/>, you have", u"many", u"few", u"<1>new files</1> today"}));
  EXPECT_TRUE(holds(xml, "equiv-text=\"&lt;%= rs(&quot;name&quot;) %&gt;\"")) << xml;
  EXPECT_TRUE(holds(xml, "<note from=\"K19Suite\">{1} &lt;%= rs(\"name\") %&gt;</note>")) << xml;
  EXPECT_TRUE(holds(xml, "equiv-text=\"&lt;%= url %&gt;?a\"")) << xml;
  EXPECT_TRUE(messages_.empty());
}

TEST_F(HtmlUnits, CodeThatContinuesAfterABlockIsNotText) {
  const std::string_view scripts = "<!-- ASP2HTML 1 -->\n<?php print('<?xml ?>\n<!-- ASP2HTML 2 -->\n<?php b() ?>\n";
  units(
      "<p>Before</p><!-- ASP2HTML 1 -->'); print(\"<p title='a'>Code</p> $x\"); // now\nc('?>'); ?>After"
      "<p>And <!-- ASP2HTML 2 --> more</p>",
      scripts);
  EXPECT_EQ(texts(), (Texts{u"Before", u"After", u"And <1/> more"}));
  units("<!-- ASP2HTML 1 -->'); print('<p>Code</p> <!-- ASP2HTML 2 -->'); d();", scripts);
  EXPECT_EQ(texts(), Texts());
  units("<p>A</p><!-- ASP2HTML 1 --><!-- ASP2HTML 2 --> and 'quotes', <b>tags</b>\nX; ?><p>B</p>",
        "<!-- ASP2HTML 1 -->\n<?php $a = <<<X\n\n<!-- ASP2HTML 2 -->\n<?php b() ?>\n");
  EXPECT_EQ(texts(), (Texts{u"A", u"B"})) << "the block ends where another one seems to begin";
}

TEST_F(HtmlUnits, WithoutTheScriptFilePlaceholdersAreCodes) {
  units(kPage);
  EXPECT_EQ(texts(), (Texts{u"Hello <1/>, you have <2/>many<3/>few<4/> <5>new files</5> today"}));
  ASSERT_EQ(messages_.size(), 1u);
  EXPECT_NE(messages_[0].find(u"a_asp.scr"), std::u16string::npos);
}

TEST_F(HtmlUnits, AScriptFileThatDoesNotAgreeIsNotUsed) {
  std::string fewer(kScripts.substr(0, kScripts.find("<!-- ASP2HTML 5")));
  std::string swapped(kScripts);
  swapped.replace(swapped.find("ASP2HTML 3"), 10, "ASP2HTML 9");
  for (const std::string& scripts :
       {fewer, swapped, std::string(kScripts) + "<!-- ASP2HTML 6 -->\r\nx\r\n", std::string()}) {
    const std::string xml = units(kPage, scripts);
    EXPECT_EQ(texts().size(), 1u) << scripts;
    EXPECT_FALSE(holds(xml, "rs(")) << scripts;
    EXPECT_EQ(messages_.size(), 1u) << scripts;
  }
}

TEST_F(HtmlUnits, AScriptFileCutIntoAnyBlocksIsTheSame) {
  const std::string expected = units(kPage, kScripts);
  for (const std::size_t size : {1, 2, 7, 64}) {
    const BlockSizeScope scope(size);
    EXPECT_EQ(units(kPage, kScripts), expected) << size;
  }
}

TEST_F(HtmlUnits, ServerCodeInThePageIsReadToo) {
  units("<p>You are <? if ($a): ?>in<? else: ?>out<? endif ?>, <?= $name ?></p>");
  EXPECT_EQ(texts(), (Texts{u"You are", u"in", u"out", u", <1/>"}));
}

TEST_F(HtmlUnits, ElementsNamesAndComments) {
  const struct {
    const char* name;
    const char* page;
    const char* expected;
  } cases[] = {
      {"path", "<body><table><tr><td>x</table>", "\"element\">table/tr/td<"},
      {"path with implied ends", "<ul><li>a<li><p>b<p>x</ul>", "\"element\">ul/li/p<"},
      {"path behind a list", "<ul><li>a</ul><p>x", "\"element\">p<"},
      {"attribute", "<IMG alt=x>", "\"element\">img@alt<"},
      {"id of a paragraph", "<p id=intro>x</p>", "resname=\"intro\""},
      {"id of the inline element around a text", "<p id=a><b><i id='b'>x</i></b></p>", "resname=\"b\""},
      {"comment", "<p>a</p><!-- Greets &amp; smiles -->\n<p>x</p>",
       "<note from=\"author\">Greets &amp;amp; smiles</note>"},
      {"comment in the element", "<p><!-- ask -->x</p>", "<note from=\"author\">ask</note>"},
      {"link", "<p><a href='b.htm'>x</a> y", "equiv-text=\"b.htm\""},
      {"tag", "<p><B class=a>x</B> y", "equiv-text=\"&lt;B&gt;\""},
      {"empty tag", "<p>a <img src=b> y", "{1} &lt;img&gt;"},
  };
  for (const auto& c : cases) {
    const std::string xml = units(c.page);
    EXPECT_TRUE(holds(xml, c.expected)) << c.name << ": " << xml;
  }
}

TEST_F(HtmlUnits, SomeIdsAndCommentsAreNotNames) {
  const struct {
    const char* name;
    const char* page;
  } cases[] = {
      {"id of an element with two texts", "<div id=a>x<p>y</p></div>"},
      {"id behind an inner element", "<div id=a><p>y</p>x</div>"},
      {"id that a script writes", "<p id=\"<%=x%>\">x</p>"},
      {"markup put aside", "<!-- <b>old</b> --><p>x</p>"},
      {"condition", "<!--[if gte mso 9]>data<![endif]--><p>x</p>"},
      {"inclusion", "<!--#include file=\"a\" --><p>x</p>"},
      {"line of signs", "<!-- ==== --><p>x</p>"},
      {"end of a part", "<!-- /header --><p>x</p>"},
      {"comment on a table", "<!-- the table --><table><tr><td>x</table>"},
      {"comment behind an element", "<div><!-- done --></div><p>x</p>"},
  };
  for (const auto& c : cases) {
    const std::string xml = units(c.page);
    EXPECT_FALSE(holds(xml, "resname")) << c.name << ": " << xml;
    EXPECT_FALSE(holds(xml, "\"author\"")) << c.name << ": " << xml;
  }
}

TEST_F(HtmlUnits, TextsThatAreOffered) {
  const struct {
    const char* name;
    const char* page;
    Texts texts;
  } cases[] = {
      {"value of a field",
       "<input value=One><input type=text value=Two><input type=SEARCH value=x>",
       {u"One", u"Two", u"x"}},
      {"value of another field", "<input type=hidden value=One><input type=checkbox value=Two>", {}},
      {"drawing",
       "<p>a <svg><title> One </title><text x=1>Two <tspan>x</tspan></text><style>b</style></svg> b</p>",
       {u"One", u"Two", u"x", u"a <1/> b"}},
      {"drawing outside of a text", "<svg><desc>One</desc><g><title></title></g></svg>", {u"One"}},
      {"translated again",
       "<div translate=no>a <p translate=yes>One</p> b <div>c</div></div><p>Two</p>",
       {u"One", u"Two"}},
      {"translated again in a text",
       "<p>One <span translate=no>a <b translate=yes>x</b> c</span> two</p>",
       {u"One <1/><2>x</2><3/> two"}},
      {"left alone inside what is translated again",
       "<div translate=no><div translate=yes>One<div translate=no>a</div>Two</div>b</div>",
       {u"One", u"Two"}},
      {"left alone by class", "<p class='a notranslate b'>a</p><p class=notranslated>One</p>", {u"One"}},
      {"condition for old browsers",
       "<!--[if lt IE 9]><p>One <b>x</b></p><![endif]--><p>Two</p>",
       {u"One <1>x</1>", u"Two"}},
      {"condition for other browsers", "<!--[if !IE]><!--><p>One</p><!--<![endif]-->", {u"One"}},
      {"condition that does not end", "<!--[if IE]", {}},
      {"condition of a word processor", "<!--[if gte mso 9]><xml>a</xml><![endif]--><p>One", {u"One"}},
      {"library tag",
       "<html:submit value=\"Save all\"/><s:field label='Your name' name='b c'/>",
       {u"Save all", u"Your name"}},
      {"library tag with keys", "<html:submit value=\"button.save\"/><s:field label='user.name'/>", {}},
  };
  for (const auto& c : cases) {
    units(c.page);
    EXPECT_EQ(texts(), c.texts) << c.name;
  }
}

TEST_F(HtmlUnits, PatternsAreCodes) {
  units(
      "<p>Hello {{name}}, write to <b>a@b.org</b> or see https://b.org/?a=1&amp;b=2&nbsp;today. 100 % sure &amp; "
      "5%d</p>");
  EXPECT_EQ(texts(), (Texts{u"Hello <1/>, write to <2><3/></2> or see <4/>\u00A0today. 100 % sure & 5%d"}));
}

TEST_F(HtmlUnits, ATextWithoutWordsIsLocked) {
  const std::string xml = units(
      "<p>12.5 %</p><p>a@b.org</p><p>{0}</p><p>&copy; <%=n%></p><p>\xE2\x86\x92</p><p>x</p><p>&eacute;</p><img alt=5>");
  EXPECT_EQ(locks(), (std::vector<bool>{true, true, true, true, true, false, false, true}));
  EXPECT_TRUE(holds(xml, "<note>Nothing to translate: only codes, numbers or signs</note>")) << xml;
  EXPECT_TRUE(holds(xml, "<note>alt. Nothing to translate")) << xml;
  units("<p>12.5 %</p>", {{"html.open-codes", "on"}});
  EXPECT_EQ(locks(), std::vector<bool>{false});
}

TEST_F(HtmlUnits, Options) {
  units("<p data-hint=One data-x=a>x</p>", {{"html.text-attributes", "data-hint, data-y"}});
  EXPECT_EQ(texts(), (Texts{u"One", u"x"}));
  units("<p>a<div>b</div>c", {{"html.inline-elements", "DIV"}});
  EXPECT_EQ(texts(), (Texts{u"a<1>b</1>c"}));
  units("<p>a<code>b</code>c<pre>d</pre>", {{"html.excluded-elements", "code, pre"}});
  EXPECT_EQ(texts(), (Texts{u"a<1/>c"}));
  units("<p>a [[b c]] d", {{"html.code-patterns", "[[*]]"}});
  EXPECT_EQ(texts(), (Texts{u"a <1/> d"}));
  units("<div translate=no><p>a</p><button>b</button></div><q class=notranslate>c</q>",
        {{"html.text-elements", "BUTTON, q"}});
  EXPECT_EQ(texts(), (Texts{u"b", u"c"}));
  const std::string_view commented = "<!-- For all: one --><p>a</p><!-- Two --><p>b</p><!-- FOR ALL: --><p>c</p>";
  const auto has = [](const std::string& xml, std::string_view one, std::string_view two) {
    return std::pair(holds(xml, one), holds(xml, two));
  };
  EXPECT_EQ(has(units(commented), ">For all: one<", ">Two<"), std::pair(true, true));
  const std::string chosen = units(commented, {{"html.note-comments", "for all:*"}});
  EXPECT_EQ(has(chosen, ">For all: one<", ">Two<"), std::pair(true, false));
  EXPECT_TRUE(holds(chosen, ">FOR ALL:<")) << chosen;
}

TEST_F(HtmlUnits, OfPagesThatTakeLong) {
  const auto many = [](std::string_view piece, std::size_t size = 300 * 1024) {
    std::string text;
    while (text.size() < size) text += piece;
    return text;
  };
  for (const std::string_view piece :
       {"<div>", "</div>", "<p id=a>", "<svg><text>", "<div translate=no><p translate=yes>", "<b translate=yes>",
        "<!-- a -->", "<!--[if IE]>", "<!--[if IE]", "<svg><text>a</text>", "{{", "a@", "http://-", "<li>", "<td>a",
        "<? if (a) { ?>a"})
    units(many(piece));
  std::string page, scripts;
  for (int i = 1; i <= 20000; ++i) {
    page += "<!-- ASP2HTML " + std::to_string(i) + " -->";
    scripts += "<!-- ASP2HTML " + std::to_string(i) + " -->\r\n<%=a%>\r\n";
  }
  units("<p>a" + page + "b", scripts);
  EXPECT_TRUE(messages_.empty());
}

}  // namespace
}  // namespace kavo::test
