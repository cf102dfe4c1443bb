// kavo mif ... and kavo settings as their users see them.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

std::string marker(std::string_view text, std::string_view type = "Index") {
  return "<Marker <MTypeName `" + std::string(type) + "'> <MText `" + std::string(text) + "'>>\n";
}

class MifCommand : public testing::Test {
 protected:
  ~MifCommand() override { run_kavo({"settings", "mif.split=none", "mif.objects=on", "mif.markers=Index"}); }

  std::string put(std::u16string_view name, std::string_view bytes) { return path_to_host(folder.write(name, bytes)); }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  // The JSON objects of a run with --json, one a line.
  static std::vector<nlohmann::json> json(std::vector<std::string> arguments, int expected_code) {
    arguments.push_back("--json");
    const Ran ran = run_kavo(arguments);
    EXPECT_EQ(ran.code, expected_code) << ran.errors;
    std::vector<nlohmann::json> objects;
    for (std::size_t begin = 0; begin < ran.output.size();) {
      const std::size_t end = std::min(ran.output.find('\n', begin), ran.output.size());
      objects.push_back(nlohmann::json::parse(ran.output.substr(begin, end - begin)));
      begin = end + 1;
    }
    return objects;
  }

  TempFolder folder;
};

TEST_F(MifCommand, AllFilesAreOneBatch) {
  const std::string a = put(u"a.mif", marker("pump;valve")), b = put(u"b.mif", marker("valve"));
  const auto extracted = json({"mif", "extract", "--split", "semicolon", a, b}, 0);
  ASSERT_EQ(extracted.size(), 3u);
  EXPECT_EQ(extracted[0]["rows_added"], 2);
  EXPECT_EQ(extracted[1]["rows_added"], 0);
  EXPECT_EQ(extracted[2]["file"], "");
  EXPECT_EQ(extracted[2]["index_rows"], 2);
  EXPECT_EQ(extracted[2]["produced"][0]["file"], path(u"KAVO_ix.mif"));
  std::string index = folder.read(u"KAVO_ix.mif");
  index.replace(index.find("<String `valve'"), 15, "<String `Ventil'");
  put(u"KAVO_ix.mif", index);
  const auto merged = json({"mif", "merge", a, b}, 0);
  ASSERT_EQ(merged.size(), 2u);
  EXPECT_EQ(merged[0]["replaced"], 2);
  EXPECT_EQ(merged[1]["not_found"], 0);
  EXPECT_EQ(folder.read(u"a.mif"), marker("pump;Ventil"));
  EXPECT_EQ(folder.read(u"b.mif"), marker("Ventil"));
}

TEST_F(MifCommand, OptionsOfARunAreNotStored) {
  const std::string a = put(u"a.mif", marker("x;y", "Heading"));
  const auto extracted = json({"mif", "extract", "--markers", "Index, Heading", "--split", "both", a}, 0);
  EXPECT_EQ(extracted[1]["index_rows"], 1);
  json({"mif", "merge", "--markers", "Heading", a}, 0);
  const auto settings = json({"settings"}, 0);
  EXPECT_EQ(settings[0]["settings"]["mif.markers"], "Index");
  EXPECT_EQ(settings[0]["settings"]["mif.split"], "none");
}

TEST_F(MifCommand, StoredOptionsAreUsed) {
  EXPECT_EQ(run_kavo({"settings", "mif.split=both", "mif.markers=Index,Heading", "mif.objects=off"}).output,
            "mif.split=both\nmif.markers=Index,Heading\nmif.objects=off\n");
  const std::string all = run_kavo({"settings"}).output;
  EXPECT_TRUE(
      all.starts_with("mif.split=both\nmif.objects=off\nmif.markers=Index,Heading\noffice.time-limit=default\n"
                      "xls.order=rows\nxls.hidden=on\nxls.formulas=on\nxls.ungroup=off\nxls.tolerance=255\n"
                      "editor.command=\n"
                      "pages.repair=on\npages.extensions=\npages.fragments=\n"
                      "highlight.untranslated=#C00000\nhighlight.fuzzy=#C06000\nhighlight.match=#0000C0\n"
                      "highlight.translated=#007000\n"))
      << all;
  EXPECT_NE(all.find("scripts.offer=likely\n"), std::string::npos) << "the options of the filters follow";
  const std::string a = put(u"a.mif", marker("a:b;c") + marker("x", "Heading"));
  EXPECT_EQ(json({"mif", "extract", a}, 0)[1]["index_rows"], 4);
}

TEST_F(MifCommand, WrongSettings) {
  EXPECT_EQ(run_kavo({"settings", "mif.colour=red"}).code, 2);
  const Ran ran = run_kavo({"settings", "mif.split=always"});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("none, semicolon or both"), std::string::npos);
  EXPECT_EQ(run_kavo({"settings", "mif.split"}).output, "mif.split=none\n");
}

TEST_F(MifCommand, AFileThatCannotBeReadDoesNotStopTheBatch) {
  const std::string a = put(u"a.mif", marker("x"));
  const auto extracted = json({"mif", "extract", path(u"missing.mif"), a}, 1);
  ASSERT_EQ(extracted.size(), 3u);
  EXPECT_EQ(extracted[0]["messages"][0]["number"], 3027);
  EXPECT_EQ(extracted[2]["index_rows"], 1);
  EXPECT_NE(folder.read(u"KAVO_ix.mif").find("`x'"), std::string::npos);
}

TEST_F(MifCommand, MergingWithoutSideFilesFails) {
  const std::string a = put(u"a.mif", marker("x"));
  const auto merged = json({"mif", "merge", a}, 1);
  EXPECT_EQ(merged[0]["result"], 3);
  EXPECT_EQ(merged[0]["messages"].size(), 3u);
  EXPECT_EQ(folder.read(u"a.mif"), marker("x"));
}

TEST_F(MifCommand, ASideFileThatCannotBeReadLeavesTheDocumentsAsTheyWere) {
  const std::string before = marker("x"), a = put(u"a.mif", before), b = put(u"b.mif", before);
  json({"mif", "extract", a, b}, 0);
  std::string index = folder.read(u"KAVO_ix.mif");
  index.replace(index.find("<String `x'"), 11, "<String `X'");
  put(u"KAVO_ix.mif", index);
  const std::string formats = folder.read(u"KAVO_xr.mif");
  const std::u16string side = folder.path(u"KAVO_xr.mif");
  ports().files->remove_file(side);
  for (const char* state : {"missing", "a folder", "there"}) {
    const bool is_there = state == std::string_view("there");
    if (state == std::string_view("a folder")) ports().files->make_folder(side);
    if (is_there) {
      ports().files->remove_folder(side);
      put(u"KAVO_xr.mif", formats);
    }
    SCOPED_TRACE(state);
    const auto merged = json({"mif", "merge", a, b}, is_there ? 0 : 1);
    ASSERT_EQ(merged.size(), 2u);
    for (const auto& file : merged)
      EXPECT_EQ(file["messages"].empty() ? 0 : file["messages"][0]["number"].get<int>(), is_there ? 0 : 3037);
    EXPECT_EQ(folder.read(u"a.mif"), is_there ? marker("X") : before);
    EXPECT_EQ(folder.read(u"b.mif"), is_there ? marker("X") : before);
  }
}

TEST_F(MifCommand, SideFilesCanLieElsewhere) {
  const std::string a = put(u"a.mif", marker("x"));
  folder.make_folder(u"side");
  json({"mif", "extract", "--side-files", path(u"side"), a}, 0);
  EXPECT_TRUE(folder.exists(u"side\\KAVO_va.mif"));
  EXPECT_FALSE(folder.exists(u"KAVO_va.mif"));
  json({"mif", "merge", "--side-files", path(u"side"), a}, 0);
}

TEST_F(MifCommand, ObjectsGoAndReturn) {
  const std::string document = "a\r\n=GIF\r\n&x\r\n=EndInset\r\nb";
  const std::string a = put(u"a.mif", document), b = put(u"b.mif", "no object\n");
  const auto removed = json({"mif", "remove-objects", a, b}, 0);
  ASSERT_EQ(removed.size(), 2u);
  EXPECT_EQ(removed[0]["objects"], 1);
  EXPECT_EQ(removed[1]["objects"], 0);
  EXPECT_EQ(folder.read(u"a.mif"), "a\r\n<KAVOObj 1>\r\nb");
  EXPECT_EQ(json({"mif", "insert-objects", a}, 0)[0]["objects"], 1);
  EXPECT_EQ(folder.read(u"a.mif"), document);
  EXPECT_EQ(run_kavo({"mif", "insert-objects", "--objects", "x", a, b}).code, 2);
}

TEST_F(MifCommand, AFileThatIsNotTheObjectFileIsReplacedOnlyOnRequest) {
  const std::string document = "=GIF\r\n=EndInset\r\n", other = "=PNG\r\n=EndInset\r\n";
  const std::string a = put(u"a.mif", document), b = put(u"b.mif", other);
  const auto refused = json({"mif", "remove-objects", "--objects", b, a}, 1);
  EXPECT_EQ(refused[0]["messages"][0]["number"], 3032);
  EXPECT_EQ(folder.read(u"b.mif"), other);
  EXPECT_EQ(folder.read(u"a.mif"), document);
  json({"mif", "remove-objects", b}, 0);
  // The pictures of b.mif.
  json({"mif", "remove-objects", "--objects", path(u"b.obj"), a}, 1);
  EXPECT_EQ(folder.read(u"a.mif"), document);
  json({"mif", "insert-objects", b}, 0);
  EXPECT_EQ(folder.read(u"b.mif"), other);
  json({"mif", "remove-objects", "--overwrite", "--objects", path(u"b.obj"), a}, 0);
  EXPECT_EQ(folder.read(u"b.obj"), "<KAVOObj 1>\r\n=GIF\r\n=EndInset\r\n<KAVOObj End>\r\n");
}

TEST_F(MifCommand, APlaceholderWithoutItsObjectStaysAndTheCommandFails) {
  const std::string document = "a\r\n=GIF\r\n&x\r\n=EndInset\r\nb\r\n=PNG\r\n=EndInset\r\n";
  const std::string a = put(u"a.mif", document);
  json({"mif", "remove-objects", a}, 0);
  const std::string objects = folder.read(u"a.obj");
  put(u"a.obj", objects.substr(0, objects.find("=PNG")));
  const auto inserted = json({"mif", "insert-objects", a}, 1);
  EXPECT_EQ(inserted[0]["objects"], 1);
  EXPECT_EQ(inserted[0]["missing"], 1);
  EXPECT_EQ(inserted[0]["messages"][0]["number"], 3046);
  EXPECT_EQ(folder.read(u"a.mif"), "a\r\n<KAVOObj 1>\r\nb\r\n<KAVOObj 2>\r\n") << "as it was before the run";
  put(u"a.obj", objects);
  json({"mif", "insert-objects", a}, 0);
  EXPECT_EQ(folder.read(u"a.mif"), document);
}

TEST_F(MifCommand, PreprocessLeavesBackupSideFilesAndAListOfFour) {
  const std::string document = "<MIFFile 7.00>\n" + marker("x");
  const std::string a = put(u"a.mif", document);
  const auto prepared = json({"preprocess", a}, 0);
  ASSERT_EQ(prepared[0]["produced"].size(), 4u);
  EXPECT_EQ(prepared[0]["produced"][0]["file"], a);
  EXPECT_EQ(prepared[0]["produced"][3]["file"], path(u"KAVO_va.mif"));
  EXPECT_EQ(folder.read(u"a.mif.kavo.bak"), document);
}

}  // namespace
}  // namespace kavo::test
