// What connects the documents of one preparation, and distinguishes them from others.
#include <gtest/gtest.h>

#include "common/checksum.h"
#include "suite/components/filter_catalogue.h"
#include "suite/components/tud_document.h"
#include "suite/document/skeleton.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

class DocumentSet : public SuiteTest {
 protected:
  // Converts index_asp.txt, which stands for index.asp, as a driver does.
  std::u16string convert_in_set(std::u16string_view mark, std::u16string_view author_document = u"index.asp") {
    const std::u16string tud = in_folder(u"index_asp_txt_FR.tud");
    const auto text = [](std::u16string_view value) { return by_value(std::u16string(value)); };
    Argument arguments[] = {
        text(in_folder(u"index_asp.txt")),
        text(tud),
        text(u""),
        text(u"EN-US"),
        by_value(65001),
        text(u"FR"),
        by_value(0),
        text(u"K19TXT"),
        text(u"Paragraph"),
        text(mark),
        author_document.empty() ? text(u"") : text(in_folder(author_document)),
    };
    FilterCatalogue catalogue;
    catalogue.invoke(u"ConvertInSet", arguments);
    return tud;
  }
  void open(const std::u16string& tud) {
    Argument name[] = {by_value(tud)};
    ASSERT_EQ(as_number(object.invoke(u"Open", name)), 0);
  }
  // Why there is no skeleton, "" when there is one.
  std::u16string skeleton_problem() {
    Argument arguments[] = {by_reference(std::u16string()), by_reference(false)};
    const std::int32_t status = as_number(object.invoke(u"LocateSkeleton", arguments));
    const std::u16string reason = as_text(object.get(u"LastError"));
    EXPECT_EQ(status != 0, !reason.empty());
    return reason;
  }
  TUDDocument object;
};

TEST_F(DocumentSet, BothFilesCarryTheMarkAndTheAuthorsDocument) {
  put(u"index_asp.txt", "One\n");
  put(u"index.asp", "<% One %>\n");
  const std::u16string tud = convert_in_set(u"1f3a-07");
  const SetMark expected{"1f3a-07", "index.asp", checksum_of_file(in_folder(u"index.asp"))};
  EXPECT_EQ(BilingualDocument(tud).header().set, expected);
  EXPECT_EQ(SkeletonReader(skeleton_name_of(tud)).header().set, expected);
  EXPECT_EQ(BilingualDocument(tud).header().original, "index_asp.txt");
  open(tud);
  EXPECT_EQ(as_text(object.get(u"SetMark")), u"1f3a-07");
  EXPECT_EQ(skeleton_problem(), u"");
  EXPECT_EQ(rebuild(tud), "One\n");
}

TEST_F(DocumentSet, APlainConversionCarriesNone) {
  put(u"a.txt", "One\n");
  const std::u16string tud = convert(u"a.txt");
  EXPECT_EQ(BilingualDocument(tud).header().set, SetMark());
  EXPECT_EQ(SkeletonReader(skeleton_name_of(tud)).header().set, SetMark());
  open(tud);
  EXPECT_EQ(as_text(object.get(u"SetMark")), u"");
}

TEST_F(DocumentSet, WithoutADocumentTheQuestionsRaise) {
  EXPECT_THROW(object.get(u"SetMark"), failure);
  EXPECT_THROW(object.get(u"SourceChanged"), failure);
}

TEST_F(DocumentSet, AMarkThatIsNotAWordIsRefused) {
  put(u"index_asp.txt", "One\n");
  put(u"index.asp", "One\n");
  for (const std::u16string_view mark : {u"a/b", u"..", u"a\nb"}) EXPECT_THROW(convert_in_set(mark), failure);
  EXPECT_THROW(convert_in_set(u"m1", u"missing.asp"), failure);
  EXPECT_EQ(files.all_files().size(), 2u);
}

TEST_F(DocumentSet, TheSkeletonOfAnotherPreparationIsRefused) {
  put(u"index_asp.txt", "One\n");
  put(u"index.asp", "One\n");
  const std::u16string tud = in_folder(u"index_asp_txt_FR.tud"), skeleton = skeleton_name_of(tud);
  const struct {
    const char* name;
    std::function<void()> other;  // the preparation that the skeleton is from
    const char16_t* reason;
  } cases[] = {
      {"another mark", [&] { convert_in_set(u"m2"); }, u"another preparation"},
      {"no mark", [&] { convert_in_set(u""); }, u"another preparation"},
      {"another author's document",
       [&] {
         put(u"index.asp", "Two\n");
         convert_in_set(u"m1");
         put(u"index.asp", "One\n");
       },
       u"another preparation"},
      {"another document",
       [&] {
         put(u"index_asp.txt", "Two\n");
         convert_in_set(u"m1");
         put(u"index_asp.txt", "One\n");
       },
       u"is not the skeleton of"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    c.other();
    const std::string wrong = files.get(skeleton);
    convert_in_set(u"m1");
    files.put(skeleton, wrong);
    open(tud);
    EXPECT_NE(skeleton_problem().find(c.reason), std::u16string::npos);
  }
}

TEST_F(DocumentSet, AChangedSourceIsSeen) {
  put(u"index_asp.txt", "One\n");
  const auto changed = [&](const std::u16string& tud) {
    open(tud);
    return as_flag(object.get(u"SourceChanged"));
  };
  put(u"index.asp", "One\n");
  std::u16string tud = convert_in_set(u"m1");
  EXPECT_FALSE(changed(tud));
  put(u"index_asp.txt", "the prepared file is the program's own\n");
  EXPECT_FALSE(changed(tud));
  put(u"index.asp", "Two\n");
  EXPECT_TRUE(changed(tud));
  files.remove_file(in_folder(u"index.asp"));
  EXPECT_FALSE(changed(tud));

  // If a document does not name the author's document, the one that was converted counts.
  tud = convert_in_set(u"m1", u"");
  EXPECT_FALSE(changed(tud));
  put(u"index_asp.txt", "Two\n");
  EXPECT_TRUE(changed(tud));
  files.remove_file(in_folder(u"index_asp.txt"));
  EXPECT_FALSE(changed(tud));
}

}  // namespace
}  // namespace kavo::test
