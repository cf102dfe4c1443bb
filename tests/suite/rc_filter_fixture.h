// Resource scripts on their way through the filter and back.
#pragma once

#include "suite/filters/rc/rc_filter.h"
#include "suite/suite_fixture.h"

namespace kavo::test {

class RcFilterTest : public SuiteTest {
 protected:
  static Road road(unsigned source_code_page = 1252) {
    return {.filter = u"K19GCP", .source_code_page = source_code_page};
  }

  // The texts of a script, each after its name: "IDS_TITLE=Title".
  std::vector<std::u16string> texts(std::string_view script, unsigned code_page = 1252) {
    put(u"a.rc", script);
    return sources(convert(u"a.rc", road(code_page)));
  }

  // There and back; a text changes to what `translate` gives.
  std::string rebuilt(std::string_view script, const Translate& translate, unsigned code_page = 1252) {
    return translated(u"a.rc", script, translate, road(code_page));
  }
  static std::u16string same(std::u16string text) { return text; }
};

}  // namespace kavo::test
