// A damaged skeleton never gives a document.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "suite/document/skeleton.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

class SkeletonDamage : public SuiteTest {
 protected:
  // "" when the target was built or the reason why not.
  std::u16string problem(const std::u16string& open_tag, const std::u16string& skeleton) {
    return reason_of([&] {
      ProgressEvent progress;
      create_target({in_folder(u"b.txt"), open_tag, skeleton, u"", u""}, progress);
    });
  }
};

TEST_F(SkeletonDamage, EverySingleBitIsNoticedBeforeAnythingIsWritten) {
  put(u"a.txt", "One line\nand \xFF another\n");
  const std::u16string tud = convert(u"a.txt"), skeleton = skeleton_name_of(tud), open_tag = in_folder(u"a.otf");
  BilingualDocument(tud).save_open_tag(open_tag);
  const std::string whole = files.get(skeleton);
  ASSERT_EQ(problem(open_tag, skeleton), u"");
  ASSERT_EQ(get(u"b.txt"), get(u"a.txt"));
  put(u"b.txt", "old");
  for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
    std::string damaged = whole;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
    files.put(skeleton, damaged);
    EXPECT_NE(problem(open_tag, skeleton).find(u"is damaged"), std::u16string::npos) << bit;
    EXPECT_NE(reason_of([&] { BilingualDocument(tud).locate_skeleton(); }).find(u"is damaged"), std::u16string::npos)
        << bit;
  }
  EXPECT_EQ(get(u"b.txt"), "old");
  EXPECT_EQ(files.all_files().size(), 5u);
}

TEST_F(SkeletonDamage, ACutOrLengthenedSkeletonIsNoticed) {
  put(u"a.txt", "One\n");
  const std::u16string tud = convert(u"a.txt"), skeleton = skeleton_name_of(tud);
  const std::string whole = files.get(skeleton);
  ASSERT_FALSE(whole.empty());
  for (std::size_t length = 0; length < whole.size(); ++length) {
    files.put(skeleton, whole.substr(0, length));
    EXPECT_THROW(SkeletonReader reader(skeleton), failure) << length;
  }
  for (const std::string_view more : {"\n", " ", "x", "E 1 1\n"}) {
    files.put(skeleton, whole + std::string(more));
    EXPECT_THROW(SkeletonReader reader(skeleton), failure) << more;
  }
}

std::string stored(const char* name) {
  std::ifstream file(std::string(KAVO_FIRST_FORMAT "/") + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Documents that were prepared before skeletons held a checksum can still be rebuilt.
TEST_F(SkeletonDamage, TheFirstFormatIsStillRead) {
  put(u"note_txt_FR.tud", stored("note_txt_FR.tud"));
  put(u"note_txt_FR.tud.skl", stored("note_txt_FR.tud.skl"));
  ASSERT_TRUE(get(u"note_txt_FR.tud.skl").starts_with("KAVO skeleton 1\n"));
  const std::u16string tud = in_folder(u"note_txt_FR.tud");
  BilingualDocument document(tud);
  EXPECT_EQ(document.header().set, SetMark());
  EXPECT_FALSE(document.is_source_changed());
  EXPECT_EQ(rebuild(tud), stored("note.txt"));
  put(u"note.txt", stored("note.txt"));
  EXPECT_FALSE(document.is_source_changed());
  put(u"note.txt", "another one\n");
  EXPECT_TRUE(document.is_source_changed());
  document.set_segment(0, "Une premi\xC3\xA8re ligne", TranslationStatus::kTranslated, 0);
  document.save();
  EXPECT_EQ(rebuild(tud), "Une premi\xE8re ligne\nAnother one \xE9t\xE9\n");
}

}  // namespace
}  // namespace kavo::test
