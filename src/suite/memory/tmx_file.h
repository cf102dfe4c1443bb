// Writes and reads translation memories in the exchange format TMX 1.4. It writes little of the format, but reads what
// other programs write.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace kavo {

// An empty memory for all languages, which any editor can open.
std::string empty_tmx();

// A translation in a memory. Coded texts with plain numbers (code_mapping.h).
struct TmxUnit {
  std::string source;
  std::string target;
  bool is_reviewed = true;  // false: somebody still has to check it
};

// The translations between two languages (the suite's codes) in the file; a variant of another region does not count.
// Throws `failure` 5 with the place for a file that is not TMX or not well-formed.
void read_tmx(std::u16string_view path, std::string_view source_language, std::string_view target_language,
              const std::function<void(const TmxUnit&)>& take);

// Adds units after those that the file holds, of which every byte stays. Makes the file if there is none. Throws
// `failure` as read_tmx() does, and for a file that is not in UTF-8. The file is then as it was.
void append_to_tmx(std::u16string_view path, std::string_view source_language, std::string_view target_language,
                   std::span<const TmxUnit> units);

}  // namespace kavo
