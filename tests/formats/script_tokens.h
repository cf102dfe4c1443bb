// Tokens of scripts as tests compare them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "formats/script/lexer.h"

namespace kavo::test {

struct LexedToken {
  script::Token token;
  std::string_view text;
};

// All tokens of a piece; fails when they are not the piece.
inline std::vector<LexedToken> lex(script::Lexer& lexer, std::string_view text,
                                   script::Between between = script::Between::kPage) {
  std::vector<LexedToken> tokens;
  lexer.begin(text, between);
  std::size_t place = 0;
  for (script::Token token; lexer.next(token); place = token.end) {
    EXPECT_EQ(token.begin, place);
    EXPECT_GT(token.end, token.begin);
    EXPECT_LE(token.open + token.close, token.size());
    if (token.end <= place) break;
    tokens.push_back({token, text.substr(token.begin, token.size())});
  }
  EXPECT_EQ(place, text.size());
  return tokens;
}

// Tokens that mean something, with a "|" between two: a literal as its kind ("d" double, "s" single, "t" template,
// "b" text block, "h" heredoc, "n" nowdoc, "c" command), "(" when it goes on and its text; a comment as "#".
inline std::string shown(const std::vector<LexedToken>& tokens) {
  using script::TokenKind;
  std::string result;
  for (const auto& [token, text] : tokens) {
    if (token.kind == TokenKind::kBlank || token.kind == TokenKind::kLineEnd) continue;
    if (!result.empty()) result += '|';
    if (token.kind == TokenKind::kComment) {
      result += '#';
    } else if (token.kind == TokenKind::kLiteral) {
      result += token.begins ? "" : ")";
      result += "dstbhnc"[static_cast<int>(token.form)];
      result += token.ends ? ":" : "(";
      result += text.substr(token.open, text.size() - token.open - token.close);
    } else if (token.kind == TokenKind::kPattern) {
      result += "re:";
      result += text;
    } else {
      result += text;
    }
  }
  return result;
}

inline std::string lexed(script::Language language, std::string_view text) {
  const auto lexer = script::make_lexer(language, nullptr);
  return shown(lex(*lexer, text));
}

}  // namespace kavo::test
