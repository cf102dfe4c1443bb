// Pages in memory on the way through the HTML filter and back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "suite/suite_fixture.h"

namespace kavo::test {

class HtmlFilterTest : public SuiteTest {
 protected:
  static Road html_road() { return {.filter = u"K19HTM"}; }

  std::vector<std::u16string> texts_of(std::string_view page, const Road& road = html_road()) {
    put(u"a.htm", page);
    return sources(convert(u"a.htm", road));
  }
  std::string unchanged(std::string_view page, const Road& road = html_road()) {
    put(u"a.htm", page);
    return rebuild(convert(u"a.htm", road), road);
  }
  std::string translated_page(std::string_view page, const Translate& translate, const Road& road = html_road()) {
    return translated(u"a.htm", page, translate, road);
  }
};

}  // namespace kavo::test
