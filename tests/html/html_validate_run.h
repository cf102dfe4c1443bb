// Runs clsHTMLValidate over a page in memory.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "html/repair/clsHTMLValidate.h"
#include "platform/ports.h"
#include "support/memory_files.h"

namespace kavo::test {

inline constexpr std::u16string_view kPagePath = u"C:\\WORK\\page.htm";

struct Validated {
  std::string page;
  std::vector<std::int32_t> numbers;  // of the messages after the header entry
  MessageList messages;
  std::uint64_t repairs = 0;
  std::int32_t result = 0;

  bool operator==(const Validated& other) const { return page == other.page && numbers == other.numbers; }
};

inline Validated validate(std::string_view page, std::size_t block_size = 1 << 20, std::u16string_view tags = {}) {
  MemoryFiles files;
  PortsScope scope;
  ports().files = &files;
  BlockSizeScope blocks(block_size);
  files.put(kPagePath, page);
  clsHTMLValidate validator;
  validator.Filename(kPagePath);
  if (!tags.empty()) validator.Tags(tags);
  Validated result;
  result.result = validator.HTMLValidate();
  result.page = files.get(kPagePath);
  result.messages = validator.ErrorList();
  for (std::size_t i = 1; i < result.messages.size(); ++i) result.numbers.push_back(result.messages[i].number);
  result.repairs = validator.repairs();
  return result;
}

inline void PrintTo(const Validated& value, std::ostream* out) {
  *out << value.page << " with messages";
  for (const auto number : value.numbers) *out << ' ' << number;
}

}  // namespace kavo::test
