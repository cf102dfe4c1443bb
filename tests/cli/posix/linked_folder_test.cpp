// Files are compared by what they are, not by their names: a folder that is reached through a link has two.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

namespace fs = std::filesystem;

class LinkedFolder : public testing::Test {
 protected:
  LinkedFolder() {
    const fs::path top = to_filesystem_path(folder.path());
    fs::create_directory_symlink(top, top / "link");
    folder.write(u"index.asp", "<html><body><p>Hello <%= name %></p></body></html>\r\n");
    folder.write(u"letter.rtf", "{\\rtf1\\ansi Dear {\\pict\\wmetafile8 0102}\\par}\r\n");
    folder.write(u"book.mif",
                 "<MIFFile 7.00>\r\n<AFrames \r\n <Frame \r\n  <ID 1>\r\n  <ImportObject \r\n=FrameVector\r\n"
                 "&%v\r\n=EndInset\r\n  >\r\n >\r\n>\r\n");
  }
  std::map<std::string, std::string> all_files() const {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(to_filesystem_path(folder.path())))
      if (entry.is_regular_file())
        files[entry.path().filename().string()] = read_file(path_from_host(entry.path().string()));
    return files;
  }
  const TempFolder folder;
};

TEST_F(LinkedFolder, NoVerbWritesOverItsOwnInputs) {
  ASSERT_EQ(run_kavo({"prepare", "index.asp", "--source", "EN-US", "--target", "FR"}, &folder).code, 0);
  const auto before = all_files();
  const std::string tud = "index_asp_htm_FR.tud";
  std::vector<std::vector<std::string>> commands{
      {"rtf", "extract", "--overwrite", "--objects", "link/letter.rtf", "letter.rtf"},
      {"mif", "remove-objects", "--overwrite", "--objects", "link/book.mif", "book.mif"}};
  for (const std::string& input : {tud, tud + ".skl", std::string("index_asp_scr_FR.tud")}) {
    ASSERT_TRUE(before.contains(input));
    commands.push_back({"rebuild", "--overwrite", "--output", "link/" + input, tud});
    commands.push_back({"export", "--overwrite", "--to", "link/" + input, tud});
  }
  for (const auto& command : commands) {
    const Ran ran = run_kavo(command, &folder);
    EXPECT_EQ(ran.code, 1) << command[0] << ' ' << command[3] << ran.output;
    EXPECT_FALSE(ran.errors.empty());
    EXPECT_EQ(all_files(), before) << command[0] << ' ' << command[3];
  }
}

}  // namespace
}  // namespace kavo::test
