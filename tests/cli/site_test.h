// Tests of the command on folders: files by their path below a folder of their own, where the command runs.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/holds.h"
#include "support/temp_folder.h"

namespace kavo::test {

namespace fs = std::filesystem;

class SiteTest : public testing::Test {
 protected:
  fs::path path(const std::string& name) const { return fs::path(path_to_host(folder.path(u""))) / name; }
  void put(const std::string& name, const std::string& bytes) const {
    fs::create_directories(path(name).parent_path());
    std::ofstream(path(name), std::ios::binary) << bytes;
  }
  std::string get(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  // Every file below a folder, by its path there.
  std::map<std::string, std::string> tree(const std::string& top) const {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path(top)))
      if (entry.is_regular_file()) {
        const std::string name = fs::relative(entry.path(), path(top)).generic_string();
        files[name] = get(top + "/" + name);
      }
    return files;
  }
  bool has(const std::string& name) const { return fs::exists(path(name)); }
  Ran kavo(const std::vector<std::string>& arguments) const { return run_kavo(arguments, &folder); }
  // Prepares the folder "site" in the folder "work".
  Ran prepare(std::vector<std::string> more = {}, const std::string& languages = "FR,DE") const {
    more.insert(more.begin(),
                {"prepare", "site", "-r", "--output-dir", "work", "--source", "EN-US", "--target", languages});
    return kavo(more);
  }
  TempFolder folder;
};

}  // namespace kavo::test
