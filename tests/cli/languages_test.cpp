// Languages on the command line, and documents that were prepared for one that does not exist.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr std::string_view kPage =
    "<html lang=\"en\"><body><p>Hello <%= name %></p>\r\n<% MsgBox \"Hi\" %>\r\n</body></html>\r\n";
// With a variable, which is collected whatever markers the user's settings select.
constexpr std::string_view kManual =
    "<MIFFile 7.00>\r\n<VariableFormats \r\n <VariableFormat \r\n  <VariableName `Product'>\r\n"
    "  <VariableDef `Apple'>\r\n >\r\n>\r\n<TextFlow \r\n <Para \r\n  <ParaLine \r\n   <String `Text'>\r\n"
    "  >\r\n >\r\n>\r\n";

class Languages : public testing::Test {
 protected:
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  static Ran prepare(const std::string& file, const std::string& source, const std::string& target) {
    return run_kavo({"prepare", file, "--source", source, "--target", target, "--code-page", "utf-8"});
  }
  void replace_in(const std::u16string& name, const std::string& from, const std::string& to) {
    std::string bytes = folder.read(name);
    for (std::size_t at = 0; (at = bytes.find(from, at)) != std::string::npos; at += to.size())
      bytes.replace(at, from.size(), to);
    folder.write(name, bytes);
  }
  // Gives every bilingual document and skeleton another language, in its name and inside, as a person would.
  std::vector<std::string> relabel(const std::string& from, const std::string& to) {
    std::vector<std::string> renamed;
    for (std::u16string name : ports().files->find(folder.path(u"*_" + to_utf16(from) + u".tud*"))) {
      const std::u16string old = name;
      name.replace(name.rfind(to_utf16(from)), from.size(), to_utf16(to));
      ports().files->rename_file(folder.path(old), folder.path(name));
      renamed.push_back(to_utf8(old));
      if (!name.ends_with(u".tud")) continue;
      replace_in(name, "target-language=" + from, "target-language=" + to);
      replace_in(name, "target-language=\"" + to_utf8(ascii_lower(to_utf16(from))),
                 "target-language=\"" + to_utf8(ascii_lower(to_utf16(to))));
    }
    return renamed;
  }
  // `tud` is the main document's name without its language; `relabelled` files carry the language in their names.
  void expect_repair(std::u16string_view document, std::string_view bytes, const std::u16string& tud,
                     std::u16string_view rebuilt, std::size_t relabelled) {
    ASSERT_EQ(prepare(path_to_host(folder.write(document, bytes)), "EN-US", "DE").code, 0);
    for (const std::u16string& each : ports().files->find(folder.path(u"*_DE.tud")))
      ASSERT_EQ(run_kavo({"pseudo", path(each)}).code, 0);
    ASSERT_EQ(run_kavo({"rebuild", path(tud + u"DE.tud")}).code, 0);
    const std::string expected = folder.read(rebuilt);
    ports().files->remove_file(folder.path(rebuilt));

    // As older versions prepared it.
    EXPECT_EQ(relabel("DE", "GERMAN").size(), relabelled);
    const std::size_t entries = folder.entry_count();
    const Ran refused = run_kavo({"rebuild", path(tud + u"GERMAN.tud")});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(refused.output, "");
    EXPECT_EQ(folder.entry_count(), entries);
    for (const char* part : {"language GERMAN", "DE, German", "inside the .tud files in target-language"})
      EXPECT_NE(refused.errors.find(part), std::string::npos) << refused.errors;

    const std::vector<std::string> renamed = relabel("GERMAN", "DE");
    EXPECT_EQ(renamed.size(), relabelled);
    for (const std::string& file : renamed)
      EXPECT_NE(refused.errors.find(file), std::string::npos) << file << " in: " << refused.errors;
    const Ran ran = run_kavo({"rebuild", path(tud + u"DE.tud")});
    EXPECT_EQ(ran.code, 0) << ran.errors;
    EXPECT_EQ(folder.read(rebuilt), expected);
  }
  TempFolder folder;
};

TEST_F(Languages, CodesAndTagsAreTaken) {
  const std::string document = path_to_host(folder.write(u"a.txt", "One\n"));
  const struct {
    const char* target;
    const char16_t* tud;
  } cases[] = {
      {"FR", u"a_txt_FR.tud"}, {"de-at", u"a_txt_DE-AT.tud"},           {"zh-Hant-TW", u"a_txt_ZH-TW.tud"},
      {"nb", u"a_txt_NB.tud"}, {"sr-Latn-RS", u"a_txt_SR-LATN-RS.tud"}, {"iw", u"a_txt_HE.tud"},
  };
  for (const auto& test : cases) {
    const Ran ran = prepare(document, "en-US", test.target);
    EXPECT_EQ(ran.code, 0) << ran.errors;
    EXPECT_EQ(ran.output, path(test.tud) + "\n");
    EXPECT_NE(folder.read(test.tud).find("source-language=\"en-US\""), std::string::npos);
  }
  EXPECT_EQ(run_kavo({"verify", document, "--source", "en-us", "--target", "pt-BR"}).code, 0);
}

TEST_F(Languages, OthersAreWrongUsageAndNothingIsDone) {
  const std::string document = path_to_host(folder.write(u"index.asp", kPage));
  const struct {
    const char* verb;
    const char* option;
    const char* value;
    const char* message;
  } cases[] = {
      {"prepare", "--target", "GERMAN",
       "--target: GERMAN is not a language that the suite knows; did you mean DE (German)?"},
      {"prepare", "--source", "XX", "--source: XX is not a language that the suite knows"},
      {"verify", "--target", "FR,DE", "--target: FR,DE is a list; each run takes one language"},
      {"prepare", "--target", "FR,GERMAN",
       "--target: GERMAN is not a language that the suite knows; did you mean DE (German)?"},
      {"prepare", "--target", "FR,,DE", "--target: a language is missing"},
      {"prepare", "--target", "", "--target: a language is missing"},
      {"prepare", "--target-code-page", "77", "--target-code-page: Unknown code page \"77\""},
      {"prepare", "--target-code-page", "latin", "--target-code-page: Unknown code page \"latin\""},
      {"verify", "--source", "XX", "--source: XX is not a language that the suite knows"},
      {"verify", "--target", "Frensh",
       "--target: Frensh is not a language that the suite knows; did you mean FR (French)"},
  };
  for (const auto& test : cases) {
    std::vector<std::string> arguments{test.verb, document, test.option, test.value};
    for (const char* required : {"--source", "--target"})
      if (std::string(required) != test.option) arguments.insert(arguments.end(), {required, "EN-US"});
    const Ran ran = run_kavo(arguments);
    EXPECT_EQ(ran.code, 2) << test.value;
    EXPECT_NE(ran.errors.find(test.message), std::string::npos) << ran.errors;
    EXPECT_EQ(ran.output, "");
  }
  EXPECT_EQ(folder.entry_count(), 1u);
}

TEST_F(Languages, APagePreparedForAnUnknownLanguageIsRepairedAsTheMessageSays) {
  expect_repair(u"index.asp", kPage, u"index_asp_htm_", u"index_DE.asp", 4);
}

TEST_F(Languages, AManualPreparedForAnUnknownLanguageIsRepairedAsTheMessageSays) {
  expect_repair(u"manual.mif", kManual, u"manual_mif_", u"manual_DE.mif", 8);
}

// Documents' names have codes: the way back does not know tags.
TEST_F(Languages, ADocumentNamedForATagIsRefusedToo) {
  ASSERT_EQ(prepare(path_to_host(folder.write(u"index.asp", kPage)), "EN-US", "ZH-TW").code, 0);
  relabel("ZH-TW", "ZH-HANT-TW");
  const std::size_t entries = folder.entry_count();
  const Ran ran = run_kavo({"rebuild", path(u"index_asp_htm_ZH-HANT-TW.tud")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("such as ZH-TW, in the place of ZH-HANT-TW"), std::string::npos) << ran.errors;
  EXPECT_EQ(folder.entry_count(), entries);
}

TEST_F(Languages, AnUnknownLanguageDoesNoHarmToAText) {
  ASSERT_EQ(prepare(path_to_host(folder.write(u"a.txt", "One\n")), "EN-US", "DE").code, 0);
  relabel("DE", "GERMAN");
  EXPECT_EQ(run_kavo({"rebuild", path(u"a_txt_GERMAN.tud")}).code, 0);
  EXPECT_EQ(folder.read(u"a_GERMAN.txt"), "One\n");
}

}  // namespace
}  // namespace kavo::test
