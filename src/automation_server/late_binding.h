// IDispatch for an object with a dual interface, driven by its type library.
//
// The system's own ITypeInfo::Invoke accepts a by-reference argument only when the caller's variable has exactly the
// parameter's type, which no script host can promise. So arguments are converted here, the function is called through
// its place in the function table, and what it changed is converted back into the caller's variables.
#pragma once

#include <vector>

#include "platform/win32/owners.h"

namespace kavo {

class LateBinding {
 public:
  // Reads the interface's description from the module's own type library; throws `failure`.
  explicit LateBinding(REFIID interface_id);

  // The description as IDispatch::GetTypeInfo hands it out.
  ITypeInfo* type_info() const noexcept { return dispatch_info_.get(); }

  // `names` holds the member's name first, then names of its parameters. Results are those of IDispatch::GetIDsOfNames.
  HRESULT ids_of_names(LPOLESTR* names, UINT count, DISPID* ids) const noexcept;

  // IDispatch::Invoke on `object`, whose function table is the described one. Every parameter must be given, by place
  // or by name: DISP_E_BADPARAMCOUNT for too few or too many arguments, DISP_E_PARAMNOTOPTIONAL for one marked as
  // omitted, DISP_E_PARAMNOTFOUND for an unknown name, DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW for an argument that does
  // not convert (with its place in `bad_argument`), DISP_E_EXCEPTION with all of `info` when the function failed.
  // Throws std::bad_alloc.
  HRESULT invoke(IDispatch* object, DISPID id, WORD flags, const DISPPARAMS& given, VARIANT* result, EXCEPINFO* info,
                 UINT* bad_argument) const;

 private:
  struct Parameter {
    VARTYPE type;       // of the value itself
    bool by_reference;  // the function gets a pointer to it
    bool is_result;
  };
  struct Function {
    DISPID id;
    WORD kind;  // one of the DISPATCH_ flags
    ULONG_PTR table_offset;
    std::vector<Parameter> parameters;

    // The parameters that a caller gives; the result is the last of all when there is one.
    std::size_t input_count() const {
      return parameters.size() - (!parameters.empty() && parameters.back().is_result ? 1 : 0);
    }
  };

  static Function read_function(ITypeInfo& info, UINT index);

  unique_interface<ITypeInfo> dispatch_info_;
  std::vector<Function> functions_;
};

}  // namespace kavo
