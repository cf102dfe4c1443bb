#include "suite/filters/html/html_filter.h"

#include <gtest/gtest.h>

#include "suite/html_filter_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

struct Case {
  const char* name;
  std::string_view page;
  std::vector<std::u16string> texts;
  std::vector<std::u16string> translations;  // none given: the texts with "X" for every "x"
  std::string_view expected;                 // "" for the page with "X" for every "x" in its texts
};

// A text has an "x" where the translation must show.
const Case kParagraphs[] = {
    {"empty", "", {}, {}, ""},
    {"text alone", "One x", {u"One x"}, {}, "One X"},
    {"paragraphs", "<p>One x</p>\n<p>Two x</p>", {u"One x", u"Two x"}, {}, "<p>One X</p>\n<p>Two X</p>"},
    {"paragraphs without end tags", "<P>One x<P>Two x", {u"One x", u"Two x"}, {}, "<P>One X<P>Two X"},
    {"white space around a paragraph stays outside", "<p>\n  One x \n</p>", {u"One x"}, {}, "<p>\n  One X \n</p>"},
    {"white space inside is shown as one blank", "<p>a\n  b\tx</p>", {u"a b x"}, {}, "<p>a b X</p>"},
    {"lists",
     "<ul><li>a x<li>b<ul><li>c x</ul></ul>",
     {u"a x", u"b", u"c x"},
     {},
     "<ul><li>a X<li>b<ul><li>c X</ul></ul>"},
    {"tables",
     "<table><caption>x</caption><tr><th>a<td>x &nbsp;<td>&nbsp;</table>",
     {u"x", u"a", u"x \u00A0"},
     {},
     "<table><caption>X</caption><tr><th>a<td>X &nbsp;<td>&nbsp;</table>"},
    {"definition lists", "<dl><dt>x<dd>y x</dl>", {u"x", u"y x"}, {}, "<dl><dt>X<dd>y X</dl>"},
    {"forms",
     "<select><option>a x<option selected>b</select><label>x <input></label><legend>c x</legend>",
     {u"a x", u"b", u"x", u"c x"},
     {},
     "<select><option>a X<option selected>b</select><label>X <input></label><legend>c X</legend>"},
    {"a button's text", "<button value=x>Send x</button>", {u"Send x"}, {}, "<button value=x>Send X</button>"},
    {"figures",
     "<figure><img src=x><figcaption>x</figcaption></figure>",
     {u"x"},
     {},
     "<figure><img src=x><figcaption>X</figcaption></figure>"},
    {"title", "<title>\n x &amp; <y> </title>", {u"x & <<y>"}, {}, "<title>\n X &amp; &lt;y&gt; </title>"},
    {"title with a script's placeholder",
     "<title>x <!-- ASP2HTML 1 --></title>",
     {u"x <1/>"},
     {},
     "<title>X <!-- ASP2HTML 1 --></title>"},
    {"title with a comment, which is text there",
     "<title>x<!-- y --></title>",
     {u"x<<!-- y -->"},
     {},
     "<title>X&lt;!-- y --&gt;</title>"},
    {"pre keeps its lines",
     "<pre>\n a  x\n  b\n</pre>c  x",
     {u"a  x\n  b", u"c x"},
     {},
     "<pre>\n a  X\n  b\n</pre>c X"},
    {"pre with inline tags", "<pre>a <b>x</b>\nb</pre>", {u"a <1>x</1>\nb"}, {}, "<pre>a <b>X</b>\nb</pre>"},
    {"textarea keeps its lines and holds no tags",
     "<textarea>a\n<b>x</textarea>",
     {u"a\n<<b>x"},
     {},
     "<textarea>a\n&lt;b&gt;X</textarea>"},
    {"no text", "<p>&nbsp;</p><td> &#160;\xC2\xA0<br><hr>", {}, {}, ""},
    {"script and style",
     "<p>x<script>a<b>x</b></script>y<style>x</style><xmp><p>x</xmp>",
     {u"x", u"y"},
     {},
     "<p>X<script>a<b>x</b></script>y<style>x</style><xmp><p>x</xmp>"},
    {"script with what looks like its end",
     "<script>'</scriptx>x'</SCRIPT >x",
     {u"x"},
     {},
     "<script>'</scriptx>x'</SCRIPT >X"},
    {"plaintext", "x<plaintext>x</plaintext>x", {u"x"}, {}, "X<plaintext>x</plaintext>x"},
    {"declarations",
     "<!DOCTYPE html><?xml version='1.0'?><?import x><!-- x --><p>x",
     {u"x"},
     {},
     "<!DOCTYPE html><?xml version='1.0'?><?import x><!-- x --><p>X"},
    {"conditional comment", "<!--[if IE]><p>x</p><![endif]-->x", {u"x", u"x"}, {}, "<!--[if IE]><p>X</p><![endif]-->X"},
    {"the shortest comment", "<!-->x<!--->x", {u"x<1/>x"}, {}, "<!-->X<!--->X"},
};

const Case kInline[] = {
    {"pairs", "<p>a <b>x</b> c</p>", {u"a <1>x</1> c"}, {}, "<p>a <b>X</b> c</p>"},
    {"pairs move",
     "<p>a <b>x</b> <i>c</i></p>",
     {u"a <1>x</1> <2>c</2>"},
     {u"A <2>C</2> <1>X</1>"},
     "<p>A <i>C</i> <b>X</b></p>"},
    {"a paragraph that is bold as a whole", "<p><b>One x</b></p>", {u"One x"}, {}, "<p><b>One X</b></p>"},
    {"a link alone", "<li><a href='x'> One x </a></li>", {u"One x"}, {}, "<li><a href='x'> One X </a></li>"},
    {"a pair at the edge that ends inside", "<p><b>Note:</b> x</p>", {u"<1>Note:</1> x"}, {}, "<p><b>Note:</b> X</p>"},
    {"a pair around that and another one",
     "<p><i><b>Note:</b> x</i></p>",
     {u"<1>Note:</1> x"},
     {},
     "<p><i><b>Note:</b> X</i></p>"},
    {"crossing tags",
     "<p>a <b>x <i>y</b> z</i> w</p>",
     {u"a <1>x <2/>y</1> z<3/> w"},
     {},
     "<p>a <b>X <i>y</b> z</i> w</p>"},
    {"an end tag without a beginning", "<p>x</b>y</p>", {u"x<1/>y"}, {}, "<p>X</b>y</p>"},
    {"a beginning without an end", "<p>x<b>y</p>z", {u"x<1/>y", u"z"}, {}, "<p>X<b>y</p>z"},
    {"nested pairs of one name",
     "<p>a<span>x<span>y</span></span>b",
     {u"a<1>x<2>y</2></1>b"},
     {},
     "<p>a<span>X<span>y</span></span>b"},
    {"line breaks", "<p>x<br>y<br/></p>", {u"x<1/>y"}, {}, "<p>X<br>y<br/></p>"},
    {"images at the edge stay outside",
     "<p><img src=a>x <img src=b> y<img src=c></p>",
     {u"x <1/> y"},
     {},
     "<p><img src=a>X <img src=b> y<img src=c></p>"},
    {"unknown elements are inline",
     "<p>a <o:p>x</o:p> <y:z>b</y:z>.",
     {u"a <1>x</1> <2>b</2>."},
     {},
     "<p>a <o:p>X</o:p> <y:z>b</y:z>."},
    {"comments", "<p>a<!-- x -->x<!-- y --></p>", {u"a<1/>x"}, {}, "<p>a<!-- x -->X<!-- y --></p>"},
    {"a comment may be left out", "<p>a<!-- x -->x</p>", {u"a<1/>x"}, {u"A"}, "<p>A</p>"},
    {"a script's placeholder in a sentence",
     "<p><!-- ASP2HTML 1 --> files of <!-- ASP2HTML 2 -->x</p>",
     {u"<1/> files of <2/>x"},
     {u"<2/> X <1/>"},
     "<p><!-- ASP2HTML 2 --> X <!-- ASP2HTML 1 --></p>"},
    {"a script's placeholder on its own line",
     "<p>\n<!-- ASP2HTML 1 -->\nx\n<!-- ASP2HTML 2 -->\n</p>",
     {u"x"},
     {},
     "<p>\n<!-- ASP2HTML 1 -->\nX\n<!-- ASP2HTML 2 -->\n</p>"},
    {"the placeholder of a tag that stands in a text is one code with its name and its quotes",
     "<p>a ASP2HTML=\"<!-- ASP2HTML 1 Q -->\"\"<!-- ASP2HTML 2 Q -->\" x \"<!-- ASP2HTML 3 -->\"</p>",
     {u"a <1/><2/> x \"<3/>\""},
     {u"A <2/><1/> X \"<3/>\""},
     "<p>A \"<!-- ASP2HTML 2 Q -->\"ASP2HTML=\"<!-- ASP2HTML 1 Q -->\" X \"<!-- ASP2HTML 3 -->\"</p>"},
    {"a script's placeholder behind an element that holds a line end",
     "<p>a <b>x<!-- ASP2HTML 1 -->\n</b><!-- ASP2HTML 2 -->\n</p>",
     {u"a <1>x<2/> </1><3/>"},
     {},
     "<p>a <b>X<!-- ASP2HTML 1 --> </b><!-- ASP2HTML 2 -->\n</p>"},
    {"a script's placeholder before an element that holds a line end",
     "<p><!-- ASP2HTML 1 --><b>\n<!-- ASP2HTML 2 -->x</b> c</p>",
     {u"<1/><2> <3/>x</2> c"},
     {},
     "<p><!-- ASP2HTML 1 --><b> <!-- ASP2HTML 2 -->X</b> c</p>"},
    {"a script's placeholder alone", "<td><!-- ASP2HTML 1 --></td>", {}, {}, ""},
    {"server code",
     "<p>a <%= x > \"y\" %> b <?php echo 'x>' ?> c <%-- d --%>x",
     {u"a <1/> b <2/> c <3/>x"},
     {},
     "<p>a <%= x > \"y\" %> b <?php echo 'x>' ?> c <%-- d --%>X"},
    {"server code in tags",
     "<p <%=x%>>a <a href=\"<%=f(\">\")%>\" <% if x>1 then %>b<% end if %>>x</a> c",
     {u"a <1>x</1> c"},
     {},
     "<p <%=x%>>a <a href=\"<%=f(\">\")%>\" <% if x>1 then %>b<% end if %>>X</a> c"},
    {"quotes hide a greater sign",
     "<p>a <b y=\"x>\" z='>'>x</b>.",
     {u"a <1>x</1>."},
     {},
     "<p>a <b y=\"x>\" z='>'>X</b>."},
    {"translate=no inside",
     "<p>Use <code translate='no'>x <b>y</b></code> x",
     {u"Use <1/> x"},
     {},
     "<p>Use <code translate='no'>x <b>y</b></code> X"},
    {"translate=no at the beginning is a part of the sentence",
     "<p><code translate=no>x</code> is x",
     {u"<1/> is x"},
     {},
     "<p><code translate=no>x</code> is X"},
    {"translate=no for a division",
     "<div translate=no>x<div>x</div>x<p alt=x>x</div>x",
     {u"x"},
     {},
     "<div translate=no>x<div>x</div>x<p alt=x>x</div>X"},
    {"translate=no that is not closed",
     "<p>a x<i translate=no>x<p>x",
     {u"a x<1/>", u"x"},
     {},
     "<p>a X<i translate=no>x<p>X"},
    {"translate=no on an image", "<p>a<img alt=x translate=no>x", {u"a<1/>x"}, {}, "<p>a<img alt=x translate=no>X"},
    {"a picture that is not closed", "<p>x<svg><title>x<p>x", {u"x", u"x", u"x"}, {}, "<p>X<svg><title>X<p>X"},
    {"pictures and formulas",
     "<p><svg><title>x</title></svg>x<svg><path/></svg>y <svg a/>z",
     {u"x", u"x<1/>y <2/>z"},
     {},
     "<p><svg><title>X</title></svg>X<svg><path/></svg>y <svg a/>z"},
};

const Case kReferences[] = {
    {"named",
     "<p>&eacute;&hellip;&lt;&amp;&gt; x",
     {u"\u00E9\u2026<<&> x"},
     {},
     "<p>\xC3\xA9\xE2\x80\xA6&lt;&amp;&gt; X"},
    {"no-break space", "<p>a&nbsp;x", {u"a\u00A0x"}, {}, "<p>a&nbsp;X"},
    {"numeric",
     "<p>&#233;&#xE9;&#x1F600;&#150; x",
     {u"\u00E9\u00E9\U0001F600\u2013 x"},
     {},
     "<p>\xC3\xA9\xC3\xA9\xF0\x9F\x98\x80\xE2\x80\x93 X"},
    {"without semicolon",
     "<p>&copy 1 &eacutex &#233 x",
     {u"\u00A9 1 \u00E9x \u00E9 x"},
     {},
     "<p>\xC2\xA9 1 \xC3\xA9X \xC3\xA9 X"},
    {"no references",
     "<p>AT&T & &; &# &#x; &1; x",
     {u"AT&T & &; &# &#x; &1; x"},
     {},
     "<p>AT&amp;T &amp; &amp;; &amp;# &amp;#X; &amp;1; X"},
    {"unknown names and numbers stay",
     "<p>a&brand;x&#0;&#x110000;&#xD800;y",
     {u"a<1/>x<2/><3/><4/>y"},
     {},
     "<p>a&brand;X&#0;&#x110000;&#xD800;y"},
    {"white space", "<p>a&#32;&#10; x", {u"a x"}, {}, "<p>a X"},
    {"white space in pre", "<pre>a&#10;&#9;x</pre>", {u"a\n\tx"}, {}, "<pre>a\n\tX</pre>"},
    {"control characters", "<p>a&#1;\x01x", {u"a<1/><2/>x"}, {}, "<p>a&#1;\x01X"},
    {"a lone less sign", "<p>a < b x<3 <", {u"a << b x<<3 <<"}, {}, "<p>a &lt; b X&lt;3 &lt;"},
    {"zero bytes", "<p>a\0x"sv, {u"a<1/>x"}, {}, "<p>a\0X"sv},
    {"invalid bytes", "<p>a\xE9x", {u"a<1/>x"}, {}, "<p>a\xE9X"},
};

const Case kAttributes[] = {
    {"an image alone", "<p><img alt='One x' src=x>", {u"One x"}, {}, "<p><img alt='One X' src=x>"},
    {"inside a text",
     "<p>a <img src=x alt=\"One x\"> b",
     {u"One x", u"a <1/> b"},
     {},
     "<p>a <img src=x alt=\"One X\"> b"},
    {"before and behind a text",
     "<p><img alt=x>y<img title=x></p>",
     {u"x", u"y", u"x"},
     {},
     "<p><img alt=\"X\">y<img title=\"X\"></p>"},
    {"quotes in a translation",
     "<i alt=a title='b' aria-label=\"c\">",
     {u"a", u"b", u"c"},
     {u"\"A\" '", u"\"B\" '", u"\"C\" '<<&"},
     "<i alt=\"&quot;A&quot; '\" title='\"B\" &#39;' aria-label=\"&quot;C&quot; '&lt;&amp;\">"},
    {"of a pair",
     "<p>a <a href=x title=\"x &eacute;\">b</a> c",
     {u"x \u00E9", u"a <1>b</1> c"},
     {},
     "<p>a <a href=x title=\"X \xC3\xA9\">b</a> c"},
    {"of block elements",
     "<table summary=x title=' y x '><td abbr=x>x",
     {u"x", u"y x", u"x"},
     {},
     "<table summary=\"X\" title=' y X '><td abbr=x>X"},
    {"of form fields",
     "<input placeholder=x value=x><textarea placeholder='x'></textarea><option label=x>",
     {u"x", u"x", u"x", u"x"},
     {},
     "<input placeholder=\"X\" value=\"X\"><textarea placeholder='X'></textarea><option label=\"X\">"},
    {"of buttons",
     "<input type=SUBMIT value='x'><input value='x' type=text><input type=button value='y x'>",
     {u"x", u"x", u"y x"},
     {},
     "<input type=SUBMIT value='X'><input value='X' type=text><input type=button value='y X'>"},
    {"of meta",
     "<meta name=Description content='x'><meta content='x, y' name=keywords><meta name=a content='x'>",
     {u"x", u"x, y"},
     {},
     "<meta name=Description content='X'><meta content='X, y' name=keywords><meta name=a content='x'>"},
    {"nothing to read",
     "<img alt=''><img alt=' '><img alt><img alt=\"&nbsp;\"><img alt='<!-- ASP2HTML 1 -->'>",
     {},
     {},
     ""},
    {"with server code",
     "<img alt='a <!-- ASP2HTML 2 --> x' title=\"<%=\"x\"%> x\">",
     {u"a <1/> x", u"<1/> x"},
     {},
     "<img alt='a <!-- ASP2HTML 2 --> X' title=\"<%=\"x\"%> X\">"},
    {"a placeholder right behind an unquoted value",
     "<p>x <input type=checkboxASP2HTML=\"<!-- ASP2HTML 1 Q -->\"> x</p>",
     {u"x <1/> x"},
     {},
     "<p>X <input type=checkboxASP2HTML=\"<!-- ASP2HTML 1 Q -->\"> X</p>"},
    {"an attribute that stands for a script",
     "<p>a <b ASP2HTML=\"<!-- ASP2HTML 1 Q -->\">x</b>.",
     {u"a <1>x</1>."},
     {},
     "<p>a <b ASP2HTML=\"<!-- ASP2HTML 1 Q -->\">X</b>."},
    {"references that are none in an address",
     "<img alt='?a=1&copy=2&lt=x &lt; x'>",
     {u"?a=1&copy=2&lt=x << x"},
     {},
     "<img alt='?a=1&amp;copy=2&amp;lt=X &lt; X'>"},
    {"lines", "<img alt='a\n  x&#10;b'>", {u"a x\nb"}, {}, "<img alt='a X&#10;b'>"},
    {"spaces around the equals sign",
     "<img alt = \"x\" title\n=\n'x'>",
     {u"x", u"x"},
     {},
     "<img alt = \"X\" title\n=\n'X'>"},
    {"end tags have none", "<p>a<b>x</b alt=x> y", {u"a<1>x</1> y"}, {}, "<p>a<b>X</b alt=x> y"},
};

const Case kBroken[] = {
    {"a tag that the page's end cuts", "<p>x<b title=\"x", {u"x"}, {}, "<p>X<b title=\"x"},
    {"a comment that the page's end cuts", "x<!-- x", {u"x"}, {}, "X<!-- x"},
    {"server code that the page's end cuts", "x<% x", {u"x"}, {}, "X<% x"},
    {"a script that the page's end cuts", "x<script>x", {u"x"}, {}, "X<script>x"},
    {"a title that the page's end cuts", "<title>x<p>", {u"x<<p>"}, {}, "<title>X&lt;p&gt;"},
    {"less signs at the end", "x<", {u"x<<"}, {}, "X&lt;"},
    {"an end tag's beginning at the end", "x</", {u"x<</"}, {}, "X&lt;/"},
    {"an end tag without a name", "x</>y</ x>z", {u"x<1/>y<2/>z"}, {}, "X</>y</ x>z"},
    {"a tag in a tag", "<p <b>x</b>", {u"x"}, {}, "<p <b>X</b>"},
    {"quotes where none belong", "<p \"x>\">x", {u"\">x"}, {}, "<p \"x>\"&gt;X"},
    {"a missing value", "<img alt=>x", {u"x"}, {}, "<img alt=>X"},
};

class HtmlCases : public HtmlFilterTest {
 protected:
  void check(const Case& c) {
    SCOPED_TRACE(c.name);
    const auto texts = same_for_every_block_size(c.page.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      put(u"a.htm", c.page);
      const std::u16string tud = convert(u"a.htm", html_road());
      EXPECT_EQ(rebuild(tud, html_road()), c.page);
      return sources(tud);
    });
    EXPECT_EQ(texts, c.texts);
    std::size_t next = 0;
    const std::string translated = translated_page(c.page, [&](std::u16string text) {
      if (!c.translations.empty()) return c.translations.at(next++);
      std::replace(text.begin(), text.end(), u'x', u'X');
      return text;
    });
    EXPECT_EQ(translated, c.expected.empty() ? c.page : c.expected);
  }
};

TEST_F(HtmlCases, Paragraphs) {
  for (const Case& c : kParagraphs) check(c);
}
TEST_F(HtmlCases, InlineCodes) {
  for (const Case& c : kInline) check(c);
}
TEST_F(HtmlCases, References) {
  for (const Case& c : kReferences) check(c);
}
TEST_F(HtmlCases, Attributes) {
  for (const Case& c : kAttributes) check(c);
}
TEST_F(HtmlCases, BrokenMarkup) {
  for (const Case& c : kBroken) check(c);
}

}  // namespace
}  // namespace kavo::test
