// Late-bound objects across the automation boundary: a C++ object as a host sees it, and a host's object as C++ sees
// it; the two back to back carry every kind of value and failure.
#include "platform/win32/dispatch.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <optional>

#include "automation_server/host.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "platform/win32/variants.h"
#include "suite/suite.h"
#include "support/failures.h"
#include "support/fake_automation.h"

namespace kavo::test {
namespace {

// A C++ object handed out to automation and taken back, so that every call crosses the boundary twice.
ObjectRef round_trip(std::vector<Member> members) {
  class Relay : public AutomationObject {
   public:
    explicit Relay(ObjectRef object) : object_(make_dispatch(std::move(object))), client_(make_object(object_.get())) {}
    Value get(std::u16string_view member, std::span<Argument> arguments) override {
      return client_->get(member, arguments);
    }
    void put(std::u16string_view member, std::span<Argument> arguments, const Value& value) override {
      client_->put(member, arguments, value);
    }
    Value invoke(std::u16string_view member, std::span<Argument> arguments) override {
      return client_->invoke(member, arguments);
    }
    bool has_member(std::u16string_view member) const override { return client_->has_member(member); }

   private:
    unique_interface<IDispatch> object_;
    ObjectRef client_;
  };
  return std::make_shared<Relay>(std::make_shared<FakeObject>(std::move(members)));
}

// The failure that the call must throw.
failure thrown_failure(const std::function<void()>& call) {
  const std::optional<failure> error = failure_of(call);
  if (!error) ADD_FAILURE() << "nothing was thrown";
  return error.value_or(failure(0, u"", u""));
}

TEST(DispatchRoundTrip, CarriesEveryKindOfValue) {
  Value seen;
  const ObjectRef object = round_trip({{u"Echo", MemberKind::kMethod, 1, 1, [&](std::span<Argument> arguments) {
                                          seen = arguments[0].value;
                                          return arguments[0].value;
                                        }}});
  const Value values[] = {Empty{}, true, false,      std::int16_t{-7},          std::int32_t{1} << 20,
                          2.5,     u"",  u"t\u65E5", std::u16string(u"a\0b", 3)};
  for (const Value& value : values) {
    std::array arguments{by_value(value)};
    EXPECT_EQ(object->invoke(u"echo", arguments), value);
    EXPECT_EQ(seen, value);
  }
}

TEST(DispatchRoundTrip, KeepsTheOrderOfArgumentsAndWritesBack) {
  const ObjectRef object = round_trip({{u"Swap", MemberKind::kMethod, 2, 3, [](std::span<Argument> arguments) {
                                          const Value before = arguments[0].value;
                                          arguments[0].value = arguments[1].value;
                                          arguments[1].value = before;
                                          return Value(is_omitted(arguments[2].value));
                                        }}});
  std::array arguments{by_reference(Value(u"left")), by_reference(Value(u"right"))};
  EXPECT_EQ(object->invoke(u"Swap", arguments), Value(true));
  EXPECT_EQ(arguments[0].value, Value(u"right"));
  EXPECT_EQ(arguments[1].value, Value(u"left"));
  // An argument by value stays as it was; an empty variable takes any type.
  std::array mixed{by_value(Value(std::int32_t{1})), by_reference(Empty{}), by_value(Omitted{})};
  EXPECT_EQ(object->invoke(u"Swap", mixed), Value(true));
  EXPECT_EQ(mixed[0].value, Value(std::int32_t{1}));
  EXPECT_EQ(mixed[1].value, Value(std::int32_t{1}));
}

TEST(DispatchRoundTrip, PropertiesWithAndWithoutArguments) {
  std::u16string text = u"old";
  std::int32_t index = 0;
  const ObjectRef object = round_trip({
      {u"Text", MemberKind::kPropertyGet, 0, 0, [&](std::span<Argument>) { return Value(text); }},
      {u"Text", MemberKind::kPropertyPut, 1, 1,
       [&](std::span<Argument> arguments) {
         text = as_text(arguments[0].value);
         return Value();
       }},
      {u"Item", MemberKind::kPropertyPut, 2, 2,
       [&](std::span<Argument> arguments) {
         index = as_number(arguments[0].value);
         text = as_text(arguments[1].value);
         return Value();
       }},
  });
  EXPECT_EQ(object->get(u"TEXT"), Value(u"old"));
  object->put(u"text", Value(u"new"));
  EXPECT_EQ(text, u"new");
  std::array arguments{by_value(Value(std::int32_t{4}))};
  object->put(u"Item", arguments, Value(u"fourth"));
  EXPECT_EQ(index, 4);
  EXPECT_EQ(text, u"fourth");
  EXPECT_TRUE(object->has_member(u"item"));
  EXPECT_FALSE(object->has_member(u"other"));
}

TEST(DispatchRoundTrip, ObjectsGoAndComeBack) {
  const ObjectRef inner = std::make_shared<FakeObject>(std::vector<Member>{
      {u"Name", MemberKind::kPropertyGet, 0, 0, [](std::span<Argument>) { return Value(u"inner"); }}});
  ObjectRef given;
  const ObjectRef object = round_trip({
      {u"Child", MemberKind::kPropertyGet, 0, 0, [&](std::span<Argument>) { return Value(inner); }},
      {u"Child", MemberKind::kPropertyPut, 1, 1,
       [&](std::span<Argument> arguments) {
         given = as_object(arguments[0].value);
         return Value();
       }},
      {u"Nothing", MemberKind::kPropertyGet, 0, 0, [](std::span<Argument>) { return Value(ObjectRef()); }},
  });
  EXPECT_EQ(as_object(object->get(u"Child"))->get(u"Name"), Value(u"inner"));
  object->put(u"Child", Value(inner));
  ASSERT_TRUE(given);
  EXPECT_EQ(given->get(u"Name"), Value(u"inner"));
  EXPECT_EQ(thrown_failure([&] { as_object(object->get(u"Nothing")); }).number(), 91);
}

TEST(DispatchRoundTrip, FailuresKeepNumberSourceAndDescription) {
  const ObjectRef object = round_trip({
      {u"Own", MemberKind::kMethod, 0, 0,
       [](std::span<Argument>) -> Value { throw failure(1234, u"Something broke", u"Suite.Part"); }},
      {u"System", MemberKind::kMethod, 0, 0,
       [](std::span<Argument>) -> Value { throw failure(E_ABORT, u"Stopped", u"Suite.Part"); }},
      {u"One", MemberKind::kMethod, 1, 1, [](std::span<Argument>) { return Value(); }},
  });
  const failure own = thrown_failure([&] { object->invoke(u"Own"); });
  EXPECT_EQ(own.number(), 1234);
  EXPECT_EQ(own.source(), u"Suite.Part");
  EXPECT_EQ(own.description(), u"Something broke (Own)");
  EXPECT_EQ(thrown_failure([&] { object->invoke(u"System"); }).number(), E_ABORT);
  EXPECT_EQ(thrown_failure([&] { object->invoke(u"Missing"); }).number(), 438);
  EXPECT_EQ(thrown_failure([&] { object->invoke(u"One"); }).number(), 450);
  EXPECT_EQ(thrown_failure([&] { object->put(u"One", Value(u"x")); }).number(), 438);
}

HRESULT WINAPI fill_in(EXCEPINFO* late) {
  late->wCode = 1017;
  late->bstrSource = SysAllocString(L"Foreign");
  late->bstrDescription = SysAllocString(L"Late text");
  return S_OK;
}

// Somebody else's server: it fills in its error texts only when asked, and has only the old kind of error number.
class ForeignServer final : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) override {
    ++lookups;
    ids[0] = 5;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* info, UINT*) override {
    EXPECT_EQ(id, 5);
    last_flags = flags;
    named = parameters->cNamedArgs;
    types.clear();
    for (UINT i = 0; i < parameters->cArgs; ++i) types.push_back(V_VT(&parameters->rgvarg[i]));
    if (deferred) {
      info->pfnDeferredFillIn = fill_in;
      return DISP_E_EXCEPTION;
    }
    if (answer != S_OK) return answer;
    if (result != nullptr) *result = answer_value;
    return S_OK;
  }

  bool deferred = false;
  HRESULT answer = S_OK;
  VARIANT answer_value{};
  int lookups = 0;
  WORD last_flags = 0;
  UINT named = 0;
  std::vector<VARTYPE> types;
};

TEST(AutomationClient, AsksForAnErrorsTextsThatWerePutOff) {
  ForeignServer server;
  server.deferred = true;
  const failure error = thrown_failure([&] { make_object(&server)->invoke(u"Save"); });
  EXPECT_EQ(error.number(), 1017);
  EXPECT_EQ(error.source(), u"Foreign");
  EXPECT_EQ(error.description(), u"Late text (Save)");
}

TEST(AutomationClient, KeepsAMembersNumber) {
  ForeignServer server;
  const ObjectRef object = make_object(&server);
  object->invoke(u"Save");
  object->get(u"SAVE");
  EXPECT_EQ(server.lookups, 1);
}

TEST(AutomationClient, PassesReferencesInTheTypeOfTheirValue) {
  ForeignServer server;
  std::array arguments{by_reference(Value(u"t")), by_reference(Value(std::int32_t{1})), by_reference(Empty{}),
                       by_value(Value(std::int32_t{1})), by_value(Omitted{})};
  make_object(&server)->invoke(u"Save", arguments);
  EXPECT_EQ(server.types,
            (std::vector<VARTYPE>{VT_ERROR, VT_I4, VT_BYREF | VT_VARIANT, VT_BYREF | VT_I4, VT_BYREF | VT_BSTR}));
}

TEST(AutomationClient, NamesTheNewValueOfAProperty) {
  ForeignServer server;
  const ObjectRef object = make_object(&server);
  object->put(u"Visible", Value(true));
  EXPECT_EQ(server.named, 1u);
  EXPECT_EQ(server.last_flags, DISPATCH_PROPERTYPUT);
}

TEST(AutomationClient, AnswersWithoutErrorTextsGetTheSystems) {
  ForeignServer server;
  struct Case {
    HRESULT answer;
    int number;
  };
  for (const Case& trouble : {Case{DISP_E_TYPEMISMATCH, 13},
                              {DISP_E_OVERFLOW, 6},
                              {DISP_E_MEMBERNOTFOUND, 438},
                              {DISP_E_BADPARAMCOUNT, 450},
                              {E_OUTOFMEMORY, 7},
                              {E_ACCESSDENIED, 70},
                              {HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), 53},
                              {E_ABORT, E_ABORT}}) {
    server.answer = trouble.answer;
    const failure error = thrown_failure([&] { make_object(&server)->invoke(u"Save"); });
    EXPECT_EQ(error.number(), trouble.number);
    EXPECT_NE(error.description(), u" (Save)");
  }
}

TEST(AutomationClient, AnswersOfEveryTypeBecomeValues) {
  ForeignServer server;
  const ObjectRef object = make_object(&server);
  VARIANT& v = server.answer_value;
  const auto answer = [&](VARTYPE type, auto set) {
    v = {};
    V_VT(&v) = type;
    set();
    return object->invoke(u"Read");
  };
  EXPECT_EQ(answer(VT_UI1, [&] { V_UI1(&v) = 200; }), Value(std::int16_t{200}));
  EXPECT_EQ(answer(VT_UI2, [&] { V_UI2(&v) = 60000; }), Value(std::int32_t{60000}));
  EXPECT_EQ(answer(VT_UI4, [&] { V_UI4(&v) = 4000000000u; }), Value(4000000000.0));
  EXPECT_EQ(answer(VT_I8, [&] { V_I8(&v) = 5; }), Value(std::int32_t{5}));
  EXPECT_EQ(answer(VT_R4, [&] { V_R4(&v) = 0.5f; }), Value(0.5));
  EXPECT_EQ(answer(VT_CY, [&] { V_CY(&v).int64 = 15000; }), Value(1.5));
  EXPECT_EQ(answer(VT_DATE, [&] { V_DATE(&v) = 2.0; }), Value(2.0));
  EXPECT_EQ(answer(VT_NULL, [] {}), Value(Empty{}));
  EXPECT_EQ(answer(VT_ERROR, [&] { V_ERROR(&v) = DISP_E_PARAMNOTFOUND; }), Value(Omitted{}));
}

TEST(DispatchAdapter, ServesVariablesOfAnyType) {
  const unique_interface<IDispatch> object = make_dispatch(std::make_shared<FakeObject>(
      std::vector<Member>{{u"Double", MemberKind::kMethod, 1, 1, [](std::span<Argument> arguments) {
                             arguments[0].value = as_number(arguments[0].value) * 2;
                             return Value(u"done");
                           }}}));
  LPOLESTR name = const_cast<LPOLESTR>(L"double");
  DISPID id = 0;
  ASSERT_EQ(object->GetIDsOfNames(IID_NULL, &name, 1, 0, &id), S_OK);
  SHORT small = 4;
  EXPECT_EQ(invoke(object.get(), id, DISPATCH_METHOD, {reference_argument(&small)}).text(), u"done");
  EXPECT_EQ(small, 8);
  double real = 4;
  EXPECT_EQ(invoke(object.get(), id, DISPATCH_METHOD, {reference_argument(&real)}).result, S_OK);
  EXPECT_EQ(real, 8.0);
  unique_bstr text = make_bstr(u"4");
  EXPECT_EQ(invoke(object.get(), id, DISPATCH_METHOD, {reference_argument(&*text)}).result, S_OK);
  EXPECT_EQ(from_bstr(text.get()), u"8");
  unique_variant variable;
  V_VT(&*variable) = VT_BSTR;
  V_BSTR(&*variable) = make_bstr(u"4").release();
  EXPECT_EQ(invoke(object.get(), id, DISPATCH_METHOD, {reference_argument(&*variable)}).result, S_OK);
  ASSERT_EQ(V_VT(&*variable), VT_I4);
  EXPECT_EQ(V_I4(&*variable), 8);
  // A result that does not fit the caller's variable is a failure, not a wrong number.
  small = 30000;
  EXPECT_EQ(invoke(object.get(), id, DISPATCH_METHOD, {reference_argument(&small)}).exception.get().scode,
            run_time_error(6));
  EXPECT_EQ(small, 30000);
}

TEST(DispatchAdapter, RefusesNamedArgumentsAndUnknownNumbers) {
  const unique_interface<IDispatch> object = make_dispatch(std::make_shared<FakeObject>(
      std::vector<Member>{{u"One", MemberKind::kMethod, 1, 1, [](std::span<Argument>) { return Value(); }}}));
  LPOLESTR names[] = {const_cast<LPOLESTR>(L"One"), const_cast<LPOLESTR>(L"First")};
  DISPID ids[2] = {};
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 2, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
  EXPECT_EQ(invoke(object.get(), ids[0], DISPATCH_METHOD, {number_argument(1)}, {0}).result, DISP_E_NONAMEDARGS);
  EXPECT_EQ(invoke(object.get(), 77, DISPATCH_METHOD).result, DISP_E_MEMBERNOTFOUND);
}

TEST(DispatchAdapter, CountsItsObjects) {
  const long before = live_dispatch_objects();
  unique_interface<IDispatch> object = make_dispatch(std::make_shared<FakeObject>(std::vector<Member>{}));
  EXPECT_EQ(live_dispatch_objects(), before + 1);
  // An object that came from automation is handed back as it is.
  unique_interface<IDispatch> same = make_dispatch(make_object(object.get()));
  EXPECT_EQ(same.get(), object.get());
  same.reset();
  object.reset();
  EXPECT_EQ(live_dispatch_objects(), before);
}

TEST(SystemAutomation, PrefersTheProgramsOwnComponentToARegisteredOne) {
  const FactoryScope own(u"K19Suite.FilterCatalogue", [] {
    return std::make_shared<FakeObject>(
        std::vector<Member>{{u"Own", MemberKind::kMethod, 0, 0, [](std::span<Argument>) { return Value(true); }}});
  });
  const ManifestScope registered;
  const ObjectRef catalogue = ports().automation->create(u"K19Suite.FilterCatalogue");
  EXPECT_TRUE(catalogue->has_member(u"Own"));
  EXPECT_FALSE(catalogue->has_member(u"Enumerate"));
}

TEST(SystemAutomation, CreatesEveryComponentOfTheSuite) {
  const ManifestScope registered;
  for (const SuiteClass& component : suite_classes()) {
    SCOPED_TRACE(to_utf8(component.programmatic_identifier));
    EXPECT_TRUE(ports().automation->create(component.programmatic_identifier));
  }
}

TEST(SystemAutomation, MissingComponentsAre429WithTheirName) {
  for (const auto& call : {std::function<void()>([] { ports().automation->create(u"No.SuchComponent"); }),
                           std::function<void()>([] { ports().automation->active_object(u"No.SuchComponent"); })}) {
    const failure error = thrown_failure(call);
    EXPECT_EQ(error.number(), 429);
    EXPECT_NE(error.description().find(u"No.SuchComponent"), std::u16string::npos);
  }
  const failure error = thrown_failure([] { ports().automation->bind_to_file(u"C:\\no\\such\\file.xyz"); });
  EXPECT_EQ(error.number(), 432);
  EXPECT_NE(error.description().find(u"file.xyz"), std::u16string::npos);
}

TEST(SystemAutomation, FindsARunningObject) {
  const ManifestScope registered;
  CLSID id;
  ASSERT_EQ(CLSIDFromProgID(L"K19Suite.FilterCatalogue", &id), S_OK);
  const unique_interface<IDispatch> running = make_dispatch(std::make_shared<FakeObject>(
      std::vector<Member>{{u"Running", MemberKind::kMethod, 0, 0, [](std::span<Argument>) { return Value(true); }}}));
  DWORD registration = 0;
  ASSERT_EQ(RegisterActiveObject(running.get(), id, ACTIVEOBJECT_WEAK, &registration), S_OK);
  EXPECT_TRUE(ports().automation->active_object(u"K19Suite.FilterCatalogue")->has_member(u"Running"));
  EXPECT_EQ(RevokeActiveObject(registration, nullptr), S_OK);
  EXPECT_EQ(thrown_failure([] { ports().automation->active_object(u"K19Suite.FilterCatalogue"); }).number(), 429);
}

}  // namespace
}  // namespace kavo::test
