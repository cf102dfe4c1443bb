// The macros of the templates, as the engine runs them.
#pragma once

#include <string_view>

#include "office/libreoffice/office_document.h"

namespace kavo {

struct OfficeMacro {
  OfficeKind kind;
  std::u16string_view name;  // as Run takes it
  bool changes_document;
  void (*run)(OfficeDocument& document);  // throws `failure`
};

// Null when there is none of that name, which ignores case.
const OfficeMacro* find_office_macro(OfficeKind kind, std::u16string_view name);

}  // namespace kavo
