// The permissions of documents through every verb: what is private stays private, what is read-only stays so.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPage = "<html><body><p>One <b>two</p><% x %></body></html>\r\n";
constexpr std::string_view kManual =
    "<MIFFile 7.00>\n<Marker <MTypeName `Index'> <MText `x'>>\n=GIF\n&x\n=EndInset\n<Para <ParaLine <String `y'>>>\n";
constexpr std::string_view kLetter = "{\\rtf1 Dear {\\pict 0102}\\par}";

class DocumentPermissions : public testing::Test {
 protected:
  void put(std::u16string_view name, std::string_view bytes, unsigned mode) {
    folder.write(name, bytes);
    set_mode(name, mode);
  }
  void set_mode(std::u16string_view name, unsigned mode) {
    ASSERT_EQ(::chmod(path_to_host(folder.path(name)).c_str(), mode), 0);
  }
  unsigned mode(const std::string& path) const {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  }
  Ran run(const std::vector<std::string>& arguments) { return run_kavo(arguments, &folder); }
  TempFolder folder;
};

TEST_F(DocumentPermissions, WhatIsMadeOfAPrivateDocumentIsPrivate) {
  put(u"page.asp", kPage, 0600);
  put(u"book.mif", kManual, 0600);
  put(u"letter.rtf", kLetter, 0600);
  put(u"note.txt", "One\n", 0600);
  put(u"tree\\sub\\note.txt", "One\n", 0600);
  put(u"tree\\sub\\logo.gif", "GIF89a", 0600);
  const std::vector<std::vector<std::string>> commands{
      {"preprocess", "page.asp", "book.mif"},
      {"html", "protect", "page.asp"},
      {"html", "validate", "--backup", "page_asp.htm"},
      {"mif", "extract", "book.mif"},
      {"prepare", "page.asp", "book.mif", "letter.rtf", "note.txt", "--source", "EN-US", "--target", "FR",
       "--overwrite"},
      {"pseudo", "page_asp_htm_FR.tud", "note_txt_FR.tud"},
      {"export", "page_asp_htm_FR.tud", "--with-skeleton"},
      {"export", "note_txt_FR.tud"},
      {"rebuild", "page_asp_htm_FR.tud", "book_mif_FR.tud", "letter_rtf_FR.tud", "note_txt_FR.tud"},
      {"mif", "remove-objects", "book.mif"},
      {"rtf", "extract", "letter.rtf", "--overwrite"},
      {"prepare", "tree", "--recursive", "--output-dir", "work", "--source", "EN-US", "--target", "FR"},
      {"rebuild", "work", "--recursive", "--output-dir", "out", "--copy-rest", "tree"},
  };
  std::size_t files = 4;
  for (const auto& command : commands) {
    const Ran ran = run(command);
    EXPECT_EQ(ran.code, 0) << testing::PrintToString(command) << ran.errors;
    std::size_t count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(to_filesystem_path(folder.path()))) {
      if (!entry.is_regular_file() || entry.path().filename() == "manifest.json") continue;
      ++count;
      EXPECT_EQ(mode(entry.path().string()), 0600u) << testing::PrintToString(command) << entry.path();
    }
    EXPECT_GE(count, files) << testing::PrintToString(command);
    files = count;
  }
  EXPECT_GT(files, 30u);
}

// A read-only document is replaced by a read-only one, or the verb refuses; it never becomes another kind of file.
TEST_F(DocumentPermissions, AReadOnlyDocumentStaysReadOnly) {
  put(u"page.htm", kPage, 0644);
  put(u"book.mif", kManual, 0644);
  put(u"letter.rtf", kLetter, 0644);
  put(u"note.txt", "One\n", 0644);
  const std::vector<std::string> prepare{"prepare", "note.txt", "--source", "EN-US", "--target", "FR"};
  ASSERT_EQ(run(prepare).code, 0);
  ASSERT_EQ(run({"export", "note_txt_FR.tud"}).code, 0);
  ASSERT_EQ(run({"rebuild", "note_txt_FR.tud"}).code, 0);
  ASSERT_EQ(run({"mif", "extract", "./book.mif"}).code, 0);
  const struct {
    const char16_t* document;
    std::vector<std::string> command;
  } cases[] = {
      {u"page.htm", {"html", "validate", "page.htm"}},
      {u"KAVO_ix.mif", {"mif", "extract", "./book.mif"}},
      {u"book.mif", {"mif", "merge", "./book.mif"}},
      {u"book.mif", {"mif", "remove-objects", "book.mif"}},
      {u"book.mif", {"mif", "insert-objects", "book.mif"}},
      {u"letter.rtf", {"rtf", "extract", "letter.rtf"}},
      {u"letter.rtf", {"rtf", "insert", "letter.rtf"}},
      {u"note_txt_FR.tud", {"pseudo", "note_txt_FR.tud"}},
      {u"note_txt_FR.xlf", {"export", "--overwrite", "note_txt_FR.tud"}},
      {u"note_txt_FR.tud", {"import", "note_txt_FR.xlf", "--to", "note_txt_FR.tud"}},
      {u"note_FR.txt", {"rebuild", "--overwrite", "note_txt_FR.tud"}},
      {u"note_txt_FR.tud.skl", prepare},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.command));
    set_mode(c.document, 0444);
    const std::string before = folder.read(c.document);
    const Ran ran = run(c.command);
    EXPECT_EQ(mode(path_to_host(folder.path(c.document))), 0444u);
    EXPECT_TRUE(ran.code == 0 || (ran.code == 1 && folder.read(c.document) == before)) << ran.code << ran.errors;
    set_mode(c.document, 0644);
  }
}

}  // namespace
}  // namespace kavo::test
