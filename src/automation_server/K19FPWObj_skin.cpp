// The COM skin of K19FPWObj: converts, calls, converts back.
#include "automation_server/K19FPWObj_skin.h"

#include <optional>

#include "K19FPW.h"
#include "automation_server/late_binding.h"
#include "automation_server/module.h"
#include "driver/K19FPWObj.h"
#include "platform/failure.h"
#include "platform/win32/com_object.h"
#include "platform/win32/guard.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"
#include "ui/system_presenter.h"

namespace kavo {
namespace {

constexpr std::u16string_view kClassName = u"K19FPW.K19FPWObj";

void check_pointers(auto*... pointers) {
  if (((pointers == nullptr) || ...))
    throw failure(E_POINTER, system_text(static_cast<DWORD>(E_POINTER)), std::u16string(kClassName));
}

// A by-reference string of the caller: read before the call, replaced after it when the callee changed it.
class TextReference {
 public:
  explicit TextReference(BSTR& target) : target_(target), text_(from_bstr(target)), before_(text_) {}
  std::u16string& text() { return text_; }
  void write_back() {
    if (text_ == before_) return;
    BSTR changed = make_bstr(text_).release();
    SysFreeString(target_);
    target_ = changed;
  }

 private:
  BSTR& target_;
  std::u16string text_;
  std::u16string before_;
};

class Skin final : public ComObject<_K19FPWObj, ISupportErrorInfo> {
 public:
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) noexcept override {
    return id == IID__K19FPWObj ? S_OK : S_FALSE;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return guarded(IID_IDispatch, kClassName, [&] {
      *info = late_binding().type_info();
      (*info)->AddRef();
    });
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
    return guarded(IID_IDispatch, kClassName, [&] { return late_binding().ids_of_names(names, count, ids); });
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* info, UINT* bad_argument) noexcept override {
    if (parameters == nullptr) return E_POINTER;
    return guarded(IID_IDispatch, kClassName,
                   [&] { return late_binding().invoke(this, id, flags, *parameters, result, info, bad_argument); });
  }

  HRESULT STDMETHODCALLTYPE SingleFileWizard(BSTR* sFilename, LONG* nKAVO, LONG* result) noexcept override {
    return guarded(IID__K19FPWObj, kClassName, [&] {
      check_pointers(sFilename, nKAVO, result);
      TextReference filename(*sFilename);
      std::int32_t options = *nKAVO;
      form_presenter(&system_presenter());  // of the thread that the host calls on
      *result = object_.SingleFileWizard(filename.text(), options);
      *nKAVO = options;
      filename.write_back();
    });
  }

  HRESULT STDMETHODCALLTYPE PreProcess(BSTR* sFilename, LONG* result) noexcept override {
    return guarded(IID__K19FPWObj, kClassName, [&] {
      check_pointers(sFilename, result);
      TextReference filename(*sFilename);
      *result = object_.PreProcess(filename.text());
      filename.write_back();
    });
  }

  HRESULT STDMETHODCALLTYPE GetFileCount(LONG* result) noexcept override {
    return guarded(IID__K19FPWObj, kClassName, [&] {
      check_pointers(result);
      *result = object_.GetFileCount();
    });
  }

  HRESULT STDMETHODCALLTYPE GetFile(LONG* nCount, BSTR* result) noexcept override {
    return guarded(IID__K19FPWObj, kClassName, [&] {
      check_pointers(nCount, result);
      *result = nullptr;
      *result = make_bstr(object_.GetFile(*nCount)).release();
    });
  }

  HRESULT STDMETHODCALLTYPE CreateTranslation(BSTR* sTUD, BSTR* sTarget, LONG* nPreview, LONG* nHighlight,
                                              LONG* result) noexcept override {
    return guarded(IID__K19FPWObj, kClassName, [&] {
      check_pointers(sTUD, sTarget, nPreview, nHighlight, result);
      TextReference tud(*sTUD);
      TextReference target(*sTarget);
      std::int32_t preview = *nPreview;
      std::int32_t highlight = *nHighlight;
      *result = object_.CreateTranslation(tud.text(), target.text(), preview, highlight);
      *nPreview = preview;
      *nHighlight = highlight;
      tud.write_back();
      target.write_back();
    });
  }

  HRESULT STDMETHODCALLTYPE get_QuietMode(LONG* result) noexcept override {
    return guarded(IID__K19FPWObj, kClassName, [&] {
      check_pointers(result);
      *result = object_.QuietMode();
    });
  }
  HRESULT STDMETHODCALLTYPE put_QuietMode(LONG value) noexcept override {
    return guarded(IID__K19FPWObj, kClassName, [&] { object_.QuietMode(value); });
  }

  HRESULT STDMETHODCALLTYPE get_LastError(BSTR* result) noexcept override {
    return guarded(IID__K19FPWObj, kClassName, [&] {
      check_pointers(result);
      *result = nullptr;
      *result = make_bstr(object_.LastError()).release();
    });
  }

 private:
  ~Skin() override = default;

  // Read at the first late-bound call: a host that binds to the function table never needs it.
  const LateBinding& late_binding() {
    if (!late_binding_) late_binding_.emplace(IID__K19FPWObj);
    return *late_binding_;
  }

  ModuleReference module_reference_;
  std::optional<LateBinding> late_binding_;
  kavo::K19FPWObj object_;
};

}  // namespace

unique_interface<IUnknown> make_K19FPWObj() { return unique_interface<IUnknown>(static_cast<_K19FPWObj*>(new Skin)); }

}  // namespace kavo
