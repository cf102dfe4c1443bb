#include "platform/code_page.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "platform/ports.h"
#include "platform/unicode.h"
#include "support/failures.h"
#include "support/system.h"

namespace kavo::test {
namespace {

constexpr const char* kSingleByte[] = {"874", "1250", "1251", "1252", "1253", "1254", "1255", "1256", "1257", "1258"};
constexpr const char* kDoubleByte[] = {"932", "936", "949", "950"};

bool is_escape(char16_t unit) { return unit >= 0xDC80 && unit <= 0xDCFF; }

TEST(CodePageTest, NamesOfCodePages) {
  struct Case {
    const char* name;
    unsigned number;
  };
  for (const Case& c : {Case{"932", 932}, Case{"cp932", 932}, Case{"CP1252", 1252}, Case{"windows-1252", 1252},
                        Case{"Windows-874", 874}, Case{"utf-8", 65001}, Case{"UTF8", 65001}, Case{"65001", 65001}}) {
    EXPECT_EQ(code_page_number(c.name), c.number) << c.name;
    EXPECT_EQ(make_code_page(c.name)->number(), c.number) << c.name;
  }
}

TEST(CodePageTest, UnknownCodePageIsRefusedWithTheSupportedOnes) {
  for (const char* name : {"", "0", "438", "99999999999", "latin1", "932x", "cp", "-932"}) {
    const std::optional<failure> error = failure_of([&] { make_code_page(name); });
    ASSERT_TRUE(error) << name;
    EXPECT_TRUE(error->is(FailureNumber::kInvalidCall)) << name;
    EXPECT_NE(error->description().find(u"932 936 949 950 1250"), std::u16string::npos) << name;
  }
}

TEST(CodePageTest, SystemCodePageKeepsAscii) {
  std::string ascii;
  for (char c = 0; c < 127; ++c) ascii += c;
  EXPECT_EQ(ports().code_page->encode(ports().code_page->decode(ascii)), ascii);
}

TEST(CodePageTest, KnownCharacters) {
  struct Case {
    const char* page;
    std::string bytes;
    std::u16string text;
  };
  const Case cases[] = {
      {"1252", "\x80\xE4\x99", u"\u20AC\u00E4\u2122"},
      {"1251", "\xCF\xF0", u"\u041F\u0440"},
      {"437", "\x82\xE1", u"\u00E9\u00DF"},
      {"850", "\x82\x9D", u"\u00E9\u00D8"},
      {"866", "\x8F\xE0", u"\u041F\u0440"},
      {"10000", "\x8E\xA7", u"\u00E9\u00DF"},
      {"10007", "\x8F\xF0", u"\u041F\u0440"},
      {"10029", "\x8E\x8B", u"\u00E9\u010D"},
      {"874", "\xA1\x80", u"\u0E01\u20AC"},
      {"932", "\x83\x5C\x95\x5C\xB1\\", u"\u30BD\u8868\uFF71\\"},
      {"932", "\x81\x60", u"\uFF5E"},
      {"936", "\xD6\xD0\x80", u"\u4E2D\u20AC"},
      {"949", "\xC7\xD1", u"\uD55C"},
      {"950", "\xA4\xA4\xB3\x5C", u"\u4E2D\u8A31"},
      {"65001", "\xE2\x82\xAC\xF0\x9F\x98\x80", u"\u20AC\U0001F600"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(make_code_page(c.page)->decode(c.bytes), c.text) << c.page;
    EXPECT_EQ(make_code_page(c.page)->encode(c.text), c.bytes) << c.page;
  }
}

TEST(CodePageTest, EveryCharacterOfSingleBytePagesComesBack) {
  for (const char* name : kSingleByte) {
    const std::unique_ptr<CodePage> page = make_code_page(name);
    for (int byte = 0; byte < 256; ++byte) {
      const std::string bytes(1, static_cast<char>(byte));
      ASSERT_EQ(page->decode(bytes).size(), 1u) << name << " byte " << byte;
      // Windows has no character for some bytes and then its own rules.
      if (is_native() || byte < 0x80) {
        EXPECT_EQ(page->encode(page->decode(bytes)), bytes) << name << " byte " << byte;
      }
      EXPECT_FALSE(page->is_lead_byte(static_cast<unsigned char>(byte)));
    }
  }
}

TEST(CodePageTest, EveryCharacterOfDoubleBytePagesComesBack) {
  for (const char* name : kDoubleByte) {
    const std::unique_ptr<CodePage> page = make_code_page(name);
    std::size_t characters = 0;
    std::set<char16_t> seen;
    for (int lead = 0x80; lead < 256; ++lead) {
      if (!page->is_lead_byte(static_cast<unsigned char>(lead))) continue;
      for (int trail = 0; trail < 256; ++trail) {
        const std::string bytes = {static_cast<char>(lead), static_cast<char>(trail)};
        const std::u16string text = page->decode(bytes);
        const std::string again = page->encode(text);
        if (is_native() && is_escape(text[0])) {
          EXPECT_EQ(again, bytes) << name << " invalid " << lead << " " << trail;
          continue;
        }
        if (text.size() != 1) continue;
        ++characters;
        // Two codes of one character: the text stays the same whichever of them is written.
        EXPECT_EQ(page->decode(again), text) << name << " " << lead << " " << trail;
        if (is_native() && seen.insert(text[0]).second && again != bytes) {
          EXPECT_TRUE(std::string(name) == "932" || std::string(name) == "950") << name << " " << lead << " " << trail;
        }
      }
    }
    EXPECT_GT(characters, 9000u) << name;
  }
}

TEST(CodePageTest, LeadBytes) {
  const std::unique_ptr<CodePage> japanese = make_code_page("932");
  for (int byte = 0; byte < 256; ++byte) {
    const auto value = static_cast<unsigned char>(byte);
    EXPECT_EQ(japanese->is_lead_byte(value), (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC)) << byte;
    for (const char* name : {"936", "949", "950"})
      EXPECT_EQ(make_code_page(name)->is_lead_byte(value), byte >= 0x81 && byte <= 0xFE) << name << " " << byte;
    EXPECT_FALSE(make_code_page("utf-8")->is_lead_byte(value));
  }
}

TEST(CodePageTest, MissingCharacterBecomesQuestionMark) {
  EXPECT_EQ(make_code_page("1252")->encode(u"a\u4E2Db"), "a?b");
  EXPECT_EQ(make_code_page("932")->encode(u"\u0E01x"), "?x");
  if (is_native()) {
    EXPECT_EQ(make_code_page("1252")->encode(u"a\U0001F600b"), "a?b");
  }
}

TEST(CodePageTest, AnyBytesComeBackNatively) {
  if (!is_native()) GTEST_SKIP() << "the system's own replacement rules hold here";
  std::mt19937 random(7);
  for (const char* name : {"utf-8", "874", "936", "949", "1252", "1255", "1258"}) {
    const std::unique_ptr<CodePage> page = make_code_page(name);
    for (int round = 0; round < 200; ++round) {
      std::string bytes(random() % 40, '\0');
      for (char& c : bytes) c = static_cast<char>(random());
      EXPECT_EQ(page->encode(page->decode(bytes)), bytes) << name;
    }
  }
}

TEST(CodePageTest, LeadByteAtTheEndComesBackNatively) {
  if (!is_native()) GTEST_SKIP() << "the system's own replacement rules hold here";
  for (const char* name : kDoubleByte)
    EXPECT_EQ(make_code_page(name)->encode(make_code_page(name)->decode("a\x81")), "a\x81");
}

TEST(CodePageTest, EmptyTexts) {
  for (const char* name : {"1252", "932", "utf-8"}) {
    EXPECT_EQ(make_code_page(name)->decode(""), u"");
    EXPECT_EQ(make_code_page(name)->encode(u""), "");
  }
}

// The definition that incomplete_tail() must agree with: walk the characters from the start.
std::size_t tail_by_walking(const std::string& text, std::size_t cut, const std::vector<std::size_t>& starts) {
  std::size_t last = 0;
  for (const std::size_t start : starts)
    if (start <= cut) last = start;
  return cut == text.size() ? 0 : cut - last;
}

TEST(CodePageTest, IncompleteTailAtEveryCut) {
  struct Case {
    const char* page;
    std::vector<std::string> characters;
  };
  const Case cases[] = {
      {"932", {"a", "\x83\x5C", "\x81\x81", "\xB1", "\x95\x7C", "\x81\x9F", "\xE0\xE0", "\\", "\xFC\x4B"}},
      {"936", {"\xD6\xD0", "\xB0\xA1", "a", "\x81\x40"}},
      {"949", {"\xC7\xD1", "x", "\x81\x41"}},
      {"950", {"\xA4\xA4", "\xB3\x5C", "\xB3\x7C", "{"}},
      {"65001",
       {"a", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"}},
      {"1252", {"a", "\x81", "\xE4", "\xFF"}},
  };
  for (const Case& c : cases) {
    const std::unique_ptr<CodePage> page = make_code_page(c.page);
    std::string text;
    std::vector<std::size_t> starts;
    for (int round = 0; round < 3; ++round)
      for (const std::string& character : c.characters) {
        starts.push_back(text.size());
        text += character;
      }
    starts.push_back(text.size());
    for (std::size_t cut = 0; cut <= text.size(); ++cut)
      EXPECT_EQ(page->incomplete_tail(std::string_view(text).substr(0, cut)), tail_by_walking(text, cut, starts))
          << c.page << " cut at " << cut;
  }
}

TEST(CodePageTest, IncompleteTailOfInvalidUtf8IsNothing) {
  const std::unique_ptr<CodePage> page = make_code_page("utf-8");
  for (const std::string bytes : {"\x80", "\xBF\xBF\xBF\xBF", "\xFF", "\xC0", "\xC1", "\xF5", "\xE0\x80", "\xED\xA0",
                                  "\xF0\x80", "\xF4\x90", "a\x80", "\xE2\x28"})
    EXPECT_EQ(page->incomplete_tail(bytes), 0u);
  EXPECT_EQ(page->incomplete_tail("\xF0\x9F\x98"), 3u);
  EXPECT_EQ(page->incomplete_tail("a\xE2\x82"), 2u);
  EXPECT_EQ(page->incomplete_tail("\xC3"), 1u);
}

TEST(CodePageTest, DecodingBlocksEqualsDecodingTheWhole) {
  std::mt19937 random(11);
  for (const char* name : {"932", "950", "utf-8"}) {
    const std::unique_ptr<CodePage> page = make_code_page(name);
    const std::u16string text = name[0] == '9' ? u"\u4E2Dab\u8868\u4E00\\\u4E8C" : u"\u4E2Da\u00E4\U0001F600b";
    std::string bytes;
    for (int i = 0; i < 20; ++i) bytes += page->encode(text);
    for (int round = 0; round < 50; ++round) {
      std::u16string decoded;
      std::string carried;
      for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t size = std::min<std::size_t>(1 + random() % 7, bytes.size() - at);
        carried += bytes.substr(at, size);
        at += size;
        const std::size_t tail = page->incomplete_tail(carried);
        EXPECT_LE(tail, 3u);
        decoded += page->decode(std::string_view(carried).substr(0, carried.size() - tail));
        carried.erase(0, carried.size() - tail);
      }
      EXPECT_TRUE(carried.empty());
      EXPECT_EQ(decoded, page->decode(bytes)) << name;
    }
  }
}

}  // namespace
}  // namespace kavo::test
