// How the command sees a document: the types that hosts know, and pages with other extensions. Hosts of the automation
// object go by FileTypeOf() alone, whose table is part of the contract.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/file_type.h"

namespace kavo {

struct DocumentKind {
  std::int32_t type = kUnknownFile;
  // A part of a page ("header.inc"), whose elements begin and end in other files.
  bool is_fragment = false;
};

// By the name's last extension: pages (.php .phtml .php3), fragments (.inc .asa .jspf), what the user added to either,
// and everything that FileTypeOf() knows.
DocumentKind kind_of_document(std::u16string_view file_name);

// The extensions that the user added, without dots, separated by blanks. Writing throws `failure` when it cannot be
// stored.
std::u16string added_page_extensions();
void store_page_extensions(std::u16string_view value);
std::u16string added_fragment_extensions();
void store_fragment_extensions(std::u16string_view value);

}  // namespace kavo
