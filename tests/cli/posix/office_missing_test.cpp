// The Office verbs where LibreOffice, or the engine that drives it, is not there: copies of the command in folders of
// their own.
#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/wait.h>

#include <filesystem>

#include "cli/run_kavo.h"
#include "platform/files.h"

namespace kavo::test {
namespace {

class OfficeMissing : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::copy_file(KAVO_PROGRAM, path(u"kavo"));
    folder.write(u"a.doc", "any");
  }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  // The exit code and what the command writes.
  Ran convert() {
    FILE* const pipe = ::popen(("'" + path(u"kavo") + "' word to-rtf '" + path(u"a.doc") + "' 2>&1").c_str(), "r");
    Ran ran;
    for (int c = 0; (c = ::fgetc(pipe)) != EOF;) ran.errors += static_cast<char>(c);
    const int status = ::pclose(pipe);
    ran.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return ran;
  }
  TempFolder folder;
};

TEST_F(OfficeMissing, ACommandWithoutTheEngineSaysWhatToInstallAndThatItMustBeBuiltAgain) {
  const Ran ran = convert();
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("Word.Application is served by LibreOffice: this kavo was built without it; install "
                            "libreoffice-dev, libreoffice-writer-nogui, libreoffice-impress-nogui and "
                            "libreoffice-calc-nogui and build it again"),
            std::string::npos)
      << ran.errors;
  EXPECT_EQ(folder.read(u"a.doc"), "any");
  EXPECT_EQ(folder.entry_count(), 2u);
}

TEST_F(OfficeMissing, AnEngineThatCannotBeLoadedSaysWhatToInstall) {
  folder.write(u"libkavo_office_engine.so", "no library");
  const Ran ran = convert();
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("Word.Application is served by LibreOffice: install libreoffice-writer-nogui, "
                            "libreoffice-impress-nogui and libreoffice-calc-nogui ("),
            std::string::npos)
      << ran.errors;
  EXPECT_EQ(folder.entry_count(), 3u);
}

}  // namespace
}  // namespace kavo::test
