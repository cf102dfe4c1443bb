// Profile files in memory: values by file, section and key, names without regard to case.
#pragma once

#include <map>
#include <string>

#include "platform/case_fold.h"
#include "platform/profile_files.h"

namespace kavo::test {

class FakeProfileFiles : public ProfileFiles {
 public:
  bool writable = true;

  std::u16string read(std::u16string_view section, std::u16string_view key, std::u16string_view fallback,
                      std::u16string_view file, std::size_t limit) override {
    const auto found = values_.find(name_of(section, key, file));
    return std::u16string(found == values_.end() ? fallback : found->second).substr(0, limit);
  }

  bool write(std::u16string_view section, std::u16string_view key, std::u16string_view value,
             std::u16string_view file) override {
    if (writable) values_[name_of(section, key, file)] = value;
    return writable;
  }

 private:
  static std::u16string name_of(std::u16string_view section, std::u16string_view key, std::u16string_view file) {
    return std::u16string(file) + u'\0' + std::u16string(section) + u'\0' + std::u16string(key);
  }

  std::map<std::u16string, std::u16string, LessIgnoringCase> values_;
};

}  // namespace kavo::test
