// What every COM object written here has in common: its interfaces and its reference count.
#pragma once

#include <windows.h>
// windows.h first: the automation headers build on it.
#include <oaidl.h>

#include <atomic>
#include <type_traits>

namespace kavo {

// Base of a class that implements these interfaces; the class adds their own methods and a private destructor. A new
// object has one reference, which belongs to whoever made it, and ends with its last one. IUnknown and, for a dual
// interface that comes first, IDispatch are answered too.
template <typename Interface, typename... Others>
class ComObject : public Interface, public Others... {
 public:
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) noexcept override {
    if (result == nullptr) return E_POINTER;
    *result = find(id);
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  ComObject() = default;
  virtual ~ComObject() = default;

 private:
  void* find(REFIID id) noexcept {
    if (id == IID_IUnknown || id == __uuidof(Interface)) return static_cast<Interface*>(this);
    if constexpr (std::is_base_of_v<IDispatch, Interface>)
      if (id == IID_IDispatch) return static_cast<IDispatch*>(this);
    void* found = nullptr;
    ((id == __uuidof(Others) ? found = static_cast<Others*>(this) : nullptr), ...);
    return found;
  }

  std::atomic<ULONG> references_{1};
};

}  // namespace kavo
