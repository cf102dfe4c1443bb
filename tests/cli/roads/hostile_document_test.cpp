// Damaged and hostile bilingual documents, as the command meets them.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/fnv_hash.h"
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

// The skeleton's own tests try every bit. Here: the command reports the damage and writes nothing.
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
        EXPECT_NE(ran.errors.find("not a plain file name"), std::string::npos) << ran.errors;
        EXPECT_EQ(entries_inside(), count);
        EXPECT_EQ(folder.entry_count(), 2u);
        EXPECT_EQ(folder.read(u"evil.txt"), "bait");
      }
    folder.write(file, whole);
  }
}

// Where a value stands in a text.
struct Field {
  std::size_t begin = 0;
  std::size_t size = 0;
};

// Every value of an attribute and every text between tags; of a note that says "name=value" the value.
std::vector<Field> fields_of(const std::string& xml) {
  std::vector<Field> fields;
  for (std::size_t at = xml.find("<xliff"); at < xml.size(); ++at) {
    const bool is_value = xml[at] == '"';
    if (!is_value && xml[at] != '>') continue;
    const std::size_t end = xml.find(is_value ? '"' : '<', at + 1);
    if (end == std::string::npos) break;
    const std::string text = xml.substr(at + 1, end - at - 1);
    const bool is_empty = text.find_first_not_of("\r\n ") == std::string::npos;
    const std::size_t skipped = is_value || text.starts_with("S0FWTy") ? 0 : text.find('=') + 1;
    if (!is_empty) fields.push_back({at + 1 + skipped, text.size() - skipped});
    at = is_value ? end : end - 1;
  }
  return fields;
}

// A page, its documents and a package of them, in a folder beside a folder with bait. Whatever a document says, nothing
// outside its folder changes, and none of the bait is copied into it.
class HostileFields : public HostileDocument {
 protected:
  HostileFields() {
    folder.write(u"in\\page.asp", "<html><body><p>Hello <b>x</b></p><% MsgBox \"Hi\" %></body></html>\r\n");
    run_kavo({"prepare", path(u"in\\page.asp"), "--source", "EN-US", "--target", "FR"});
    run_kavo({"export", path(u"in\\page_asp_htm_FR.tud"), "--with-skeleton"});
    for (const char16_t* name : {u"evil.asp", u"evil.tud", u"evil.tud.skl"}) folder.write(name, "bait");
    for (const std::u16string& name : names()) inside_[name] = folder.read(u"in\\" + name);
  }
  std::vector<std::u16string> names() { return ports().files->find(folder.path(u"in\\*")); }
  void expect_no_harm(const std::vector<std::string>& arguments) {
    const Ran ran = run_kavo(arguments);
    EXPECT_TRUE(ran.code == 0 || ran.code == 1 || ran.code == 3) << ran.code << ran.errors;
    EXPECT_EQ(folder.entry_count(), 4u);
    for (const char16_t* name : {u"evil.asp", u"evil.tud", u"evil.tud.skl"}) EXPECT_EQ(folder.read(name), "bait");
    for (const std::u16string& name : names()) {
      const std::string content = folder.read(u"in\\" + name);
      EXPECT_EQ(content.find("bait"), std::string::npos) << path(name);
      const auto before = inside_.find(name);
      if (before == inside_.end())
        ports().files->remove_file(folder.path(u"in\\" + name));
      else if (before->second != content)
        folder.write(u"in\\" + name, before->second);
    }
  }

 private:
  std::map<std::u16string, std::string> inside_;
};

TEST_F(HostileFields, NoFieldOfADocumentOrPackageLeadsOutOfItsFolder) {
  const std::string tud = path(u"in\\page_asp_htm_FR.tud");
  const std::string xlf = path(u"in\\page_asp_htm_FR.xlf");
  const struct {
    std::u16string_view file;
    const char* name;
    std::vector<std::string> arguments;
  } cases[] = {
      {u"in\\page_asp_htm_FR.tud", "../evil", {"rebuild", tud}},
      {u"in\\page_asp_htm_FR.tud", "x\\..\\..\\evil.tud.skl", {"export", "--overwrite", tud}},
      {u"in\\page_asp_htm_FR.xlf", "../evil", {"import", xlf, "--to", tud}},
      {u"in\\page_asp_htm_FR.xlf", "x\\..\\..\\evil.tud.skl", {"rebuild", xlf}},
  };
  for (const auto& c : cases) {
    const std::string whole = folder.read(c.file);
    const std::vector<Field> fields = fields_of(whole);
    EXPECT_GT(fields.size(), 30u);
    for (const Field& field : fields) {
      SCOPED_TRACE(path(c.file) + ": " + whole.substr(field.begin, field.size) + " is " + c.name);
      folder.write(c.file, std::string(whole).replace(field.begin, field.size, c.name));
      expect_no_harm(c.arguments);
    }
    folder.write(c.file, whole);
  }
}

// The checksum is made to match, since it does not protect a skeleton against deliberate changes.
TEST_F(HostileFields, NoTextOfASkeletonLeadsOutOfItsFolder) {
  constexpr std::u16string_view kSkeleton = u"in\\page_asp_htm_FR.tud.skl";
  const std::string whole = folder.read(kSkeleton);
  const std::size_t end = whole.rfind("\nE ") + 1;
  const std::size_t sum = whole.find(' ', end + 2) + 1;
  ASSERT_EQ(whole.substr(sum), std::to_string(fnv_hash(whole.substr(0, sum))) + "\n");
  for (const std::string text : {"K19HTM", "page.asp", "page_asp", "<html><body>", "Hello"})
    for (const std::string hostile : {"../evil.asp/../..", "..\\evil.asp\\..\\.."}) {
      SCOPED_TRACE(text + " is " + hostile);
      std::string skeleton = whole.substr(0, sum);
      const std::size_t at = skeleton.find(text);
      if (at == std::string::npos) continue;
      skeleton.replace(at, text.size(), hostile.substr(0, text.size()));
      folder.write(kSkeleton, skeleton + std::to_string(fnv_hash(skeleton)) + "\n");
      expect_no_harm({"rebuild", path(u"in\\page_asp_htm_FR.tud")});
      folder.write(kSkeleton, skeleton + std::to_string(fnv_hash(skeleton)) + "\n");
      expect_no_harm({"export", "--overwrite", "--with-skeleton", path(u"in\\page_asp_htm_FR.tud")});
    }
}

}  // namespace
}  // namespace kavo::test
