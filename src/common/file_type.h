// File type codes: what the extension of a document's name says about it.
#pragma once

#include <cstdint>

namespace kavo {

// The numbers are part of the contract.
enum FileType : std::int32_t {
  kUnknownFile = 0,
  kWordDocument = 1,
  kRtfDocument = 2,
  kHtmlPage = 3,
  kServerPage = 4,
  kMifDocument = 5,
  kResourceScript = 6,
  kPlainText = 7,  // also the script side file
  kPresentation = 8,
  kWorkbook = 9,
};

}  // namespace kavo
