// Real scripts and generated ones on the whole way, unchanged and translated.
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "platform/unicode.h"
#include "suite/rc_filter_property.h"
#include "support/corpus.h"
#include "support/tries.h"

namespace kavo::test {
namespace {

TEST(RcFilterCorpus, RealScriptsSurvive) {
  const std::vector<std::u16string> scripts = corpus_files(u"rc", {u"rc"});
  if (scripts.empty()) GTEST_SKIP() << kNoCorpus;
  std::size_t texts = 0;
  for (const std::u16string& path : scripts) {
    SCOPED_TRACE(to_utf8(path));
    std::size_t text_count = 0;
    const bool is_german = path.find(u"deu_") != std::u16string::npos;
    const bool is_chinese = path.find(u"cht_") != std::u16string::npos;
    const std::u16string_view language = is_german ? u"DE" : is_chinese ? u"ZH-TW" : u"EN-US";
    EXPECT_EQ(broken_rc_property(read_whole(path), 1252, &text_count, language), "");
    EXPECT_GT(text_count, 0u);
    std::printf("%s: %zu texts\n", to_utf8(path).c_str(), text_count);
    texts += text_count;
  }
  std::printf("%zu scripts, %zu texts\n", scripts.size(), texts);
}

// Scripts of pieces that meet in every order.
TEST(RcFilterProperty, GeneratedScriptsSurvive) {
  const std::string_view pieces[] = {"STRINGTABLE ",
                                     "BEGIN\n",
                                     "END\n",
                                     "{",
                                     "}",
                                     "1 \"ano\"\n",
                                     "2, L\"e \\x20AC\"\n",
                                     "\"",
                                     "\\",
                                     "\"\"",
                                     "D DIALOGEX 0,0,1,1\n",
                                     "CAPTION \"u\"\n",
                                     "FONT 8, \"S\", 0, 0, 1\n",
                                     "LTEXT \"&a\",1,0\n",
                                     "CONTROL \"o\",2,\"Static\",SS_ICON\n",
                                     "M MENU\n",
                                     "POPUP \"e\" ",
                                     "MENUITEM \"i\\tC\",5\n",
                                     "V VERSIONINFO\n",
                                     "VALUE \"K\",\"n\\0\"\n",
                                     "BLOCK \"a\" ",
                                     "LANGUAGE 9, 1\n",
                                     "LANGUAGE 7,1 ",
                                     "#pragma code_page(932)\n",
                                     "#pragma code_page(65001)\n",
                                     "#if A\n",
                                     "#else\n",
                                     "#endif\n",
                                     "# define X \\\n Y\n",
                                     "/* \"c\" ",
                                     "*/",
                                     "// \"d\"\n",
                                     "\n",
                                     "\r\n",
                                     "\r",
                                     "  ",
                                     "R RCDATA ",
                                     "R2 ICON a.ico\n",
                                     "\xC3\xA9",
                                     "\x94\x5C",
                                     "\xFF",
                                     "\\\n",
                                     "%d ",
                                     "L\"",
                                     ",",
                                     "|",
                                     "NOT",
                                     "\\n",
                                     "\\0"};
  std::mt19937 random(20262);
  for (int round = 0; round < tries(1500); ++round) {
    std::string script;
    if (random() % 3 == 0) script = "STRINGTABLE BEGIN 1 \"";
    for (unsigned i = random() % 30; i > 0; --i) script += pieces[random() % std::size(pieces)];
    const BlockSizeScope scope(1 + random() % 64);
    for (const unsigned code_page : {1252u, 65001u, 932u})
      ASSERT_EQ(broken_rc_property(script, code_page), "") << script;
  }
}

}  // namespace
}  // namespace kavo::test
