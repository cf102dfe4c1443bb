#include "automation_server/class_factory.h"

#include "automation_server/module.h"
#include "platform/win32/com_object.h"
#include "platform/win32/guard.h"

namespace kavo {
namespace {

class ClassFactory final : public ComObject<IClassFactory> {
 public:
  explicit ClassFactory(const ComponentClass& row) : row_(row) {}

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
  ~ClassFactory() override = default;

  const ComponentClass& row_;
  ModuleReference module_reference_;
};

}  // namespace

unique_interface<IClassFactory> make_class_factory(const ComponentClass& row) {
  return unique_interface<IClassFactory>(new ClassFactory(row));
}

}  // namespace kavo
