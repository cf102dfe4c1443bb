#include <gtest/gtest.h>

#include <random>

#include "formats/script/language.h"
#include "script_tokens.h"
#include "support/corpus.h"
#include "support/splits.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

using script::Between;
using script::Language;

constexpr Language kAll[] = {Language::kVbScript, Language::kJavaScript, Language::kJava, Language::kPhp};

struct Case {
  const char* name;
  Language language;
  std::string_view input;
  std::string_view expected;
};

const Case kCases[] = {
    {"doubled quotes", Language::kVbScript, R"(x = "a ""b"" c")", R"(x|=|d:a ""b"" c)"},
    {"apostrophe begins a comment", Language::kVbScript, "x = 1 ' it's \"no\"\ny", "x|=|1|#|y"},
    {"apostrophe in a string", Language::kVbScript, "x = \"it's\" & y", "x|=|d:it's|&|y"},
    {"Rem", Language::kVbScript, "Rem \"no\"\nx : rem it's\n", "#|x|:|#"},
    {"Rem as a member and a part of a name", Language::kVbScript, "a.Rem \"x\" : Remove \"y\"",
     "a|.|Rem|d:x|:|Remove|d:y"},
    {"continued line", Language::kVbScript, "x = \"a\" & _ \n  \"b\"", "x|=|d:a|&|d:b"},
    {"underscore in a name", Language::kVbScript, "a_ = 1", "a_|=|1"},
    {"unclosed string ends with its line", Language::kVbScript, "x = \"a\ny = \"b\"", "x|=|d(a|y|=|d:b"},
    {"numbers and text operators", Language::kVbScript, "x=&HFF&\"a\"&hello&#1/2/2003#",
     "x|=|&HFF&|d:a|&|hello|&|#1/2/2003#"},
    {"name in brackets", Language::kVbScript, "[a \"b\"] = 1", "[a \"b\"]|=|1"},
    {"an open bracket before a literal", Language::kVbScript, "[a & \"b]\"", "[|a|&|d:b]"},
    {"hidden from old browsers", Language::kVbScript, "<!-- \"no\"\nx = a<!--\"y\"\n--> 'z", "#|x|=|a|<|!|-|-|d:y|#"},

    {"both quotes", Language::kJavaScript, R"(a="x'\"y"+'\'z"')", R"(a|=|d:x'\"y|+|s:\'z")"},
    {"comments", Language::kJavaScript, "a // \"no\"\nb /* 'no'\n */ c", "a|#|b|#|c"},
    {"comment marks in strings", Language::kJavaScript, "a='//'+\"/*\"", "a|=|s://|+|d:/*"},
    {"pattern with quotes", Language::kJavaScript, "a.replace(/[/\"]'/g, \"x\")", "a|.|replace|(|re:/[/\"]'/g|,|d:x|)"},
    {"division", Language::kJavaScript, "a / b / \"c\"; (d) / 2 / 'e'; f[0] / g / 'h'",
     "a|/|b|/|d:c|;|(|d|)|/|2|/|s:e|;|f|[|0|]|/|g|/|s:h"},
    {"pattern behind a condition", Language::kJavaScript, "if (a) /'/.test(b)", "if|(|a|)|re:/'/|.|test|(|b|)"},
    {"pattern behind a word", Language::kJavaScript, "return /'/; x.return / 'a' / 2",
     "return|re:/'/|;|x|.|return|/|s:a|/|2"},
    {"division behind an increment", Language::kJavaScript, "a++ / b / 'c'", "a|++|/|b|/|s:c"},
    {"continued string", Language::kJavaScript, "a='x\\\ny'", "a|=|s:x\\\ny"},
    {"unclosed string ends with its line", Language::kJavaScript, "a='x\nb='y'", "a|=|s(x|b|=|s:y"},
    {"nested templates", Language::kJavaScript, "`a${b+`c${{d:1}.d}e`}f`+'g'",
     "t(a|b|+|t(c|{|d|:|1|}|.|d|)t:e|)t:f|+|s:g"},
    {"dollar in a template", Language::kJavaScript, "`$a \\${b} \\` $`", "t:$a \\${b} \\` $"},
    {"hidden from old browsers", Language::kJavaScript, "<!-- it's\na\n--> it's\nb-->c", "#|a|#|b|--|>|c"},
    {"escaped name", Language::kJavaScript, "\\u0061b='x'", "\\u0061b|=|s:x"},

    {"strings and characters", Language::kJava, R"(a="x\"\\"+'"'+'\''+'\\')", R"(a|=|d:x\"\\|+|'"'|+|'\''|+|'\\')"},
    {"text block", Language::kJava, "a=\"\"\"\n b \"c\" \\\"\"\" d\n\"\"\"+\"e\"",
     "a|=|b:\n b \"c\" \\\"\"\" d\n|+|d:e"},
    {"escaped quotes are quotes", Language::kJava, R"(a=\u0022x\u0022+"y\uu0022+"\\u0022")",
     R"(a|=|d:x|+|d:y|+|d:\\u0022)"},
    {"comments", Language::kJava, "a // it's\nb /* \"no\"\n*/ c", "a|#|b|#|c"},
    {"escaped line end ends a comment", Language::kJava, "// no \\u000a \"x\"", "#|d:x"},
    {"unclosed string ends with its line", Language::kJava, "a=\"x\nb=\"y\"", "a|=|d(x|b|=|d:y"},

    {"both quotes", Language::kPhp, R"($a='x\'"\\'."y\"'";)", R"($a|=|s:x\'"\\|.|d:y\"'|;)"},
    {"inserted names", Language::kPhp, "\"Hi $a[0], $b->c->d ${e} {$f['g']} \\$h $ i\"",
     "d(Hi |$a[0]|)d(, |$b->c|)d(->d |e|)d( |$f|[|s:g|]|)d: \\$h $ i"},
    {"names side by side", Language::kPhp, "\"$a$b{$c}$d\"", "d(|$a|$b|)d(|$c|)d(|$d|)d:"},
    {"braces in code in a string", Language::kPhp, "\"{$a->b(function() { return \"c\"; })}d\"",
     "d(|$a|->|b|(|function|(|)|{|return|d:c|;|}|)|)d:d"},
    {"single quotes insert nothing", Language::kPhp, "'$a {$b}'", "s:$a {$b}"},
    {"heredoc", Language::kPhp, "$a=<<<X\nHi $b \"c\"\n // no\n X2\n  X.'d'",
     "$a|=|h(Hi |$b|)h: \"c\"\n // no\n X2|.|s:d"},
    {"quoted heredoc, empty one", Language::kPhp, "<<<\"X\"\na\nX;<<<Y\nY;", "h:a|;|h:|;"},
    {"nowdoc", Language::kPhp, "<<<'X'\n$a \\\nX;", "n:$a \\|;"},
    {"shift", Language::kPhp, "1 <<<2", "1|<<|<|2"},
    {"comments", Language::kPhp, "a // it's\nb # \"no\"\nc /* ' */ d #[e('f')]", "a|#|b|#|c|#|d|#|[|e|(|s:f|)|]"},
    {"block end ends a line comment", Language::kPhp, "a // it's ?>", "a|#|?>"},
    {"block end in a string and a comment", Language::kPhp, "'?>' . \"?>\" /* ?> */ ?>", "s:?>|.|d:?>|#|?>"},
    {"namespace", Language::kPhp, "\\A\\b('c')", "\\A\\b|(|s:c|)"},
    {"command", Language::kPhp, "`ls $a`", "c(ls |$a|)c:"},
};

TEST(ScriptLexer, Tokens) {
  for (const Case& row : kCases)
    for (const LineEnd& line_end : kLineEnds) {
      SCOPED_TRACE(std::string(row.name) + ", " + line_end.name);
      EXPECT_EQ(lexed(row.language, with_line_end(row.input, line_end)), with_line_end(row.expected, line_end));
    }
}

// What a block interrupts goes on after it.
TEST(ScriptLexer, ContinuesAfterAValue) {
  struct {
    const char* name;
    Language language;
    std::string_view first, second, expected;
  } const cases[] = {
      {"string", Language::kJavaScript, "a = \"x ", " y\" + 'z'", "a|=|d(x |)d: y|+|s:z"},
      {"string of VBScript", Language::kVbScript, "a = \"x ", " y\" & b 'c", "a|=|d(x |)d: y|&|b|#"},
      {"line comment", Language::kJavaScript, "// it's ", " it's\nb", "#|#|b"},
      {"line comment of VBScript", Language::kVbScript, "' it's ", " it's\nb", "#|#|b"},
      {"block comment", Language::kJavaScript, "/* it's ", " it's */ b", "#|#|b"},
      {"template", Language::kJavaScript, "`a ${b + ", "} c`", "t(a |b|+|)t: c"},
      {"string that its line ends", Language::kJavaScript, "a = 'x ", "\nb", "a|=|s(x |b"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    const auto lexer = script::make_lexer(row.language, nullptr);
    auto tokens = lex(*lexer, row.first);
    for (const LexedToken& token : lex(*lexer, row.second, Between::kValue)) tokens.push_back(token);
    EXPECT_EQ(shown(tokens), row.expected);
  }
}

TEST(ScriptLexer, AServersStringEndsWithItsBlockACommentDoesNot) {
  const auto java = script::make_lexer(Language::kJava, nullptr);
  EXPECT_EQ(shown(lex(*java, "a = \"x ")), "a|=|d(x ");
  EXPECT_EQ(shown(lex(*java, "b = \"y\" /* it's ")), "b|=|d:y|#");
  EXPECT_EQ(shown(lex(*java, "it's */ c")), "#|c");
  const auto php = script::make_lexer(Language::kPhp, nullptr);
  EXPECT_EQ(shown(lex(*php, "echo \"x {$a")), "echo|d(x |$a");
  EXPECT_EQ(shown(lex(*php, "echo '}'")), "echo|s:}");
}

TEST(ScriptLexer, SecondBytesOfCharactersAreNotSyntax) {
  const TextCoding japanese(932);
  // The second byte of this character is that of a backslash.
  const std::string text = "\"\x95\x5C\" + 'a'";
  const auto lexer = script::make_lexer(Language::kJavaScript, &japanese);
  EXPECT_EQ(shown(lex(*lexer, text)), "d:\x95\x5C|+|s:a");
}

TEST(ScriptLexer, EveryByteOfGarbageIsInOneToken) {
  std::mt19937 random(1913);
  const std::string_view bits[] = {"\"",
                                   "'",
                                   "`",
                                   "\\",
                                   "${",
                                   "{$",
                                   "$a",
                                   "}",
                                   "{",
                                   "/",
                                   "*/",
                                   "/*",
                                   "\n",
                                   "\r\n",
                                   "_",
                                   "#",
                                   "&",
                                   "&H1",
                                   "<<<X",
                                   "\nX",
                                   "'X'",
                                   "?>",
                                   "<!--",
                                   "-->",
                                   "Rem",
                                   "\"\"\"",
                                   "\\u0022",
                                   "a",
                                   " ",
                                   "(",
                                   ")",
                                   "[",
                                   "]",
                                   "->",
                                   "\xE9",
                                   "\x95\\",
                                   std::string_view("\0", 1)};
  const TextCoding japanese(932);
  for (int round = 0; round < 4000; ++round)
    for (const Language language : kAll) {
      const auto lexer = script::make_lexer(language, round % 2 == 0 ? nullptr : &japanese);
      for (int piece = 0; piece < 3; ++piece) {
        std::string text;
        for (unsigned length = random() % 40; length != 0; --length)
          text += random() % 8 == 0 ? std::string(1, static_cast<char>(random()))
                                    : std::string(bits[random() % std::size(bits)]);
        lex(*lexer, text, piece % 2 == 0 ? Between::kPage : Between::kValue);
        if (HasFailure()) FAIL() << "input: " << testing::PrintToString(text);
      }
    }
}

TEST(ScriptLexer, EveryByteOfRealPagesIsInOneToken) {
  std::vector<std::u16string> files;
  for (const std::u16string_view kind : {u"asp", u"jsp", u"php", u"html"})
    for (const std::u16string& file : corpus_files(kind, {})) files.push_back(file);
  if (files.empty()) GTEST_SKIP() << kNoCorpus;
  for (const std::u16string& file : files) {
    const std::string text = read_file(file);
    for (const Language language : kAll) lex(*script::make_lexer(language, nullptr), text);
  }
}

TEST(ScriptLanguage, Names) {
  using script::language_of_name;
  for (const std::string_view name : {"VBScript", "vbs", "text/vbscript", "VBScript.Encode"})
    EXPECT_EQ(language_of_name(name), Language::kVbScript) << name;
  for (const std::string_view name : {"JScript", "javascript1.2", " text/JavaScript; charset=utf-8", "module",
                                      "application/x-javascript", "jscript.encode", "text/ecmascript"})
    EXPECT_EQ(language_of_name(name), Language::kJavaScript) << name;
  EXPECT_EQ(language_of_name("java"), Language::kJava);
  EXPECT_EQ(language_of_name("PHP"), Language::kPhp);
  for (const std::string_view name : {"PerlScript", "application/json", "text/x-template", "javafx", ""})
    EXPECT_EQ(language_of_name(name), Language::kUnknown) << name;
}

TEST(ScriptLanguage, Declarations) {
  using script::language_of_directive;
  using script::read_script_tag;
  EXPECT_EQ(language_of_directive("<%@ Language = JScript codepage=1252 %>", Language::kVbScript),
            Language::kJavaScript);
  EXPECT_EQ(language_of_directive("<%@ page import=\"language=java\" %>", Language::kVbScript), Language::kVbScript);
  EXPECT_EQ(language_of_directive("<%@page contentType='x' language='java'%>", Language::kUnknown), Language::kJava);
  EXPECT_EQ(language_of_directive("<%@ language=PerlScript %>", Language::kVbScript), Language::kUnknown);
  const auto tag = [](std::string_view text) {
    return read_script_tag(text, Language::kJavaScript, Language::kVbScript);
  };
  EXPECT_EQ(tag("<script>").language, Language::kJavaScript);
  EXPECT_EQ(tag("<SCRIPT LANGUAGE=\"VBScript\">").language, Language::kVbScript);
  EXPECT_EQ(tag("<script type='text/javascript' language=vbs>").language, Language::kJavaScript);
  EXPECT_EQ(tag("<script runat=server>").language, Language::kVbScript);
  EXPECT_TRUE(tag("<script runat = 'Server' language=jscript>").on_server);
  EXPECT_FALSE(tag("<script type=\"application/json\">").is_script);
  EXPECT_FALSE(tag("<script type=text/x-template src=\"type=text/javascript\">").is_script);
  EXPECT_TRUE(tag("<script type=text/perlscript>").is_script);
}

}  // namespace
}  // namespace kavo::test
