#include "suite/document/coded_text.h"

#include <gtest/gtest.h>

#include "platform/failure.h"

namespace kavo::test {
namespace {

struct HostCase {
  const char* name;
  std::string coded;
  std::u16string host;
};

const HostCase kHostCases[] = {
    {"empty", "", u""},
    {"text", "Hello", u"Hello"},
    {"pair",
     std::string("\x01"
                 "1\x04"
                 "bold\x02"
                 "1\x04"),
     u"<1>bold</1>"},
    {"standalone",
     std::string("a\x03"
                 "12\x04"
                 "b"),
     u"a<12/>b"},
    {"less-than sign is doubled", "a<b", u"a<<b"},
    {"less-than signs in a row", "<<<", u"<<<<<<"},
    {"id of another editor",
     std::string("\x03"
                 "ph-1\x04"),
     u"<ph-1/>"},
    {"beyond the basic plane", "\xF0\x9F\x98\x80", u"\xD83D\xDE00"},
};

TEST(CodedText, HostsSeeTagsAndGiveThemBack) {
  for (const HostCase& c : kHostCases) {
    EXPECT_EQ(to_host_text(c.coded), c.host) << c.name;
    EXPECT_EQ(from_host_text(c.host), c.coded) << c.name;
  }
}

TEST(CodedText, ATextThatIsNotATagIsRefused) {
  for (const char16_t* text : {u"a<", u"<1", u"< 1>", u"<>", u"</>", u"</1/>", u"<a b>", u"<1<2>"})
    EXPECT_THROW(from_host_text(text), failure) << testing::PrintToString(text);
}

std::string coded(std::u16string_view host) { return from_host_text(host); }

TEST(CodedText, CodeProblems) {
  struct Case {
    const char* name;
    const char16_t* source;
    const char16_t* target;
    const char* problem;
  };
  const Case cases[] = {
      {"same", u"<1>a</1><2/>", u"<1>b</1><2/>", ""},
      {"reordered", u"<1>a</1><2/>", u"<2/><1>b</1>", ""},
      {"missing", u"<1/><2/>", u"<1/>", "code 2 is missing"},
      {"doubled", u"<1/>", u"<1/><1/>", "code 1 is doubled"},
      {"unknown", u"a", u"<7/>", "code 7 is not in the source text"},
      {"never closed", u"<1>a</1>", u"<1>a", "code 1 is never closed"},
      {"closed first", u"<1>a</1>", u"</1>a<1>", "code 1 is closed before it is opened"},
      {"crossing", u"<1>a</1><2>b</2>", u"<1>a<2>b</1></2>", "code 1 crosses another one"},
  };
  for (const Case& c : cases) EXPECT_EQ(code_problem(coded(c.source), coded(c.target)), c.problem) << c.name;
  EXPECT_EQ(code_problem(coded(u"<1/><2/>"), coded(u"<2/>"), true), "");
  EXPECT_NE(code_problem(coded(u"<1/>"), coded(u"<1/><1/>"), true), "");
}

TEST(CodedText, PlainTextLeavesTheCodesOut) { EXPECT_EQ(plain_text(coded(u"<1>a</1>b<2/>c")), "abc"); }

TEST(CodedText, AReferenceThatIsCutEndsWithTheText) {
  CodedTextReader reader(
      "a\x03"
      "12");
  CodedPart part;
  ASSERT_TRUE(reader.next(part));
  EXPECT_EQ(part.text, "a");
  ASSERT_TRUE(reader.next(part));
  EXPECT_EQ(part.text, "12");
  EXPECT_FALSE(reader.next(part));
}

}  // namespace
}  // namespace kavo::test
