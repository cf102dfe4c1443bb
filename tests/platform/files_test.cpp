// One suite for every file system there is: the system's adapter and the one in memory.
#include "platform/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <thread>

#include "platform/ports.h"
#include "support/failures.h"
#include "support/memory_files.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

// A file system with an empty folder to work in.
class Workspace {
 public:
  virtual ~Workspace() = default;
  virtual FileSystem& files() = 0;
  virtual std::u16string folder() = 0;
  virtual void make_folder(std::u16string_view name) = 0;
};

class SystemWorkspace : public Workspace {
 public:
  FileSystem& files() override { return *ports().files; }
  std::u16string folder() override { return temp_.path(); }
  void make_folder(std::u16string_view name) override { temp_.make_folder(name); }

 private:
  TempFolder temp_;
};

class MemoryWorkspace : public Workspace {
 public:
  FileSystem& files() override { return files_; }
  std::u16string folder() override { return u"C:\\WORK"; }
  void make_folder(std::u16string_view name) override { files_.add_folder(folder() + u"\\" + std::u16string(name)); }

 private:
  MemoryFiles files_;
};

struct Adapter {
  const char* name;
  std::function<std::unique_ptr<Workspace>()> make;
};

class FilesTest : public testing::TestWithParam<Adapter> {
 protected:
  FileSystem& files() { return workspace_->files(); }
  std::u16string path(std::u16string_view name) { return workspace_->folder() + u"\\" + std::u16string(name); }
  void make_folder(std::u16string_view name) { workspace_->make_folder(name); }

  void write(std::u16string_view name, std::string_view bytes) {
    const std::unique_ptr<File> file = files().open(path(name), Access::kCreate);
    file->write(bytes);
    file->close();
  }

  std::string read(std::u16string_view name) {
    const std::unique_ptr<File> file = files().open(path(name), Access::kRead);
    std::string bytes(static_cast<std::size_t>(file->size()), '\0');
    bytes.resize(file->read(bytes));
    return bytes;
  }

  std::vector<std::u16string> find(std::u16string_view pattern) {
    std::vector<std::u16string> names = files().find(path(pattern));
    std::sort(names.begin(), names.end());
    return names;
  }

  // True for the system's files under Wine, which differ from those of Windows where the host's do.
  bool follows_host_rules() const { return !is_native() && std::string_view(GetParam().name) == "System"; }

  std::int32_t open_failure(std::u16string_view name, Access access) {
    return failure_number([&] { files().open(path(name), access); });
  }

 private:
  std::unique_ptr<Workspace> workspace_ = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(Every, FilesTest,
                         testing::Values(Adapter{"System", [] { return std::make_unique<SystemWorkspace>(); }},
                                         Adapter{"Memory", [] { return std::make_unique<MemoryWorkspace>(); }}),
                         [](const auto& adapter) { return adapter.param.name; });

using Names = std::vector<std::u16string>;

TEST_P(FilesTest, WhatWasWrittenIsRead) {
  const std::string bytes("a\0b\r\n\x1A\xFFz", 8);
  write(u"a.bin", bytes);
  EXPECT_EQ(read(u"a.bin"), bytes);
}

TEST_P(FilesTest, ReadFillsTheBufferAsFarAsTheFileGoes) {
  write(u"a.txt", "0123456789");
  const std::unique_ptr<File> file = files().open(path(u"a.txt"), Access::kRead);
  char buffer[6];
  EXPECT_EQ(file->read(buffer), 6u);
  EXPECT_EQ(std::string_view(buffer, 6), "012345");
  EXPECT_EQ(file->read(buffer), 4u);
  EXPECT_EQ(std::string_view(buffer, 4), "6789");
  EXPECT_EQ(file->read(buffer), 0u);
}

TEST_P(FilesTest, SeekMovesTheNextRead) {
  write(u"a.txt", "0123456789");
  const std::unique_ptr<File> file = files().open(path(u"a.txt"), Access::kRead);
  EXPECT_EQ(file->size(), 10u);
  char buffer[3];
  file->seek(7);
  EXPECT_EQ(file->read(buffer), 3u);
  EXPECT_EQ(std::string_view(buffer, 3), "789");
  file->seek(0);
  EXPECT_EQ(file->read(buffer), 3u);
  EXPECT_EQ(std::string_view(buffer, 3), "012");
  file->seek(12);
  EXPECT_EQ(file->read(buffer), 0u) << "behind the end there is nothing to read";
}

TEST_P(FilesTest, SeekMovesTheNextWrite) {
  const std::unique_ptr<File> file = files().open(path(u"a.txt"), Access::kCreate);
  file->write("0123456789");
  file->seek(3);
  file->write("xy");
  file->close();
  EXPECT_EQ(read(u"a.txt"), "012xy56789");
}

TEST_P(FilesTest, SeekReachesBeyondFourGigabytes) {
  write(u"a.txt", "0123456789");
  const std::unique_ptr<File> file = files().open(path(u"a.txt"), Access::kRead);
  file->seek((std::uint64_t{1} << 32) + 2);
  char buffer[1];
  EXPECT_EQ(file->read(buffer), 0u) << "2 GB and 4 GB are no limits that wrap around";
}

TEST_P(FilesTest, EmptyFileAndEmptyWrite) {
  write(u"a.txt", "");
  EXPECT_EQ(read(u"a.txt"), "");
  EXPECT_EQ(files().info(path(u"a.txt"))->size, 0u);
}

TEST_P(FilesTest, CreateEmptiesAnExistingFile) {
  write(u"a.txt", "long content");
  write(u"a.txt", "new");
  EXPECT_EQ(read(u"a.txt"), "new");
}

TEST_P(FilesTest, AppendWritesBehindWhatIsThere) {
  files().open(path(u"a.txt"), Access::kAppend)->write("one");
  files().open(path(u"A.TXT"), Access::kAppend)->write(" two");
  EXPECT_EQ(read(u"a.txt"), "one two");
  EXPECT_EQ(open_failure(u"missing\\a.txt", Access::kAppend), 76);
  make_folder(u"folder");
  EXPECT_EQ(open_failure(u"folder", Access::kAppend), 75);
}

TEST_P(FilesTest, ExclusiveCreateSucceedsOnce) {
  files().open(path(u"a.txt"), Access::kCreateNew)->write("mine");
  EXPECT_EQ(open_failure(u"a.txt", Access::kCreateNew), 58);
  EXPECT_EQ(open_failure(u"A.TXT", Access::kCreateNew), 58) << "case does not make another file";
  EXPECT_EQ(read(u"a.txt"), "mine");
}

TEST_P(FilesTest, CloseTwiceIsHarmless) {
  const std::unique_ptr<File> file = files().open(path(u"a.txt"), Access::kCreate);
  file->write("x");
  file->close();
  EXPECT_NO_THROW(file->close());
}

TEST_P(FilesTest, InfoOfFileFolderAndNothing) {
  write(u"a.txt", "12345");
  make_folder(u"folder");
  const std::optional<FileInfo> file = files().info(path(u"a.txt"));
  ASSERT_TRUE(file);
  EXPECT_EQ(file->size, 5u);
  EXPECT_FALSE(file->is_folder);
  EXPECT_FALSE(file->is_read_only);
  ASSERT_TRUE(files().info(path(u"folder")));
  EXPECT_TRUE(files().info(path(u"folder"))->is_folder);
  EXPECT_TRUE(files().info(path(u"folder\\")));
  EXPECT_FALSE(files().info(path(u"missing")));
  EXPECT_FALSE(files().info(path(u"missing\\a.txt")));
  EXPECT_FALSE(files().info(u""));
}

TEST_P(FilesTest, MissingFileAndMissingFolderHaveDifferentNumbers) {
  EXPECT_EQ(open_failure(u"missing.txt", Access::kRead), 53);
  EXPECT_EQ(open_failure(u"missing\\a.txt", Access::kRead), 76);
  EXPECT_EQ(open_failure(u"missing\\a.txt", Access::kCreate), 76);
  EXPECT_EQ(open_failure(u"missing\\a.txt", Access::kCreateNew), 76);
  EXPECT_EQ(failure_number([&] { files().remove_file(path(u"missing.txt")); }), 53);
  EXPECT_EQ(failure_number([&] { files().remove_file(path(u"missing\\a.txt")); }), 76);
  EXPECT_EQ(failure_number([&] { files().set_read_only(path(u"missing.txt"), true); }), 53);
}

TEST_P(FilesTest, AFolderIsNotAFile) {
  make_folder(u"folder");
  EXPECT_EQ(open_failure(u"folder", Access::kRead), 75);
  EXPECT_EQ(open_failure(u"folder", Access::kCreate), 75);
  EXPECT_EQ(failure_number([&] { files().remove_file(path(u"folder")); }), 75);
  EXPECT_TRUE(files().info(path(u"folder")));
}

TEST_P(FilesTest, AFileIsNotAFolder) {
  write(u"a.txt", "x");
  EXPECT_EQ(open_failure(u"a.txt\\b.txt", Access::kRead), 76);
  EXPECT_EQ(open_failure(u"a.txt\\b.txt", Access::kCreate), 76);
}

TEST_P(FilesTest, ReadOnlyFileIsNotRemoved) {
  write(u"a.txt", "kept");
  EXPECT_FALSE(files().info(path(u"a.txt"))->is_read_only);
  files().set_read_only(path(u"a.txt"), true);
  EXPECT_TRUE(files().info(path(u"a.txt"))->is_read_only);
  EXPECT_EQ(failure_number([&] { files().remove_file(path(u"a.txt")); }), 70);
  EXPECT_EQ(read(u"a.txt"), "kept");
  files().set_read_only(path(u"a.txt"), false);
  EXPECT_FALSE(files().info(path(u"a.txt"))->is_read_only);
  files().remove_file(path(u"a.txt"));
  EXPECT_FALSE(files().info(path(u"a.txt")));
}

TEST_P(FilesTest, ReadOnlyFileIsNeitherEmptiedNorReplaced) {
  if (follows_host_rules()) GTEST_SKIP() << "under Wine the host's administrator may write read-only files";
  write(u"a.txt", "kept");
  write(u"b.txt", "other");
  files().set_read_only(path(u"a.txt"), true);
  EXPECT_EQ(open_failure(u"a.txt", Access::kCreate), 70);
  EXPECT_EQ(open_failure(u"a.txt", Access::kAppend), 70);
  EXPECT_EQ(failure_number([&] { files().rename_file(path(u"b.txt"), path(u"a.txt")); }), 70);
  EXPECT_EQ(read(u"a.txt"), "kept");
  EXPECT_EQ(read(u"b.txt"), "other");
}

TEST_P(FilesTest, ReadOnlyFileCanBeRenamed) {
  write(u"a.txt", "kept");
  files().set_read_only(path(u"a.txt"), true);
  files().rename_file(path(u"a.txt"), path(u"b.txt"));
  EXPECT_EQ(read(u"b.txt"), "kept");
  EXPECT_TRUE(files().info(path(u"b.txt"))->is_read_only);
}

TEST_P(FilesTest, RenameGivesTheNewName) {
  write(u"a.txt", "content");
  files().rename_file(path(u"a.txt"), path(u"b.txt"));
  EXPECT_FALSE(files().info(path(u"a.txt")));
  EXPECT_EQ(read(u"b.txt"), "content");
}

TEST_P(FilesTest, RenameReplacesAnExistingFile) {
  write(u"a.txt", "new");
  write(u"b.txt", "old and longer");
  files().rename_file(path(u"a.txt"), path(u"B.TXT"));
  EXPECT_FALSE(files().info(path(u"a.txt")));
  EXPECT_EQ(read(u"b.txt"), "new");
  EXPECT_EQ(find(u"*").size(), 1u);
}

TEST_P(FilesTest, RenameChangesTheCaseOfAName) {
  if (follows_host_rules()) GTEST_SKIP() << "Wine keeps the case of the existing name";
  write(u"a.txt", "content");
  files().rename_file(path(u"a.txt"), path(u"A.txt"));
  // Wine keeps the old case; Windows does not.
  EXPECT_TRUE(find(u"*") == Names{u"A.txt"} || (!is_native() && find(u"*") == Names{u"a.txt"}));
  EXPECT_EQ(read(u"a.txt"), "content");
}

TEST_P(FilesTest, AFileIsTheSameUnderEachOfItsNames) {
  write(u"a.txt", "one");
  write(u"b.txt", "one");
  make_folder(u"folder");
  const auto identity = [&](std::u16string_view name) { return files().identity(path(name)); };
  const std::optional<FileIdentity> first = identity(u"a.txt");
  ASSERT_TRUE(first);
  EXPECT_FALSE(identity(u"none.txt"));
  EXPECT_EQ(identity(u"A.TXT"), first);
  EXPECT_NE(identity(u"b.txt"), first);
  EXPECT_NE(identity(u"folder"), first);
  EXPECT_EQ(identity(u"b.txt")->volume, first->volume);
  files().link_file(path(u"a.txt"), path(u"second.txt"));
  EXPECT_EQ(identity(u"second.txt"), first);
  EXPECT_EQ(failure_number([&] { files().link_file(path(u"a.txt"), path(u"b.txt")); }), 58);
  EXPECT_EQ(read(u"b.txt"), "one");
  files().rename_file(path(u"a.txt"), path(u"c.txt"));
  EXPECT_EQ(identity(u"c.txt"), first);
}

TEST_P(FilesTest, RenameFailures) {
  write(u"a.txt", "content");
  make_folder(u"folder");
  EXPECT_EQ(failure_number([&] { files().rename_file(path(u"missing.txt"), path(u"b.txt")); }), 53);
  EXPECT_EQ(failure_number([&] { files().rename_file(path(u"a.txt"), path(u"missing\\b.txt")); }), 76);
  EXPECT_EQ(failure_number([&] { files().rename_file(path(u"a.txt"), path(u"folder")); }), 75);
  EXPECT_EQ(read(u"a.txt"), "content");
}

TEST_P(FilesTest, SeveralFilesAreFlushedAndTheOneThatCannotBeIsNamed) {
  std::vector<std::u16string> paths;
  for (char16_t letter = u'a'; letter <= u't'; ++letter) {
    const std::u16string name(1, letter);
    write(name, "text");
    paths.push_back(path(name));
  }
  EXPECT_NO_THROW(files().flush(paths));
  EXPECT_NO_THROW(files().flush({}));
  for (const std::u16string_view name : {u"a", u"t"}) EXPECT_EQ(read(name), "text");
  paths.insert(paths.begin() + 5, path(u"missing"));
  try {
    files().flush(paths);
    ADD_FAILURE() << "a file that is not there was flushed";
  } catch (const failure& reason) {
    EXPECT_EQ(reason.number(), 53);
    EXPECT_NE(reason.description().find(path(u"missing")), std::u16string::npos);
  }
}

TEST_P(FilesTest, NamesAreFoundWhateverTheirCase) {
  make_folder(u"Folder\\SUB");
  write(u"Folder\\SUB\\File.Txt", "content");
  EXPECT_EQ(read(u"folder\\sub\\FILE.TXT"), "content");
  EXPECT_TRUE(files().info(path(u"FOLDER\\Sub")));
  write(u"FOLDER\\sub\\file.txt", "changed");
  EXPECT_EQ(find(u"folder\\SUB\\*"), Names{u"File.Txt"}) << "the existing name stays";
  EXPECT_EQ(read(u"Folder\\SUB\\File.Txt"), "changed");
  write(u"folder\\sub\\New.txt", "new");
  EXPECT_EQ(find(u"Folder\\SUB\\n*"), Names{u"New.txt"}) << "a new name keeps its case";
  files().remove_file(path(u"FOLDER\\SUB\\FILE.TXT"));
  EXPECT_EQ(find(u"Folder\\SUB\\*"), Names{u"New.txt"});
}

TEST_P(FilesTest, LettersBeyondAsciiIgnoreCaseToo) {
  write(u"\u00C4\u0416\u03A9.txt", "content");
  EXPECT_EQ(read(u"\u00E4\u0436\u03C9.TXT"), "content");
}

TEST_P(FilesTest, SlashSeparatesAsWell) {
  make_folder(u"folder");
  write(u"folder/a.txt", "content");
  EXPECT_EQ(read(u"folder\\a.txt"), "content");
}

struct WildcardCase {
  const char16_t* pattern;
  Names expected;
};

TEST_P(FilesTest, FindByWildcard) {
  make_folder(u"dir.d");
  for (const char16_t* name : {u"a.txt", u"ab.txt", u"abc.htm", u"b.TXT", u"c.tar.gz", u"noextension"})
    write(name, "x");
  const WildcardCase cases[] = {
      {u"*", {u"a.txt", u"ab.txt", u"abc.htm", u"b.TXT", u"c.tar.gz", u"dir.d", u"noextension"}},
      {u"*.*", {u"a.txt", u"ab.txt", u"abc.htm", u"b.TXT", u"c.tar.gz", u"dir.d", u"noextension"}},
      {u"*.txt", {u"a.txt", u"ab.txt", u"b.TXT"}},
      {u"?.txt", {u"a.txt", u"b.TXT"}},
      {u"a?c.*", {u"abc.htm"}},
      {u"A*", {u"a.txt", u"ab.txt", u"abc.htm"}},
      {u"*b*", {u"ab.txt", u"abc.htm", u"b.TXT"}},
      {u"*.gz", {u"c.tar.gz"}},
      {u"*.tar.*", {u"c.tar.gz"}},
      {u"ab.txt", {u"ab.txt"}},
      {u"AB.TXT", {u"ab.txt"}},
      {u"dir.d", {u"dir.d"}},
      {u"missing", {}},
      {u"*.doc", {}},
      {u"missing\\*", {}},
      {u"a.txt\\*", {}},
  };
  for (const WildcardCase& wildcard : cases)
    EXPECT_EQ(find(wildcard.pattern), wildcard.expected) << std::string(path_to_host(wildcard.pattern));
}

TEST_P(FilesTest, FindInAnEmptyFolderFindsNothing) {
  make_folder(u"empty");
  EXPECT_EQ(find(u"empty\\*"), Names{});
  EXPECT_EQ(find(u"empty\\*.*"), Names{});
}

// Every character of the basic plane that Windows allows in names, some tens in each name.
Names names_of_every_character() {
  Names names;
  std::u16string name;
  const std::u16string_view reserved = u"\\/:*?\"<>|";
  for (unsigned unit = 0x20; unit < 0xFFFE; ++unit) {
    const bool is_surrogate = unit >= 0xD800 && unit <= 0xDFFF;
    if (is_surrogate || reserved.find(static_cast<char16_t>(unit)) != std::u16string_view::npos) continue;
    name += static_cast<char16_t>(unit);
    if (name.size() < 78) continue;
    // Windows drops a blank or dot at the end, so no name ends in either.
    names.push_back(u"[" + name + u"]");
    name.clear();
  }
  names.push_back(u"[" + name + u"]");
  names.push_back(u"\U0001F600\U00020000\U0010FFFD.txt");
  return names;
}

TEST_P(FilesTest, NamesWithAnyCharacter) {
  const Names names = names_of_every_character();
  for (const std::u16string& name : names) files().open(path(name), Access::kCreateNew)->write("x");
  Names expected = names;
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(find(u"*"), expected);
  for (const std::u16string& name : names) {
    ASSERT_EQ(read(name), "x");
    files().remove_file(path(name));
  }
  EXPECT_EQ(find(u"*"), Names{});
}

TEST_P(FilesTest, TemporaryFolderExists) {
  const std::u16string folder = files().temporary_folder();
  ASSERT_FALSE(folder.empty());
  ASSERT_TRUE(files().info(folder));
  EXPECT_TRUE(files().info(folder)->is_folder);
}

TEST_P(FilesTest, AbsolutePaths) {
  EXPECT_EQ(files().absolute(path(u"a.txt")), path(u"a.txt"));
  EXPECT_EQ(files().absolute(path(u"x\\..\\a.txt")), path(u"a.txt"));
  EXPECT_EQ(files().absolute(path(u".\\a.txt")), path(u"a.txt"));
  EXPECT_EQ(files().absolute(path(u"x/a.txt")), path(u"x\\a.txt"));
  const std::u16string relative = files().absolute(u"a.txt");
  EXPECT_TRUE(relative.ends_with(u"\\a.txt"));
  EXPECT_EQ(files().absolute(relative), relative);
  EXPECT_NE(failure_number([&] { files().absolute(u""); }), 0);
}

TEST_P(FilesTest, LargeFileInManyWrites) {
  const std::string block(100'000, 'x');
  const std::unique_ptr<File> file = files().open(path(u"large.bin"), Access::kCreate);
  for (int i = 0; i < 50; ++i) file->write(block);
  EXPECT_EQ(file->size(), 5'000'000u);
  file->close();
  EXPECT_EQ(files().info(path(u"large.bin"))->size, 5'000'000u);
}

TEST_P(FilesTest, DestructionClosesTheFile) {
  files().open(path(u"a.txt"), Access::kCreate)->write("x");
  files().remove_file(path(u"a.txt"));
  EXPECT_FALSE(files().info(path(u"a.txt")));
}

TEST(SystemFilesTest, ALockIsForOneAtATime) {
  const TempFolder temp;
  const std::u16string path = temp.write(u"letter.rtf", "text");
  FileSystem& files = *ports().files;
  const auto taken_by_another = [&](std::u16string_view name) {
    int number = 0;
    std::thread([&] { number = failure_number([&] { files.lock(name); }); }).join();
    return number;
  };
  {
    const std::unique_ptr<FileLock> lock = files.lock(path);
    EXPECT_EQ(taken_by_another(path), 70);
    EXPECT_EQ(taken_by_another(temp.path(u"LETTER.RTF")), 70);
    EXPECT_EQ(temp.read(u"letter.rtf"), "text") << "it keeps nobody from reading";
  }
  EXPECT_EQ(taken_by_another(path), 0);
  EXPECT_EQ(failure_number([&] { files.lock(temp.path(u"missing.rtf")); }), 53);
}

TEST(SystemFilesTest, ALockHoldsTheNameOfAFileThatIsReplaced) {
  const TempFolder temp;
  const std::u16string path = temp.write(u"letter.rtf", "old");
  FileSystem& files = *ports().files;
  std::unique_ptr<FileLock> lock = files.lock(path);
  files.rename_file(temp.write(u"new", "new"), path);
  lock.reset();
  lock = files.lock(path);
  EXPECT_EQ(temp.read(u"letter.rtf"), "new");
}

TEST(SystemFilesTest, NameWithZeroCharacterIsRefused) {
  const std::u16string path = TempFolder().path(std::u16string_view(u"a\0b", 3));
  EXPECT_EQ(failure_number([&] { ports().files->open(path, Access::kCreate); }), 75);
  EXPECT_EQ(failure_number([&] { ports().files->info(path); }), 75);
}

TEST(SystemFilesTest, LongPaths) {
  const TempFolder temp;
  std::u16string name;
  for (int i = 0; i < 8; ++i) name += std::u16string(50, u'x') + u"\\";
  if (!is_native()) GTEST_SKIP() << "the standard library's folders have the system's path limit here";
  temp.write(name + u"a.txt", "content");
  EXPECT_EQ(temp.read(name + u"A.TXT"), "content");
}

TEST(HostPathTest, SeparatorsChangePlaces) {
  if (is_native()) {
    EXPECT_EQ(path_from_host("/home/user/a.txt"), u"\\home\\user\\a.txt");
    EXPECT_EQ(path_to_host(u"\\home\\user\\a.txt"), "/home/user/a.txt");
  } else {
    EXPECT_EQ(path_from_host("C:/x/a.txt"), u"C:\\x\\a.txt");
    EXPECT_EQ(path_to_host(u"C:\\x\\a.txt"), "C:\\x\\a.txt");
  }
}

TEST(HostPathTest, EveryHostNameComesBack) {
  if (!is_native()) GTEST_SKIP() << "only the native host has such names";
  for (const std::string name : {"back\\slash", "\xFF\xFE", "a\xC3", "\xF0\x9F\x98\x80\\", "\\\\", "\xED\xA0\x80\\"})
    EXPECT_EQ(path_to_host(path_from_host(name)), name);
}

TEST(HostPathTest, FilesWithHostOnlyNamesCanBeUsed) {
  if (!is_native()) GTEST_SKIP() << "only the native host has such names";
  const TempFolder temp;
  const std::u16string name = path_from_host("back\\slash\xFF.txt");
  temp.write(name, "content");
  EXPECT_EQ(ports().files->find(temp.path(u"*")), Names{name});
  EXPECT_EQ(temp.read(name), "content");
  ports().files->remove_file(temp.path(name));
  EXPECT_EQ(temp.entry_count(), 0u);
}

TEST(HostPathTest, TheExactNameWinsOverAnotherCase) {
  if (!is_native()) GTEST_SKIP() << "only the native host can hold both";
  const TempFolder temp;
  temp.write(u"a.txt", "lower");
  std::filesystem::rename(to_filesystem_path(temp.path(u"a.txt")), to_filesystem_path(temp.path(u"keep")));
  temp.write(u"A.txt", "upper");
  std::filesystem::rename(to_filesystem_path(temp.path(u"keep")), to_filesystem_path(temp.path(u"a.txt")));
  EXPECT_EQ(temp.read(u"a.txt"), "lower");
  EXPECT_EQ(temp.read(u"A.txt"), "upper");
}

TEST(HostPathTest, RenameToAnotherVolumeHasItsOwnNumber) {
  if (!is_native()) GTEST_SKIP() << "the other volume is looked for on the native host";
  const std::u16string other = u"\\dev\\shm";
  const TempFolder temp;
  const std::u16string source = temp.write(u"a.txt", "content");
  std::error_code error;
  const std::filesystem::space_info here = std::filesystem::space(to_filesystem_path(temp.path()), error);
  const std::filesystem::space_info there = std::filesystem::space(to_filesystem_path(other), error);
  if (error || here.capacity == there.capacity) GTEST_SKIP() << "no second volume found";
  EXPECT_EQ(failure_number([&] { ports().files->rename_file(source, other + u"\\kavo-test-other-volume"); }), 74);
  EXPECT_EQ(temp.read(u"a.txt"), "content");
}

}  // namespace
}  // namespace kavo::test
