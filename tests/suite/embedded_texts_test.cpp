// Messages of event attributes, of addresses that are scripts, pages in "srcdoc", and PHP that stays in a page.
#include <gtest/gtest.h>

#include "formats/script/lexer.h"
#include "formats/script/literal_value.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/filters/html/embedded_text.h"
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

// The tokens of an attribute's script that are not blanks, as the browser reads it.
struct AttributeTokens {
  std::vector<std::string> tokens;
  std::string text;  // what its literals with a blank in them say, those of the message
};
AttributeTokens tokens_of_attribute(const std::string& page, std::string_view name, char quote,
                                    script::Language language, std::string_view rest) {
  AttributeTokens result;
  const std::string opening = " " + std::string(name) + "=" + quote;
  const std::size_t begin = page.find(opening) + opening.size();
  const std::size_t end = page.find(quote, begin);
  EXPECT_EQ(page.substr(end), quote + std::string(rest)) << page;
  const TextCoding utf8(kUtf8CodePage);
  const std::string script = html::read_embedded(std::string_view(page).substr(begin, end - begin), true, utf8).text;
  const auto lexer = script::make_lexer(language, &utf8);
  lexer->begin(script);
  for (script::Token token; lexer->next(token);) {
    const std::string_view bytes = std::string_view(script).substr(token.begin, token.size());
    if (token.kind == script::TokenKind::kBlank) continue;
    if (token.kind != script::TokenKind::kLiteral || bytes.find(' ') == std::string_view::npos) {
      result.tokens.emplace_back(bytes);
      continue;
    }
    EXPECT_TRUE(token.begins && token.ends) << script;
    result.tokens.emplace_back("text");
    script::LiteralReader reader(bytes.substr(1, bytes.size() - 2), {language, token.form}, utf8);
    for (script::LiteralReader::Character c; reader.next(c);) result.text += c.utf8;
  }
  return result;
}

// Whatever a translator types, the browser reads one attribute, which contains all tokens of the source around the
// text.
TEST_F(EmbeddedTexts, AWholeAttributeIsReadBack) {
  const struct {
    const char* page;
    const char* name;
    char quote;
    script::Language language;
    const char* rest;
  } cases[] = {
      {R"x(<p><a onclick="if (a &lt; 3 &amp;&amp; /b'/.test(c)) alert('Hi ' + n + ', you'); else go(&quot;d&quot;)" title=t>x</a>)x",
       "onclick", '"', script::Language::kJavaScript, " title=t>x</a>"},
      {R"x(<p><a onclick='if (a &lt; 3 &amp;&amp; b) alert("Hi " + n + ", you"); else go(&#39;d&#39;)'>x</a>)x",
       "onclick", '\'', script::Language::kJavaScript, ">x</a>"},
      {R"x(<p><a href="javascript:a&lt;3; alert('Hi ' + n + ', you'); go(&quot;d&quot;)">x</a>)x", "href", '"',
       script::Language::kJavaScript, ">x</a>"},
      {R"x(<p><a language=vbscript onclick="If a &lt; 3 Then MsgBox &quot;Hi &quot; &amp; n &amp; &quot;, you&quot; Else Go &quot;d&quot;">x</a>)x",
       "onclick", '"', script::Language::kVbScript, ">x</a>"},
  };
  const std::u16string hostile[] = {u"a \"b\" 'c' ",  u"\\ ",        u" \\' \\\" ",    u" &quot; &#39; &amp; ",
                                    u" << > << /a> ", u" ${n} `n` ", u" // /* */ -- ", u" '); alert('x "};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.page);
    const AttributeTokens source = tokens_of_attribute(row.page, row.name, row.quote, row.language, row.rest);
    EXPECT_EQ(source.text, "Hi , you");
    for (const std::u16string& text : hostile) {
      const std::string page = translated_page(row.page, [&](const std::u16string& offered) {
        return offered == u"Hi <1/>, you" ? u"." + text + u"<1/>" + text + u"." : offered;
      });
      const AttributeTokens target = tokens_of_attribute(page, row.name, row.quote, row.language, row.rest);
      EXPECT_EQ(target.tokens, source.tokens) << page;
      std::string meant = to_utf8(u"." + text + text + u".");
      for (std::size_t at = 0; (at = meant.find("<<", at)) != std::string::npos; ++at) meant.erase(at, 1);
      EXPECT_EQ(target.text, meant) << page;
    }
  }
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
