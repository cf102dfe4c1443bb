// The registry values that name the font map for the filters of Word and RTF documents, during one filter run.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kavo {

class FontMapping {
 public:
  // Names `map` as the font map and switches mapping on. When the registry refuses, throws `failure` for source formats
  // (given as extensions) whose filters need the map, and ignores it for others.
  FontMapping(const std::u16string& map, std::u16string_view source_format);
  // For a filter that succeeded: puts the switch back. Leaves `map` as the font map, deliberately, for filters that
  // users start themselves afterwards. Throws like the constructor.
  void restore() const;

 private:
  template <class Write>
  void attempt(Write&& write) const;

  std::u16string map_;
  std::u16string old_map_;
  std::int32_t old_mapping_;
  bool is_needed_;
};

}  // namespace kavo
