// kavo edit, with the command itself as the editor: what it was started with can be seen from what it wrote.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class EditCommand : public testing::Test {
 protected:
  ~EditCommand() override { set_editor(""); }
  static void set_editor(const std::string& command) {
    EXPECT_EQ(run_kavo({"settings", "editor.command=" + command}).code, 0);
  }
  // The command does not wait for started programs, so the test waits for what they leave. It never opens the file,
  // because Windows replaces none that is open.
  bool appears(std::u16string_view name, std::string_view instead_of = "") const {
    for (int i = 0; i < 1000; ++i) {
      const auto info = ports().files->info(folder.path(name));
      if (info && info->size != instead_of.size()) return true;
      ports().clock->sleep(0.01);
    }
    return false;
  }
  std::string document() {
    const std::string text = path_to_host(folder.write(u"a b.txt", "One\n"));
    EXPECT_EQ(run_kavo({"prepare", text, "--source", "EN", "--target", "FR"}).code, 0);
    return path_to_host(folder.path(u"a b_txt_FR.tud"));
  }
  TempFolder folder;
};

TEST_F(EditCommand, StartsTheEditorOfTheSettingOnTheDocument) {
  const std::string tud = document();
  set_editor("\"" KAVO_PROGRAM "\" export %1");
  const Ran ran = run_kavo({"edit", tud});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_TRUE(appears(u"a b_txt_FR.xlf"));
}

TEST_F(EditCommand, NamesTheMemory) {
  const std::string tud = document();
  set_editor("\"" KAVO_PROGRAM "\" export %1 --overwrite --to %2");
  const std::string memory = path_to_host(folder.write(u"m m.tmx", "a memory"));
  EXPECT_EQ(run_kavo({"edit", tud, "--memory", memory}).code, 0);
  EXPECT_TRUE(appears(u"m m.tmx", "a memory"));
}

TEST_F(EditCommand, ANameWithQuotesStaysOneArgument) {
  if (!is_native()) GTEST_SKIP() << "no file on Windows can have a quotation mark in its name";
  const std::string tud = document();
  const std::u16string hostile = u"a\" --to \"evil";
  folder.write(hostile + u".tud", read_file(folder.path(u"a b_txt_FR.tud")));
  set_editor("\"" KAVO_PROGRAM "\" export %1");
  EXPECT_EQ(run_kavo({"edit", path_to_host(folder.path(hostile + u".tud"))}, &folder).code, 0);
  EXPECT_TRUE(appears(hostile + u".xlf"));
  EXPECT_FALSE(folder.exists(u"evil.tud"));
}

TEST_F(EditCommand, TheMemoryHasTheHostsForm) {
  const std::string tud = document();
  set_editor("\"" KAVO_PROGRAM "\" export %1 --to=%2");
  EXPECT_EQ(run_kavo({"edit", tud, "--memory", "m m.tmx"}, &folder).code, 0);
  EXPECT_TRUE(appears(u"m m.tmx"));
}

TEST_F(EditCommand, WhatCannotBeOpenedFails) {
  set_editor("kavo-test-no-such-editor");
  const std::string tud = document();
  for (const std::string& file : {tud, path_to_host(folder.path(u"missing.tud")),
                                  path_to_host(folder.write(u"text.tud", "no bilingual document"))}) {
    const Ran ran = run_kavo({"edit", file});
    EXPECT_EQ(ran.code, 1) << file;
    EXPECT_TRUE(ran.errors.starts_with(file)) << ran.errors;
    EXPECT_EQ(ran.errors.find("kavo-test-no-such-editor") != std::string::npos, file == tud) << ran.errors;
  }
}

}  // namespace
}  // namespace kavo::test
