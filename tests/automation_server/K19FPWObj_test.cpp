// The public object as hosts reach it: through the function table and late-bound, created by its programmatic
// identifier from the libraries beside this program.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "automation_server/host.h"
#include "platform/ports.h"
#include "platform/win32/paths.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr DISPID kSingleFileWizard = 0x60030002;
constexpr DISPID kPreProcess = 0x60030003;
constexpr DISPID kGetFileCount = 0x60030006;
constexpr DISPID kGetFile = 0x60030007;
constexpr DISPID kCreateTranslation = 0x60030008;
constexpr DISPID kQuietMode = 0x68030001;
constexpr DISPID kLastError = 0x68030000;
constexpr WORD kCall = DISPATCH_METHOD | DISPATCH_PROPERTYGET;  // as script hosts ask
constexpr std::string_view kServerPage =
    "<html><head><title>t</title></head><body>\r\n<p>Hello <% x = 1 %></p>\r\n</body></html>\r\n";

class PublicObject : public testing::Test {
 protected:
  void SetUp() override { create(object_); }

  static void create(unique_interface<_K19FPWObj>& object) {
    HRESULT result = S_OK;
    const unique_interface<IDispatch> dispatch = create_object(L"K19FPW.K19FPWObj", &result);
    ASSERT_EQ(result, S_OK) << take_error_info().description.size();
    ASSERT_EQ(dispatch->QueryInterface(IID__K19FPWObj, reinterpret_cast<void**>(object.put())), S_OK);
  }

  LONG pre_process(const std::u16string& name) {
    unique_bstr text = make_bstr(name);
    LONG result = -1;
    EXPECT_EQ(object_->PreProcess(&*text, &result), S_OK);
    EXPECT_EQ(from_bstr(text.get()), name);
    return result;
  }
  LONG file_count() {
    LONG count = -1;
    EXPECT_EQ(object_->GetFileCount(&count), S_OK);
    return count;
  }
  std::u16string file(LONG index) {
    unique_bstr name;
    EXPECT_EQ(object_->GetFile(&index, name.put()), S_OK);
    return from_bstr(name.get());
  }
  std::u16string last_error() {
    unique_bstr text;
    EXPECT_EQ(object_->get_LastError(text.put()), S_OK);
    return from_bstr(text.get());
  }

  ManifestScope manifests_;
  TempFolder folder_;
  unique_interface<_K19FPWObj> object_;
};

TEST_F(PublicObject, NewObjectIsEmptyThroughTheFunctionTable) {
  EXPECT_EQ(file_count(), 0);
  EXPECT_EQ(file(0), u"");
  LONG quiet = -1;
  EXPECT_EQ(object_->get_QuietMode(&quiet), S_OK);
  EXPECT_EQ(quiet, 0);
  EXPECT_EQ(last_error(), u"");
}

TEST_F(PublicObject, NewObjectIsEmptyLateBound) {
  EXPECT_EQ(invoke(object_.get(), kGetFileCount, kCall).number(), 0);
  Invocation call = invoke(object_.get(), kGetFile, kCall, {number_argument(0)});
  EXPECT_EQ(call.result, S_OK);
  EXPECT_EQ(V_VT(&*call.answer), VT_BSTR);
  EXPECT_EQ(call.text(), u"");
  EXPECT_EQ(invoke(object_.get(), kQuietMode, DISPATCH_PROPERTYGET).number(), 0);
  EXPECT_EQ(invoke(object_.get(), kLastError, DISPATCH_PROPERTYGET).text(), u"");
}

TEST_F(PublicObject, TextFileYieldsItselfAndNothingPastIt) {
  const std::u16string name = folder_.write(u"notes.txt", "text");
  EXPECT_EQ(pre_process(name), 0);
  EXPECT_EQ(file_count(), 1);
  EXPECT_EQ(file(0), name);
  EXPECT_EQ(file(1), u"");
}

TEST_F(PublicObject, ServerPageYieldsPageAndScripts) {
  EXPECT_EQ(pre_process(folder_.write(u"index.asp", kServerPage)), 0);
  ASSERT_EQ(file_count(), 2);
  EXPECT_NE(read_file(file(0)).find("Hello"), std::string::npos);
  EXPECT_NE(read_file(file(1)).find("x = 1"), std::string::npos);
}

TEST_F(PublicObject, PathsWithAnyUnicodeCharacter) {
  for (const std::u16string_view name : {u"na\u00EFve \u0416.asp", u"\u65E5\u672C\u8A9E.asp", u"\U0001F600.asp"}) {
    EXPECT_EQ(pre_process(folder_.write(name, kServerPage)), 0);
    ASSERT_EQ(file_count(), 2);
    EXPECT_NE(read_file(file(0)).find("Hello"), std::string::npos);
  }
}

TEST_F(PublicObject, PathOfMoreThan260Characters) {
  // Only the system's own long form of paths makes and removes such folders on every system.
  const std::u16string outer = folder_.path(std::u16string(120, u'a'));
  const std::u16string inner = outer + u"\\" + std::u16string(120, u'b');
  ASSERT_TRUE(CreateDirectoryW(system_path(outer).c_str(), nullptr));
  ASSERT_TRUE(CreateDirectoryW(system_path(inner).c_str(), nullptr));
  const std::u16string page = inner + u"\\page.asp";
  write_file(page, kServerPage);
  EXPECT_EQ(pre_process(page), 0);
  ASSERT_EQ(file_count(), 2);
  EXPECT_NE(read_file(file(0)).find("Hello"), std::string::npos);
  for (const std::u16string& name : ports().files->find(inner + u"\\*"))
    ports().files->remove_file(inner + u"\\" + name);
  EXPECT_TRUE(RemoveDirectoryW(system_path(inner).c_str()));
  EXPECT_TRUE(RemoveDirectoryW(system_path(outer).c_str()));
}

TEST_F(PublicObject, MissingPageFailsWithoutAFile) {
  EXPECT_EQ(pre_process(folder_.path(u"missing.asp")), 3);
  EXPECT_EQ(file_count(), 0);
}

TEST_F(PublicObject, NegativeIndexRaises9ThroughTheFunctionTable) {
  LONG index = -1;
  unique_bstr name;
  EXPECT_EQ(object_->GetFile(&index, name.put()), run_time_error(9));
  EXPECT_FALSE(name);
  unique_interface<ISupportErrorInfo> support;
  ASSERT_EQ(object_->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(support.put())), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__K19FPWObj), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IClassFactory), S_FALSE);
  const ErrorInfo info = take_error_info();
  EXPECT_EQ(info.description, u"Subscript out of range");
  EXPECT_EQ(info.source, u"K19FPW.K19FPWObj");
}

TEST_F(PublicObject, NegativeIndexRaises9LateBound) {
  const Invocation call = invoke(object_.get(), kGetFile, kCall, {number_argument(-1)});
  EXPECT_EQ(call.result, DISP_E_EXCEPTION);
  EXPECT_EQ(call.exception.get().scode, run_time_error(9));
  EXPECT_EQ(from_bstr(call.exception.get().bstrDescription), u"Subscript out of range");
  EXPECT_EQ(from_bstr(call.exception.get().bstrSource), u"K19FPW.K19FPWObj");
}

TEST_F(PublicObject, QuietModeBothWays) {
  EXPECT_EQ(object_->put_QuietMode(-5), S_OK);
  EXPECT_EQ(invoke(object_.get(), kQuietMode, DISPATCH_PROPERTYGET).number(), -5);
  EXPECT_EQ(invoke(object_.get(), kQuietMode, DISPATCH_PROPERTYPUT, {number_argument(7)}, {DISPID_PROPERTYPUT}).result,
            S_OK);
  LONG quiet = 0;
  EXPECT_EQ(object_->get_QuietMode(&quiet), S_OK);
  EXPECT_EQ(quiet, 7);
  const unique_bstr text = make_bstr(u"12");
  EXPECT_EQ(invoke(object_.get(), kQuietMode, DISPATCH_PROPERTYPUT, {text_argument(text)}, {DISPID_PROPERTYPUT}).result,
            S_OK);
  EXPECT_EQ(invoke(object_.get(), kQuietMode, DISPATCH_PROPERTYGET).number(), 12);
}

TEST_F(PublicObject, LastErrorIsReadOnly) {
  const unique_bstr text = make_bstr(u"mine");
  EXPECT_EQ(invoke(object_.get(), kLastError, DISPATCH_PROPERTYPUT, {text_argument(text)}, {DISPID_PROPERTYPUT}).result,
            DISP_E_MEMBERNOTFOUND);
}

TEST_F(PublicObject, QuietFailureOfATranslationIsReadFromLastError) {
  EXPECT_EQ(object_->put_QuietMode(1), S_OK);
  const std::u16string document = folder_.path(u"missing.tud");
  unique_bstr tud = make_bstr(document);
  unique_bstr target = make_bstr(folder_.path(u"target.asp"));
  LONG preview = 0;
  LONG highlight = 0;
  LONG result = -1;
  EXPECT_EQ(object_->CreateTranslation(&*tud, &*target, &preview, &highlight, &result), S_OK);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(last_error(), u"Failed to open TUD file");
  EXPECT_EQ(from_bstr(tud.get()), document);
}

TEST_F(PublicObject, LoudFailureOfATranslationShowsOneMessageBox) {
  // Each box that appears is read and closed; the call returns when there is none left.
  std::u16string shown;
  int boxes = 0;
  std::atomic<bool> returned{false};
  std::thread user([&] {
    while (!returned) {
      const HWND box = FindWindowW(L"#32770", L"KAVO");
      if (box != nullptr && IsWindowVisible(box)) {
        wchar_t text[256] = {};
        for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
          wchar_t class_name[32];
          GetClassNameW(child, class_name, 32);
          if (_wcsicmp(class_name, L"static") == 0 && GetWindowTextW(child, text, 256) > 0) shown = from_wide(text);
        }
        ++boxes;
        SendMessageW(box, WM_COMMAND, IDOK, 0);
        while (IsWindow(box)) Sleep(5);
      }
      Sleep(5);
    }
  });
  unique_bstr tud = make_bstr(folder_.path(u"missing.tud"));
  unique_bstr target = make_bstr(folder_.path(u"target.asp"));
  LONG preview = 0;
  LONG highlight = 0;
  LONG result = -1;
  EXPECT_EQ(object_->CreateTranslation(&*tud, &*target, &preview, &highlight, &result), S_OK);
  returned = true;
  user.join();
  EXPECT_EQ(result, 1);
  EXPECT_EQ(boxes, 1);
  EXPECT_EQ(shown, u"Failed to open TUD file");
  EXPECT_EQ(last_error(), u"Failed to open TUD file");
}

TEST_F(PublicObject, EveryMemberByName) {
  struct Case {
    const wchar_t* name;
    DISPID id;
  };
  for (const Case& member : {Case{L"SingleFileWizard", kSingleFileWizard},
                             {L"preprocess", kPreProcess},
                             {L"GETFILECOUNT", kGetFileCount},
                             {L"GetFile", kGetFile},
                             {L"CreateTranslation", kCreateTranslation},
                             {L"QuietMode", kQuietMode},
                             {L"LastError", kLastError}}) {
    LPOLESTR name = const_cast<LPOLESTR>(member.name);
    DISPID id = 0;
    EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), S_OK);
    EXPECT_EQ(id, member.id);
  }
  LPOLESTR missing = const_cast<LPOLESTR>(L"NoSuchMember");
  DISPID id = 0;
  EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, &missing, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNNAME);
}

TEST_F(PublicObject, NumberArgumentOfEveryFormThatConverts) {
  const std::u16string name = folder_.write(u"notes.txt", "text");
  ASSERT_EQ(pre_process(name), 0);
  const unique_bstr zero = make_bstr(u"0");
  LONG long_variable = 0;
  SHORT short_variable = 0;
  double real_variable = 0.25;
  BSTR text_variable = zero.get();
  VARIANT number_variable = number_argument(0);
  VARIANT text_in_variable = text_argument(zero);
  VARIANT empty_variable;
  VariantInit(&empty_variable);
  VARIANT inner = reference_argument(&short_variable);
  VARIANT flag;
  VariantInit(&flag);
  V_VT(&flag) = VT_BOOL;
  VARIANT byte;
  VariantInit(&byte);
  V_VT(&byte) = VT_UI1;
  V_UI1(&byte) = 0;
  VARIANT wide;
  VariantInit(&wide);
  V_VT(&wide) = VT_I8;
  V_I8(&wide) = 0;
  struct Case {
    const char* name;
    VARIANT argument;
  };
  const Case cases[] = {
      {"number", number_argument(0)},
      {"text", text_argument(zero)},
      {"flag", flag},
      {"byte", byte},
      {"64-bit number", wide},
      {"nothing", empty_variable},
      {"number by reference", reference_argument(&long_variable)},
      {"small number by reference", reference_argument(&short_variable)},
      {"fraction by reference", reference_argument(&real_variable)},
      {"text by reference", reference_argument(&text_variable)},
      {"variable with a number", reference_argument(&number_variable)},
      {"variable with a text", reference_argument(&text_in_variable)},
      {"variable with nothing", reference_argument(&empty_variable)},
      {"variable that refers to another", reference_argument(&inner)},
  };
  for (const Case& form : cases) {
    SCOPED_TRACE(form.name);
    Invocation call = invoke(object_.get(), kGetFile, kCall, {form.argument});
    EXPECT_EQ(call.result, S_OK);
    EXPECT_EQ(call.text(), name);
  }
  // What the member does not change keeps its type and value.
  EXPECT_EQ(V_VT(&text_in_variable), VT_BSTR);
  EXPECT_EQ(V_VT(&empty_variable), VT_EMPTY);
  EXPECT_EQ(real_variable, 0.25);
}

TEST_F(PublicObject, TextArgumentOfEveryFormThatConverts) {
  const std::u16string path = folder_.write(u"notes.txt", "text");
  const unique_bstr name = make_bstr(path);
  BSTR text_variable = name.get();
  VARIANT text_in_variable = text_argument(name);
  for (const VARIANT& argument :
       {text_argument(name), reference_argument(&text_variable), reference_argument(&text_in_variable)}) {
    EXPECT_EQ(invoke(object_.get(), kPreProcess, kCall, {argument}).number(), 0);
    EXPECT_EQ(file(0), path);
  }
  EXPECT_EQ(invoke(object_.get(), kPreProcess, kCall, {number_argument(15)}).number(), 0);
  EXPECT_EQ(file(0), u"15");
}

TEST_F(PublicObject, NamedArgumentsInAnyOrder) {
  object_->put_QuietMode(1);
  LPOLESTR names[] = {const_cast<LPOLESTR>(L"CreateTranslation"), const_cast<LPOLESTR>(L"nHighlight"),
                      const_cast<LPOLESTR>(L"sTarget"), const_cast<LPOLESTR>(L"sTUD"),
                      const_cast<LPOLESTR>(L"nPreview")};
  DISPID ids[5] = {};
  ASSERT_EQ(object_->GetIDsOfNames(IID_NULL, names, 5, LOCALE_USER_DEFAULT, ids), S_OK);
  const unique_bstr tud = make_bstr(folder_.path(u"missing.tud"));
  const unique_bstr target = make_bstr(folder_.path(u"target.asp"));
  Invocation call = invoke(object_.get(), ids[0], kCall,
                           {number_argument(0), text_argument(target), text_argument(tud), number_argument(0)},
                           {ids[1], ids[2], ids[3], ids[4]});
  EXPECT_EQ(call.result, S_OK);
  EXPECT_EQ(call.number(), 1);
}

TEST_F(PublicObject, WrongArgumentsAreRefused) {
  const unique_bstr word = make_bstr(u"one");
  const unique_bstr huge = make_bstr(u"3000000000");
  struct Case {
    const char* name;
    std::vector<VARIANT> arguments;
    std::vector<DISPID> names;
    HRESULT expected;
  };
  const Case cases[] = {
      {"too few", {}, {}, DISP_E_BADPARAMCOUNT},
      {"too many", {number_argument(0), number_argument(0)}, {}, DISP_E_BADPARAMCOUNT},
      {"left out", {omitted_argument()}, {}, DISP_E_PARAMNOTOPTIONAL},
      {"not a number", {text_argument(word)}, {}, DISP_E_TYPEMISMATCH},
      {"too large", {text_argument(huge)}, {}, DISP_E_OVERFLOW},
      {"unknown name", {number_argument(0)}, {4}, DISP_E_PARAMNOTFOUND},
  };
  for (const Case& wrong : cases) {
    SCOPED_TRACE(wrong.name);
    EXPECT_EQ(invoke(object_.get(), kGetFile, kCall, wrong.arguments, wrong.names).result, wrong.expected);
  }
  EXPECT_EQ(invoke(object_.get(), kGetFile, kCall, {text_argument(word)}).bad_argument, 0u);
  EXPECT_EQ(invoke(object_.get(), 12345, kCall).result, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(
      invoke(object_.get(), kGetFileCount, DISPATCH_PROPERTYPUT, {number_argument(1)}, {DISPID_PROPERTYPUT}).result,
      DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(object_->PreProcess(nullptr, nullptr), E_POINTER);
}

TEST_F(PublicObject, TwoInstancesOnAThreadKeepTheirOwnState) {
  unique_interface<_K19FPWObj> other;
  create(other);
  object_->put_QuietMode(1);
  const std::u16string name = folder_.write(u"notes.txt", "text");
  EXPECT_EQ(pre_process(name), 0);
  LONG value = -1;
  EXPECT_EQ(other->get_QuietMode(&value), S_OK);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(other->GetFileCount(&value), S_OK);
  EXPECT_EQ(value, 0);
  other.reset();
  EXPECT_EQ(file(0), name);
}

TEST_F(PublicObject, OffersItsTypeInformation) {
  UINT count = 0;
  EXPECT_EQ(object_->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1u);
  unique_interface<ITypeInfo> info;
  EXPECT_EQ(object_->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), S_OK);
  unique_bstr name;
  EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(from_bstr(name.get()), u"_K19FPWObj");
  EXPECT_EQ(object_->GetTypeInfo(1, LOCALE_USER_DEFAULT, info.put()), DISP_E_BADINDEX);
}

TEST_F(PublicObject, WizardThatTheUserLeavesIsCancelled) {
  std::atomic<bool> returned{false};
  std::thread user([&] {
    while (!returned) {
      if (const HWND dialog = FindWindowW(nullptr, L"Start translation"); dialog != nullptr && IsWindowVisible(dialog))
        PostMessageW(dialog, WM_CLOSE, 0, 0);
      Sleep(5);
    }
  });
  unique_bstr name = make_bstr(folder_.write(u"notes.txt", "text"));
  LONG options = 1;
  LONG result = -1;
  EXPECT_EQ(object_->SingleFileWizard(&*name, &options, &result), S_OK);
  Invocation late = invoke(object_.get(), kSingleFileWizard, kCall, {text_argument(name), number_argument(0)});
  returned = true;
  user.join();
  EXPECT_EQ(result, 1);
  EXPECT_EQ(options, 1);
  EXPECT_EQ(late.number(), 1);
}

TEST_F(PublicObject, LibraryIsInUseAsLongAsAnObjectLives) {
  const Library library(L"K19FPW.dll");
  EXPECT_EQ(library.call("DllCanUnloadNow"), S_FALSE);
  object_.reset();
  EXPECT_EQ(library.call("DllCanUnloadNow"), S_OK);
}

// No manifest and no registration: the library's own class factory works, the suite's catalogue is not found.
TEST(PublicObjectWithoutSuite, CreationRaises429AndNamesTheMissingComponent) {
  const Library library(L"K19FPW.dll");
  const unique_interface<IClassFactory> factory = library.class_object(CLSID_K19FPWObj);
  unique_interface<IDispatch> object;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.put())),
            run_time_error(429));
  EXPECT_FALSE(object);
  const ErrorInfo info = take_error_info();
  EXPECT_NE(info.description.find(u"K19Suite.FilterCatalogue"), std::u16string::npos);
  EXPECT_EQ(info.source, u"K19FPW.K19FPWObj");
}

}  // namespace
}  // namespace kavo::test
