// Late-bound calls on an object that does change its by-reference parameters. This program holds the same type
// library as K19FPW.dll, so that the late binding can be tried on a class of the test's own.
#include "automation_server/late_binding.h"

#include <gtest/gtest.h>

#include "automation_server/host.h"

namespace kavo::test {
namespace {

constexpr DISPID kPreProcess = 0x60030003;
constexpr DISPID kGetFile = 0x60030007;
constexpr DISPID kCreateTranslation = 0x60030008;

void set_text(BSTR* target, std::u16string_view text) {
  SysFreeString(*target);
  *target = make_bstr(text).release();
}

// Changes every parameter, and fails where the test wants it to.
class ChangingObject final : public _K19FPWObj {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SingleFileWizard(BSTR*, LONG*, LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE PreProcess(BSTR*, LONG*) override { return E_ACCESSDENIED; }
  HRESULT STDMETHODCALLTYPE GetFileCount(LONG* result) override { return *result = 42, S_OK; }
  HRESULT STDMETHODCALLTYPE GetFile(LONG* nCount, BSTR* result) override {
    *nCount += 1;
    set_text(result, u"file");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE CreateTranslation(BSTR* sTUD, BSTR* sTarget, LONG* nPreview, LONG* nHighlight,
                                              LONG* result) override {
    seen = from_bstr(*sTUD) + u"|" + from_bstr(*sTarget);
    set_text(sTarget, u"C:\\renamed.doc");
    *nPreview = 7;
    *result = *nHighlight;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_QuietMode(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_QuietMode(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LastError(BSTR*) override { return E_NOTIMPL; }

  std::u16string seen;
};

class LateBindingTest : public testing::Test {
 protected:
  HRESULT call(DISPID id, std::vector<VARIANT> arguments, EXCEPINFO* info = nullptr, VARIANT* answer = nullptr) {
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    const DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    return binding_.invoke(&object_, id, DISPATCH_METHOD, parameters, answer, info, nullptr);
  }

  LateBinding binding_{IID__K19FPWObj};
  ChangingObject object_;
};

TEST_F(LateBindingTest, WritesBackIntoVariablesOfTheParametersType) {
  unique_bstr tud = make_bstr(u"a");
  unique_bstr target = make_bstr(u"b");
  LONG preview = 0;
  LONG highlight = 5;
  unique_variant answer;
  EXPECT_EQ(call(kCreateTranslation,
                 {reference_argument(&*tud), reference_argument(&*target), reference_argument(&preview),
                  reference_argument(&highlight)},
                 nullptr, answer.put()),
            S_OK);
  EXPECT_EQ(object_.seen, u"a|b");
  EXPECT_EQ(from_bstr(tud.get()), u"a");
  EXPECT_EQ(from_bstr(target.get()), u"C:\\renamed.doc");
  EXPECT_EQ(preview, 7);
  EXPECT_EQ(V_VT(&*answer), VT_I4);
  EXPECT_EQ(V_I4(&*answer), 5);
}

TEST_F(LateBindingTest, WritesBackIntoVariablesOfAnyType) {
  // As script hosts pass theirs.
  unique_variant tud;
  V_BSTR(&*tud) = make_bstr(u"a").release();
  V_VT(&*tud) = VT_BSTR;
  unique_variant target;  // empty
  unique_variant preview;
  V_BSTR(&*preview) = make_bstr(u"1").release();
  V_VT(&*preview) = VT_BSTR;
  SHORT highlight = 3;
  EXPECT_EQ(call(kCreateTranslation, {reference_argument(&*tud), reference_argument(&*target),
                                      reference_argument(&*preview), reference_argument(&highlight)}),
            S_OK);
  EXPECT_EQ(object_.seen, u"a|");
  ASSERT_EQ(V_VT(&*target), VT_BSTR);
  EXPECT_EQ(from_bstr(V_BSTR(&*target)), u"C:\\renamed.doc");
  ASSERT_EQ(V_VT(&*preview), VT_I4);
  EXPECT_EQ(V_I4(&*preview), 7);
  EXPECT_EQ(highlight, 3);
}

TEST_F(LateBindingTest, ConvertsBackToTheVariablesType) {
  double real = 1.0;
  EXPECT_EQ(call(kGetFile, {reference_argument(&real)}), S_OK);
  EXPECT_EQ(real, 2.0);
  SHORT small = 1;
  EXPECT_EQ(call(kGetFile, {reference_argument(&small)}), S_OK);
  EXPECT_EQ(small, 2);
  unique_bstr text = make_bstr(u"1");
  EXPECT_EQ(call(kGetFile, {reference_argument(&*text)}), S_OK);
  EXPECT_EQ(from_bstr(text.get()), u"2");
}

TEST_F(LateBindingTest, ByValueArgumentsStayWhatTheyAre) {
  VARIANT number = number_argument(1);
  EXPECT_EQ(call(kGetFile, {number}), S_OK);
  EXPECT_EQ(V_I4(&number), 1);
}

TEST_F(LateBindingTest, ResultMayBeUnwanted) { EXPECT_EQ(call(kGetFile, {number_argument(1)}), S_OK); }

TEST_F(LateBindingTest, FailureWithoutErrorInformationGetsTheSystemsText) {
  const unique_bstr name = make_bstr(u"x");
  unique_exception_info info;
  EXPECT_EQ(call(kPreProcess, {text_argument(name)}, info.put()), DISP_E_EXCEPTION);
  EXPECT_EQ(info.get().scode, E_ACCESSDENIED);
  EXPECT_FALSE(from_bstr(info.get().bstrDescription).empty());
  EXPECT_EQ(call(kPreProcess, {text_argument(name)}), E_ACCESSDENIED);
}

}  // namespace
}  // namespace kavo::test
