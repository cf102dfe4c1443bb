// The command itself, interrupted in the middle of a conversion.
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "cli/run_kavo.h"
#include "office/libreoffice/flat_documents.h"
#include "office/libreoffice/office_fixture.h"
#include "platform/files.h"

namespace kavo::test {
namespace {

// Whether a process runs whose command line names this.
bool is_running(const std::string& argument) {
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", ignored)) {
    std::ifstream line(entry.path() / "cmdline");
    if (std::string(std::istreambuf_iterator<char>(line), {}).find(argument) != std::string::npos) return true;
  }
  return false;
}

TEST_F(OfficeFixture, CtrlCInAConversionEndsTheCommandWith130AndLeavesNothingBehind) {
  std::string rows;
  for (int i = 0; i < 8000; ++i) rows += row(cell("<text:span text:style-name=\"bold\">b</text:span> text"));
  const auto path = make_document(u"large.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", rows)));
  const std::string host_path = path_to_host(path);
  // LibreOffice's folder, process and files are all found by the folder that it is told to work in.
  folder.make_folder(u"temporary");
  const std::string temporary = path_to_host(folder.path(u"temporary"));
  const char* const before = getenv("TMPDIR");
  const std::string kept = before ? before : "";
  setenv("TMPDIR", temporary.c_str(), 1);
  bool was_running = false;
  const auto ran = run_kavo_interrupted({"excel", "to-xml", host_path}, [&] {
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!folder.exists(u".kavo-run\\1\\large.xls.kavo") && std::chrono::steady_clock::now() < give_up)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    was_running = is_running(temporary);
  });
  before ? setenv("TMPDIR", kept.c_str(), 1) : unsetenv("TMPDIR");
  ASSERT_TRUE(ran);
  EXPECT_TRUE(was_running);
  EXPECT_EQ(ran->code, 130) << ran->errors;
  EXPECT_FALSE(is_running(temporary));
  EXPECT_FALSE(folder.exists(u"large_xls.xml"));
  EXPECT_EQ(folder.entry_count(), 3u);  // the workbook, what it was made of, and the folder
  EXPECT_TRUE(std::filesystem::is_empty(temporary));
  EXPECT_NO_THROW(OfficeDocument(office_listener(), OfficeKind::kWorkbook, path));
}

TEST_F(OfficeFixture, ATranslatedExportIsReplacedOnlyOnRequest) {
  const std::string book =
      path_to_host(make_document(u"book.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", row(cell("first"))))));
  ASSERT_EQ(run_kavo({"excel", "to-xml", book}).code, 0);
  const std::string exported = folder.read(u"book_xls.xml");
  const std::string translated = changed_segments(exported);
  folder.write(u"book_xls.xml", translated);
  const std::size_t entries = folder.entry_count();
  EXPECT_EQ(run_kavo({"excel", "to-xml", book}).code, 1);
  EXPECT_EQ(folder.read(u"book_xls.xml"), translated);
  const Ran ran = run_kavo({"excel", "to-xml", "--overwrite", book});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(folder.read(u"book_xls.xml"), exported);
  EXPECT_EQ(folder.entry_count(), entries);
}

}  // namespace
}  // namespace kavo::test
