#include <gtest/gtest.h>

#include <algorithm>

#include "common/cRegistry.h"
#include "common/program_settings.h"
#include "common/registry_text.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

using Variant = cRegistry::Variant;

class RegistryTest : public PortsFixture {
 protected:
  RegistryTest() {
    place.ClassKey(0x80000001u);
    place.SectionKey(u"Software\\Test");
    place.ValueKey(u"name");
  }
  std::int32_t write_failure(std::uint32_t type, const Variant& value) {
    place.ValueType(type);
    try {
      place.Value(value);
      return 0;
    } catch (const failure& reason) {
      return reason.number();
    }
  }
  cRegistry place;
};

TEST_F(RegistryTest, EachTypeIsReadBackAsWritten) {
  const struct {
    std::uint32_t type;
    Variant value;
  } cases[] = {
      {1, std::u16string(u"text \u65E5")},
      {1, std::u16string(u"")},
      {2, std::u16string(u"%TEMP%\\x")},
      {3, std::string("\0\x01\xFF", 3)},
      {4, std::int32_t{-2}},
      {5, std::int32_t{0x01020304}},
      {7, std::vector<std::u16string>{u"one", u"two"}},
  };
  for (const auto& c : cases) {
    place.ValueType(c.type);
    place.Value(c.value);
    EXPECT_TRUE(place.Value() == c.value) << "type " << c.type;
  }
}

TEST_F(RegistryTest, NumbersLieInTheByteOrderOfTheirType) {
  place.ValueType(4);
  place.SetValue(std::int32_t{1});
  EXPECT_EQ(registry.read(Hive::kCurrentUser, u"Software\\Test", u"name")->bytes, std::string("\1\0\0\0", 4));
  place.ValueType(5);
  place.SetValue(std::int32_t{1});
  EXPECT_EQ(registry.read(Hive::kCurrentUser, u"Software\\Test", u"name")->bytes, std::string("\0\0\0\1", 4));
}

TEST_F(RegistryTest, MissingOrDamagedValueGivesTheDefault) {
  EXPECT_TRUE(place.Value() == Variant());
  place.Default(std::int32_t{7});
  EXPECT_TRUE(place.Value() == Variant(std::int32_t{7}));
  registry.write(Hive::kCurrentUser, u"Software\\Test", u"name", {RegistryType::kNumber, "\1\2"});
  EXPECT_TRUE(place.Value() == Variant(std::int32_t{7}));
}

TEST_F(RegistryTest, ValuesConvertToTheTypeOrAreRefused) {
  EXPECT_EQ(write_failure(1, std::int32_t{12}), 0);
  EXPECT_TRUE(place.Value() == Variant(std::u16string(u"12")));
  EXPECT_EQ(write_failure(4, std::u16string(u"-34")), 0);
  EXPECT_TRUE(place.Value() == Variant(std::int32_t{-34}));
  EXPECT_EQ(write_failure(4, std::u16string(u"no number")), 13);
  EXPECT_EQ(write_failure(3, std::u16string(u"text")), 13);
  EXPECT_EQ(write_failure(1, Variant()), 13);
  EXPECT_EQ(write_failure(11, std::int32_t{1}), 5);
}

TEST_F(RegistryTest, PercentSignDoesNotMakeATextExpandable) {
  place.ValueType(1);
  place.Value(std::u16string(u"\"x.exe\" \"%1\""));
  EXPECT_EQ(registry.read(Hive::kCurrentUser, u"Software\\Test", u"name")->type, RegistryType::kString);
}

TEST_F(RegistryTest, KeysAndValuesAreListedAndDeleted) {
  EXPECT_FALSE(place.KeyExists());
  place.CreateKey();
  EXPECT_TRUE(place.KeyExists());
  place.Value(std::u16string(u"a"));
  place.ValueKey(u"other");
  place.Value(std::u16string(u"b"));
  std::vector<std::u16string> names{u"old"};
  std::int32_t count = -1;
  place.EnumerateValues(names, count);
  std::ranges::sort(names);
  EXPECT_EQ(names, (std::vector<std::u16string>{u"name", u"other"}));
  EXPECT_EQ(count, 2);
  place.EnumerateSections(names, count);
  EXPECT_EQ(count, 0);
  place.DeleteValue();
  place.EnumerateValues(names, count);
  EXPECT_EQ(names, (std::vector<std::u16string>{u"name"}));
  place.DeleteKey();
  EXPECT_FALSE(place.KeyExists());
}

TEST_F(RegistryTest, AssociationIsWrittenForClassesAndMachine) {
  place.CreateEXEAssociation(u"C:\\p.exe", u"Kavo.Doc", u"KAVO document", u"tud", u"", true, u"Print it", true, u"",
                             true, u"", 2);
  // The service's own place stays what it was.
  EXPECT_EQ(place.SectionKey(), u"Software\\Test");
  EXPECT_EQ(place.ClassKey(), 0x80000001u);
  const struct {
    std::u16string_view key, value;
  } expected[] = {
      {u".tud", u"Kavo.Doc"},
      {u"Kavo.Doc", u"KAVO document"},
      {u"Kavo.Doc\\shell\\open", u"&Open"},
      {u"Kavo.Doc\\shell\\open\\command", u"\"C:\\p.exe\" \"%1\""},
      {u"Kavo.Doc\\shell\\print", u"Print it"},
      {u"Kavo.Doc\\shell\\print\\command", u"\"C:\\p.exe\" /p \"%1\""},
      {u"Kavo.Doc\\shell\\add", u"&Install tud"},
      {u"Kavo.Doc\\shell\\add\\command", u"\"C:\\p.exe\" /a \"%1\""},
      {u"Kavo.Doc\\shell\\new", u"&New"},
      {u"Kavo.Doc\\shell\\new\\command", u"\"C:\\p.exe\" /n \"%1\""},
      {u"Kavo.Doc\\DefaultIcon", u"\"C:\\p.exe\",2"},
  };
  for (const auto& c : expected) {
    const auto classes = registry.read(Hive::kClassesRoot, c.key, u"");
    ASSERT_TRUE(classes.has_value());
    EXPECT_EQ(registry_text(*classes), c.value);
    const auto machine = registry.read(Hive::kLocalMachine, u"SOFTWARE\\Classes\\" + std::u16string(c.key), u"");
    ASSERT_TRUE(machine.has_value());
    EXPECT_EQ(registry_text(*machine), c.value);
  }
}

TEST_F(RegistryTest, VerbsWithoutFlagAreNotWritten) {
  place.CreateEXEAssociation(u"C:\\p.exe", u"Kavo.Doc", u"d", u"tud", u"Edit", false, u"", false, u"", false, u"", 0);
  EXPECT_FALSE(registry.key_exists(Hive::kClassesRoot, u"Kavo.Doc\\shell\\print"));
  EXPECT_FALSE(registry.key_exists(Hive::kClassesRoot, u"Kavo.Doc\\shell\\add"));
  EXPECT_FALSE(registry.key_exists(Hive::kClassesRoot, u"Kavo.Doc\\shell\\new"));
  EXPECT_EQ(registry_text(*registry.read(Hive::kClassesRoot, u"Kavo.Doc\\shell\\open", u"")), u"Edit");
}

TEST_F(RegistryTest, AdditionalVerbsGetTextAndCommand) {
  const std::vector<cRegistry::Verb> verbs{{u"check", u"&Check", u"c.exe \"%1\""}};
  place.CreateAdditionalEXEAssociations(u"Kavo.Doc", verbs);
  EXPECT_EQ(registry_text(*registry.read(Hive::kClassesRoot, u"Kavo.Doc\\shell\\check", u"")), u"&Check");
  EXPECT_EQ(registry_text(*registry.read(Hive::kClassesRoot, u"Kavo.Doc\\shell\\check\\command", u"")),
            u"c.exe \"%1\"");
}

TEST_F(RegistryTest, ProgramSettingsLieWhereMacrosLookForThem) {
  EXPECT_EQ(kExcelSettings.get(u"Sheets", u"all"), u"all");
  EXPECT_FALSE(kExcelSettings.has(u"Sheets"));
  kExcelSettings.save(u"Sheets", u"1,2");
  EXPECT_EQ(kExcelSettings.get(u"Sheets", u"all"), u"1,2");
  EXPECT_TRUE(kExcelSettings.has(u"Sheets"));
  for (const auto& [section, key] : {std::pair{kWizardSettings, u"KAVO\\K19FPW"},
                                     {kLanguageDialogSettings, u"KAVO\\TW"},
                                     {kExcelSettings, u"KAVO\\Excel"},
                                     {kMifSettings, u"MIF Utilities\\Settings"}}) {
    section.save(u"Name", u"text");
    const auto path = std::u16string(u"Software\\VB and VBA Program Settings\\") + key;
    EXPECT_TRUE(registry.read(Hive::kCurrentUser, path, u"Name")) << to_utf8(path);
  }
}

TEST(RegistryText, ToleratesHowOtherProgramsStoreStrings) {
  const auto text = [](std::string bytes) { return registry_text({RegistryType::kString, std::move(bytes)}); };
  EXPECT_EQ(text(std::string("a\0b\0", 4)), u"ab") << "no terminating zero";
  EXPECT_EQ(text(std::string("a\0\0\0\0\0", 6)), u"a") << "several";
  EXPECT_EQ(text(std::string("a\0b", 3)), u"a") << "half a character";
  EXPECT_EQ(text(""), u"");
  EXPECT_EQ(registry_text_list({RegistryType::kStringList, std::string("a\0\0\0b\0", 6)}),
            (std::vector<std::u16string>{u"a", u"b"}))
      << "a list without its end";
}

}  // namespace
}  // namespace kavo::test
