#include <gtest/gtest.h>

#include <random>

#include "formats/script/expression_scanner.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using namespace script;

// One line for each join with a literal, in the order in which they end: its items, "~" when they may not move, and
// where it goes. "F name(parameters)" and "E" are functions.
class Lines final : public ExpressionSink {
 public:
  explicit Lines(std::string_view text) : text_(text) {}

  void joined(const Join& join) override {
    if (!join.has_literal) return;
    std::string line;
    for (const Item& item : join.items) {
      if (!line.empty()) line += ' ';
      const std::string_view shown = text_.substr(item.begin, item.end - item.begin);
      line += item.is_literal ? std::string(shown) : "{" + std::string(shown) + "}";
    }
    line += join.can_move ? " ->" : " ~>";
    if (join.is_constant) line += " constant";
    for (const Place& place : join.places) line += " " + shown(place);
    add(line);
  }
  void function_begins(std::string_view name, std::span<const std::string_view> parameters) override {
    std::string line = "F " + std::string(name) + "(";
    for (const std::string_view parameter : parameters)
      line += (line.back() == '(' ? "" : ",") + std::string(parameter);
    add(line + ")");
  }
  void function_ends() override { add("E"); }
  void loops(std::size_t loop, std::string_view variable) override {
    add("L " + std::to_string(loop) + " " + std::string(variable));
  }
  void declared(std::string_view name) override { add("D " + std::string(name)); }

  std::string result;

 private:
  static std::string shown(const Place& place) {
    static constexpr const char* kNames[] = {"-",       "argument", "assigned", "entry",     "returned",
                                             "element", "group",    "compared", "condition", "subscript",
                                             "key",     "receiver", "operand",  "looped"};
    std::string text = kNames[static_cast<int>(place.kind)];
    if (place.kind == PlaceKind::kArgument) text += " " + std::to_string(place.argument) + " of";
    if (!place.name.empty()) text += " " + std::string(place.name);
    if (!place.key.empty()) text += "[" + std::string(place.key) + "]";
    if (place.kind == PlaceKind::kLooped) text += " by " + std::to_string(place.loop);
    return text;
  }
  void add(const std::string& line) { result += (result.empty() ? "" : "\n") + line; }

  std::string_view text_;
};

std::string joins(Language language, std::string_view text) {
  Lines lines(text);
  ExpressionScanner scanner(language, text, lines);
  const auto lexer = make_lexer(language, nullptr);
  lexer->begin(text);
  for (Token token; lexer->next(token);) scanner.token(token);
  scanner.finish();
  return lines.result;
}

constexpr auto kVb = Language::kVbScript;
constexpr auto kJs = Language::kJavaScript;
constexpr auto kPhp = Language::kPhp;
constexpr auto kJava = Language::kJava;

struct Case {
  const char* name;
  Language language;
  std::string_view input;
  std::string_view expected;
};

const Case kCases[] = {
    {"joined texts", kVb, "x = \"Hello \" & name & \", welcome\"", "\"Hello \" {name} \", welcome\" -> assigned x"},
    {"joined over lines", kVb, "x = \"a\" & _\n \"b\"", "\"a\" \"b\" -> assigned x"},
    {"sum in a joined text", kVb, "x = \"a\" & n + 1 & \"b\"", "\"a\" {n + 1} \"b\" ~> assigned x"},
    {"loop over a list", kPhp, "foreach (['a', 'b'] as $i => $s) f('c');",
     "'a' -> element looped by 8\n'b' -> element looped by 8\nL 8 $s\n'c' -> argument 0 of f -"},
    {"loop over a list", kVb, "For Each s In Array(\"a\")\nf \"b\"",
     "\"a\" -> argument 0 of Array assigned s\n\"b\" -> argument 0 of f"},
    {"loop over a list", kJs, "for (const s of ['a']) f('b')", "'a' -> element assigned s\n'b' -> argument 0 of f -"},
    {"statement with arguments", kVb, "MsgBox \"a\", 16, \"b\"",
     "\"a\" -> argument 0 of MsgBox\n\"b\" -> argument 2 of MsgBox"},
    {"statement whose argument is in parentheses", kVb, "Response.Write (\"a\") & b & \"c\"",
     "\"a\" -> argument 0 of Response.Write -\n{Response.Write (\"a\")} {b} \"c\" -> argument 0 of Response.Write"},
    {"call", kVb, "Call Show(\"a\", b)", "\"a\" -> argument 0 of Show -"},
    {"condition and branches", kVb, "If a = \"b\" Then c = \"d\" Else e \"f\"",
     "\"b\" -> compared\n\"d\" -> assigned c\n\"f\" -> argument 0 of e"},
    {"cases", kVb, "Select Case a\nCase \"b\", \"c\"\nd = \"e\"\nEnd Select",
     "\"b\" -> compared\n\"c\" -> compared\n\"e\" -> assigned d"},
    {"element of a session", kVb, "Session(\"a\") = \"b\"",
     "\"a\" -> argument 0 of Session -\n\"b\" -> assigned Session[\"a\"]"},
    {"function", kVb, "Function F(a, ByVal b)\nF = \"c\" & a\nEnd Function\n", "F F(a,b)\n\"c\" {a} -> assigned F\nE"},
    {"constants", kVb, "Public Const A = \"b\", C = \"d\"\nE = \"f\"",
     "D A\n\"b\" -> constant assigned A\nD C\n\"d\" -> constant assigned C\n\"f\" -> assigned E"},
    {"an operator before a literal", kVb, "x = \"a\" & Not \"b\"",
     "\"b\" -> operand assigned x\n\"a\" {Not \"b\"} -> assigned x"},
    {"comparison in an argument", kVb, "f (a = \"b\")", "\"b\" -> compared"},

    {"joined texts", kJs, "x = 'Hello ' + name + \", welcome\"", "'Hello ' {name} \", welcome\" -> assigned x"},
    {"sum before the text", kJs, "x = n + 1 + ' items'", "{n} {1} ' items' ~> assigned x"},
    {"product in a text", kJs, "x = 'a' + b * c + 'd'", "'a' {b * c} 'd' -> assigned x"},
    {"an operator before a literal", kJs, "x = 'a' + typeof 'b' + 'c'",
     "'b' -> operand assigned x\n'a' {typeof 'b'} 'c' -> assigned x"},
    {"an operator before a template", kJs, "x = 'a' + -`b ${c}`", "'a' {-} `b ${ {c} }` ~> assigned x"},
    {"an operator behind a literal", kJs, "x = 'a' ++ + 'b'", "{'a' ++} 'b' -> assigned x"},
    {"a word before a literal", kJs, "throw 'a'", "'a' -> -"},
    {"difference in a text", kJs, "x = 'a' + b - c", "'a' {b - c} ~> assigned x"},
    {"choice", kJs, "x = a == 'b' ? 'c' : 'd'", "'b' -> condition\n'c' -> assigned x\n'd' -> assigned x"},
    {"choice in a text", kJs, "f('a' + (b ? 'c' : 'd') + 'e')",
     "'c' -> group argument 0 of f -\n'd' -> group argument 0 of f -\n'a' {(b ? 'c' : 'd')} 'e' -> argument 0 of f -"},
    {"call in a text", kJs, "x = 'a' + f('b', 1)", "'b' -> argument 0 of f assigned x\n'a' {f('b', 1)} -> assigned x"},
    {"appended", kJs, "x += 'a'; x += 'b'", "'a' -> assigned x\n'b' -> assigned x"},
    {"member", kJs, "a.b(c).innerHTML = 'd'", "'d' -> assigned a.b"},
    {"template", kJs, "x = `a ${b + 'c'} d`", "{b} 'c' -> group assigned x\n`a ${ {b + 'c'} } d` -> assigned x"},
    {"list and entries", kJs, "x = {a: 'b', 'c': ['d']}",
     "'b' -> entry a assigned x\n'c' -> key\n'd' -> element entry 'c' assigned x"},
    {"asked of a text", kJs, "x = 'a,b'.split(',')",
     "'a,b' -> receiver split assigned x\n',' -> argument 0 of assigned x"},
    {"statements without semicolons", kJs, "a = 'b'\nc('d')\ne = 'f'",
     "'b' -> assigned a\n'd' -> argument 0 of c -\n'f' -> assigned e"},
    {"functions", kJs, "function f(a) { return 'b' + a }\nvar g = function(c) { return 'd' }",
     "F f(a)\n'b' {a} -> returned\nE\nD g\nF g(c)\n'd' -> returned\nE"},
    {"cases", kJs, "switch (a) { case 'b': c = 'd'; break; default: c = 'e' }",
     "'b' -> compared\n'd' -> assigned c\n'e' -> assigned c"},
    {"default value", kJs, "x = a || 'b'", "'b' -> assigned x"},
    {"condition", kJs, "if (a != 'b' && !c) d('e')", "'b' -> compared\n'e' -> argument 0 of d -"},
    {"object behind return", kJs, "function f() { return {a: 'b'} }", "F f()\n'b' -> entry a returned\nE"},

    {"joined over lines", kJava, "String x = \"a\"\n + \"b\";", "D x\n\"a\" \"b\" -> assigned x"},
    {"character in a text", kJava, "x = \"a\" + 'b' + \"c\";", "\"a\" {'b'} \"c\" -> assigned x"},
    {"method", kJava, "String f(String a, int b) throws X { return \"c\"; }", "F f(a,b)\n\"c\" -> returned\nE"},
    {"list", kJava, "String[] a = {\"b\", \"c\"};", "D a\n\"b\" -> element assigned a\n\"c\" -> element assigned a"},
    {"compared by a method", kJava, "if (\"a\".equals(b)) c(\"d\");",
     "\"a\" -> receiver equals condition\n\"d\" -> argument 0 of c -"},
    {"exception", kJava, "throw new X(\"a\" + b);", "\"a\" {b} -> argument 0 of X -"},

    {"joined texts", kPhp, "$x = 'Hello ' . $name . ', welcome';", "'Hello ' {$name} ', welcome' -> assigned $x"},
    {"inserted", kPhp, "echo \"a $b c\";", "\"a  {$b}  c\" -> argument 0 of echo"},
    {"inserted side by side", kPhp, "echo \"a $b$c d\";", "\"a  {$b$c}  d\" -> argument 0 of echo"},
    {"inserted element", kPhp, "echo \"a {$b['c']} d\";",
     "'c' -> subscript $b\n\"a { {$b['c']} } d\" -> argument 0 of echo"},
    {"several arguments", kPhp, "echo 'a', $b, 'c';", "'a' -> argument 0 of echo\n'c' -> argument 2 of echo"},
    {"entries", kPhp, "$x = array('a' => 'b');", "'a' -> key\n'b' -> entry 'a' assigned $x"},
    {"element", kPhp, "$x['a'] = 'b';", "'a' -> subscript $x\n'b' -> assigned $x['a']"},
    {"method", kPhp, "$a->b('c');", "'c' -> argument 0 of $a->b -"},
    {"function with a default", kPhp, "function f($a, $b = 'c') { return $a; }", "'c' -> assigned $b\nF f($a,$b)\nE"},
    {"heredoc", kPhp, "$x = <<<E\na $b\nE;", "<<<E\na  {$b} \nE -> assigned $x"},
    {"named arguments of a template", kPhp, "f(a: 'b');", "'b' -> argument 0 of f -"},
};

TEST(ScriptExpressions, JoinsAndTheirPlaces) {
  for (const Case& row : kCases)
    for (const LineEnd& line_end : kLineEnds) {
      SCOPED_TRACE(std::string(row.name) + ", " + line_end.name);
      std::string expected = with_line_end(row.expected, line_end);
      std::string got = joins(row.language, with_line_end(row.input, line_end));
      // Lines of the result end with LF; those of heredocs as written.
      const auto plain = [](std::string text) {
        std::erase(text, '\r');
        std::erase(text, '\n');
        return text;
      };
      EXPECT_EQ(plain(got), plain(expected));
    }
}

// For any input the output is in order and inside the input, and brackets are followed without recursion.
TEST(ScriptExpressions, Garbage) {
  class Check final : public ExpressionSink {
   public:
    void joined(const Join& join) override {
      std::size_t place = 0;
      EXPECT_FALSE(join.items.empty());
      EXPECT_FALSE(join.places.empty());
      for (const Item& item : join.items) {
        EXPECT_LE(place, item.begin);
        EXPECT_LE(item.begin + item.open + item.close, item.end);
        place = item.end;
      }
      EXPECT_LE(place, size);
    }
    void function_begins(std::string_view, std::span<const std::string_view>) override { ++depth; }
    void function_ends() override { --depth; }
    void loops(std::size_t loop, std::string_view) override { EXPECT_LT(loop, size); }
    void declared(std::string_view) override {}
    std::size_t size = 0;
    int depth = 0;
  };
  std::mt19937 random(1913);
  const std::string_view bits[] = {"(",        ")",      "[",    "]",    "{",      "}",    "\"a\"",  "'b'", "`c",
                                   "${",       "`",      "+",    "&",    ".",      ",",    ";",      ":",   "?",
                                   "=",        "==",     "=>",   "+=",   "-",      "!",    "a",      "$b",  "function",
                                   "Function", "End",    "If",   "Then", "return", "case", "new",    "var", "\n",
                                   " ",        "\"x $y", "{$z}", "\"",   "||",     "1",    "<<<E\n", "\nE"};
  for (int round = 0; round < 6000; ++round) {
    std::string text;
    for (unsigned length = random() % 60; length != 0; --length) {
      text += bits[random() % std::size(bits)];
      if (random() % 3 == 0) text += ' ';
    }
    for (const Language language : {kVb, kJs, kJava, kPhp}) {
      Check check;
      check.size = text.size();
      ExpressionScanner scanner(language, text, check);
      const auto lexer = make_lexer(language, nullptr);
      lexer->begin(text);
      for (Token token; lexer->next(token);) {
        scanner.token(token);
        if (random() % 64 == 0) scanner.end_statement();
      }
      scanner.finish();
      EXPECT_TRUE(language == kVb || check.depth == 0);
      if (HasFailure()) FAIL() << "input: " << testing::PrintToString(text);
    }
  }
  for (const std::string_view part : {"(", "[", "{", "f(\"a\"+", "`${", "\"{$", ")", "a?", "x=function(){"}) {
    std::string text;
    for (int i = 0; i < 100000; ++i) text += part;
    for (const Language language : {kVb, kJs, kJava, kPhp}) joins(language, text);
  }
}

}  // namespace
}  // namespace kavo::test
