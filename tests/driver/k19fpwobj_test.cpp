#include "driver/K19FPWObj.h"

#include <gtest/gtest.h>

#include "driver/driver_fixture.h"
#include "driver/filter_table.h"
#include "driver/recording_suite.h"

namespace kavo::test {
namespace {

class K19FPWObjTest : public DriverFixture {
 protected:
  K19FPWObjTest() {
    suite.status = [](std::u16string_view, const std::u16string&) { return 1; };
    suite.install(automation);
  }
  std::int32_t create_translation(K19FPWObj& object) {
    std::u16string tud = u"C:\\WORK\\page_asp_HTM_ENU.tud", target = u"C:\\WORK\\page_ENU.asp";
    std::int32_t preview = 0, highlight = 0;
    const std::int32_t result = object.CreateTranslation(tud, target, preview, highlight);
    EXPECT_EQ(target, u"C:\\WORK\\page_ENU.asp") << "a failure writes nothing back";
    return result;
  }
  RecordingSuite suite;  // every operation of its documents fails
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
  K19FPWObj object;
  object.QuietMode(1);
  EXPECT_EQ(create_translation(object), 1);
  EXPECT_NE(object.LastError(), u"");
  suite.status = {};
  std::u16string tud = u"C:\\WORK\\a_txt_FR.tud", target;
  std::int32_t preview = 0, highlight = 0;
  EXPECT_EQ(object.CreateTranslation(tud, target, preview, highlight), 0);
  EXPECT_EQ(object.LastError(), u"");
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
