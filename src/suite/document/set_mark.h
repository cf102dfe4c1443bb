// What connects the bilingual documents of one preparation with each other and with the author's document.
#pragma once

#include <cstdint>
#include <string>

namespace kavo {

struct SetMark {
  std::string mark;                   // the same in all documents of one preparation; "" for none
  std::string author_document;        // file name without folder, in the system's own form; "" when unknown
  std::uint64_t author_checksum = 0;  // of that document when it was prepared
  bool operator==(const SetMark&) const = default;
};

}  // namespace kavo
