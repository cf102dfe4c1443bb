// Scripts of any bytes, cut into tokens.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "suite/script_filter_property.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string broken = kavo::test::broken_lexer_property(kavo::script::Language::kVbScript,
                                                               {reinterpret_cast<const char*>(data), size});
  if (!broken.empty()) {
    std::fprintf(stderr, "%s\n", broken.c_str());
    std::abort();
  }
  return 0;
}
