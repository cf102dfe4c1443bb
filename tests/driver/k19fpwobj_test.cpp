#include "driver/K19FPWObj.h"

#include <gtest/gtest.h>

#include "driver/driver_fixture.h"

namespace kavo::test {
namespace {

// Shows what hosts see of a translation that succeeds.
class OpenK19FPWObj : public K19FPWObj {
 public:
  using K19FPWObj::report_translation;
};

class K19FPWObjTest : public DriverFixture {
 protected:
  std::int32_t create_translation(K19FPWObj& object) {
    std::u16string tud = u"C:\\WORK\\page_asp_HTM_ENU.tud", target = u"C:\\WORK\\page_ENU.asp";
    std::int32_t preview = 0, highlight = 0;
    const std::int32_t result = object.CreateTranslation(tud, target, preview, highlight);
    EXPECT_EQ(target, u"C:\\WORK\\page_ENU.asp") << "a failure writes nothing back";
    return result;
  }
};

TEST_F(K19FPWObjTest, NewObjectIsEmpty) {
  const K19FPWObj object;
  EXPECT_EQ(object.GetFileCount(), 0);
  EXPECT_EQ(object.GetFile(0), u"");
  EXPECT_EQ(object.QuietMode(), 0);
  EXPECT_EQ(object.LastError(), u"");
}

TEST_F(K19FPWObjTest, TextFileIsListedAsGiven) {
  K19FPWObj object;
  EXPECT_EQ(pre_process(object, u"C:\\WORK\\Read Me.TXT"), 0);
  EXPECT_EQ(object.GetFileCount(), 1);
  EXPECT_EQ(object.GetFile(0), u"C:\\WORK\\Read Me.TXT");
  EXPECT_EQ(object.GetFile(1), u"");
}

TEST_F(K19FPWObjTest, NegativeIndexIsOutOfRangeAndTooLargeIsEmpty) {
  K19FPWObj object;
  for (const std::int32_t index : {-1, -2147483647 - 1}) {
    try {
      static_cast<void>(object.GetFile(index));
      FAIL() << index;
    } catch (const failure& reason) {
      EXPECT_EQ(reason.number(), 9);
      EXPECT_EQ(reason.description(), u"Subscript out of range");
    }
  }
  EXPECT_EQ(object.GetFile(2147483647), u"");
}

TEST_F(K19FPWObjTest, GetFile4WithFourFilesIsEmpty) {
  files.put(u"C:\\WORK\\manual.mif", "<MIFFile 7.00>\r\n");
  K19FPWObj object;
  ASSERT_EQ(pre_process(object, u"C:\\WORK\\manual.mif"), 0);
  ASSERT_EQ(object.GetFileCount(), 4);
  EXPECT_NE(object.GetFile(3), u"");
  EXPECT_EQ(object.GetFile(4), u"");
}

TEST_F(K19FPWObjTest, FailingCreateTranslationShowsOneMessageBoxUnlessQuiet) {
  K19FPWObj object;
  EXPECT_EQ(create_translation(object), 1);
  ASSERT_EQ(desktop.message_boxes.size(), 1u);
  EXPECT_EQ(desktop.message_boxes[0],
            (FakeDesktop::MessageBox{u"Failed to open TUD file", u"KAVO", MessageIcon::kExclamation}));
  EXPECT_EQ(object.LastError(), u"Failed to open TUD file");
  for (const std::int32_t quiet : {1, -1, 7}) {
    K19FPWObj quiet_object;
    quiet_object.QuietMode(quiet);
    EXPECT_EQ(quiet_object.QuietMode(), quiet);
    EXPECT_EQ(create_translation(quiet_object), 1);
    EXPECT_EQ(quiet_object.LastError(), u"Failed to open TUD file");
  }
  EXPECT_EQ(desktop.message_boxes.size(), 1u);
}

TEST_F(K19FPWObjTest, FailingCreateTranslationEmptiesTheFileList) {
  K19FPWObj object;
  object.QuietMode(1);
  pre_process(object, u"C:\\WORK\\a.txt");
  create_translation(object);
  EXPECT_EQ(object.GetFileCount(), 0);
  EXPECT_EQ(object.GetFile(0), u"");
}

TEST_F(K19FPWObjTest, SuccessfulCreateTranslationClearsLastError) {
  OpenK19FPWObj object;
  object.QuietMode(1);
  EXPECT_EQ(object.report_translation(5, u"the filter's own text"), 5);
  EXPECT_EQ(object.LastError(), u"the filter's own text");
  pre_process(object, u"C:\\WORK\\a.txt");
  EXPECT_EQ(object.report_translation(0, u""), 0);
  EXPECT_EQ(object.LastError(), u"");
  EXPECT_EQ(object.GetFileCount(), 1) << "a success keeps the list";
}

TEST_F(K19FPWObjTest, EveryTranslationCodeHasItsText) {
  const char16_t* texts[] = {u"Failed to open TUD file",
                             u"Failed to save OpenTag file",
                             u"Failed to locate SKL file",
                             u"Failed to retrieve merge file details",
                             u"Failed to create the translation file",
                             u"Failed to post-process the file",
                             u"Unable to delete the target file - check that it is not already in use"};
  OpenK19FPWObj object;
  object.QuietMode(1);
  for (std::int32_t code = 1; code <= 7; ++code) {
    EXPECT_EQ(object.report_translation(code, u""), code);
    EXPECT_EQ(object.LastError(), texts[code - 1]);
  }
}

TEST_F(K19FPWObjTest, WizardWithoutDialogAnswersAsWhenCancelled) {
  K19FPWObj object;
  std::u16string name = u"C:\\WORK\\a.txt";
  std::int32_t flags = 0;
  EXPECT_EQ(object.SingleFileWizard(name, flags), 1);
  EXPECT_EQ(name, u"C:\\WORK\\a.txt");
  EXPECT_EQ(object.GetFileCount(), 0);
}

TEST_F(K19FPWObjTest, CreationBringsANewCatalogueAndDestructionReleasesIt) {
  auto first = std::make_unique<K19FPWObj>();
  EXPECT_EQ(automation.created, (std::vector<std::u16string>{u"K19Suite.FilterCatalogue"}));
  AutomationObject* catalogue = &filter_catalogue();
  const K19FPWObj second;
  EXPECT_NE(&filter_catalogue(), catalogue);
  // Deliberate: the first object's end takes the thread's catalogue away from the second.
  first.reset();
  EXPECT_EQ(failure_number([] { filter_catalogue(); }), 91);
}

TEST_F(K19FPWObjTest, CreationRaisesWhatTheCatalogueRaises) {
  automation.factories[u"K19Suite.FilterCatalogue"] = [] {
    return std::make_shared<FakeObject>(
        std::vector<Member>{{u"Enumerate", MemberKind::kMethod, 5, 5, [](std::span<Argument>) -> Value {
                               throw failure(1234, u"The catalogue is damaged", u"Suite");
                             }}});
  };
  EXPECT_EQ(failure_number([] { const K19FPWObj object; }), 1234);
  EXPECT_EQ(failure_number([] { filter_catalogue(); }), 91) << "nothing is kept";
  automation.factories.clear();
  EXPECT_EQ(failure_number([] { const K19FPWObj object; }), 429);
}

}  // namespace
}  // namespace kavo::test
