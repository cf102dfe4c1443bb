// Owners of system resources: one template, one alias for each kind of resource, nowhere else.
//
// An owner holds one resource or none. It releases the resource when it is destroyed, and the old one before it takes
// another. Nothing here throws.
#pragma once

#include <windows.h>
// windows.h first: the automation headers build on it.
#include <oaidl.h>
#include <oleauto.h>

#include <type_traits>
#include <utility>

namespace kavo {

// `Traits` says what the resource is (`value_type`), what stands for no resource (`none()`), how to recognise that
// (`is_none()`) and how a resource is released (`close()`).
template <typename Traits>
class unique_owner {
 public:
  using value_type = typename Traits::value_type;

  unique_owner() noexcept : value_(Traits::none()) {}
  explicit unique_owner(value_type value) noexcept : value_(value) {}
  unique_owner(unique_owner&& other) noexcept : value_(other.release()) {}
  unique_owner& operator=(unique_owner&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  ~unique_owner() { reset(); }

  const value_type& get() const noexcept { return value_; }
  explicit operator bool() const noexcept { return !Traits::is_none(value_); }
  // The resource, used in place; still owned.
  value_type& operator*() noexcept { return value_; }
  auto operator->() const noexcept requires std::is_pointer_v<value_type> { return value_; }
  // Where a system call may store a new resource. The old one is released first.
  value_type* put() noexcept {
    reset();
    return &value_;
  }
  value_type release() noexcept { return std::exchange(value_, Traits::none()); }
  void reset(value_type value = Traits::none()) noexcept {
    value_type old = std::exchange(value_, value);
    if (!Traits::is_none(old)) Traits::close(old);
  }

 private:
  value_type value_;
};

// Traits for pointer-like handles, where null stands for no resource.
template <typename T, auto kClose>
struct HandleTraits {
  using value_type = T;
  static T none() noexcept { return nullptr; }
  static bool is_none(T value) noexcept { return value == nullptr; }
  static void close(T value) noexcept { kClose(value); }
};

// A file-like handle: system calls return null or INVALID_HANDLE_VALUE for no handle.
template <auto kClose>
struct FileHandleTraits : HandleTraits<HANDLE, kClose> {
  static bool is_none(HANDLE value) noexcept { return value == nullptr || value == INVALID_HANDLE_VALUE; }
};

template <typename Interface>
struct InterfaceTraits {
  using value_type = Interface*;
  static Interface* none() noexcept { return nullptr; }
  static bool is_none(Interface* value) noexcept { return value == nullptr; }
  static void close(Interface* value) noexcept { value->Release(); }
};

struct VariantTraits {
  using value_type = VARIANT;
  // All zero is VT_EMPTY; VariantInit would leave the payload as it was.
  static VARIANT none() noexcept { return {}; }
  static bool is_none(const VARIANT& value) noexcept { return V_VT(&value) == VT_EMPTY; }
  static void close(VARIANT& value) noexcept { VariantClear(&value); }
};

struct ExceptionInfoTraits {
  using value_type = EXCEPINFO;
  static EXCEPINFO none() noexcept { return {}; }
  static bool is_none(const EXCEPINFO& value) noexcept {
    return value.bstrSource == nullptr && value.bstrDescription == nullptr && value.bstrHelpFile == nullptr;
  }
  static void close(EXCEPINFO& value) noexcept {
    SysFreeString(value.bstrSource);
    SysFreeString(value.bstrDescription);
    SysFreeString(value.bstrHelpFile);
  }
};

using unique_handle = unique_owner<FileHandleTraits<CloseHandle>>;
using unique_find_handle = unique_owner<FileHandleTraits<FindClose>>;
using unique_module = unique_owner<HandleTraits<HMODULE, FreeLibrary>>;
using unique_hkey = unique_owner<HandleTraits<HKEY, RegCloseKey>>;
using unique_bstr = unique_owner<HandleTraits<BSTR, SysFreeString>>;
using unique_variant = unique_owner<VariantTraits>;
using unique_exception_info = unique_owner<ExceptionInfoTraits>;
template <typename Interface>
using unique_interface = unique_owner<InterfaceTraits<Interface>>;

}  // namespace kavo
