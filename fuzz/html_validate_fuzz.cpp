// Any bytes as a page: what must hold for every repair must hold for this one.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "html/html_validate_rules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string rule = kavo::test::broken_rule({reinterpret_cast<const char*>(data), size});
  if (rule.empty()) return 0;
  std::fprintf(stderr, "%s\n", rule.c_str());
  std::abort();
}
