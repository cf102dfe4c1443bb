// The type library inside K19FPW.dll: what hosts bind to.
#include <gtest/gtest.h>

#include "automation_server/host.h"

namespace kavo::test {
namespace {

struct ExpectedParameter {
  std::u16string_view name;
  VARTYPE type;
  bool by_reference;
  USHORT flags;
};

struct ExpectedFunction {
  std::u16string_view name;
  DWORD id;
  INVOKEKIND kind;
  std::vector<ExpectedParameter> parameters;
};

constexpr USHORT kInOut = PARAMFLAG_FIN | PARAMFLAG_FOUT;
constexpr USHORT kResult = PARAMFLAG_FOUT | PARAMFLAG_FRETVAL;
constexpr std::size_t kDispatchSlots = 7;  // those of IUnknown and IDispatch come first

const std::vector<ExpectedFunction> kFunctions = {
    {u"SingleFileWizard",
     0x60030002,
     INVOKE_FUNC,
     {{u"sFilename", VT_BSTR, true, kInOut}, {u"nKAVO", VT_I4, true, kInOut}, {u"result", VT_I4, true, kResult}}},
    {u"PreProcess",
     0x60030003,
     INVOKE_FUNC,
     {{u"sFilename", VT_BSTR, true, kInOut}, {u"result", VT_I4, true, kResult}}},
    {u"GetFileCount", 0x60030006, INVOKE_FUNC, {{u"result", VT_I4, true, kResult}}},
    {u"GetFile", 0x60030007, INVOKE_FUNC, {{u"nCount", VT_I4, true, kInOut}, {u"result", VT_BSTR, true, kResult}}},
    {u"CreateTranslation",
     0x60030008,
     INVOKE_FUNC,
     {{u"sTUD", VT_BSTR, true, kInOut},
      {u"sTarget", VT_BSTR, true, kInOut},
      {u"nPreview", VT_I4, true, kInOut},
      {u"nHighlight", VT_I4, true, kInOut},
      {u"result", VT_I4, true, kResult}}},
    {u"QuietMode", 0x68030001, INVOKE_PROPERTYGET, {{u"result", VT_I4, true, kResult}}},
    {u"QuietMode", 0x68030001, INVOKE_PROPERTYPUT, {{u"", VT_I4, false, PARAMFLAG_FIN}}},
    {u"LastError", 0x68030000, INVOKE_PROPERTYGET, {{u"result", VT_BSTR, true, kResult}}},
};

class TypeLibraryTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadTypeLibEx((program_folder() + L"K19FPW.dll").c_str(), REGKIND_NONE, library_.put()), S_OK);
  }
  unique_interface<ITypeLib> library_;
};

TEST_F(TypeLibraryTest, IdentityVersionAndLocale) {
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library_->GetLibAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, LIBID_K19FPW);
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  EXPECT_EQ(attributes->lcid, 1033u);
  EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
  library_->ReleaseTLibAttr(attributes);
  unique_bstr name;
  library_->GetDocumentation(-1, name.put(), nullptr, nullptr, nullptr);
  EXPECT_EQ(from_bstr(name.get()), u"K19FPW");
}

TEST_F(TypeLibraryTest, ClassHasTheDualInterfaceAsItsDefault) {
  unique_interface<ITypeInfo> info;
  ASSERT_EQ(library_->GetTypeInfoOfGuid(CLSID_K19FPWObj, info.put()), S_OK);
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
  EXPECT_EQ(attributes->cImplTypes, 1);
  EXPECT_TRUE(attributes->wTypeFlags & TYPEFLAG_FCANCREATE);
  info->ReleaseTypeAttr(attributes);
  INT flags = 0;
  HREFTYPE reference = 0;
  EXPECT_EQ(info->GetImplTypeFlags(0, &flags), S_OK);
  EXPECT_TRUE(flags & IMPLTYPEFLAG_FDEFAULT);
  ASSERT_EQ(info->GetRefTypeOfImplType(0, &reference), S_OK);
  unique_interface<ITypeInfo> default_interface;
  ASSERT_EQ(info->GetRefTypeInfo(reference, default_interface.put()), S_OK);
  ASSERT_EQ(default_interface->GetTypeAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, IID__K19FPWObj);
  EXPECT_TRUE(attributes->wTypeFlags & TYPEFLAG_FDUAL);
  default_interface->ReleaseTypeAttr(attributes);
}

TEST_F(TypeLibraryTest, FunctionTableOrderAndDispatchNumbers) {
  unique_interface<ITypeInfo> dispatch_side;
  unique_interface<ITypeInfo> info;
  ASSERT_EQ(library_->GetTypeInfoOfGuid(IID__K19FPWObj, dispatch_side.put()), S_OK);
  HREFTYPE reference = 0;
  ASSERT_EQ(dispatch_side->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
  ASSERT_EQ(dispatch_side->GetRefTypeInfo(reference, info.put()), S_OK);
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
  ASSERT_EQ(attributes->cFuncs, kFunctions.size());
  info->ReleaseTypeAttr(attributes);

  for (std::size_t i = 0; i < kFunctions.size(); ++i) {
    const ExpectedFunction& expected = kFunctions[i];
    SCOPED_TRACE(i);
    FUNCDESC* found = nullptr;
    ASSERT_EQ(info->GetFuncDesc(static_cast<UINT>(i), &found), S_OK);
    EXPECT_EQ(static_cast<DWORD>(found->memid), expected.id);
    EXPECT_EQ(found->invkind, expected.kind);
    EXPECT_EQ(static_cast<std::size_t>(found->oVft), (kDispatchSlots + i) * sizeof(void*));
    EXPECT_EQ(found->callconv, CC_STDCALL);
    EXPECT_EQ(found->cParamsOpt, 0);
    BSTR names[8] = {};
    UINT name_count = 0;
    EXPECT_EQ(info->GetNames(found->memid, names, 8, &name_count), S_OK);
    EXPECT_EQ(from_bstr(names[0]), expected.name);
    ASSERT_EQ(static_cast<std::size_t>(found->cParams), expected.parameters.size());
    for (std::size_t p = 0; p < expected.parameters.size(); ++p) {
      const ExpectedParameter& parameter = expected.parameters[p];
      SCOPED_TRACE(p);
      const TYPEDESC& type = found->lprgelemdescParam[p].tdesc;
      EXPECT_EQ(type.vt == VT_PTR, parameter.by_reference);
      EXPECT_EQ(type.vt == VT_PTR ? type.lptdesc->vt : type.vt, parameter.type);
      EXPECT_EQ(found->lprgelemdescParam[p].paramdesc.wParamFlags, parameter.flags);
      if (parameter.flags == kInOut) {
        EXPECT_EQ(from_bstr(names[p + 1]), parameter.name);
      }
    }
    for (BSTR name : names) SysFreeString(name);
    info->ReleaseFuncDesc(found);
  }
}

TEST(VersionResource, NamesTheLibrary) {
  for (const wchar_t* name : {L"K19FPW.dll", L"K19Suite.dll"}) {
    const Library library(name);
    const HMODULE module = GetModuleHandleW(name);
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(1), RT_VERSION);
    ASSERT_NE(resource, nullptr);
    const auto* text = static_cast<const wchar_t*>(LockResource(LoadResource(module, resource)));
    const std::wstring whole(text, SizeofResource(module, resource) / sizeof(wchar_t));
    EXPECT_NE(whole.find(name), std::wstring::npos);
    EXPECT_NE(whole.find(L"KAVO File Processing Wizard"), std::wstring::npos);
  }
}

}  // namespace
}  // namespace kavo::test
