// The driver over files in memory and an empty filter catalogue.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "driver/K19FPWObj.h"
#include "driver/fake_catalogue.h"
#include "platform/failure.h"
#include "support/failures.h"
#include "support/ports_fixture.h"

namespace kavo::test {

class DriverFixture : public PortsFixture {
 protected:
  DriverFixture() {
    automation.factories[u"K19Suite.FilterCatalogue"] = [] { return make_catalogue({}); };
  }

  static std::int32_t pre_process(K19FPWObj& object, std::u16string name) { return object.PreProcess(name); }
  static std::vector<std::u16string> file_list(const K19FPWObj& object) {
    std::vector<std::u16string> names;
    for (std::int32_t i = 0; i < object.GetFileCount(); ++i) names.push_back(object.GetFile(i));
    return names;
  }
};

}  // namespace kavo::test
