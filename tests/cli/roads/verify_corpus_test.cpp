// Real documents on the whole road, by the command that proves it.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "support/corpus.h"

namespace kavo::test {
namespace {

// Documents that cannot pass, and why.
const std::map<std::string, const char*> kCannotPass = {
    {"wcs_cht_dictpad.rc", "its language is Chinese, not English"},
    {"wcs_deu_dictpad.rc", "its language is German, not English"},
};

TEST(VerifyCorpus, RealDocumentsSurviveTheWholeRoad) {
  if (!corpus_folder()) GTEST_SKIP() << kNoCorpus;
  struct Kind {
    const char16_t* folder;
    const char16_t* extension;
  };
  const Kind kinds[] = {{u"asp", u"asp"}, {u"jsp", u"jsp"}, {u"html", u"htm"}, {u"html", u"html"},
                        {u"mif", u"mif"}, {u"txt", u"txt"}, {u"rc", u"rc"},    {u"rtf", u"rtf"}};
  for (const Kind& kind : kinds) {
    std::vector<std::string> arguments{"verify", "--json", "--progress", "none"};
    std::size_t exceptions = 0;
    for (const std::u16string& file : corpus_files(kind.folder, {kind.extension}))
      arguments.push_back(path_to_host(file));
    const std::size_t count = arguments.size() - 4;
    ASSERT_GT(count, 0u) << to_utf8(kind.extension);
    std::size_t passed = 0;
    std::uint64_t texts = 0;
    std::istringstream lines(run_kavo(arguments).output);
    for (std::string line; std::getline(lines, line);) {
      const auto told = nlohmann::json::parse(line);
      const std::string file = told["file"];
      if (file.empty()) continue;
      const std::string name = file.substr(file.find_last_of("/\\") + 1);
      const auto exception = kCannotPass.find(name);
      if (told["done"] == true) {
        ++passed;
        texts += told["texts"].get<std::uint64_t>();
        EXPECT_EQ(exception, kCannotPass.end()) << name << " passes now";
      } else if (exception != kCannotPass.end()) {
        ++exceptions;
        std::printf("%s cannot pass: %s\n", name.c_str(), exception->second);
      } else {
        ADD_FAILURE() << line;
      }
    }
    EXPECT_EQ(passed + exceptions, count) << to_utf8(kind.extension);
    std::printf(".%s: %zu of %zu documents, %llu texts\n", to_utf8(kind.extension).c_str(), passed, count,
                static_cast<unsigned long long>(texts));
  }
}

}  // namespace
}  // namespace kavo::test
