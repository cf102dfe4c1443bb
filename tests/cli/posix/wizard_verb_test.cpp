// The wizard in the terminal, from the first question to the bilingual document.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class WizardCommand : public testing::Test {
 protected:
  Ran type(std::string_view lines, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), "wizard");
    return run_kavo_typing(arguments, lines, folder);
  }
  TempFolder folder;
};

TEST_F(WizardCommand, EmptyLinesTakeWhatIsOfferedAndPrepareTheFile) {
  folder.write(u"index.htm", "<p>Hello <b>world</b></p>\r\n");
  const Ran ran = type("\n\n\n\n\n\n\n\n\n\n\n\n", {"index.htm"});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(ran.output, path_to_host(folder.path(u"index_htm_htm_FR.tud")) + "\n" +
                            path_to_host(folder.path(u"index_htm_scr_FR.tud")) + "\n")
      << ran.errors;
  EXPECT_NE(ran.errors.find("== Start translation =="), std::string::npos);
  EXPECT_FALSE(folder.read(u"index_htm_htm_FR.tud").empty());
}

TEST_F(WizardCommand, AFileAndALanguageAreTyped) {
  folder.write(u"note.txt", "Hello world\r\n");
  // The file, no browsing, its language stays, the other one is changed to Danish.
  const Ran ran = type("note.txt\n\n\ny\ndanish\n\n:ok\n:ok\n");
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(ran.output, path_to_host(folder.path(u"note_txt_DA.tud")) + "\n") << ran.errors;
}

TEST_F(WizardCommand, TheEndOfTheInputCancels) {
  const Ran ran = type("");
  EXPECT_EQ(ran.code, 1);
  EXPECT_EQ(ran.output, "");
  EXPECT_NE(ran.errors.find("cancelled"), std::string::npos);
}

TEST_F(WizardCommand, AnUnknownTypeIsSaidWithTheFileAndWhatToDo) {
  folder.write(u"note.foo", "x");
  const Ran ran = type("note.foo\n\n:ok\n");
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("Unrecognised file type"), std::string::npos) << ran.errors;
  EXPECT_NE(ran.errors.find("the type of this file is not known: " + path_to_host(folder.path(u"note.foo")) +
                            ": Please choose"),
            std::string::npos)
      << ran.errors;
}

TEST_F(WizardCommand, AFileThatIsNotThereIsRefusedAtOnce) {
  const Ran ran = type("\n", {"none.htm"});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("none.htm: there is no such file"), std::string::npos);
  EXPECT_EQ(ran.errors.find("=="), std::string::npos) << "nothing was asked";
}

}  // namespace
}  // namespace kavo::test
