#include "suite/components/translation_memory.h"

#include <gtest/gtest.h>

#include "formats/xml/xml_reader.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

class TranslationMemoryTest : public SuiteTest {
 protected:
  std::u16string call(std::u16string_view member) { return as_text(memory.invoke(member)); }
  TranslationMemory memory;
};

TEST_F(TranslationMemoryTest, CreateNewAsksForANameAndWritesAnEmptyMemory) {
  desktop.file_answers = {in_folder(u"shop.tmx")};
  files.add_folder(u"C:\\work");
  EXPECT_EQ(call(u"CreateNew"), in_folder(u"shop.tmx"));
  ASSERT_EQ(desktop.file_questions.size(), 1u);
  EXPECT_TRUE(desktop.file_questions[0].to_save);
  EXPECT_EQ(desktop.file_questions[0].filter, u"Translation memories|*.tmx||");
  EXPECT_EQ(desktop.file_questions[0].extension, u"tmx");
  // What was written is a document that editors read.
  struct Elements final : XmlHandler {
    std::string names;
    void start(std::string_view, std::string_view name, const XmlAttributes&, XmlPlace) override {
      (names += name) += ' ';
    }
    void end(std::string_view, std::string_view, XmlPlace) override {}
    void text(std::string_view) override {}
  } elements;
  XmlReader(in_folder(u"shop.tmx")).read(elements);
  EXPECT_EQ(elements.names, "tmx header body ");
}

TEST_F(TranslationMemoryTest, OpenExistingAsksForAFileAndLeavesItAlone) {
  put(u"shop.tmx", "a memory");
  desktop.file_answers = {in_folder(u"shop.tmx")};
  EXPECT_EQ(call(u"OpenExisting"), in_folder(u"shop.tmx"));
  ASSERT_EQ(desktop.file_questions.size(), 1u);
  EXPECT_FALSE(desktop.file_questions[0].to_save);
  EXPECT_EQ(get(u"shop.tmx"), "a memory");
}

TEST_F(TranslationMemoryTest, AUserWhoGivesUpChoosesNothing) {
  EXPECT_EQ(call(u"CreateNew"), u"");
  EXPECT_EQ(call(u"OpenExisting"), u"");
  EXPECT_TRUE(files.all_files().empty());
}

TEST_F(TranslationMemoryTest, AMemoryThatCannotBeWrittenIsRaised) {
  desktop.file_answers = {u"C:\\nowhere\\shop.tmx"};
  EXPECT_THROW(call(u"CreateNew"), failure);
}

}  // namespace
}  // namespace kavo::test
