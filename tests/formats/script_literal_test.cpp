#include <gtest/gtest.h>

#include <random>

#include "formats/script/literal_value.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "script_tokens.h"

namespace kavo::test {
namespace {

using namespace script;

std::string value_of(std::string_view text, const Quoting& quoting, const TextCoding& coding) {
  std::string value;
  LiteralReader reader(text, quoting, coding);
  for (LiteralReader::Character c; reader.next(c);) value += c.is_text ? std::string(c.utf8) : "?";
  return value;
}

std::string written(std::string_view text, const Quoting& quoting, const TextCoding& coding) {
  std::string bytes;
  append_literal_text(text, quoting, coding, bytes);
  return bytes;
}

constexpr Quoting kBasic = {Language::kVbScript, LiteralForm::kDouble, false};
constexpr Quoting kScriptDouble = {Language::kJavaScript, LiteralForm::kDouble, true};
constexpr Quoting kScriptSingle = {Language::kJavaScript, LiteralForm::kSingle, true};
constexpr Quoting kTemplate = {Language::kJavaScript, LiteralForm::kTemplate, true};
constexpr Quoting kJava = {Language::kJava, LiteralForm::kDouble, false};
constexpr Quoting kTextBlock = {Language::kJava, LiteralForm::kTextBlock, false};
constexpr Quoting kPhpDouble = {Language::kPhp, LiteralForm::kDouble, false};
constexpr Quoting kPhpSingle = {Language::kPhp, LiteralForm::kSingle, false};
constexpr Quoting kHeredoc = {Language::kPhp, LiteralForm::kHeredoc, false};
constexpr Quoting kNowdoc = {Language::kPhp, LiteralForm::kNowdoc, false};

TEST(ScriptLiterals, Values) {
  struct {
    const char* name;
    Quoting quoting;
    std::string_view text, value;
  } const cases[] = {
      {"doubled quotes", kBasic, R"(a ""b"" \n)", R"(a "b" \n)"},
      {"escapes", kScriptDouble, R"(\"a\"\\\n\t\x41\u00e9\u{1F600}\q\/)", "\"a\"\\\n\tA\u00e9\U0001F600q/"},
      {"halves", kScriptSingle, R"(\ud83d\ude00 \ud83d)", "\U0001F600 ?"},
      {"continued line", kScriptSingle, "a\\\r\nb\\\nc", "abc"},
      {"template", kTemplate, R"(\`a\$)", "`a$"},
      {"escapes", kJava, R"(\"a\u00E9\uu0041\101\s\')", "\"a\u00e9AA '"},
      {"text block", kTextBlock, "a \\\n\"b\" \\\"", "a \"b\" \""},
      {"escapes", kPhpDouble, R"(\"a\$b\u{e9}\x41\101\e\q\')", "\"a$b\u00e9AA\x1B\\q\\'"},
      {"bytes", kPhpDouble, R"(\xe9\351)", "??"},
      {"single quotes", kPhpSingle, R"(\'a\\\n\")", R"('a\\n\")"},
      {"heredoc", kHeredoc, R"(a\"b\$)", R"(a\"b$)"},
      {"nowdoc", kNowdoc, R"(a\'b\\$c)", R"(a\'b\\$c)"},
  };
  const TextCoding utf8(kUtf8CodePage);
  for (const auto& row : cases) EXPECT_EQ(value_of(row.text, row.quoting, utf8), row.value) << row.name;
  const TextCoding japanese(932);
  EXPECT_EQ(value_of("\x95\x5C\\n", kScriptDouble, japanese), "\u8868\n");
}

TEST(ScriptLiterals, Texts) {
  struct {
    const char* name;
    Quoting quoting;
    std::string_view text, bytes;
  } const cases[] = {
      {"quotes", kBasic, "a \"b\" 'c' \\", "a \"\"b\"\" 'c' \\"},
      {"line break", kBasic, "a\nb\r\nc", "a\" & vbCrLf & \"b\" & vbCrLf & \"c"},
      {"missing character", kBasic, "a\u0436\U0001F600", "a\" & ChrW(1078) & \"\" & ChrW(55357) & ChrW(56832) & \""},
      {"ends of scripts", kBasic, "%> ?> <% </script", "%\" & \"> ?\" & \"> <\" & \"% </script"},
      {"quotes", kScriptDouble, "a \"b\" 'c' \\", R"(a \"b\" 'c' \\)"},
      {"quotes", kScriptSingle, "a \"b\" 'c'", R"(a "b" \'c\')"},
      {"ends of scripts", kScriptSingle, "</script> %> <% ?> <!-- <?", R"(<\/script> %\> <\% ?\> <\!-- <\?)"},
      {"line break and missing characters", kScriptDouble, "a\nb\t\u0436\U0001F600\x01",
       "a\\nb\t\\u0436\\ud83d\\ude00\\u0001"},
      {"template", kTemplate, "`a` ${b}\n", R"(\`a\` \${b}\n)"},
      {"all", kJava, "\"a\" \\ %>\n\u0436", R"(\"a\" \\ %\u003e\n\u0436)"},
      {"text block", kTextBlock, "\"\"\"\n", R"(\"\"\"\n)"},
      {"all", kPhpDouble, "\"a\" $b {$c} \\ ?>\n", R"(\"a\" \$b {\$c} \\ ?\x3e\n)"},
      {"all", kPhpSingle, "'a' \"b\" $c ?>\n", "\\'a\\' \"b\" $c ?' . '>\n"},
      {"heredoc", kHeredoc, "\"a\" $b\nX", "\"a\" \\$b\\nX"},
  };
  const TextCoding western(1252);
  for (const auto& row : cases) EXPECT_EQ(written(row.text, row.quoting, western), row.bytes) << row.name;
  EXPECT_EQ(written("\u00e9", kScriptDouble, western), "\xE9");
  EXPECT_EQ(written("\u8868", kScriptDouble, TextCoding(932)), "\x95\x5C");
  for (const Quoting& quoting : {kPhpDouble, kPhpSingle, kHeredoc, kNowdoc})
    EXPECT_THROW(written("\u0436", quoting, western), failure);
}

// A literal is never interrupted at a place where the language takes no expression.
TEST(ScriptLiterals, ConstantsAreSingleLiterals) {
  const Quoting constant = {Language::kVbScript, LiteralForm::kDouble, false, true};
  const TextCoding western(1252);
  EXPECT_EQ(written("\"a\" 'b' \\ % > ? < /", constant, western), "\"\"a\"\" 'b' \\ % > ? < /");
  const struct {
    std::string_view text, reason;
  } cases[] = {
      {"a %> b", "\"%>\" cannot be written there"},       {"a ?> b", "\"?>\" cannot be written there"},
      {"a <% b", "\"<%\" cannot be written there"},       {"a\nb", "a line break cannot be written there"},
      {"a\r\nb", "a line break cannot be written there"}, {"\u0436", "\"\u0436\" (U+0436) cannot be written there"},
      {"\x01", "U+0001 cannot be written there"},         {"\U0001F600", "(U+1f600) cannot be written there"},
  };
  for (const auto& row : cases) {
    try {
      written(row.text, constant, western);
      ADD_FAILURE() << row.reason;
    } catch (const failure& reason) {
      const std::string description = to_utf8(reason.description());
      EXPECT_NE(description.find(std::string(row.reason) + ", because a constant is a single literal"),
                description.npos)
          << description;
    }
  }
}

// A text comes back as it went in, and stays one literal of its language (VBScript may interrupt it).
TEST(ScriptLiterals, WhatIsWrittenIsRead) {
  const TextCoding utf8(kUtf8CodePage);
  const std::string_view bits[] = {"\"",        "'",     "`",   "\\", "$",      "{",          "}",   "${",
                                   "{$",        "%",     ">",   "<",  "?",      "/",          "!",   "--",
                                   "</script>", "%>",    "?>",  "<%", "\n",     "\r",         "\t",  "a",
                                   "n",         "u0041", "x41", "0",  "\u00e9", "\U0001F600", "\x01"};
  struct {
    Quoting quoting;
    std::string_view open, close;
  } const forms[] = {{kScriptDouble, "\"", "\""}, {kScriptSingle, "'", "'"},        {kTemplate, "`", "`"},
                     {kJava, "\"", "\""},         {kTextBlock, "\"\"\"", "\"\"\""}, {kPhpDouble, "\"", "\""},
                     {kHeredoc, "<<<X\n", "\nX"}, {kPhpSingle, "'", "'"},           {kBasic, "\"", "\""}};
  std::mt19937 random(1913);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (unsigned length = random() % 12; length != 0; --length) text += bits[random() % std::size(bits)];
    for (const auto& form : forms) {
      const std::string literal = std::string(form.open) + written(text, form.quoting, utf8) + std::string(form.close);
      SCOPED_TRACE(testing::PrintToString(text) + " as " + literal);
      for (const std::string_view end : {"%>", "?>", "<%"}) EXPECT_EQ(literal.find(end), std::string::npos);
      EXPECT_TRUE(!form.quoting.in_element || literal.find("</script") == std::string::npos);
      const auto lexer = make_lexer(form.quoting.language, nullptr);
      const auto tokens = lex(*lexer, literal);
      std::string value;
      for (const auto& [token, bytes] : tokens) {
        if (token.kind == TokenKind::kLiteral) {
          EXPECT_TRUE(token.begins && token.ends);
          value += value_of(bytes.substr(token.open, bytes.size() - token.open - token.close), form.quoting, utf8);
        } else if (token.kind == TokenKind::kName && bytes == "vbCrLf") {
          value += "\n";
        } else if (token.kind == TokenKind::kNumber) {
          value += static_cast<char>(std::stoi(std::string(bytes)));
        }
      }
      if (form.quoting.language != Language::kVbScript) {
        EXPECT_EQ(value, text);
        const bool may_be_cut = form.quoting.language == Language::kPhp && form.quoting.form == LiteralForm::kSingle;
        EXPECT_TRUE(may_be_cut || tokens.size() == 1);
      } else if (text.find_first_of("\r\n") == std::string::npos) {
        EXPECT_EQ(value, text);
      }
      if (HasFailure()) return;
    }
  }
}

}  // namespace
}  // namespace kavo::test
