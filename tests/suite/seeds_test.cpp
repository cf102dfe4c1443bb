// Replays the fuzzers' seeds: every build checks what a fuzzer would start from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "suite/mif_filter_property.h"
#include "suite/office_xml_filter_property.h"
#include "suite/rc_filter_property.h"
#include "suite/rtf_filter_property.h"
#include "suite/script_filter_property.h"
#include "suite/text_filter_property.h"
#include "suite/tud_property.h"

namespace kavo::test {
namespace {

template <class Property>
void replay(const std::string& folder, std::size_t least, Property holds) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    std::string input((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    ASSERT_FALSE(input.empty()) << entry.path();
    ++count;
    for (const char block : {'\x00', '\x01', '\x06', '\x3F'}) {
      input[0] = block;
      EXPECT_EQ(holds(input), "") << entry.path() << " with blocks of " << block + 1;
    }
  }
  EXPECT_GE(count, least);
}

TEST(SuiteSeeds, BilingualDocuments) { replay(KAVO_SUITE_SEEDS "/tud", 8, broken_tud_property); }
TEST(SuiteSeeds, RtfDocuments) { replay(KAVO_SUITE_SEEDS "/rtf_filter", 8, broken_rtf_filter_property); }
TEST(SuiteSeeds, MifDocuments) { replay(KAVO_SUITE_SEEDS "/mif_filter", 10, broken_mif_filter_property); }
TEST(SuiteSeeds, OfficeXml) { replay(KAVO_SUITE_SEEDS "/office_xml_filter", 8, broken_office_xml_property); }
TEST(SuiteSeeds, ResourceScripts) { replay(KAVO_SUITE_SEEDS "/rc_filter", 8, broken_rc_filter_property); }
TEST(SuiteSeeds, ScriptFiles) { replay(KAVO_SUITE_SEEDS "/script_filter", 8, broken_script_filter_property); }
TEST(SuiteSeeds, Lexers) {
  using script::Language;
  const std::pair<const char*, Language> lexers[] = {{"vbscript", Language::kVbScript},
                                                     {"javascript", Language::kJavaScript},
                                                     {"java", Language::kJava},
                                                     {"php", Language::kPhp},
                                                     {"plain", Language::kUnknown}};
  for (const auto& [name, language] : lexers)
    replay(KAVO_SUITE_SEEDS "/" + std::string(name) + "_lexer", 2,
           [=](std::string_view input) { return broken_lexer_property(language, input); });
}
TEST(SuiteSeeds, Texts) { replay(KAVO_SUITE_SEEDS "/text_filter", 8, broken_text_filter_property); }

}  // namespace
}  // namespace kavo::test
