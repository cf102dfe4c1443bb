// Damaged and hostile bilingual documents, as the command meets them.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class HostileDocument : public testing::Test {
 protected:
  HostileDocument() { folder.write(u"in\\a.txt", "One\nTwo\n"); }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  void prepare() {
    ASSERT_EQ(run_kavo({"prepare", path(u"in\\a.txt"), "--source", "EN-US", "--target", "FR"}).code, 0);
  }
  std::size_t entries_inside() { return ports().files->find(folder.path(u"in\\*")).size(); }
  TempFolder folder;
};

// Every bit is tried where the skeleton is read; here, that the command says so and writes nothing.
TEST_F(HostileDocument, ADamagedSkeletonGivesNoDocument) {
  prepare();
  const std::string whole = folder.read(u"in\\a_txt_FR.tud.skl");
  for (std::size_t bit = 0; bit < whole.size() * 8; bit += 31) {
    std::string damaged = whole;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
    folder.write(u"in\\a_txt_FR.tud.skl", damaged);
    EXPECT_EQ(run_kavo({"rebuild", path(u"in\\a_txt_FR.tud")}).code, 1) << bit;
    EXPECT_FALSE(folder.exists(u"in\\a_FR.txt")) << bit;
  }
  folder.write(u"in\\a_txt_FR.tud.skl", whole);
  EXPECT_EQ(run_kavo({"rebuild", path(u"in\\a_txt_FR.tud")}).code, 0);
}

TEST_F(HostileDocument, NamesLeadNowhereElse) {
  prepare();
  ASSERT_EQ(run_kavo({"export", path(u"in\\a_txt_FR.tud"), "--with-skeleton"}).code, 0);
  folder.write(u"evil.txt", "bait");
  const struct {
    const char* name;
    std::string field;
    std::string value;
  } cases[] = {
      {"target language", ">target-language=FR<", ">target-language=x/../../evil<"},
      {"target language, from Windows", ">target-language=FR<", ">target-language=x\\..\\..\\evil<"},
      {"source document", "original=\"a.txt\"", "original=\"../evil.txt\""},
      {"source document, escaped", "original=\"a.txt\"", "original=\"..%2Fevil.txt\""},
      {"device", "original=\"a.txt\"", "original=\"nul\""},
      {"stream", "original=\"a.txt\"", "original=\"a.txt:b\""},
      {"extension", ">source-format=TXT<", ">source-format=../x<"},
  };
  for (const std::u16string_view file : {u"in\\a_txt_FR.tud", u"in\\a_txt_FR.xlf"}) {
    const std::string whole = folder.read(file);
    for (const auto& c : cases)
      for (const char* verb : {"rebuild", "pseudo", "stats", "export", "import"}) {
        SCOPED_TRACE(path(file) + ", " + verb + ": " + c.name);
        std::string xml = whole;
        ASSERT_NE(xml.find(c.field), std::string::npos);
        xml.replace(xml.find(c.field), c.field.size(), c.value);
        folder.write(file, xml);
        const std::size_t count = entries_inside();
        std::vector<std::string> arguments{verb, path(file)};
        if (verb == std::string_view("import")) arguments.insert(arguments.end(), {"--to", path(u"in\\a_txt_FR.tud")});
        const Ran ran = run_kavo(arguments);
        EXPECT_EQ(ran.code, 1);
        EXPECT_NE(ran.errors.find("no plain file name"), std::string::npos) << ran.errors;
        EXPECT_EQ(entries_inside(), count);
        EXPECT_EQ(folder.entry_count(), 2u);
        EXPECT_EQ(folder.read(u"evil.txt"), "bait");
      }
    folder.write(file, whole);
  }
}

}  // namespace
}  // namespace kavo::test
