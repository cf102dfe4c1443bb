// Messages of event attributes, of addresses that are scripts, pages in "srcdoc", and PHP that stays in a page.
#include <gtest/gtest.h>

#include "platform/failure.h"
#include "suite/html_filter_fixture.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class EmbeddedTexts : public HtmlFilterTest {};
using Texts = std::vector<std::u16string>;

TEST_F(EmbeddedTexts, AreOffered) {
  const struct {
    const char* name;
    const char* page;
    Texts expected;
  } cases[] = {
      {"message", R"x(<a onclick="alert('Well done, friend')">)x", {u"Well done, friend"}},
      {"returned", R"x(<form onSubmit='return confirm("Delete this file?")'>)x", {u"Delete this file?"}},
      {"double quotes as references", R"x(<a onclick="alert(&quot;It's &lt;late&quot;)">)x", {u"It's <<late"}},
      {"escape of the script", R"x(<a onclick="alert('It\'s late')">)x", {u"It's late"}},
      {"no quotes around it", R"x(<a onclick=alert('Well&#32;done')>)x", {u"Well done"}},
      {"joined", R"x(<a onclick="alert('Hello ' + name + ', welcome')">)x", {u"Hello <1/>, welcome"}},
      {"server code in it", R"x(<a onclick="alert('Hello <!-- ASP2HTML 1 -->, welcome')">)x", {u"Hello <1/>, welcome"}},
      {"in a paragraph",
       R"x(<p>See <a onclick="alert('Well done')">this</a> now</p>)x",
       {u"Well done", u"See <1>this</1> now"}},
      {"several",
       R"x(<a onclick="alert('First text'); alert('Second text')" title="Third">)x",
       {u"First text", u"Second text", u"Third"}},
      {"basic",
       R"x(<a language="VBScript" onclick="MsgBox &quot;Say &quot;&quot;yes&quot;&quot;&quot;">)x",
       {u"Say \"yes\""}},
      {"address", R"x(<a href="javascript:alert('Well done')">)x", {u"Well done"}},
      {"escaped address", R"x(<a href="javascript:alert('Well%20done')">)x", {}},
      {"another address", R"x(<a href="/say.asp?a='Well done'">)x", {}},
      {"names only", R"x(<a onclick="go('index.asp', 'main'); x['key'] = 'value_a'">)x", {}},
      {"left alone", R"x(<a translate="no" onclick="alert('Well done')"></a>)x", {}},
      {"page",
       R"x(<iframe srcdoc="<p>Dear &quot;friend&quot; &amp;amp; co</p><p>Bye <b>now</b>">)x",
       {u"Dear \"friend\" & co", u"Bye <1>now</1>"}},
      {"words of a page", R"x(<iframe srcdoc="<img alt='a cat'>">)x", {u"a cat"}},
      {"value of PHP", R"x(<p><?= "Hello $name, welcome" ?></p>)x", {u"Hello <1/>, welcome"}},
      {"value in a text",
       R"x(<p>You are <?= $in ? 'logged in now' : 'logged out now' ?>, friend</p>)x",
       {u"logged in now", u"logged out now", u"You are <1/>, friend"}},
      {"condition", R"x(<? if ($a) { echo 'Well done, friend'; ?>x<? } ?>)x", {u"Well done, friend", u"x"}},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(texts_of(row.page), row.expected) << row.name;
    EXPECT_EQ(unchanged(row.page), row.page) << row.name;
  }
}

TEST_F(EmbeddedTexts, AreEscapedForTheScriptThenForTheTag) {
  const struct {
    const char* name;
    const char* page;
    std::u16string translation;
    std::string expected;
  } cases[] = {
      {"quotes", R"x(<a onclick="alert('Well done')">)x", u"L'\"été\" <<\\>&",
       R"x(<a onclick="alert('L\'&quot;été&quot; &lt;\\&gt;&amp;')">)x"},
      {"single quotes around it", R"x(<a onclick='alert("Well done")'>)x", u"L'\"été\"",
       R"x(<a onclick='alert("L&#39;\"été\"")'>)x"},
      {"no quotes around it", R"x(<a onclick=alert('Well&#32;done')>)x", u"L'été est là",
       R"x(<a onclick=alert('L\&#39;été&#32;est&#32;là')>)x"},
      {"line break", R"x(<a onclick="alert('Well done')">)x", u"un\ndeux", R"x(<a onclick="alert('un\ndeux')">)x"},
      {"basic", R"x(<a language=vbscript onclick="MsgBox &quot;Well done&quot;">)x", u"dit \"oui\"\nnon",
       R"x(<a language=vbscript onclick="MsgBox &quot;dit &quot;&quot;oui&quot;&quot;&quot; &amp; vbCrLf &amp; &quot;non&quot;">)x"},
      {"address", R"x(<a href="javascript:alert('Well done')">)x", u"100%25 'vrai'",
       R"x(<a href="javascript:alert('100%2525 \'vrai\'')">)x"},
      {"page", R"x(<iframe srcdoc="<p>Well done</p>">)x", u"a << \"b\" & c",
       R"x(<iframe srcdoc="<p>a &amp;lt; &amp;quot;b&amp;quot; &amp;amp; c</p>">)x"},
      {"PHP", R"x(<p><?= 'Well done' ?></p>)x", u"L'été ?> \\", R"x(<p><?= 'L\'été ?' . '> \\' ?></p>)x"},
      {"PHP with values", R"x(<p><?= "Well done" ?></p>)x", u"$5 \"net\"", R"x(<p><?= "\$5 \"net\"" ?></p>)x"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(translated_page(row.page, [&](const std::u16string&) { return row.translation; }), row.expected)
        << row.name;
  }
}

TEST_F(EmbeddedTexts, ValuesMoveAndStay) {
  const std::string page = translated_page(
      R"x(<a onclick="alert('Hello ' + name + ', from <!-- ASP2HTML 1 --> now')">)x", [](const std::u16string& text) {
        EXPECT_EQ(text, u"Hello <1/>, from <2/> now");
        return std::u16string(u"De <2/> à <1/>");
      });
  EXPECT_EQ(page, R"x(<a onclick="alert('De <!-- ASP2HTML 1 --> à ' + name + '')">)x");
}

TEST_F(EmbeddedTexts, OfAPageInUtf16) {
  const auto wide = [](std::u16string_view text) {
    std::string bytes;
    for (const char16_t unit : text) {
      bytes += static_cast<char>(unit & 0xFF);
      bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
  };
  const std::string page =
      translated_page(wide(u"\uFEFF<a onclick=\"alert(&quot;Hello &quot; + name + &quot;, welcome&quot;)\">"),
                      [](const std::u16string&) { return std::u16string(u"L'\u00e9t\u00e9 <1/> \"oui\""); });
  EXPECT_EQ(page, wide(u"\uFEFF<a onclick=\"alert(&quot;L'\u00e9t\u00e9 &quot; + name + &quot; \\&quot;oui\\&quot;"
                       u"&quot;)\">"));
}

TEST_F(EmbeddedTexts, CharactersThatTheCodingLacks) {
  Road road = html_road();
  road.source_code_page = 1252;
  const auto translate = [](const std::u16string&) { return std::u16string(u"Ж"); };
  EXPECT_EQ(translated_page("<a onclick=\"alert('Well done')\">", translate, road), "<a onclick=\"alert('&#1046;')\">");
  EXPECT_THROW(translated_page("<p><?= strtolower('Well done, friend') ?>", translate, road), failure);
}

}  // namespace
}  // namespace kavo::test
