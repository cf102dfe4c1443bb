// A translation memory in the exchange format TMX 1.4: the little of it that is written here, and whatever other
// programs made of it.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace kavo {

// A memory without a unit, for every language: what an editor opens at once.
std::string empty_tmx();

// A translation in a memory. Coded texts with plain numbers (code_mapping.h).
struct TmxUnit {
  std::string source;
  std::string target;
  bool is_reviewed = true;  // false: somebody still has to look at it
};

// The translations between two languages (the suite's codes) in the file; a variant of another region does not count.
// Throws `failure` 5 with the place for a file that is no TMX file or not well-formed.
void read_tmx(std::u16string_view path, std::string_view source_language, std::string_view target_language,
              const std::function<void(const TmxUnit&)>& take);

// Puts units behind those that the file holds, of which every byte stays; makes the file where there is none. Throws
// `failure` as read_tmx() does, and for a file that is not in UTF-8: it is as it was then.
void append_to_tmx(std::u16string_view path, std::string_view source_language, std::string_view target_language,
                   std::span<const TmxUnit> units);

}  // namespace kavo
