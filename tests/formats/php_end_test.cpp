#include "formats/script/php_end.h"

#include <gtest/gtest.h>

namespace kavo::script::test {
namespace {

TEST(PhpEnd, IsTheFirstOneOutsideOfLiteralsAndComments) {
  struct Case {
    const char* name;
    std::string_view code;
    std::string_view behind;  // "-" for code that goes on
  };
  const Case cases[] = {
      {"plain", "a(); ?>b", "b"},
      {"single quotes", "a('?>'); ?>b", "b"},
      {"an escaped quote", R"(a('\'?>'); ?>b)", "b"},
      {"double quotes with a value", R"(a("$x ?> {$y['?>']}"); ?>b)", "b"},
      {"heredoc", "a(<<<X\n?>\nX\n); ?>b", "b"},
      {"block comment", "/* ?> */ ?>b", "b"},
      {"line comment", "// it's ?>b", "b"},
      {"another line comment", "# it's ?>b", "b"},
      {"none", "a();", "-"},
      {"in an open literal", "a('?>b", "-"},
      {"in an open comment", "/* ?>b", "-"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    const std::size_t end = php_end(row.code);
    EXPECT_EQ(end == std::string_view::npos ? "-" : row.code.substr(end), row.behind);
  }
}

}  // namespace
}  // namespace kavo::script::test
