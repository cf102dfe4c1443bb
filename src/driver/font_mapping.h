// The registry values that the filters of Word documents and RTF take their font map from, around one filter run.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kavo {

class FontMapping {
 public:
  // Names `map` as the font map and switches mapping on. Throws `failure` when the registry refuses and documents of
  // this format (the extension of the source) need the map; no other filter asks for one.
  FontMapping(const std::u16string& map, std::u16string_view source_format);
  // After a filter that succeeded: puts the switch back and, deliberately, leaves `map` as the font map, for filters
  // that users start themselves afterwards. Throws as above.
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
