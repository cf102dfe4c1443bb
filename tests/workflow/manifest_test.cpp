#include "workflow/manifest.h"

#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "support/faulty_files.h"
#include "support/memory_files.h"

namespace kavo::test {
namespace {

constexpr char16_t kFolder[] = u"C:\\WORK\\l10n";

class ManifestTest : public testing::Test {
 protected:
  ManifestTest() {
    files.add_folder(kFolder);
    ports().files = &files;
  }

  static nlohmann::json entry(std::uint64_t checksum, const char* options) {
    return {{"checksum", checksum_text(checksum)}, {"options", options}, {"documents", {"a.tud", "a\u00e9.tud"}}};
  }

  void write_three() const {
    Manifest manifest(kFolder);
    manifest.note(u"a.htm", u"de", entry(1, "plain"));
    manifest.note(u"a.htm", u"fr", entry(1, "other"));
    manifest.note(u"below\\\u00e9.htm", u"de", entry(2, "with \"quotes\" and \\"));
    manifest.save();
  }

  MemoryFiles files;
  const std::u16string path = Manifest::path_in_folder(kFolder);
  const PortsScope scope;
};

TEST_F(ManifestTest, ReadsTheSameHoweverItsBlocksAreCut) {
  write_three();
  const std::string written = files.get(path);
  for (std::size_t size = 1; size <= written.size() + 1; ++size) {
    const BlockSizeScope blocks(size);
    const Manifest manifest(kFolder);
    EXPECT_TRUE(manifest.knows(u"a.htm", u"de", 1)) << size;
    EXPECT_FALSE(manifest.knows(u"a.htm", u"de", 2)) << size;
    EXPECT_TRUE(manifest.has_other_options(u"a.htm", u"fr", "plain")) << size;
    EXPECT_TRUE(manifest.knows(u"below\\\u00e9.htm", u"de", 2)) << size;
    EXPECT_FALSE(manifest.has_other_options(u"below\\\u00e9.htm", u"de", "with \"quotes\" and \\")) << size;
    EXPECT_FALSE(manifest.knows(u"below\\\u00e9.htm", u"fr", 2)) << size;
  }
}

TEST_F(ManifestTest, IsNotWrittenWhenNothingChanges) {
  write_three();
  FaultyFiles full(files);
  full.set_fault({.counted = FaultyFiles::Counted::kMutating, .lasting = true});
  ports().files = &full;
  write_three();
  Manifest changed(kFolder);
  changed.note(u"a.htm", u"de", entry(3, "plain"));
  EXPECT_THROW(changed.save(), failure);
}

TEST_F(ManifestTest, OneCutOffAtAnyByteIsRefused) {
  write_three();
  const std::string written = files.get(path);
  const std::string_view end = "}\n";
  for (std::size_t size = 0; size <= written.size() - end.size(); ++size) {
    files.put(path, written.substr(0, size));
    try {
      const Manifest manifest(kFolder);
      ADD_FAILURE() << "was read with " << size << " bytes";
    } catch (const failure& reason) {
      EXPECT_EQ(reason.number(), 58) << size;
      EXPECT_NE(reason.description().find(u"it is damaged"), std::u16string::npos) << size;
    }
  }
}

}  // namespace
}  // namespace kavo::test
