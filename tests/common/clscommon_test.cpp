#include "common/clsCommon.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/failure.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

template <class Call>
std::int32_t failure_number(Call call) {
  try {
    call();
    return 0;
  } catch (const failure& reason) {
    return reason.number();
  }
}

struct ParseCase {
  const char* name;
  std::u16string_view input, folder, base, extension;
};
class ParseFileName : public testing::TestWithParam<ParseCase> {};

TEST_P(ParseFileName, GivesFolderBaseAndExtension) {
  const clsCommon common;
  const ParseCase& c = GetParam();
  EXPECT_EQ(common.strParseFileName(c.input, 0), c.folder);
  EXPECT_EQ(common.strParseFileName(c.input, 1), c.base);
  EXPECT_EQ(common.strParseFileName(c.input, 2), c.extension);
  EXPECT_EQ(common.strParseFileName(c.input, 3), u"");
  EXPECT_EQ(common.strParseFileName(c.input, -1), u"");
}

INSTANTIATE_TEST_SUITE_P(Names, ParseFileName,
                         testing::Values(ParseCase{"DotInFolderOnly", u"C:\\a.b\\c", u"C:\\a.b\\", u"c", u""},
                                         ParseCase{"TwoExtensions", u"c.tar.gz", u"", u"c.tar", u"gz"},
                                         ParseCase{"EndsInDot", u"C:\\x\\name.", u"C:\\x\\", u"name", u""},
                                         ParseCase{"UncName", u"\\\\server\\share\\file.txt", u"\\\\server\\share\\",
                                                   u"file", u"txt"},
                                         ParseCase{"Empty", u"", u"", u"", u""},
                                         ParseCase{"FolderOnly", u"C:\\a.b\\", u"C:\\a.b\\", u"", u""},
                                         ParseCase{"LeadingDot", u"C:\\.htaccess", u"C:\\", u"", u"htaccess"},
                                         ParseCase{"NoFolderNoExtension", u"readme", u"", u"readme", u""}),
                         [](const auto& row) { return row.param.name; });

TEST(StrParseFileName, PositionsAre16BitSoALateSeparatorOverflows) {
  const clsCommon common;
  const std::u16string fits = std::u16string(32766, u'a') + u".txt";
  EXPECT_EQ(common.strParseFileName(fits, 2), u"txt");
  const std::u16string late_dot = std::u16string(32767, u'a') + u".txt";
  EXPECT_EQ(failure_number([&] { common.strParseFileName(late_dot, 2); }), 6);
  const std::u16string late_slash = std::u16string(32767, u'a') + u"\\x";
  EXPECT_EQ(failure_number([&] { common.strParseFileName(late_slash, 0); }), 6);
  EXPECT_EQ(common.strParseFileName(u"a.b" + std::u16string(40000, u'x'), 1), u"a");
}

TEST(SandR, ReplacesWithoutRescanning) {
  const clsCommon common;
  EXPECT_EQ(common.SandR(u"aaa", u"a", u"aa"), u"aaaaaa");
  EXPECT_EQ(common.SandR(u"abcabc", u"bc", u""), u"aa");
  EXPECT_EQ(common.SandR(u"aaaa", u"aa", u"b"), u"bb");
  EXPECT_EQ(common.SandR(u"abc", u"x", u"y"), u"abc");
  EXPECT_EQ(common.SandR(u"aBa", u"A", u"y"), u"aBa");
  EXPECT_EQ(common.SandR(u"", u"a", u"b"), u"");
  EXPECT_EQ(common.SandR(u"abc", u"", u"y"), u"abc");
}

TEST(SandR, PositionsAre16BitSoALateMatchOverflows) {
  const clsCommon common;
  const std::u16string at_limit = std::u16string(32766, u'x') + u"a";
  EXPECT_EQ(common.SandR(at_limit, u"a", u"b"), std::u16string(32766, u'x') + u"b");
  const std::u16string beyond = std::u16string(32767, u'x') + u"a";
  EXPECT_EQ(failure_number([&] { common.SandR(beyond, u"a", u"b"); }), 6);
  // A long text is processed when all matches are near its beginning.
  EXPECT_EQ(common.SandR(u"a" + std::u16string(40000, u'x'), u"a", u"b"), u"b" + std::u16string(40000, u'x'));
  // Replacements push later matches on.
  const std::u16string pushed = u"a" + std::u16string(10, u'x') + u"a";
  EXPECT_EQ(failure_number([&] { common.SandR(pushed, u"a", std::u16string(32760, u'b')); }), 6);
}

TEST(FormatString, FillsPlaceholdersByNumber) {
  const clsCommon common;
  const std::vector<std::u16string> values{u"x", u"y"};
  EXPECT_EQ(common.FormatString(u"%2% and %1%", values), u"y and x");
  EXPECT_EQ(common.FormatString(u"%7% stays", values), u"%7% stays");
  EXPECT_EQ(common.FormatString(u"%1%%1%", values), u"xx");
  EXPECT_EQ(common.FormatString(u"[%3%]", values), u"[]");
  // A value's own later placeholders are filled in their turn; earlier ones are past.
  EXPECT_EQ(common.FormatString(u"%1%", std::vector<std::u16string>{u"%2%", u"z"}), u"z");
  EXPECT_EQ(common.FormatString(u"%2%", std::vector<std::u16string>{u"z", u"%1%"}), u"%1%");
}

TEST(FormatString, SearchStartsAgainAtTheFirstCharacter) {
  const clsCommon common;
  // The replacement joins its neighbours to a new placeholder.
  EXPECT_EQ(common.FormatString(u"%%1%1%", {}), u"");
  EXPECT_EQ(common.FormatString(u"%%1%%", std::vector<std::u16string>{u"1"}), u"1");
  // Eighteen rounds until no placeholder is left.
  EXPECT_EQ(common.FormatString(u"%1%1%1%", std::vector<std::u16string>{u"1%%%%"}), u"111" + std::u16string(40, u'%'));
}

TEST(FormatString, EndlessReplacementIsRefused) {
  const clsCommon common;
  const std::vector<std::u16string> own{u"a%1%b"};
  EXPECT_EQ(failure_number([&] { common.FormatString(u"%1%", own); }), 5);
  // The value does not contain a placeholder, but forms a new one every time.
  const std::vector<std::u16string> joining{u"1%%1"};
  EXPECT_EQ(failure_number([&] { common.FormatString(u"%%1%", joining); }), 5);
  // Harmless while its placeholder is not used.
  EXPECT_EQ(common.FormatString(u"%2%", std::vector<std::u16string>{u"%1%", u"ok"}), u"ok");
}

TEST(SetCaption, CutsTheMiddle) {
  const clsCommon common;
  EXPECT_EQ(common.SetCaption(u"short", 10), u"short");
  EXPECT_EQ(common.SetCaption(u"0123456789", 10), u"0123456789");
  EXPECT_EQ(common.SetCaption(u"0123456789A", 10), u"012....89A");
  EXPECT_EQ(common.SetCaption(u"0123456789A", 9), u"012....9A");
  EXPECT_EQ(common.SetCaption(u"0123456789A", 4), u"....");
  EXPECT_EQ(common.SetCaption(u"0123456789A", 2), u"..");
  // A character outside the first plane is not cut in two.
  EXPECT_EQ(common.SetCaption(u"\U0001F600\U0001F600\U0001F600\U0001F600", 6), u"....");
}

class CommonTest : public PortsFixture {
 protected:
  clsCommon common;
};

TEST_F(CommonTest, IniSettingIsReadWithDefaultAndOwnFile) {
  EXPECT_EQ(common.GetINISetting(u"Section", u"Key", u"default"), u"default");
  common.SetINISetting(u"Section", u"Key", u"value");
  EXPECT_EQ(common.GetINISetting(u"section", u"KEY", u"default"), u"value");
  EXPECT_EQ(profile_files.read(u"Section", u"Key", u"", u"K19FPW.ini", 100), u"value");
  EXPECT_EQ(common.GetINISetting(u"Section", u"Key", u"default", u"C:\\other.ini"), u"default");
  common.SetINISetting(u"Section", u"Key", u"there", u"C:\\other.ini");
  EXPECT_EQ(common.GetINISetting(u"Section", u"Key", u"default", u"C:\\other.ini"), u"there");
}

TEST_F(CommonTest, IniValueIsCutAt1023Characters) {
  common.SetINISetting(u"Section", u"Key", std::u16string(2000, u'v'));
  EXPECT_EQ(common.GetINISetting(u"Section", u"Key", u"").size(), 1023u);
}

TEST_F(CommonTest, DeleteFileRemovesAReadOnlyFile) {
  files.put(u"C:\\WORK\\old.txt", "x");
  files.set_read_only(u"C:\\WORK\\old.txt", true);
  common.DeleteFile(u"C:\\WORK\\old.txt");
  EXPECT_FALSE(files.has(u"C:\\WORK\\old.txt"));
}

TEST_F(CommonTest, DeleteFileNeverFails) {
  common.DeleteFile(u"C:\\WORK\\missing.txt");
  common.DeleteFile(u"C:\\TEMP");
  common.DeleteFile(u"");
  EXPECT_TRUE(common.FileExists(u"C:\\TEMP"));
}

TEST_F(CommonTest, FileExistsCountsFoldersAndWildcards) {
  files.put(u"C:\\WORK\\page.htm", "x");
  EXPECT_TRUE(common.FileExists(u"C:\\WORK\\PAGE.HTM"));
  EXPECT_TRUE(common.FileExists(u"C:\\WORK\\*.htm"));
  EXPECT_TRUE(common.FileExists(u"C:\\WORK"));
  EXPECT_FALSE(common.FileExists(u"C:\\WORK\\*.asp"));
  EXPECT_FALSE(common.FileExists(u"C:\\WORK\\page"));
  EXPECT_FALSE(common.FileExists(u""));
}

TEST_F(CommonTest, MoveFileReplacesAReadOnlyDestination) {
  files.put(u"C:\\TEMP\\new", "new");
  files.put(u"C:\\WORK\\doc", "old");
  files.set_read_only(u"C:\\WORK\\doc", true);
  MessageList errors;
  EXPECT_TRUE(common.MoveFile(u"C:\\TEMP\\new", u"C:\\WORK\\doc", &errors));
  EXPECT_EQ(files.get(u"C:\\WORK\\doc"), "new");
  EXPECT_FALSE(files.has(u"C:\\TEMP\\new"));
  EXPECT_TRUE(errors.empty());
}

TEST_F(CommonTest, MoveFileReportsAMissingSource) {
  files.put(u"C:\\WORK\\doc", "old");
  MessageList errors;
  EXPECT_FALSE(common.MoveFile(u"C:\\TEMP\\new", u"C:\\WORK\\doc", &errors));
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].number, 3004);
  EXPECT_TRUE(errors[0].text.starts_with(u"The file could not be copied: C:\\TEMP\\new - ")) << "with its reason";
  EXPECT_EQ(files.get(u"C:\\WORK\\doc"), "old");
  EXPECT_FALSE(common.MoveFile(u"C:\\TEMP\\new", u"C:\\WORK\\doc")) << "and needs no list";
}

TEST_F(CommonTest, MoveFileReportsADestinationThatCannotBeReplaced) {
  files.put(u"C:\\TEMP\\new", "new");
  files.add_folder(u"C:\\WORK\\folder");
  MessageList errors;
  EXPECT_FALSE(common.MoveFile(u"C:\\TEMP\\new", u"C:\\WORK\\folder", &errors));
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].number, 3003);
  EXPECT_TRUE(errors[0].text.starts_with(u"The old file could not be replaced: C:\\WORK\\folder - "));
  EXPECT_EQ(files.get(u"C:\\TEMP\\new"), "new");
}

TEST_F(CommonTest, KeyValueIsTextAndHexadecimalTextIsANumber) {
  const auto put = [&](std::u16string_view name, RegistryData data) {
    registry.write(Hive::kCurrentUser, u"Software\\Test", name, data);
  };
  const auto string = [](std::u16string_view text) {
    RegistryData data{RegistryType::kString, {}};
    for (const char16_t c : std::u16string(text) + u'\0') {
      data.bytes += static_cast<char>(c & 0xFF);
      data.bytes += static_cast<char>(c >> 8);
    }
    return data;
  };
  put(u"text", string(u"plain \u65E5"));
  put(u"hex", string(u"&h1F"));
  put(u"HEX", string(u"&HfF"));
  put(u"no hex", string(u"&hXY"));
  put(u"number", {RegistryType::kNumber, std::string("\x05\0\0\0", 4)});
  put(u"bytes", {RegistryType::kBinary, "abc"});
  const auto value = [&](std::u16string_view name) { return common.GetKeyValue(0x80000001u, u"Software\\Test", name); };
  EXPECT_EQ(value(u"text"), u"plain \u65E5");
  EXPECT_EQ(value(u"hex"), u"255") << "names ignore case, so the second write replaced the first";
  EXPECT_EQ(value(u"no hex"), u"&hXY");
  EXPECT_EQ(value(u"number"), u"5");
  EXPECT_EQ(value(u"bytes"), std::nullopt);
  EXPECT_EQ(value(u"missing"), std::nullopt);
  EXPECT_EQ(common.GetKeyValue(0x80000001u, u"Software\\None", u"x"), std::nullopt);
}

TEST_F(CommonTest, SystemInformationIsLookedUpInBothPlacesOrSaidToBeUnavailable) {
  const auto string = [](std::string_view text) {
    RegistryData data{RegistryType::kString, {}};
    for (const char c : std::string(text) + '\0') (data.bytes += c) += '\0';
    return data;
  };
  common.StartSysInfo();
  ASSERT_EQ(desktop.message_boxes.size(), 1u);
  EXPECT_EQ(desktop.message_boxes[0].text, u"System Information Is Unavailable At This Time");
  registry.write(Hive::kLocalMachine, u"SOFTWARE\\Microsoft\\Shared Tools Location", u"MSINFO", string("C:\\info"));
  common.StartSysInfo();
  registry.write(Hive::kLocalMachine, u"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", u"PATH", string("C:\\i.exe"));
  common.StartSysInfo();
  EXPECT_EQ(shell.started, (std::vector<FakeShell::Words>{{u"C:\\info\\MSINFO32.EXE"}, {u"C:\\i.exe"}}));
  EXPECT_EQ(desktop.message_boxes.size(), 1u);
  shell.can_start = false;
  common.StartSysInfo();
  EXPECT_EQ(desktop.message_boxes.size(), 2u);
}

TEST_F(CommonTest, ForegroundCaptionIsAStarWithoutWindow) {
  EXPECT_EQ(ForegroundCaption(), u"*");
  desktop.caption = u"Editor - \u65E5";
  EXPECT_EQ(ForegroundCaption(), u"Editor - \u65E5");
}

class FakeForm : public FormFrame {
 public:
  using FormFrame::FormFrame;
  Extent extent() const override { return {300, 201}; }
  Extent screen_extent() const override { return {1024, 768}; }
  void move(std::int32_t left, std::int32_t top) override { place = {left, top}; }
  Extent place;
};

TEST(CentreForm, PutsTheFormInTheMiddle) {
  FakeForm form(u"frmTest");
  clsCommon().CentreForm(form);
  EXPECT_EQ(form.place.width, 362);
  EXPECT_EQ(form.place.height, 283);
}

TEST(IsLoaded, ComparesNamesOfLoadedFormsExactly) {
  const clsCommon common;
  {
    const FakeForm first(u"frmTest");
    const FakeForm second(u"frmTest");
    EXPECT_TRUE(common.IsLoaded(u"frmTest"));
    EXPECT_FALSE(common.IsLoaded(u"frmtest"));
  }
  EXPECT_FALSE(common.IsLoaded(u"frmTest"));
}

TEST(HighLight, SelectsTheWholeText) {
  struct Box : TextBoxFrame {
    std::int32_t text_length() const override { return 12; }
    void select(std::int32_t start, std::int32_t length) override { selection = {start, length}; }
    Extent selection{-1, -1};
  } box;
  clsCommon().HighLight(box);
  EXPECT_EQ(box.selection.width, 0);
  EXPECT_EQ(box.selection.height, 12);
}

}  // namespace
}  // namespace kavo::test
