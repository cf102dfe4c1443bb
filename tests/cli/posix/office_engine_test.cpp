// The Office verbs with another engine beside the command, or none: copies of the command in folders of their own.
#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/wait.h>

#include <filesystem>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kEngine = u"libkavo_office_engine.so";

class OfficeEngine : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::copy_file(KAVO_PROGRAM, path(u"kavo"));
    folder.write(u"a.doc", "any");
  }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  // The exit code and what the command writes.
  Ran run(const std::string& arguments, const std::string& environment = "") {
    FILE* const pipe = ::popen((environment + " '" + path(u"kavo") + "' " + arguments + " 2>&1").c_str(), "r");
    Ran ran;
    for (int c = 0; (c = ::fgetc(pipe)) != EOF;) ran.errors += static_cast<char>(c);
    const int status = ::pclose(pipe);
    ran.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return ran;
  }
  Ran convert() { return run("word to-rtf '" + path(u"a.doc") + "'"); }
  TempFolder folder;
};

TEST_F(OfficeEngine, ACommandWithoutTheEngineSaysWhatToInstallAndThatItMustBeBuiltAgain) {
  const Ran ran = convert();
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("Word.Application is served by LibreOffice: the engine is missing; install the package "
                            "kavo-office, or, where kavo was built from its source, libreoffice-dev, "
                            "libreoffice-writer-nogui, libreoffice-impress-nogui and libreoffice-calc-nogui, and build "
                            "it again"),
            std::string::npos)
      << ran.errors;
  EXPECT_EQ(folder.read(u"a.doc"), "any");
  EXPECT_EQ(folder.entry_count(), 2u);
}

TEST_F(OfficeEngine, AnEngineThatCannotBeLoadedSaysWhatToInstall) {
  folder.write(kEngine, "no library");
  const Ran ran = convert();
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("Word.Application is served by LibreOffice: install libreoffice-writer-nogui, "
                            "libreoffice-impress-nogui and libreoffice-calc-nogui ("),
            std::string::npos)
      << ran.errors;
  EXPECT_EQ(folder.entry_count(), 3u);
}

struct Conversion {
  const char* verb;
  std::u16string source;
  std::u16string target;
};

class OfficeStandIn : public OfficeEngine, public testing::WithParamInterface<Conversion> {
 protected:
  void SetUp() override {
    OfficeEngine::SetUp();
    std::filesystem::copy_file(KAVO_STANDIN_ENGINE, path(kEngine));
    folder.write(GetParam().source, "source");
    folder.write(GetParam().target, "mine");
    entries_ = folder.entry_count();
  }
  // True for verbs that import into an existing document, which needs no option.
  static bool imports() {
    const std::string verb = GetParam().verb;
    return verb.ends_with("to-ppt") || verb.ends_with("to-xls");
  }
  Ran convert(const std::string& mode) {
    return run(GetParam().verb + std::string(imports() ? "" : " --overwrite") + " '" + path(GetParam().source) + "'",
               "KAVO_STANDIN='" + mode + "'");
  }
  std::size_t entries_ = 0;
};

TEST_P(OfficeStandIn, AConversionThatFailsHalfWayLeavesTheOlderResultAndTheDocument) {
  const Ran ran = convert("fails");
  EXPECT_EQ(ran.code, 1);
  EXPECT_EQ(ran.errors, path(GetParam().source) + ": The program gave up\n");
  EXPECT_EQ(folder.read(GetParam().target), "mine");
  EXPECT_EQ(folder.read(GetParam().source), "source");
  EXPECT_EQ(folder.entry_count(), entries_);
}

// An import changes an existing file, so only an export can make nothing.
TEST_P(OfficeStandIn, AnExportThatMakesNothingFails) {
  const Ran ran = convert("makes nothing");
  EXPECT_EQ(ran.code, imports() ? 0 : 1);
  EXPECT_EQ(ran.errors.find(" refused the file") != std::string::npos, !imports()) << ran.errors;
  EXPECT_EQ(folder.read(GetParam().target), imports() ? "mine saved" : "mine");
  EXPECT_EQ(folder.read(GetParam().source), "source");
  EXPECT_EQ(folder.entry_count(), entries_);
}

TEST_P(OfficeStandIn, AConversionThatSucceedsReplacesTheOlderResult) {
  const Ran ran = convert("works");
  EXPECT_EQ(ran.code, 0) << ran.errors;
  const std::string verb = GetParam().verb;
  EXPECT_EQ(folder.read(GetParam().target), imports() ? "whole saved" : "whole");
  EXPECT_EQ(folder.read(GetParam().source), verb.ends_with("to-xml") ? "source saved" : "source");
  EXPECT_EQ(folder.entry_count(), entries_);
}

TEST_P(OfficeStandIn, AReadOnlyDocumentIsNotChanged) {
  const std::u16string& document = imports() ? GetParam().target : GetParam().source;
  ports().files->set_read_only(folder.path(document), true);
  const Ran ran = convert("works");
  EXPECT_EQ(ran.code, imports() ? 1 : 0) << ran.errors;
  EXPECT_EQ(ran.errors.find(" is read-only: ") != std::string::npos, imports()) << ran.errors;
  EXPECT_EQ(folder.read(document), imports() ? "mine" : "source");
  EXPECT_EQ(folder.entry_count(), entries_);
}

INSTANTIATE_TEST_SUITE_P(All, OfficeStandIn,
                         testing::Values(Conversion{"word to-rtf", u"report.doc", u"report_doc.rtf"},
                                         Conversion{"word to-doc", u"report_doc.rtf", u"report.doc"},
                                         Conversion{"powerpoint to-xml", u"deck.ppt", u"deck_ppt.xml"},
                                         Conversion{"powerpoint to-ppt", u"deck_ppt.xml", u"deck.ppt"},
                                         Conversion{"excel to-xml", u"book.xls", u"book_xls.xml"},
                                         Conversion{"excel to-xls", u"book_xls.xml", u"book.xls"}));

TEST_F(OfficeEngine, TextsWithoutTheirDocumentAreNamed) {
  std::filesystem::copy_file(KAVO_STANDIN_ENGINE, path(kEngine));
  folder.write(u"deck_ppt.xml", "texts");
  const Ran ran = run("powerpoint to-ppt '" + path(u"deck_ppt.xml") + "'");
  EXPECT_EQ(ran.code, 1);
  EXPECT_EQ(ran.errors, path(u"deck_ppt.xml") + ": There is no " + path(u"deck.ppt") + " for these texts\n");
}

}  // namespace
}  // namespace kavo::test
