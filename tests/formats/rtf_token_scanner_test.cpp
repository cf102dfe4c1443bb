#include "formats/rtf/token_scanner.h"

#include <gtest/gtest.h>

#include "support/splits.h"

namespace kavo::rtf {
namespace {

using test::same_for_every_split;

// The tokens as "kind:bytes", runs of one kind of text joined, whatever pieces the bytes come in.
std::vector<std::string> tokens_of(const std::vector<std::string_view>& pieces, const TextCoding* coding) {
  constexpr std::string_view names[] = {"open", "close", "word", "symbol", "byte", "text", "end", "data"};
  std::vector<std::string> tokens;
  TokenScanner scanner;
  Token token;
  TokenKind last = TokenKind::kOpen;
  std::string window;
  const auto take = [&](bool is_all) {
    while (!window.empty() && scanner.next(window, is_all, coding, token)) {
      const bool joins = token.kind == last && (last == TokenKind::kText || last == TokenKind::kData ||
                                                last == TokenKind::kLineEnd);
      if (joins)
        tokens.back() += token.bytes;
      else
        tokens.push_back(std::string(names[static_cast<int>(token.kind)]) + ":" + std::string(token.bytes));
      last = token.kind;
      window.erase(0, token.bytes.size());
    }
  };
  for (const std::string_view piece : pieces) {
    window += piece;
    take(false);
  }
  take(true);
  EXPECT_EQ(window, "");
  return tokens;
}

struct Case {
  const char* name;
  std::string_view input;
  std::vector<std::string> tokens;
  unsigned code_page = 1252;
};

using namespace std::string_view_literals;
const Case kCases[] = {
    {"nothing", "", {}},
    {"groups and words", "{\\rtf1\\b bold}", {"open:{", "word:\\rtf1", "word:\\b ", "text:bold", "close:}"}},
    {"one blank ends a word", "\\b  x", {"word:\\b ", "text: x"}},
    {"a negative number", "\\u-10240?", {"word:\\u-10240", "text:?"}},
    {"a hyphen behind a word is text", "\\b-x", {"word:\\b", "text:-x"}},
    {"symbols", "\\{\\}\\\\\\~\\*", {"symbol:\\{", "symbol:\\}", "symbol:\\\\", "symbol:\\~", "symbol:\\*"}},
    {"bytes in hexadecimal", "\\'e9\\'E9 ", {"byte:\\'e9", "byte:\\'E9", "text: "}},
    {"none in hexadecimal", "\\'x", {"symbol:\\'", "text:x"}},
    {"line ends", "a\r\n\nb\\\nc", {"text:a", "end:\r\n\n", "text:b", "symbol:\\\n", "text:c"}},
    {"data", "{\\bin3 }{\\x}", {"open:{", "word:\\bin3 ", "data:}{\\", "text:x", "close:}"}},
    {"data that the document ends in", "\\bin9 ab", {"word:\\bin9 ", "data:ab"}},
    {"no data", "\\bin0 }\\bin-1 }", {"word:\\bin0 ", "close:}", "word:\\bin-1 ", "close:}"}},
    {"a lone backslash at the end", "a\\", {"text:a", "symbol:\\"}},
    {"a second byte that looks like a backslash", "\x95\x5Cpar}", {"text:\x95\x5Cpar", "close:}"}, 932},
    {"a second byte that looks like a brace", "{\x83\x7B\x83\x7D}", {"open:{", "text:\x83\x7B\x83\x7D", "close:}"}, 932},
    {"a second byte that is a letter", "\x83\x41\\b", {"text:\x83\x41", "word:\\b"}, 932},
    {"a second byte in hexadecimal", "\x95\\'5c}", {"text:\x95", "byte:\\'5c", "close:}"}, 932},
    {"a first byte without a second one", "\x95}", {"text:\x95", "close:}"}, 949},
    {"no pairs in a code page without", "\x95\\b}", {"text:\x95", "word:\\b", "close:}"}},
};

TEST(RtfTokenScanner, CutsEveryByteIntoOneToken) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    const TextCoding coding(c.code_page);
    EXPECT_EQ(same_for_every_split(c.input, [&](const auto& pieces) { return tokens_of(pieces, &coding); }), c.tokens);
  }
}

TEST(RtfTokenScanner, NumbersThatNoneCanMeanAreTheNearest) {
  EXPECT_EQ(word_at("\\f99999999999").number, 2147483647);
  EXPECT_EQ(word_at("\\f-9999999999").number, -2147483647 - 1);
  EXPECT_EQ(word_at("\\f99999999999").bytes.size(), 12u) << "ten digits, the rest is text";
  EXPECT_FALSE(word_at("\\par").has_number);
}

TEST(RtfTokenScanner, ANameWithoutEndIsCut) {
  const std::string name = "\\" + std::string(200, 'a');
  EXPECT_EQ(word_at(name).name.size(), kLongestName);
}

}  // namespace
}  // namespace kavo::rtf
