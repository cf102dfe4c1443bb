// Prepares a server page, makes bilingual documents of it and rebuilds it:  prepare C:\shop\index.asp
// Tested: compiled by MinGW and run under Wine (script_prepare.cpp). Late-bound, so it needs no header of the library.
#include <windows.h>
#include <oleauto.h>

#include <cstdio>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

// A VARIANT that frees what it holds. A text or number is passed by value, `&text` for the library to write back.
class Value : public VARIANT {
 public:
  Value() { VariantInit(this); }
  Value(long number) : Value() { vt = VT_I4; lVal = number; }
  Value(const std::wstring& text) : Value() { vt = VT_BSTR; bstrVal = SysAllocString(text.c_str()); }
  Value(const wchar_t* text) : Value(std::wstring(text)) {}
  Value(BSTR* text) : Value() { vt = VT_BSTR | VT_BYREF; pbstrVal = text; }
  Value(const Value& other) : Value() { VariantCopy(this, const_cast<Value*>(&other)); }
  Value& operator=(const Value&) = delete;
  ~Value() { VariantClear(this); }
  std::wstring text() const { return vt == VT_BSTR && bstrVal != nullptr ? bstrVal : L""; }
};

// An object of the registered library, called by names.
class Object {
 public:
  explicit Object(const wchar_t* identifier) {
    CLSID id;
    check(CLSIDFromProgID(identifier, &id), "the library is not registered");
    check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object_)),
          "the object cannot be created");
  }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  ~Object() { object_->Release(); }

  Value call(const wchar_t* member, std::initializer_list<Value> arguments = {}) {
    return invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
  }
  void put(const wchar_t* property, const Value& value) { invoke(property, DISPATCH_PROPERTYPUT, {value}); }

 private:
  static void check(HRESULT result, const char* what) {
    if (FAILED(result)) throw std::runtime_error(what);
  }
  Value invoke(const wchar_t* member, WORD how, std::initializer_list<Value> arguments) {
    DISPID id, put = DISPID_PROPERTYPUT;
    auto name = const_cast<wchar_t*>(member);
    check(object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), "there is no such member");
    std::vector<VARIANT> reversed;  // the last argument comes first; `arguments` keeps what they hold
    for (auto value = arguments.end(); value != arguments.begin();) reversed.push_back(*--value);
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if (how == DISPATCH_PROPERTYPUT) {
      parameters.rgdispidNamedArgs = &put;
      parameters.cNamedArgs = 1;
    }
    Value result;
    check(object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, how, &parameters, &result, nullptr, nullptr),
          "the call failed");
    return result;
  }
  IDispatch* object_ = nullptr;
};

std::wstring document_of(const std::wstring& produced, const std::wstring& extension) {
  return produced.substr(0, produced.size() - extension.size() - 1) + L"_" + extension + L"_FR.tud";
}

void run(const std::wstring& page) {
  Object wizard(L"K19FPW.K19FPWObj");
  wizard.put(L"QuietMode", 1L);  // no message boxes: results say what failed
  if (wizard.call(L"PreProcess", {page}).lVal != 0) throw std::runtime_error("the page was not prepared");

  // The reference suite's filters; a suite of your own has its own.
  Object catalogue(L"K19Suite.FilterCatalogue");
  std::vector<std::wstring> documents;
  const long count = wizard.call(L"GetFileCount").lVal;
  for (long index = 0; index < count; ++index) {
    const std::wstring produced = wizard.call(L"GetFile", {index}).text();
    const std::wstring extension = produced.substr(produced.rfind(L'.') + 1);
    documents.push_back(document_of(produced, extension));
    catalogue.call(L"Convert", {produced, documents.back(), L"", L"EN-US", 0L, L"FR", 0L,
                                extension == L"htm" ? L"K19HTM" : L"K19TXT", L"Paragraph"});
    std::printf("%ls\n", documents.back().c_str());
  }

  // Here the documents are translated. Then the first one brings the whole page back.
  BSTR target = nullptr;
  const long result = wizard.call(L"CreateTranslation", {documents.at(0), &target, 0L, 0L}).lVal;
  if (result != 0) throw std::runtime_error("the page was not rebuilt");
  std::printf("%ls\ndone\n", target);
  SysFreeString(target);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 2) return 2;
  CoInitialize(nullptr);
  int code = 0;
  try {
    run(arguments[1]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    code = 1;
  }
  CoUninitialize();
  return code;
}
