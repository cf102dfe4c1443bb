#include "formats/text/text_coding.h"

#include <gtest/gtest.h>

#include "formats/text/euc_japanese.h"
#include "platform/failure.h"

namespace kavo::test {
namespace {

// The whole input: valid characters as UTF-8, each invalid byte as "[..]".
std::string decoded(unsigned number, std::string_view bytes) {
  const TextCoding coding(number);
  std::string text;
  while (!bytes.empty()) {
    bytes.remove_prefix(coding.decode_run(bytes, text));
    if (bytes.empty()) break;
    std::string character;
    bool valid = false;
    const std::size_t length = coding.decode_one(bytes, character, valid);
    text += valid ? "[control]" : "[" + std::to_string(length) + "]";
    bytes.remove_prefix(length);
  }
  return text;
}

using namespace std::string_view_literals;

TEST(TextCoding, Decodes) {
  struct Case {
    const char* name;
    unsigned number;
    std::string_view bytes;
    std::string_view text;
  };
  const Case cases[] = {
      {"ASCII", 1252, "Hello, long enough for eight bytes a turn.\t\r\n"sv,
       "Hello, long enough for eight bytes a turn.\t\r\n"sv},
      {"single byte", 1252, "caf\xE9"sv, "caf\xC3\xA9"sv},
      {"two bytes with a trail byte that looks like syntax", 932, "\x83\x5C\x95\x5C"sv, "\xE3\x82\xBD\xE8\xA1\xA8"sv},
      {"Japanese EUC", kEucJapanese, "a\xA4\xA2\xB0\xA1\x8E\xB1~\xF4\xA6"sv,
       "a\xE3\x81\x82\xE4\xBA\x9C\xEF\xBD\xB1~\xE7\x86\x99"sv},
      {"three bytes of Japanese EUC", kEucJapanese, "\x8F\xB0\xA1\xA4\xA2"sv, "[3]\xE3\x81\x82"sv},
      {"broken Japanese EUC", kEucJapanese, "\xA4 \x8E\x40\x80\x8F"sv, "[1] [1]@[1][1]"sv},
      {"lead byte at the end", 932, "a\x83"sv, "a[1]"sv},
      {"UTF-8", 65001, "\xE2\x82\xAC\xF0\x9F\x98\x80"sv, "\xE2\x82\xAC\xF0\x9F\x98\x80"sv},
      {"invalid UTF-8", 65001,
       "a\xFF\xC3"
       "b"sv,
       "a[1][1]b"sv},
      {"control characters are no text", 65001,
       "a\x01\x0C"
       "b\x7F"sv,
       "a[control][control]b\x7F"sv},
      {"UTF-16 little endian", 1200, "a\0\xAC\x20\x3D\xD8\x00\xDE"sv, "a\xE2\x82\xAC\xF0\x9F\x98\x80"sv},
      {"UTF-16 big endian", 1201, "\0a\x20\xAC"sv, "a\xE2\x82\xAC"sv},
      {"half a pair of UTF-16", 1200,
       "\x3D\xD8"
       "a\0"sv,
       "[2]a"sv},
      {"odd byte of UTF-16", 1200, "a\0b"sv, "a[1]"sv},
      {"no character", 1201, "\xFF\xFE\xFF\xFF"sv, "[control][control]"sv},
  };
  for (const Case& c : cases) EXPECT_EQ(decoded(c.number, c.bytes), c.text) << c.name;
}

TEST(TextCoding, Encodes) {
  const auto encoded = [](unsigned number, std::string_view text) {
    std::string bytes;
    TextCoding(number).encode(text, bytes, [](std::string_view character, std::string& out) {
      out += "{" + std::to_string(static_cast<unsigned>(utf8_code_point(character))) + "}";
    });
    return bytes;
  };
  EXPECT_EQ(encoded(1252, "caf\xC3\xA9"), "caf\xE9");
  EXPECT_EQ(encoded(1252, "\xCE\xB1\xF0\x9F\x98\x80"), "{945}{128512}");
  EXPECT_EQ(encoded(932, "\xE3\x82\xBD"), "\x83\x5C");
  EXPECT_EQ(encoded(kEucJapanese, "\xE3\x82\xBD\xEF\xBD\xB1"), "\xA5\xBD\x8E\xB1");
  EXPECT_EQ(encoded(kEucJapanese, "\xC3\xA9?"), "{233}?");
  EXPECT_EQ(encoded(65001, "\xE2\x82\xAC"), "\xE2\x82\xAC");
  EXPECT_EQ(encoded(1200, "a\xF0\x9F\x98\x80"), "a\0\x3D\xD8\x00\xDE"sv);
  EXPECT_EQ(encoded(1201, "a"), "\0a"sv);
}

// What is decoded encodes to the same bytes: the promise on which unchanged text in changed segments rests.
TEST(TextCoding, EveryValidCharacterComesBackAsItsBytes) {
  for (const unsigned number : {874u, 932u, 936u, 949u, 950u, 1250u, 1251u, 1252u, 1255u, 1258u, kEucJapanese}) {
    const TextCoding coding(number);
    for (unsigned first = 0; first < 256; ++first)
      for (unsigned second = 0x40; second < (coding.is_lead_byte(static_cast<unsigned char>(first)) ? 256u : 0x41u);
           ++second) {
        const char both[] = {static_cast<char>(first), static_cast<char>(second)};
        std::string text, back;
        bool valid = false;
        const std::size_t length = coding.decode_one({both, 2}, text, valid);
        if (!valid) continue;
        coding.encode(text, back, [](std::string_view, std::string& out) { out += "missing"; });
        ASSERT_EQ(back, std::string(both, length)) << number << ": " << first << " " << second;
      }
  }
}

TEST(TextCoding, DecodesAllAndShowsEachInvalidPiece) {
  const TextCoding coding(932);
  const std::string_view bytes = "\x83\x5C\x01\x83 \xFF\xFF\x95\x5C\x83"sv;
  std::string text;
  std::vector<std::size_t> places;
  coding.decode(bytes, text, [&](std::string_view piece) {
    places.push_back(static_cast<std::size_t>(piece.data() - bytes.data()));
    text += "[" + std::to_string(piece.size()) + "]";
  });
  EXPECT_EQ(text, "\xE3\x82\xBD\x01[1] [1][1]\xE8\xA1\xA8[1]");
  EXPECT_EQ(places, (std::vector<std::size_t>{3, 5, 6, 9}));
}

TEST(TextCoding, KnowsWhereACharacterIsCut) {
  EXPECT_EQ(TextCoding(65001).incomplete_tail("a\xE2\x82"), 2u);
  EXPECT_EQ(TextCoding(65001).incomplete_tail("\xF0\x9F\x98"), 3u);
  EXPECT_EQ(TextCoding(65001).incomplete_tail("\xE2\x82\xAC"), 0u);
  EXPECT_EQ(TextCoding(65001).incomplete_tail("\x80\x80\x80\x80"), 0u);
  EXPECT_EQ(TextCoding(932).incomplete_tail("a\x83"), 1u);
  EXPECT_EQ(TextCoding(932).incomplete_tail("\x83\x83"), 0u);
  EXPECT_EQ(TextCoding(1200).incomplete_tail("a\0b"sv), 1u);
  EXPECT_EQ(TextCoding(1200).incomplete_tail("a\0\x3D\xD8"sv), 2u);
  EXPECT_EQ(TextCoding(1200).incomplete_tail("\x3D\xD8\x00"sv), 3u);
  EXPECT_EQ(TextCoding(1252).incomplete_tail("\xE9"), 0u);
}

TEST(TextCoding, AnUnknownNumberIsRefused) { EXPECT_THROW(TextCoding(9999), failure); }

}  // namespace
}  // namespace kavo::test
