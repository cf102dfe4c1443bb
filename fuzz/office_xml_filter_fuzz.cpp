// The XML of presentations and workbooks, of any bytes, on its way through its filter and back, unchanged and
// translated.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "suite/office_xml_filter_property.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string broken = kavo::test::broken_office_xml_property({reinterpret_cast<const char*>(data), size});
  if (!broken.empty()) {
    std::fprintf(stderr, "%s\n", broken.c_str());
    std::abort();
  }
  return 0;
}
