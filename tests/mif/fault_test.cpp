// Every file operation fails in turn, once or from then on: the document and the files that belong to it are then
// whole, old or new, and no half-written file has a final name.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>

#include "mif/mif_fixture.h"
#include "support/faulty_files.h"

namespace kavo::test {
namespace {

class MifFaultTest : public MifTest {
 protected:
  using State = std::map<std::u16string, std::string>;  // contents by path

  MifFaultTest() {
    ports().files = &faulty;
    for (int i = 0; i < 1500; ++i) book += marker("entry " + std::to_string(i)) + "a line\r\n";
    book += "=GIF\r\n" + std::string(400000, '&') + "\r\n=EndInset\r\n";
    put(u"m.mif", book);
    utilities.MIFFile(in_folder(u"m.mif"));
  }

  State state() const {
    State now;
    for (const std::u16string& path : files.all_files()) now[path] = files.get(path);
    return now;
  }

  // Temporary names may be left over: when the file cannot be removed, or when it is complete and could not be moved.
  static bool is_temporary(std::u16string_view path) {
    return path.find(u".kavo-") != std::u16string_view::npos || path.starts_with(u"C:\\TEMP\\");
  }

  // Runs the operation, which answers the number of failures, from the present state with every fault.
  void check_every_fault(std::function<int()> operation) {
    const State before = state();
    ASSERT_EQ(operation(), 0);
    const State after = state();
    for (const auto counted : {FaultyFiles::Counted::kAll, FaultyFiles::Counted::kMutating}) {
      for (const bool lasting : {false, true}) {
        for (const std::size_t partial_bytes : {0, 1000}) {
          FaultyFiles::Fault fault;
          fault.counted = counted;
          fault.lasting = lasting;
          fault.partial_bytes = partial_bytes;
          int failures = 0;
          const std::size_t faults = for_each_fault(
              faulty, fault,
              [&](std::size_t) {
                restore(before);
                failures = operation();
              },
              [&](std::size_t number) { check(before, after, failures, number); });
          EXPECT_GT(faults, 5u);
          EXPECT_EQ(failures, 0);  // the last run met no fault
        }
      }
    }
  }

  FaultyFiles faulty{files};
  // A side file that cannot be read counts as a failure though the document is merged with the others.
  bool failure_keeps_document = true;
  std::string book = "<MIFFile 7.00>\r\n";

 private:
  void restore(const State& wanted) {
    for (const std::u16string& path : files.all_files())
      if (!wanted.contains(path)) files.remove_file(path);
    for (const auto& [path, bytes] : wanted) files.put(path, bytes);
  }

  void check(const State& before, const State& after, int failures, std::size_t number) {
    const State now = state();
    for (const auto& [path, bytes] : now) {
      if (is_temporary(path)) continue;
      const bool is_old = before.contains(path) && before.at(path) == bytes;
      const bool is_new = after.contains(path) && after.at(path) == bytes;
      EXPECT_TRUE(is_old || is_new) << path_to_host(path) << " is damaged by fault " << number;
      EXPECT_TRUE(is_new || failures != 0) << path_to_host(path) << " is old after fault " << number;
    }
    for (const auto& [path, bytes] : before)
      EXPECT_TRUE(now.contains(path)) << path_to_host(path) << " is lost by fault " << number;
    if (failures != 0 && failure_keeps_document) {
      EXPECT_EQ(now.at(in_folder(u"m.mif")), before.at(in_folder(u"m.mif"))) << "fault " << number;
    }
  }
};

TEST_F(MifFaultTest, Extraction) {
  for (const std::u16string_view side : {u"KAVO_ix.mif", u"KAVO_xr.mif", u"KAVO_va.mif"}) put(side, "an old one");
  check_every_fault([this] {
    utilities.StartBatch();
    utilities.MIFFile(in_folder(u"m.mif"));
    utilities.Extract();
    return utilities.extracted() ? utilities.EndBatch() : 1;
  });
}

TEST_F(MifFaultTest, Merging) {
  extract({u"m.mif"});
  std::string index = get(u"KAVO_ix.mif");
  for (std::size_t at = 0; (at = index.find("<String `", at)) != std::string::npos; at += 10) index.insert(at + 9, "!");
  put(u"KAVO_ix.mif", index);
  failure_keeps_document = false;
  check_every_fault([this] { return merge({u"m.mif"}); });
}

TEST_F(MifFaultTest, RemovingObjects) {
  put(u"m.obj", "<KAVOObj End>\r\n");
  check_every_fault([this] { return utilities.RemoveObjects(); });
}

TEST_F(MifFaultTest, InsertingObjects) {
  ASSERT_EQ(utilities.RemoveObjects(), 0);
  check_every_fault([this] { return utilities.InsertObjects(); });
}

}  // namespace
}  // namespace kavo::test
