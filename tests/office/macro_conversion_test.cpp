// Presentations and workbooks: both classes drive their program in the same way.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "office/clsPPTUtil.h"
#include "office/clsXLSUtil.h"
#include "office/recording_office.h"
#include "platform/program_folder.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

using namespace std::string_literals;

constexpr const char16_t* kPpt = u"C:\\WORK\\deck.ppt";
constexpr const char16_t* kPptXml = u"C:\\WORK\\deck_ppt.xml";
constexpr const char16_t* kXls = u"C:\\WORK\\book.xls";
constexpr const char16_t* kXlsXml = u"C:\\WORK\\book_xls.xml";

class MacroConversionTest : public PortsFixture {
 protected:
  MacroConversionTest() : recording_desktop(office) {
    ports().automation = &office;
    ports().desktop = &recording_desktop;
    folder = to_utf8(program_folder());
    recording_desktop.caption = u"Editor";
    office.answers["Application.Presentations"] = office.with_object("Presentations");
    office.answers["Application.Workbooks"] = office.with_object("Workbooks");
    const auto open = [this](std::span<Argument> arguments) -> Value {
      return office.object(as_text(arguments[0].value).ends_with(program_template) ? "Template" : "Document");
    };
    office.answers["Presentations.Open"] = open;
    office.answers["Workbooks.Open"] = open;
    office.answers["File.application"] = office.with_object("Application");
    // A macro that takes three looks to finish.
    office.answers["Application.Run"] = [this](std::span<Argument>) -> Value {
      flag_existed = files.has(flag) && files.get(flag).empty();
      waits_left = 3;
      return Empty{};
    };
    recording_desktop.on_process_messages = [this] {
      if (waits_left > 0 && --waits_left == 0) files.remove_file(flag);
    };
  }

  void set_version(std::u16string version) {
    office.answers["Application.Version"] = [version](auto) -> Value { return version; };
  }

  void use_presentations() {
    program_template = u"kavo.ppt";
    flag = std::u16string(kPpt) + u".kavo";
    files.put(kPpt, "ppt");
    files.put(kPptXml, "xml");
    set_version(u"11.0");
  }
  void use_workbooks() {
    program_template = u"kavo.xls";
    flag = std::u16string(kXls) + u".kavo";
    files.put(kXls, "xls");
    files.put(kXlsXml, "xml");
    set_version(u"11.0");
  }

  RecordingOffice office;
  RecordingDesktop recording_desktop;
  std::string folder;
  std::u16string program_template;
  std::u16string flag;
  bool flag_existed = false;
  int waits_left = 0;
};

TEST_F(MacroConversionTest, EveryCallOfPpt2XmlInANewProgram) {
  use_presentations();
  {
    clsPPTUtil util;
    util.PPTFile(kPpt);
    EXPECT_EQ(util.PPT2XML(), 0);
  }
  EXPECT_EQ(office.text(),
            "active PowerPoint.Application\n"
            "create PowerPoint.Application\n"
            "Application.Visible = true\n"
            "Application.Presentations\n"
            "Presentations.Open(\"" +
                folder +
                "\\kavo.ppt\", true)\n"
                "activate \"Editor\"\n"
                "Application.Version\n"
                "Application.Presentations\n"
                "Presentations.Open(\"C:\\WORK\\deck.ppt\"&, false)\n"
                "Document.Saved = false\n"
                "Document.Save()\n"
                "Document.Close()\n"
                "Application.Presentations\n"
                "Presentations.Open(\"C:\\WORK\\deck.ppt\"&, false)\n"
                "Application.Run(\"KAVO.PPT!ExportPresentation\")\n"
                "Document.Close()\n"
                "Template.Close()\n"
                "Application.Quit()\n");
  EXPECT_TRUE(flag_existed);
  EXPECT_FALSE(files.has(flag));
  EXPECT_FALSE(files.has(kPptXml));
  EXPECT_GE(recording_desktop.process_messages_calls, 3u);
}

TEST_F(MacroConversionTest, EveryCallOfXml2PptInARunningProgram) {
  use_presentations();
  office.running = true;
  {
    clsPPTUtil util;
    util.XMLFile(kPptXml);
    EXPECT_EQ(util.XML2PPT(), 0);
  }
  EXPECT_EQ(office.text(),
            "active PowerPoint.Application\n"
            "Application.Visible = true\n"
            "Application.Presentations\n"
            "Presentations.Open(\"" +
                folder +
                "\\kavo.ppt\", true)\n"
                "Application.Version\n"
                "Application.Presentations\n"
                "Presentations.Open(\"C:\\WORK\\deck.ppt\")\n"
                "Application.Run(\"KAVO.PPT!ImportPresentation\")\n"
                "Document.Save()\n"
                "Document.Close()\n"
                "Template.Close()\n");
  EXPECT_TRUE(flag_existed);
  EXPECT_TRUE(files.has(kPptXml));
}

TEST_F(MacroConversionTest, EveryCallOfXls2XmlInANewProgram) {
  use_workbooks();
  {
    clsXLSUtil util;
    util.XLSFile(kXls);
    EXPECT_EQ(util.XLS2XML(), 0);
  }
  EXPECT_EQ(office.text(),
            "active Excel.Application\n"
            "create Excel.Application\n"
            "Application.Visible = true\n"
            "Application.Workbooks\n"
            "Workbooks.Open(\"" +
                folder +
                "\\kavo.xls\", omitted, true)\n"
                "activate \"Editor\"\n"
                "Application.Version\n"
                "Application.AutomationSecurity = 3i16\n"
                "Application.Workbooks\n"
                "Workbooks.Open(\"C:\\WORK\\book.xls\"&, omitted, false)\n"
                "Application.AutomationSecurity = 1i16\n"
                "Document.Saved = false\n"
                "Document.Save()\n"
                "Application.Run(\"KAVO.XLS!ExportWorkbook\")\n"
                "Document.Close()\n"
                "Template.Close()\n"
                "Application.DisplayAlerts = false\n"
                "Application.Quit()\n");
  EXPECT_FALSE(files.has(kXlsXml));
}

TEST_F(MacroConversionTest, EveryCallOfXml2XlsBoundToTheTemplate) {
  use_workbooks();
  office.installed = false;
  office.bindable = true;
  {
    clsXLSUtil util;
    util.XMLFile(kXlsXml);
    EXPECT_EQ(util.XML2XLS(), 0);
  }
  EXPECT_EQ(office.text(),
            "active Excel.Application\n"
            "create Excel.Application\n"
            "bind " +
                folder +
                "\\kavo.xls\n"
                "File.application\n"
                "Application.Visible = true\n"
                "activate \"Editor\"\n"
                "Application.Version\n"
                "Application.AutomationSecurity = 3i16\n"
                "Application.Workbooks\n"
                "Workbooks.Open(\"C:\\WORK\\book.xls\")\n"
                "Application.AutomationSecurity = 1i16\n"
                "Application.Run(\"KAVO.XLS!ImportWorkbook\")\n"
                "Document.Save()\n"
                "Document.Close()\n"
                "File.Close()\n"
                "Application.DisplayAlerts = false\n"
                "Application.Quit()\n");
}

TEST_F(MacroConversionTest, NoWindowIsActivatedWhenTheCallersHadNoTitle) {
  for (const std::optional<std::u16string>& caption : {std::optional<std::u16string>(), std::optional(u""s)}) {
    use_presentations();
    recording_desktop.caption = caption;
    office.calls.clear();
    clsPPTUtil util;
    util.PPTFile(kPpt);
    EXPECT_EQ(util.PPT2XML(), 0);
    EXPECT_TRUE(std::ranges::none_of(office.calls, [](const auto& call) { return call.starts_with("activate"); }));
  }
}

TEST_F(MacroConversionTest, NamesFollowEachOther) {
  const struct {
    std::u16string_view office;
    std::u16string_view xml;
  } cases[] = {{u"x\\y.pps", u"x\\y_pps.xml"},
               {u"C:\\a\\deck.ppt", u"C:\\a\\deck_ppt.xml"},
               {u"C:\\a.b\\book.one.xls", u"C:\\a.b\\book.one_xls.xml"}};
  for (const auto& c : cases) {
    clsPPTUtil ppt;
    ppt.PPTFile(c.office);
    EXPECT_EQ(ppt.XMLFile(), c.xml);
    ppt.PPTFile(u"");
    ppt.XMLFile(c.xml);
    EXPECT_EQ(ppt.PPTFile(), c.office);
    clsXLSUtil xls;
    xls.XLSFile(c.office);
    EXPECT_EQ(xls.XMLFile(), c.xml);
    xls.XLSFile(u"");
    xls.XMLFile(c.xml);
    EXPECT_EQ(xls.XLSFile(), c.office);
  }
  clsPPTUtil util;
  // The rule is simple on purpose: whatever that character is, it becomes the dot.
  util.XMLFile(u"C:\\a\\plain.xml");
  EXPECT_EQ(util.PPTFile(), u"C:\\a\\p.ain");
  util.XMLFile(u"abc.xml");
  EXPECT_EQ(util.PPTFile(), u"abc");
  util.PPTFile(u"C:\\a\\none");
  EXPECT_EQ(util.XMLFile(), u"C:\\a\\none_.xml");
}

TEST_F(MacroConversionTest, TheWindowIsLookedUpForRelease97Only) {
  const struct {
    std::u16string version;
    bool looked_up;
  } cases[] = {{u"8.0", true}, {u"8.0b.x", true}, {u"9.0", false}, {u"", false}, {u"8", false}, {u"18.0", false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(to_utf8(c.version));
    use_presentations();
    set_version(c.version);
    recording_desktop.windows = {{u"PP97FrameClass", 4711}};
    office.calls.clear();
    {
      clsPPTUtil util;
      util.PPTFile(kPpt);
      EXPECT_EQ(util.PPT2XML(), 0);
    }
    EXPECT_EQ(std::ranges::count(office.calls, "find window PP97FrameClass"), c.looked_up ? 1 : 0);
    EXPECT_EQ(office.calls.back(), c.looked_up ? "post 18 to 4711" : "Application.Quit()");
  }
}

TEST_F(MacroConversionTest, TheWindowOfTheSpreadsheetProgram) {
  use_workbooks();
  set_version(u"8.0");
  for (const bool found : {true, false}) {
    recording_desktop.windows.clear();
    if (found) recording_desktop.windows = {{u"XLMAIN", 7}};
    office.calls.clear();
    {
      clsXLSUtil util;
      util.XLSFile(kXls);
      EXPECT_EQ(util.XLS2XML(), 0);
    }
    EXPECT_EQ(std::ranges::count(office.calls, "find window XLMAIN"), 1);
    EXPECT_EQ(std::ranges::count(office.calls, "Application.DisplayAlerts = false"), found ? 0 : 1);
    EXPECT_EQ(office.calls.back(), found ? "post 18 to 7" : "Application.Quit()");
  }
}

TEST_F(MacroConversionTest, AProgramThatTheUserHadOpenIsNeitherQuitNorSentTheMessage) {
  use_presentations();
  set_version(u"8.0");
  recording_desktop.windows = {{u"PP97FrameClass", 4711}};
  office.running = true;
  {
    clsPPTUtil util;
    util.PPTFile(kPpt);
    EXPECT_EQ(util.PPT2XML(), 0);
  }
  EXPECT_EQ(office.calls.back(), "Template.Close()");
}

TEST_F(MacroConversionTest, SeveralConversionsShareOneProgram) {
  use_presentations();
  {
    clsPPTUtil util;
    util.PPTFile(kPpt);
    EXPECT_EQ(util.PPT2XML(), 0);
    files.put(kPptXml, "xml");
    EXPECT_EQ(util.XML2PPT(), 0);
    EXPECT_EQ(util.PPT2XML(), 0);
  }
  EXPECT_EQ(std::ranges::count(office.calls, "create PowerPoint.Application"), 1);
  EXPECT_EQ(std::ranges::count(office.calls, "Template.Close()"), 1);
  EXPECT_EQ(std::ranges::count(office.calls, "Application.Quit()"), 1);
}

TEST_F(MacroConversionTest, NothingIsCalledBeforeTheFirstConversion) {
  {
    clsPPTUtil ppt;
    ppt.PPTFile(kPpt);
    clsXLSUtil xls;
    xls.XLSFile(kXls);
  }
  EXPECT_EQ(office.text(), "");
}

TEST_F(MacroConversionTest, AProgramThatCannotBeReached) {
  use_presentations();
  office.installed = false;
  {
    clsPPTUtil util;
    util.PPTFile(kPpt);
    EXPECT_EQ(util.PPT2XML(), 1);
    EXPECT_EQ(util.XML2PPT(), 1);  // tried again
  }
  const std::string once =
      "active PowerPoint.Application\ncreate PowerPoint.Application\nbind " + folder + "\\kavo.ppt\n";
  EXPECT_EQ(office.text(), once + once);
  EXPECT_TRUE(files.has(kPptXml));
}

TEST_F(MacroConversionTest, MissingFilesGiveOneAfterTheStartUp) {
  office.running = true;
  set_version(u"11.0");
  const auto started_only = [this] {
    const bool only = office.calls.size() <= 6;
    office.calls.clear();
    return only;
  };
  program_template = u"kavo.ppt";
  {
    clsPPTUtil util;
    EXPECT_EQ(util.PPT2XML(), 1);
    EXPECT_EQ(util.XML2PPT(), 1);
    util.PPTFile(kPpt);
    EXPECT_EQ(util.PPT2XML(), 1);
    files.put(kPpt, "ppt");
    EXPECT_EQ(util.XML2PPT(), 1);  // no XML
    files.remove_file(kPpt);
    files.put(kPptXml, "xml");
    EXPECT_EQ(util.XML2PPT(), 1);  // no presentation
    EXPECT_TRUE(started_only());
  }
  office.calls.clear();
  program_template = u"kavo.xls";
  {
    clsXLSUtil util;
    EXPECT_EQ(util.XLS2XML(), 1);
    EXPECT_EQ(util.XML2XLS(), 1);
    util.XLSFile(kXls);
    EXPECT_EQ(util.XLS2XML(), 1);
    files.put(kXls, "xls");
    EXPECT_EQ(util.XML2XLS(), 1);
    files.remove_file(kXls);
    files.put(kXlsXml, "xml");
    EXPECT_EQ(util.XML2XLS(), 1);
    EXPECT_TRUE(started_only());
  }
}

// One of the four conversions by one object of its own.
struct Conversion {
  const char* name;
  bool presentation;
  std::function<std::int32_t()> run;
  // Calls whose failure does not make the conversion fail.
  std::set<std::string> tolerated;
};

std::vector<Conversion> conversions() {
  const auto ppt = [](std::int32_t (clsPPTUtil::*operation)()) {
    return [operation] {
      clsPPTUtil util;
      util.PPTFile(kPpt);
      return (util.*operation)();
    };
  };
  const auto xls = [](std::int32_t (clsXLSUtil::*operation)()) {
    return [operation] {
      clsXLSUtil util;
      util.XLSFile(kXls);
      return (util.*operation)();
    };
  };
  // Everything of the start-up after the program was reached, and of the shut-down.
  return {{"PPT2XML", true, ppt(&clsPPTUtil::PPT2XML), {"Document.Saved = false", "Document.Save()"}},
          {"XML2PPT", true, ppt(&clsPPTUtil::XML2PPT), {}},
          {"XLS2XML",
           false,
           xls(&clsXLSUtil::XLS2XML),
           {"Application.AutomationSecurity = 3i16", "Application.AutomationSecurity = 1i16", "Document.Saved = false",
            "Document.Save()"}},
          {"XML2XLS",
           false,
           xls(&clsXLSUtil::XML2XLS),
           {"Application.AutomationSecurity = 3i16", "Application.AutomationSecurity = 1i16"}}};
}

TEST_F(MacroConversionTest, EachCallFailing) {
  for (const Conversion& c : conversions()) {
    SCOPED_TRACE(c.name);
    const auto prepare = [&] { c.presentation ? use_presentations() : use_workbooks(); };
    prepare();
    office.fail_at = 0;
    office.calls.clear();
    ASSERT_EQ(c.run(), 0);
    const std::vector<std::string> all = office.calls;
    const auto start_up_end = std::ranges::find(all, "Application.Version") - all.begin();
    const auto shut_down_begin = std::ranges::find(all, "Template.Close()") - all.begin();
    std::size_t opened_first = 0;  // the first of two openings: its failure is cleared before the macro runs
    if (c.name == std::string("PPT2XML")) opened_first = static_cast<std::size_t>(start_up_end) + 2;
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (all[i].starts_with("activate")) continue;  // cannot fail
      SCOPED_TRACE("failing: " + std::to_string(i + 1) + ", " + all[i]);
      prepare();
      office.calls.clear();
      office.fail_at = i + 1;
      const std::int32_t result = c.run();
      const auto place = static_cast<std::ptrdiff_t>(i);
      const bool starting = place <= start_up_end && all[i].find("create ") != 0;
      const bool first_opening = opened_first != 0 && (i == opened_first || i + 1 == opened_first);
      const bool first_closing = opened_first != 0 && all[i] == "Document.Close()" && place < shut_down_begin - 1;
      const bool tolerated =
          starting || place >= shut_down_begin || first_opening || first_closing || c.tolerated.contains(all[i]);
      EXPECT_EQ(result, tolerated ? 0 : 1);
      EXPECT_FALSE(files.has(flag));
    }
  }
  office.fail_at = 0;
}

TEST_F(MacroConversionTest, WithoutItsDocumentAConversionGivesOneAndWaitsForNothing) {
  const struct {
    const char* name;
    Value (*run)();
  } macros[] = {{"the macro finds no document with a flag and raises an error",
                 []() -> Value { throw failure(1004, u"No open document has a flag file", u"KAVO"); }},
                {"the macro does nothing", []() -> Value { return Empty{}; }}};
  for (const Conversion& c : conversions()) {
    for (const auto& macro : macros) {
      SCOPED_TRACE(std::string(c.name) + ": " + macro.name);
      c.presentation ? use_presentations() : use_workbooks();
      office.calls.clear();
      office.answers["Presentations.Open"] =
          office.answers["Workbooks.Open"] = [this](std::span<Argument> arguments) -> Value {
        if (as_text(arguments[0].value).ends_with(program_template)) return office.object("Template");
        throw failure(1004, u"The document cannot be opened", u"Office");
      };
      std::size_t runs = 0;
      office.answers["Application.Run"] = [&](std::span<Argument>) -> Value {
        ++runs;
        EXPECT_TRUE(files.has(flag));
        return macro.run();
      };
      recording_desktop.on_process_messages = [] { throw interruption(); };
      EXPECT_EQ(c.run(), 1);
      EXPECT_EQ(runs, 1u);
      EXPECT_FALSE(files.has(flag));
      EXPECT_TRUE(std::ranges::none_of(office.calls, [](const auto& call) { return call.starts_with("Document."); }));
    }
  }
}

TEST_F(MacroConversionTest, AMacroThatCannotBeRunIsNotWaitedFor) {
  use_presentations();
  office.running = true;
  office.failing = {"Application.Run"};
  clsPPTUtil util;
  util.PPTFile(kPpt);
  EXPECT_EQ(util.PPT2XML(), 1);
  EXPECT_EQ(office.calls.back(), "Document.Close()");
  EXPECT_FALSE(files.has(flag));
  EXPECT_EQ(recording_desktop.process_messages_calls, 0u);
}

TEST_F(MacroConversionTest, AnInterruptionDeletesTheFlagFileAndClosesTheDocument) {
  for (const Conversion& c : conversions()) {
    SCOPED_TRACE(c.name);
    c.presentation ? use_presentations() : use_workbooks();
    office.calls.clear();
    recording_desktop.on_process_messages = [this] {
      EXPECT_TRUE(files.has(flag));
      throw interruption();
    };
    try {
      c.run();
      ADD_FAILURE() << "not interrupted";
    } catch (const interruption&) {
    }
    EXPECT_FALSE(files.has(flag));
    const auto run = std::ranges::find_if(office.calls,
                                          [](const std::string& call) { return call.starts_with("Application.Run("); });
    ASSERT_GE(office.calls.end() - run, 5);
    EXPECT_EQ(run[1], "Document.Saved = true");
    EXPECT_EQ(run[2], "Document.Close()");
    EXPECT_EQ(run[3], "Template.Close()");
    EXPECT_EQ(office.calls.back(), "Application.Quit()");
  }
}

TEST_F(MacroConversionTest, AnErrorOfOpeningTheWorkbookCountsThroughWhatFollows) {
  use_workbooks();
  office.running = true;
  {
    clsXLSUtil util;
    util.XLSFile(kXls);
    EXPECT_EQ(util.XML2XLS(), 0);
    // The template is open by now.
    office.failing = {"Workbooks.Open"};
    office.calls.clear();
    EXPECT_EQ(util.XML2XLS(), 1);
  }
  EXPECT_EQ(office.text(),
            "Application.AutomationSecurity = 3i16\n"
            "Application.Workbooks\n"
            "Workbooks.Open(\"C:\\WORK\\book.xls\")\n"
            "Application.AutomationSecurity = 1i16\n"
            "Application.Run(\"KAVO.XLS!ImportWorkbook\")\n"
            "Template.Close()\n");
}

}  // namespace
}  // namespace kavo::test
