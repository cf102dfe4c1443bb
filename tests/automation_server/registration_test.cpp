// Registration of the two libraries in the real registry: what is written, that it works, and that nothing is left.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <set>

#include "automation_server/host.h"
#include "platform/ports.h"

namespace kavo::test {
namespace {

using Keys = std::set<std::u16string>;

// What only one of the two has, in a form that can be read in a failed test.
Keys difference(const Keys& a, const Keys& b) {
  Keys result;
  std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(), std::inserter(result, result.end()));
  return result;
}

constexpr const wchar_t* kLibraries[] = {L"K19FPW.dll", L"K19Suite.dll"};

// Every key that a registration may touch, in both hives.
Keys registered_keys() {
  Keys keys;
  for (const Hive hive : {Hive::kLocalMachine, Hive::kCurrentUser})
    for (const std::u16string_view folder :
         {u"Software\\Classes", u"Software\\Classes\\CLSID", u"Software\\Classes\\Interface",
          u"Software\\Classes\\TypeLib", u"Software\\Classes\\WOW6432Node\\Interface"})
      for (const std::u16string& name : ports().registry->sub_keys(hive, folder))
        keys.insert((hive == Hive::kLocalMachine ? u"machine\\" : u"user\\") + std::u16string(folder) + u"\\" + name);
  return keys;
}

std::u16string text_value(Hive hive, std::u16string_view path, std::u16string_view name = u"") {
  const auto data = ports().registry->read(hive, path, name);
  if (!data || data->bytes.size() < 2) return u"(missing)";
  std::u16string text(data->bytes.size() / 2 - 1, u'\0');
  std::memcpy(text.data(), data->bytes.data(), text.size() * 2);
  return text;
}

const std::u16string kClassKey = u"Software\\Classes\\CLSID\\{55F81CDA-5CE8-4FA2-B706-CC5AF95E905E}";
const std::u16string kTypeLibrary = u"{670673F1-B5A0-4F0A-878B-B38FD8192744}";

void expect_class_keys(Hive hive, const Library& library) {
  EXPECT_EQ(text_value(hive, u"Software\\Classes\\K19FPW.K19FPWObj\\CLSID"), u"{55F81CDA-5CE8-4FA2-B706-CC5AF95E905E}");
  EXPECT_EQ(text_value(hive, kClassKey), u"KAVO File Processing Wizard");
  EXPECT_EQ(text_value(hive, kClassKey + u"\\InprocServer32"), from_wide(library.path()));
  EXPECT_EQ(text_value(hive, kClassKey + u"\\InprocServer32", u"ThreadingModel"), u"Apartment");
  EXPECT_EQ(text_value(hive, kClassKey + u"\\ProgID"), u"K19FPW.K19FPWObj");
  EXPECT_EQ(text_value(hive, kClassKey + u"\\TypeLib"), kTypeLibrary);
  EXPECT_EQ(text_value(hive, kClassKey + u"\\Version"), u"1.0");
}

TEST(MachineRegistration, CreatesObjectsAndLeavesNothing) {
  const Keys before = registered_keys();
  ASSERT_FALSE(before.empty());
  {
    const Library library(kLibraries[0]);
    const Library suite(kLibraries[1]);
    ASSERT_EQ(library.call("DllRegisterServer"), S_OK);
    ASSERT_EQ(suite.call("DllRegisterServer"), S_OK);
    expect_class_keys(Hive::kLocalMachine, library);
    EXPECT_EQ(text_value(Hive::kLocalMachine, u"Software\\Classes\\Interface\\{83A21951-B190-4273-BDCE-B32213E716FF}"),
              u"_K19FPWObj");
    unique_interface<ITypeLib> type_library;
    EXPECT_EQ(LoadRegTypeLib(LIBID_K19FPW, 1, 0, 1033, type_library.put()), S_OK);
    for (const wchar_t* identifier : {L"K19FPW.K19FPWObj", L"K19Suite.FilterCatalogue"}) {
      HRESULT result = S_OK;
      EXPECT_TRUE(create_object(identifier, &result));
      EXPECT_EQ(result, S_OK);
    }
    // Registering again is harmless.
    EXPECT_EQ(library.call("DllRegisterServer"), S_OK);
    EXPECT_EQ(library.call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(suite.call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(library.call("DllUnregisterServer"), S_OK);
  }
  EXPECT_EQ(difference(registered_keys(), before), Keys());
}

// This system's own automation may not look at the user's classes, so the keys are read back.
TEST(UserRegistration, WritesTheUsersKeysAndLeavesNothing) {
  // All classes of the user share this key. Removing the last class may leave it empty; the library removes it.
  constexpr std::u16string_view kClasses = u"Software\\Classes\\CLSID";
  Registry& registry = *ports().registry;
  if (registry.key_exists(Hive::kCurrentUser, kClasses) && registry.sub_keys(Hive::kCurrentUser, kClasses).empty())
    registry.delete_key(Hive::kCurrentUser, kClasses);
  const Keys before = registered_keys();
  const Library library(kLibraries[0]);
  const Library suite(kLibraries[1]);
  ASSERT_EQ(library.install(true, L"user"), S_OK);
  ASSERT_EQ(suite.install(true, L"user"), S_OK);
  expect_class_keys(Hive::kCurrentUser, library);
  EXPECT_EQ(text_value(Hive::kCurrentUser,
                       u"Software\\Classes\\CLSID\\{4D99D16E-E584-47D3-8B85-E88741C26D37}\\InprocServer32"),
            from_wide(suite.path()));
  EXPECT_FALSE(ports().registry->key_exists(Hive::kLocalMachine, kClassKey));
  unique_interface<ITypeLib> type_library;
  EXPECT_EQ(LoadRegTypeLib(LIBID_K19FPW, 1, 0, 1033, type_library.put()), S_OK);
  type_library.reset();
  EXPECT_EQ(library.install(false, L"user"), S_OK);
  EXPECT_EQ(suite.install(false, L"user"), S_OK);
  EXPECT_EQ(difference(registered_keys(), before), Keys());
}

DWORD run_and_wait(std::wstring command_line) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
    return 0xFFFF;
  const unique_handle thread(process.hThread);
  const unique_handle handle(process.hProcess);
  WaitForSingleObject(handle.get(), 30000);
  DWORD code = 0xFFFE;
  GetExitCodeProcess(handle.get(), &code);
  return code;
}

TEST(RegistrationProgram, RegistersForMachineAndForUser) {
  const Keys before = registered_keys();
  const Library library(kLibraries[0]);
  const std::wstring file = L" \"" + library.path() + L"\"";
  EXPECT_EQ(run_and_wait(L"regsvr32.exe /s" + file), 0u);
  expect_class_keys(Hive::kLocalMachine, library);
  EXPECT_EQ(run_and_wait(L"regsvr32.exe /s /u" + file), 0u);
  EXPECT_EQ(run_and_wait(L"regsvr32.exe /s /n /i:user" + file), 0u);
  expect_class_keys(Hive::kCurrentUser, library);
  EXPECT_EQ(run_and_wait(L"regsvr32.exe /s /u /n /i:user" + file), 0u);
  EXPECT_EQ(difference(registered_keys(), before), Keys());
}

}  // namespace
}  // namespace kavo::test
