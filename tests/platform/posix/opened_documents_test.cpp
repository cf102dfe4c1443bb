// What the desktop is asked to open, with a program of the test's own in the place of the desktop's.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "platform/files.h"
#include "platform/ports.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class OpenedDocuments : public testing::Test {
 protected:
  OpenedDocuments() {
    make_script(u"xdg-open", "#!/bin/sh\nprintf '%s' \"$1\" > \"$(dirname \"$0\")/unfinished\"\n"
                             "cd \"$(dirname \"$0\")\" && mv unfinished opened\n");
    setenv("PATH", (path_to_host(folder.path()) + ":" + path_).c_str(), 1);
  }
  ~OpenedDocuments() override { setenv("PATH", path_.c_str(), 1); }

  std::u16string make_script(std::u16string_view name, std::string_view text) const {
    std::u16string script = folder.write(name, text);
    std::filesystem::permissions(to_filesystem_path(script), std::filesystem::perms::owner_exec,
                                 std::filesystem::perm_options::add);
    return script;
  }
  std::string opened() const {
    for (int i = 0; i < 1000; ++i) {
      if (folder.exists(u"opened")) return folder.read(u"opened");
      ports().clock->sleep(0.01);
    }
    return "nothing was opened";
  }

  TempFolder folder;

 private:
  std::string path_ = std::getenv("PATH");
};

TEST_F(OpenedDocuments, AnExecutableDocumentIsOpenedAndNotRun) {
  const std::u16string document =
      make_script(u"page_htm_FR.tud", "#!/bin/sh\ntouch \"$(dirname \"$0\")/was_run\"\n");
  EXPECT_GT(ports().shell->open(document), 31);
  EXPECT_EQ(opened(), path_to_host(document));
  EXPECT_GT(ports().shell->open_as(document, u".xlf"), 31);
  ports().clock->sleep(0.1);
  EXPECT_FALSE(folder.exists(u"was_run"));
}

}  // namespace
}  // namespace kavo::test
