// Office programs that write the forms of many documents.
#include "office/office_converter.h"

#include "common/document_names.h"
#include "office/recording_office.h"
#include "support/failures.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class OfficeConverterTest : public PortsFixture {
 protected:
  OfficeConverterTest() {
    ports().automation = &office;
    for (const char* collection : {"Documents", "Presentations", "Workbooks"})
      office.answers["Application." + std::string(collection)] = office.with_object("Documents");
    office.answers["Documents.Open"] = [this](std::span<Argument> arguments) -> Value {
      const std::u16string name = as_text(arguments[0].value);
      if (name.find(u"\\kavo.") == name.npos) opened = name;
      return office.object("Document");
    };
    office.answers["Document.Fields"] = office.with_object("Fields");
    office.answers["Fields.Count"] = [](auto) -> Value { return std::int32_t{0}; };
    office.answers["Document.SaveAs"] = [this](std::span<Argument> arguments) -> Value {
      files.put(as_text(arguments[0].value), "form of " + files.get(opened));
      return Empty{};
    };
    office.answers["Application.Run"] = [this](auto) -> Value {
      files.put(translated_form_of(opened), "form of " + files.get(opened));
      files.remove_file(opened + u".kavo");
      return Empty{};
    };
  }
  std::size_t count(std::string_view call) const {
    std::size_t found = 0;
    for (const std::string& made : office.calls) found += made.starts_with(call) ? 1 : 0;
    return found;
  }
  std::string form_of(OfficeConverter& converter, const std::u16string& document) {
    files.put(document, "a document");
    converter.write_form(document);
    return files.get(translated_form_of(document));
  }

  RecordingOffice office;
  std::u16string opened;
};

TEST_F(OfficeConverterTest, OneProgramServesAllDocumentsOfItsKindAndIsQuitAtTheEnd) {
  for (const std::u16string type : {u"doc", u"ppt", u"xls"}) {
    SCOPED_TRACE(to_utf8(type));
    office.calls.clear();
    {
      OfficeConverter converter;
      for (const char16_t* name : {u"a.", u"b.", u"c."})
        EXPECT_EQ(form_of(converter, u"C:\\WORK\\" + (name + type)), "form of a document");
      EXPECT_EQ(count("Application.Quit"), 0u) << office.text();
    }
    // The word processor is looked for at each document, and is found running on a real system.
    EXPECT_EQ(count("create "), type == u"doc" ? 3u : 1u) << office.text();
    EXPECT_EQ(count("Application.Quit"), 1u) << office.text();
  }
}

TEST_F(OfficeConverterTest, AFailureSaysWhyAndTheNextDocumentGetsAnotherProgram) {
  OfficeConverter converter;
  for (const std::u16string type : {u"doc", u"ppt", u"xls"}) {
    SCOPED_TRACE(to_utf8(type));
    form_of(converter, u"C:\\WORK\\a." + type);
    office.failing = {"Document.SaveAs", "Application.Run"};
    files.put(u"C:\\WORK\\b." + type, "another document");
    const auto refused = failure_of([&] { converter.write_form(u"C:\\WORK\\b." + type); });
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->description(), u"The call was refused");
    EXPECT_FALSE(files.has(translated_form_of(u"C:\\WORK\\b." + type)));
    office.failing.clear();
    office.calls.clear();
    EXPECT_EQ(form_of(converter, u"C:\\WORK\\c." + type), "form of a document");
    EXPECT_EQ(count("create "), 1u) << office.text();
  }
}

TEST_F(OfficeConverterTest, AProgramThatIsNotThereIsNamed) {
  office.installed = false;
  OfficeConverter converter;
  for (const std::u16string type : {u"doc", u"ppt", u"xls"}) {
    files.put(u"C:\\WORK\\a." + type, "a document");
    const auto refused = failure_of([&] { converter.write_form(u"C:\\WORK\\a." + type); });
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->description(), u"No such program");
  }
}

TEST_F(OfficeConverterTest, AProgramThatWritesNothingFails) {
  office.answers["Document.SaveAs"] = [](auto) -> Value { return Empty{}; };
  files.put(u"C:\\WORK\\a.doc", "a document");
  OfficeConverter converter;
  const auto refused = failure_of([&] { converter.write_form(u"C:\\WORK\\a.doc"); });
  ASSERT_TRUE(refused);
  EXPECT_EQ(refused->description(), u"Word.Application refused the file");
}

TEST_F(OfficeConverterTest, OtherDocumentsAreRefused) {
  OfficeConverter converter;
  EXPECT_EQ(failure_number([&] { converter.write_form(u"C:\\WORK\\a.txt"); }), 5);
}

}  // namespace
}  // namespace kavo::test
