// The parts that any component library is made of, tried on two classes of this program's own: one that works and one
// whose creation fails in every way there is.
#include "automation_server/component_library.h"

#include <gtest/gtest.h>

#include "automation_server/host.h"
#include "automation_server/registration.h"
#include "platform/failure.h"
#include "platform/win32/dispatch.h"
#include "platform/win32/guard.h"
#include "support/fake_automation.h"
#include "support/fake_registry.h"
#include "support/ports_fixture.h"

STDAPI DllGetClassObject(REFCLSID class_id, REFIID id, void** result);
STDAPI DllCanUnloadNow();
STDAPI DllInstall(BOOL install, PCWSTR command_line);

namespace kavo {
namespace {

constexpr CLSID kWorking = {0xB54AD42A, 0x3C4F, 0x4A0E, {0x9A, 0x5B, 0x6B, 0x3B, 0x0D, 0x5A, 0x11, 0x01}};
constexpr CLSID kFailing = {0xB54AD42A, 0x3C4F, 0x4A0E, {0x9A, 0x5B, 0x6B, 0x3B, 0x0D, 0x5A, 0x11, 0x02}};

std::function<void()> creation_trouble;

unique_interface<IUnknown> make_working(const ComponentClass&) {
  return unique_interface<IUnknown>(make_dispatch(std::make_shared<test::FakeObject>(std::vector<Member>{})).release());
}

unique_interface<IUnknown> make_failing(const ComponentClass& row) {
  creation_trouble();
  return make_working(row);
}

}  // namespace

const ComponentLibrary& component_library() {
  static const ComponentClass classes[] = {
      {kWorking, u"KavoTest.Working", u"Works", make_working},
      {kFailing, u"KavoTest.Failing", u"Fails", make_failing},
  };
  static const ComponentLibrary library{classes, nullptr};
  return library;
}

namespace test {
namespace {

unique_interface<IClassFactory> class_object(REFCLSID id) {
  unique_interface<IClassFactory> factory;
  EXPECT_EQ(DllGetClassObject(id, IID_IClassFactory, reinterpret_cast<void**>(factory.put())), S_OK);
  return factory;
}

TEST(ClassFactory, MayUnloadOnlyWhenNothingIsLeft) {
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
  unique_interface<IClassFactory> factory = class_object(kWorking);
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  unique_interface<IDispatch> object;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.put())), S_OK);
  factory.reset();
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  object.reset();
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
  factory = class_object(kWorking);
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  factory.reset();
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  factory = class_object(kWorking);
  EXPECT_EQ(factory->LockServer(FALSE), S_OK);
  EXPECT_EQ(factory->LockServer(FALSE), S_OK);
  factory.reset();
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST(ClassFactory, RefusesWhatItCannotMake) {
  void* result = &result;
  EXPECT_EQ(DllGetClassObject(IID_IDispatch, IID_IClassFactory, &result), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(DllGetClassObject(kWorking, IID_IClassFactory, nullptr), E_POINTER);
  EXPECT_EQ(DllGetClassObject(kWorking, IID_IDispatch, &result), E_NOINTERFACE);
  const unique_interface<IClassFactory> factory = class_object(kWorking);
  unique_interface<IDispatch> object;
  EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &result), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &result), E_NOINTERFACE);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, nullptr), E_POINTER);
}

TEST(Guard, EveryExceptionEndsAsAResultWithErrorInformation) {
  struct Case {
    const char* name;
    std::function<void()> trouble;
    HRESULT expected;
    std::u16string source;
    std::u16string description;
  };
  const Case cases[] = {
      {"the library's own failure", [] { throw failure(FailureNumber::kSubscriptOutOfRange, u"Out"); },
       run_time_error(9), u"KavoTest.Failing", u"Out"},
      {"a component's failure", [] { throw failure(1234, u"Theirs", u"Suite.Part"); }, run_time_error(1234),
       u"Suite.Part", u"Theirs"},
      {"a component's HRESULT", [] { throw failure(E_ABORT, u"Theirs", u"Suite.Part"); }, E_ABORT, u"Suite.Part",
       u"Theirs"},
      {"a number that is no failure", [] { throw failure(0, u"Odd", u"Suite.Part"); }, E_FAIL, u"Suite.Part", u"Odd"},
      {"an exception of the language", [] { throw std::runtime_error("broken"); }, run_time_error(51),
       u"KavoTest.Failing", u"broken"},
      {"no memory", [] { throw std::bad_alloc(); }, E_OUTOFMEMORY, u"", u""},
      {"anything else", [] { throw 42; }, E_UNEXPECTED, u"", u""},
  };
  const unique_interface<IClassFactory> factory = class_object(kFailing);
  for (const Case& trouble : cases) {
    SCOPED_TRACE(trouble.name);
    creation_trouble = trouble.trouble;
    unique_interface<IDispatch> object;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.put())),
              trouble.expected);
    const ErrorInfo info = take_error_info();
    EXPECT_EQ(info.source, trouble.source);
    EXPECT_EQ(info.description, trouble.description);
  }
}

// A registry that fails after a number of writes, as it does without permission or room.
class FailingRegistry : public FakeRegistry {
 public:
  explicit FailingRegistry(int writes) : writes_left_(writes) {}
  void write(Hive hive, std::u16string_view path, std::u16string_view name, const RegistryData& data) override {
    if (writes_left_-- == 0) throw failure(FailureNumber::kPermissionDenied, u"Access is denied.");
    FakeRegistry::write(hive, path, name, data);
  }

 private:
  int writes_left_;
};

constexpr std::u16string_view kClasses = u"Software\\Classes";
const std::u16string kWorkingKey = u"Software\\Classes\\CLSID\\{B54AD42A-3C4F-4A0E-9A5B-6B3B0D5A1101}";

TEST(Registration, LeavesNothingBehindWhenAnyWriteFails) {
  int complete = -1;
  for (int writes = 0; complete < 0 && writes < 100; ++writes) {
    SCOPED_TRACE(writes);
    PortsScope scope;
    FailingRegistry registry(writes);
    ports().registry = &registry;
    const HRESULT result = DllInstall(TRUE, L"user");
    if (result == S_OK) {
      complete = writes;
      EXPECT_EQ(registry.sub_keys(Hive::kCurrentUser, kClasses).size(), 3u);
    } else {
      EXPECT_EQ(result, E_ACCESSDENIED);
      EXPECT_TRUE(registry.sub_keys(Hive::kCurrentUser, kClasses).empty());
    }
  }
  EXPECT_EQ(complete, 12);  // six values for each of the two classes
}

TEST(Registration, GoesToTheScopeThatIsAskedFor) {
  struct Case {
    const wchar_t* command_line;
    Hive expected;
    Hive other;
  };
  for (const Case& scope : {Case{nullptr, Hive::kLocalMachine, Hive::kCurrentUser},
                            {L"", Hive::kLocalMachine, Hive::kCurrentUser},
                            {L"machine", Hive::kLocalMachine, Hive::kCurrentUser},
                            {L"USER", Hive::kCurrentUser, Hive::kLocalMachine}}) {
    PortsScope ports_scope;
    FakeRegistry registry;
    ports().registry = &registry;
    EXPECT_EQ(DllInstall(TRUE, scope.command_line), S_OK);
    EXPECT_TRUE(registry.key_exists(scope.expected, kWorkingKey + u"\\InprocServer32"));
    EXPECT_FALSE(registry.key_exists(scope.other, kWorkingKey));
    EXPECT_EQ(DllInstall(FALSE, scope.command_line), S_OK);
    EXPECT_FALSE(registry.key_exists(scope.expected, kWorkingKey));
    EXPECT_FALSE(registry.key_exists(scope.expected, u"Software\\Classes\\KavoTest.Working"));
  }
  EXPECT_EQ(DllInstall(TRUE, L"everybody"), E_INVALIDARG);
}

TEST(Registration, LeavesAnIdentifierToTheLibraryThatTookItOver) {
  PortsScope scope;
  FakeRegistry registry;
  ports().registry = &registry;
  ASSERT_EQ(DllInstall(TRUE, L"user"), S_OK);
  const RegistryData theirs{RegistryType::kString, std::string("{\0}\0\0\0", 6)};
  registry.write(Hive::kCurrentUser, u"Software\\Classes\\KavoTest.Working\\CLSID", u"", theirs);
  EXPECT_EQ(DllInstall(FALSE, L"user"), S_OK);
  EXPECT_FALSE(registry.key_exists(Hive::kCurrentUser, kWorkingKey));
  EXPECT_TRUE(registry.key_exists(Hive::kCurrentUser, u"Software\\Classes\\KavoTest.Working"));
  EXPECT_FALSE(registry.key_exists(Hive::kCurrentUser, u"Software\\Classes\\KavoTest.Failing"));
}

TEST(Registration, UnregisteringTwiceIsNoError) {
  PortsScope scope;
  FakeRegistry registry;
  ports().registry = &registry;
  EXPECT_EQ(DllInstall(FALSE, L"user"), S_OK);
  EXPECT_EQ(DllInstall(FALSE, nullptr), S_OK);
}

}  // namespace
}  // namespace test
}  // namespace kavo
