#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "office/clsDOC2RTF.h"
#include "office/recording_office.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

constexpr const char16_t* kDoc = u"C:\\WORK\\report.doc";
constexpr const char16_t* kRtf = u"C:\\WORK\\report_doc.rtf";

class Doc2RtfTest : public PortsFixture {
 protected:
  Doc2RtfTest() { ports().automation = &word; }

  // A word processor whose documents have fields of these types; an update answers `updated`.
  void give_fields(std::vector<std::int32_t> types, Value updated = true) {
    word.answers["Application.Documents"] = word.with_object("Documents");
    word.answers["Documents.Open"] = word.with_object("Document");
    word.answers["File.application"] = word.with_object("Application");
    for (const std::string document : {"Document", "File"})
      word.answers[document + ".Fields"] = [this](std::span<Argument> arguments) -> Value {
        return word.object(arguments.empty() ? "Fields" : "Field" + std::to_string(as_number(arguments[0].value)));
      };
    word.answers["Fields.Count"] = [count = static_cast<std::int32_t>(types.size())](auto) -> Value { return count; };
    for (std::size_t i = 0; i < types.size(); ++i) {
      const std::string field = "Field" + std::to_string(i + 1);
      word.answers[field + ".Type"] = [type = types[i]](auto) -> Value { return type; };
      word.answers[field + ".Update"] = [updated](auto) { return updated; };
    }
  }

  std::int32_t to_rtf(clsDOC2RTF& converter) {
    files.put(kDoc, "doc");
    converter.DOCFile(kDoc);
    return converter.DOC2RTF();
  }
  std::int32_t to_doc(clsDOC2RTF& converter) {
    files.put(kRtf, "{\\rtf1}");
    converter.RTFFile(kRtf);
    return converter.RTF2DOC();
  }

  RecordingOffice word;
};

TEST_F(Doc2RtfTest, EveryCallOfDoc2RtfInARunningWordProcessor) {
  word.running = true;
  give_fields({58, 1, 58, 88});
  word.answers["Field1.Update"] = [](auto) -> Value { return false; };
  clsDOC2RTF converter;
  EXPECT_EQ(to_rtf(converter), 0);
  EXPECT_EQ(converter.RTFFile(), kRtf);
  EXPECT_EQ(word.text(),
            "active Word.Application\n"
            "Application.Visible = true\n"
            "Application.Documents\n"
            "Documents.Open(\"C:\\WORK\\report.doc\"&, false, true, false)\n"
            "Document.Fields\n"
            "Fields.Count\n"
            "Document.Fields(4i32)\n"
            "Field4.Type\n"
            "Document.Fields(3i32)\n"
            "Field3.Type\n"
            "Document.Fields(3i32)\n"
            "Field3.Update()\n"
            "Document.Fields(2i32)\n"
            "Field2.Type\n"
            "Document.Fields(1i32)\n"
            "Field1.Type\n"
            "Document.Fields(1i32)\n"
            "Field1.Update()\n"
            "Document.Fields(1i32)\n"
            "Field1.Unlink()\n"
            "Document.SaveAs(\"C:\\WORK\\report_doc.rtf\"&, 6i16)\n"
            "Document.Close(0i16)\n");
}

TEST_F(Doc2RtfTest, EveryCallOfDoc2RtfInANewWordProcessor) {
  give_fields({});
  clsDOC2RTF converter;
  EXPECT_EQ(to_rtf(converter), 0);
  EXPECT_EQ(word.text(),
            "active Word.Application\n"
            "create Word.Application\n"
            "Application.Visible = true\n"
            "Application.Documents\n"
            "Documents.Open(\"C:\\WORK\\report.doc\"&, false, true, false)\n"
            "Document.Fields\n"
            "Fields.Count\n"
            "Document.SaveAs(\"C:\\WORK\\report_doc.rtf\"&, 6i16)\n"
            "Document.Close(0i16)\n"
            "Application.Quit(0i16)\n");
}

TEST_F(Doc2RtfTest, EveryCallOfDoc2RtfBoundToTheFile) {
  word.installed = false;
  word.bindable = true;
  give_fields({});
  clsDOC2RTF converter;
  EXPECT_EQ(to_rtf(converter), 0);
  EXPECT_EQ(word.text(),
            "active Word.Application\n"
            "create Word.Application\n"
            "bind C:\\WORK\\report.doc\n"
            "File.application\n"
            "Application.Visible = true\n"
            "File.Fields\n"
            "Fields.Count\n"
            "File.SaveAs(\"C:\\WORK\\report_doc.rtf\"&, 6i16)\n"
            "File.Close(0i16)\n"
            "Application.Quit(0i16)\n");
}

TEST_F(Doc2RtfTest, EveryCallOfRtf2Doc) {
  give_fields({88, 58, 88}, false);
  clsDOC2RTF converter;
  EXPECT_EQ(to_doc(converter), 0);
  EXPECT_EQ(converter.DOCFile(), kDoc);
  EXPECT_EQ(word.text(),
            "active Word.Application\n"
            "create Word.Application\n"
            "Application.Visible = true\n"
            "Application.Documents\n"
            "Documents.Open(\"C:\\WORK\\report_doc.rtf\"&, false, true, false)\n"
            "Document.Fields\n"
            "Fields.Count\n"
            "Document.Fields(3i32)\n"
            "Field3.Type\n"
            "Document.Fields(3i32)\n"
            "Field3.Update()\n"
            "Document.Fields(2i32)\n"
            "Field2.Type\n"
            "Document.Fields(1i32)\n"
            "Field1.Type\n"
            "Document.Fields(1i32)\n"
            "Field1.Update()\n"
            "Document.SaveAs(\"C:\\WORK\\report.doc\"&, 0i16)\n"
            "Document.Close(0i16)\n"
            "Application.Quit(0i16)\n");
}

TEST_F(Doc2RtfTest, AProgramThatKnowsWhatItLostIsAsked) {
  give_fields({});
  clsDOC2RTF converter;
  EXPECT_EQ(to_doc(converter), 0);
  EXPECT_EQ(converter.losses(), u"");
  word.answers["Application.KavoLosses"] = [](auto) -> Value { return u"texts in frames"; };
  EXPECT_EQ(to_doc(converter), 0);
  EXPECT_EQ(converter.losses(), u"texts in frames");
  word.failing = {"Application.KavoLosses"};
  EXPECT_EQ(to_doc(converter), 0) << "the document is there";
  EXPECT_EQ(converter.losses(), u"");
}

TEST_F(Doc2RtfTest, WithoutASourceTheWordProcessorIsNotTouched) {
  clsDOC2RTF converter;
  EXPECT_EQ(converter.DOC2RTF(), 1);
  EXPECT_EQ(converter.RTF2DOC(), 1);
  converter.DOCFile(u"C:\\WORK\\missing.doc");
  converter.RTFFile(u"C:\\WORK\\missing.rtf");
  EXPECT_EQ(converter.DOC2RTF(), 1);
  EXPECT_EQ(converter.RTF2DOC(), 1);
  EXPECT_EQ(word.text(), "");
}

TEST_F(Doc2RtfTest, AnExistingTargetIsReplaced) {
  word.running = true;
  give_fields({});
  for (const bool read_only : {false, true}) {
    files.put(kRtf, "old");
    files.set_read_only(kRtf, read_only);
    bool was_there = true;
    word.answers["Document.SaveAs"] = [&](std::span<Argument> arguments) -> Value {
      was_there = files.has(as_text(arguments[0].value));
      files.put(as_text(arguments[0].value), "new");
      return Empty{};
    };
    clsDOC2RTF converter;
    EXPECT_EQ(to_rtf(converter), 0);
    EXPECT_FALSE(was_there);
    EXPECT_EQ(files.get(kRtf), "new");
  }
}

TEST_F(Doc2RtfTest, ATargetThatIsTheSourceIsRefused) {
  give_fields({});
  files.put(kDoc, "doc");
  clsDOC2RTF converter;
  converter.DOCFile(kDoc);
  converter.RTFFile(u"C:\\work\\REPORT.doc");
  EXPECT_EQ(converter.DOC2RTF(), 1);
  converter.RTFFile(kDoc);
  EXPECT_EQ(converter.RTF2DOC(), 1);
  EXPECT_EQ(files.get(kDoc), "doc");
  EXPECT_EQ(word.text(), "");
}

TEST_F(Doc2RtfTest, ATargetThatIsAnotherNameOfTheSourceIsRefused) {
  files.put(u"C:\\WORK\\report.doc", "source");
  files.link_file(u"C:\\WORK\\report.doc", u"C:\\WORK\\other.rtf");
  clsDOC2RTF converter;
  converter.DOCFile(u"C:\\WORK\\report.doc");
  converter.RTFFile(u"C:\\WORK\\other.rtf");
  EXPECT_EQ(converter.DOC2RTF(), 1);
  EXPECT_EQ(files.get(u"C:\\WORK\\report.doc"), "source");
  EXPECT_EQ(files.get(u"C:\\WORK\\other.rtf"), "source");
  EXPECT_EQ(word.text(), "");
}

TEST_F(Doc2RtfTest, DerivedNames) {
  word.running = true;
  give_fields({});
  const struct {
    std::u16string_view rtf;
    std::u16string_view doc;
  } cases[] = {{u"C:\\WORK\\y_DOC.rtf", u"C:\\WORK\\y.doc"}, {u"C:\\WORK\\y_doc.rtf", u"C:\\WORK\\y.doc"},
               {u"C:\\WORK\\y_DoC.rtf", u"C:\\WORK\\y.doc"}, {u"C:\\WORK\\y.rtf", u"C:\\WORK\\y.doc"},
               {u"C:\\WORK\\_doc.rtf", u"C:\\WORK\\.doc"},   {u"C:\\WORK\\ydoc.rtf", u"C:\\WORK\\ydoc.doc"}};
  for (const auto& c : cases) {
    files.put(c.rtf, "{\\rtf1}");
    clsDOC2RTF converter;
    converter.RTFFile(c.rtf);
    EXPECT_EQ(converter.RTF2DOC(), 0);
    EXPECT_EQ(converter.DOCFile(), c.doc);
  }
  files.put(u"C:\\WORK\\y.doc", "doc");
  clsDOC2RTF converter;
  converter.DOCFile(u"C:\\WORK\\y.doc");
  EXPECT_EQ(converter.RTFFile(), u"");
  EXPECT_EQ(converter.DOC2RTF(), 0);
  EXPECT_EQ(converter.RTFFile(), u"C:\\WORK\\y_doc.rtf");
}

TEST_F(Doc2RtfTest, ABatchStartsTheWordProcessorOnceAndQuitsItOnce) {
  give_fields({});
  word.answers["Application.Visible"] = {};
  clsDOC2RTF converter;
  converter.StartBatch();
  EXPECT_EQ(to_rtf(converter), 0);
  word.running = true;  // what the first conversion started
  EXPECT_EQ(to_rtf(converter), 0);
  converter.EndBatch();
  converter.EndBatch();
  EXPECT_EQ(std::ranges::count(word.calls, "create Word.Application"), 1);
  EXPECT_EQ(std::ranges::count(word.calls, "Application.Quit(0i16)"), 1);
  EXPECT_EQ(word.calls.back(), "Application.Quit(0i16)");
}

TEST_F(Doc2RtfTest, EndBatchWithoutAStartedInstanceMakesNoCall) {
  clsDOC2RTF converter;
  converter.StartBatch();
  converter.EndBatch();
  EXPECT_EQ(word.text(), "");
  word.running = true;
  give_fields({});
  converter.StartBatch();
  EXPECT_EQ(to_rtf(converter), 0);
  converter.EndBatch();
  EXPECT_EQ(std::ranges::count(word.calls, "Application.Quit(0i16)"), 0);
}

TEST_F(Doc2RtfTest, AWordProcessorFoundRunningLaterIsQuitToo) {
  // started_by_us_ stays set after the quit, which is known behaviour that is kept.
  give_fields({});
  clsDOC2RTF converter;
  EXPECT_EQ(to_rtf(converter), 0);
  word.running = true;
  word.calls.clear();
  EXPECT_EQ(to_rtf(converter), 0);
  EXPECT_EQ(word.calls.front(), "active Word.Application");
  EXPECT_EQ(word.calls.back(), "Application.Quit(0i16)");
}

TEST_F(Doc2RtfTest, AnEmbeddedObjectThatCannotBeUpdatedIsUnlinked) {
  const struct {
    const char* name;
    Value updated;
    bool unlinked;
  } cases[] = {{"True", true, false},
               {"False", false, true},
               {"-1", std::int32_t{-1}, false},
               {"0", std::int16_t{0}, true},
               {"1 is not True when it is negated bit by bit", std::int32_t{1}, true},
               {"no answer", Empty{}, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    word.running = true;
    word.calls.clear();
    give_fields({58}, c.updated);
    clsDOC2RTF converter;
    EXPECT_EQ(to_rtf(converter), 0);
    EXPECT_EQ(std::ranges::count(word.calls, "Field1.Unlink()"), c.unlinked ? 1 : 0);
    EXPECT_EQ(std::ranges::count(word.calls, "Document.SaveAs(\"C:\\WORK\\report_doc.rtf\"&, 6i16)"), 1);
  }
}

TEST_F(Doc2RtfTest, AnUpdateThatRaisesAnErrorUnlinksToo) {
  word.running = true;
  give_fields({58, 58});
  word.failing = {"Field2.Update"};
  clsDOC2RTF converter;
  EXPECT_EQ(to_rtf(converter), 0);
  EXPECT_EQ(std::ranges::count(word.calls, "Field2.Unlink()"), 1);
  EXPECT_EQ(std::ranges::count(word.calls, "Field1.Unlink()"), 0);
}

TEST_F(Doc2RtfTest, ErrorsOfTheFieldPassCountInOneDirectionOnly) {
  word.running = true;
  give_fields({58, 88});
  word.failing = {"Field1.Type"};
  clsDOC2RTF converter;
  EXPECT_EQ(to_rtf(converter), 0);
  word.calls.clear();
  EXPECT_EQ(to_doc(converter), 1);
  // Saved all the same, and left open.
  EXPECT_EQ(word.calls.back(), "Document.SaveAs(\"C:\\WORK\\report.doc\"&, 0i16)");
}

TEST_F(Doc2RtfTest, AFailedSaveClosesTheDocumentInOneDirectionOnly) {
  word.running = true;
  give_fields({});
  word.failing = {"Document.SaveAs"};
  clsDOC2RTF converter;
  EXPECT_EQ(to_rtf(converter), 1);
  EXPECT_EQ(word.calls.back(), "Document.Close(0i16)");
  EXPECT_EQ(to_doc(converter), 1);
  EXPECT_EQ(word.calls.back(), "Document.SaveAs(\"C:\\WORK\\report.doc\"&, 0i16)");
}

TEST_F(Doc2RtfTest, AWordProcessorThatCannotBeReachedLeavesTheTargetDeleted) {
  word.installed = false;
  files.put(kRtf, "old");
  clsDOC2RTF converter;
  EXPECT_EQ(to_rtf(converter), 1);
  EXPECT_EQ(word.text(), "active Word.Application\ncreate Word.Application\nbind C:\\WORK\\report.doc\n");
  EXPECT_FALSE(files.has(kRtf));
}

// Fails every call in turn. `tolerated` are the calls whose failure does not make the conversion fail.
void fail_each(RecordingOffice& word, const std::set<std::string>& tolerated,
               const std::function<std::int32_t()>& run) {
  word.calls.clear();
  word.fail_at = 0;
  ASSERT_EQ(run(), 0);
  const std::vector<std::string> all = word.calls;
  for (std::size_t i = 0; i < all.size(); ++i) {
    SCOPED_TRACE("failing: " + all[i]);
    word.calls.clear();
    word.fail_at = i + 1;
    EXPECT_EQ(run(), tolerated.contains(all[i]) ? 0 : 1);
    // Up to the failing call nothing differs.
    ASSERT_GT(word.calls.size(), i);
    EXPECT_TRUE(std::equal(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(i) + 1, word.calls.begin()));
    // A word processor that was started is quit whatever failed.
    if (i > 1) {
      EXPECT_EQ(word.calls.back(), "Application.Quit(0i16)");
    }
  }
  word.fail_at = 0;
}

TEST_F(Doc2RtfTest, Doc2RtfWithEachCallFailing) {
  give_fields({58, 58}, false);
  fail_each(word,
            {"active Word.Application", "Document.Fields", "Fields.Count", "Document.Fields(1i32)",
             "Document.Fields(2i32)", "Field1.Type", "Field2.Type", "Field1.Update()", "Field2.Update()",
             "Field1.Unlink()", "Field2.Unlink()", "Document.Close(0i16)", "Application.Quit(0i16)"},
            [&] {
              clsDOC2RTF converter;
              return to_rtf(converter);
            });
}

TEST_F(Doc2RtfTest, Rtf2DocWithEachCallFailing) {
  give_fields({88, 88});
  fail_each(word, {"active Word.Application", "Document.Close(0i16)", "Application.Quit(0i16)"}, [&] {
    clsDOC2RTF converter;
    return to_doc(converter);
  });
}

}  // namespace
}  // namespace kavo::test
