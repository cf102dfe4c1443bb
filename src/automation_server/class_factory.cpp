#include "automation_server/class_factory.h"

#include <atomic>

#include "automation_server/module.h"
#include "platform/win32/guard.h"

namespace kavo {
namespace {

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const ComponentClass& row) : row_(row) {}
  ClassFactory(const ClassFactory&) = delete;
  ClassFactory& operator=(const ClassFactory&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) noexcept override {
    if (result == nullptr) return E_POINTER;
    *result = nullptr;
    if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
    *result = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** result) noexcept override {
    if (result == nullptr) return E_POINTER;
    *result = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return guarded(id, row_.programmatic_identifier, [&] { return row_.create(row_)->QueryInterface(id, result); });
  }

  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
    if (lock) {
      add_module_reference();
    } else {
      release_module_reference();
    }
    return S_OK;
  }

 private:
  ~ClassFactory() = default;

  std::atomic<ULONG> references_{1};
  const ComponentClass& row_;
  ModuleReference module_reference_;
};

}  // namespace

unique_interface<IClassFactory> make_class_factory(const ComponentClass& row) {
  return unique_interface<IClassFactory>(new ClassFactory(row));
}

}  // namespace kavo
