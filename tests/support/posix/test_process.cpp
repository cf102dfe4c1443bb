#include <stdlib.h>

#include <string>

#include "support/system.h"

namespace kavo::test {

TestProcess::TestProcess() {
  std::string name = (std::filesystem::temp_directory_path() / "kavo-test-settings-XXXXXX").string();
  if (!::mkdtemp(name.data())) return;
  settings_folder_ = name;
  ::setenv("KAVO_CONFIG_FOLDER", name.c_str(), 1);
}

TestProcess::~TestProcess() {
  std::error_code ignored;
  if (!settings_folder_.empty()) std::filesystem::remove_all(settings_folder_, ignored);
}

}  // namespace kavo::test
