// The test support itself: a fault that does not happen or a split that is left out would make other tests assert
// nothing.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "platform/ports.h"
#include "support/corpus.h"
#include "support/failures.h"
#include "support/faulty_files.h"
#include "support/memory_files.h"
#include "support/ports_fixture.h"
#include "support/splits.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

// 1 open, 2 size, 3 read, 4 close (dropped), 5 open, 6 and 7 write, 8 close, 9 rename.
void copy_and_rename(FileSystem& files) {
  std::string bytes;
  {
    const std::unique_ptr<File> source = files.open(u"source", Access::kRead);
    bytes.resize(static_cast<std::size_t>(source->size()));
    source->read(bytes);
    source->close();
  }
  const std::unique_ptr<File> target = files.open(u"target.new", Access::kCreate);
  target->write(bytes);
  target->write("more");
  target->close();
  files.rename_file(u"target.new", u"target");
}

TEST(MemoryFilesTest, RelativePathsLieInTheCurrentFolder) {
  MemoryFiles memory;
  memory.open(u"a.txt", Access::kCreate)->write("x");
  EXPECT_EQ(memory.all_files(), std::vector<std::u16string>{u"C:\\WORK\\a.txt"});
  EXPECT_EQ(memory.get(u"c:/WORK/sub/../A.TXT"), "x");
  memory.put(u"\\\\server\\share\\b.txt", "y");
  EXPECT_EQ(memory.absolute(u"\\\\server\\share\\b.txt"), u"\\\\server\\share\\b.txt");
  EXPECT_TRUE(memory.info(u"\\\\SERVER\\SHARE"));
}

TEST(FaultyFilesTest, EachOperationFailsInTurn) {
  MemoryFiles memory;
  memory.put(u"source", "content");
  FaultyFiles files(memory);
  std::size_t failures = 0;
  const std::size_t faults = for_each_fault(
      files, {.number = FailureNumber::kPermissionDenied},
      [&](std::size_t) {
        const std::int32_t number = failure_number([&] { copy_and_rename(files); });
        EXPECT_TRUE(number == 0 || number == 70);
        if (number == 70) ++failures;
      },
      [&](std::size_t) { EXPECT_FALSE(memory.has(u"target")); });
  EXPECT_EQ(faults, 9u);
  EXPECT_EQ(failures, 9u);
  EXPECT_EQ(memory.get(u"target"), "contentmore") << "the last run met no fault";
}

TEST(FaultyFilesTest, OnlyChangesAreCountedWhenAsked) {
  MemoryFiles memory;
  memory.put(u"source", "content");
  FaultyFiles files(memory);
  const std::size_t faults = for_each_fault(
      files, {.counted = FaultyFiles::Counted::kMutating},
      [&](std::size_t) { failure_of([&] { copy_and_rename(files); }); }, [](std::size_t) {});
  EXPECT_EQ(faults, 5u);
}

TEST(FaultyFilesTest, LastingFaultHitsEverythingAfterButRemoval) {
  MemoryFiles memory;
  FaultyFiles files(memory);
  files.set_fault({.operation = 2, .lasting = true, .partial_bytes = 3});
  const std::unique_ptr<File> file = files.open(u"a", Access::kCreate);
  EXPECT_EQ(failure_number([&] { file->write("content"); }), 61);
  EXPECT_EQ(memory.get(u"a"), "con") << "a part was written";
  EXPECT_EQ(failure_number([&] { files.open(u"b", Access::kCreate); }), 61);
  EXPECT_EQ(failure_number([&] { file->close(); }), 61);
  EXPECT_NO_THROW(files.remove_file(u"a"));
  EXPECT_TRUE(files.fault_happened());
}

TEST(SplitsTest, EverySplitIsFed) {
  std::vector<std::vector<std::string_view>> seen;
  const std::string joined = same_for_every_split("abc", [&](const std::vector<std::string_view>& pieces) {
    seen.push_back(pieces);
    std::string all;
    for (const std::string_view piece : pieces) all += piece;
    return all;
  });
  EXPECT_EQ(joined, "abc");
  const std::vector<std::vector<std::string_view>> expected = {{"abc"},     {"", "abc"}, {"a", "bc"},
                                                               {"ab", "c"}, {"abc", ""}, {"a", "b", "c"}};
  EXPECT_EQ(seen, expected);
}

TEST(SplitsTest, DifferenceIsReported) {
  EXPECT_NONFATAL_FAILURE(same_for_every_block_size(2, [](std::size_t size) { return size; }), "with blocks of 1");
}

TEST(SplitsTest, LineEnds) {
  EXPECT_EQ(with_line_end("a\nb\n", kLineEnds[0]), "a\nb\n");
  EXPECT_EQ(with_line_end("a\nb\n", kLineEnds[1]), "a\r\nb\r\n");
  EXPECT_EQ(with_line_end("a\nb\n", kLineEnds[2]), "a\rb\r");
}

TEST(TempFolderTest, IsRemovedWithAllItHolds) {
  std::u16string path;
  {
    const TempFolder temp;
    path = temp.path();
    ports().files->set_read_only(temp.write(u"sub\\deep\\a.txt", "content"), true);
    EXPECT_EQ(temp.read(u"sub\\deep\\a.txt"), "content");
    EXPECT_TRUE(temp.exists(u"sub\\deep"));
    EXPECT_EQ(temp.entry_count(), 1u);
    EXPECT_NE(TempFolder().path(), path);
  }
  EXPECT_FALSE(std::filesystem::exists(to_filesystem_path(path)));
}

TEST(CorpusTest, FilesAreRealAndSorted) {
  if (!corpus_folder()) GTEST_SKIP() << kNoCorpus;
  const std::vector<std::u16string> pages = corpus_files(u"html", {u"htm", u"html"});
  ASSERT_FALSE(pages.empty());
  EXPECT_TRUE(std::is_sorted(pages.begin(), pages.end()));
  for (const std::u16string& page : pages) EXPECT_TRUE(ports().files->info(page)) << path_to_host(page);
  EXPECT_GE(corpus_files(u"html", {}).size(), pages.size());
  EXPECT_NONFATAL_FAILURE(corpus_files(u"no such kind", {}), "the corpus has no such documents");
}

TEST(PortsScopeTest, PutsThePortsBack) {
  FileSystem* const before = ports().files;
  MemoryFiles memory;
  {
    const PortsScope scope;
    ports().files = &memory;
    EXPECT_EQ(ports().files, &memory);
  }
  EXPECT_EQ(ports().files, before);
}

class PortsFixtureTest : public PortsFixture {};

TEST_F(PortsFixtureTest, NothingOutsideIsTouched) {
  EXPECT_EQ(ports().files, &files);
  ports().desktop->message_box(u"Text", u"Caption", MessageIcon::kInformation);
  const FakeDesktop::MessageBox expected{u"Text", u"Caption", MessageIcon::kInformation};
  EXPECT_EQ(desktop.message_boxes, std::vector{expected});
  ports().clock->sleep(1.5);
  EXPECT_EQ(ports().clock->seconds(), 1.5);
  EXPECT_TRUE(ports().profile_files->write(u"A", u"B", u"c", u"f.ini"));
  EXPECT_EQ(ports().profile_files->read(u"a", u"b", u"", u"F.INI", 10), u"c");
  EXPECT_EQ(failure_number([] { ports().automation->create(u"Missing"); }), 429);
  EXPECT_EQ(ports().shell->run(u"file", u"x"), 42);
  EXPECT_EQ(shell.opened.size(), 1u);
}

}  // namespace
}  // namespace kavo::test
