// Reads JSON (RFC 8259) that people write by hand. It knows the line of each key, so that messages can name the place.
#pragma once

#include <cstddef>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace kavo {

class PlacedJson {
 public:
  // `name` is the file's name in messages. Throws `failure` 5 with the line for a text that is not JSON, and for a key
  // that occurs twice in one object, which readers understand differently.
  PlacedJson(std::string_view text, std::string name);

  const nlohmann::ordered_json& value() const { return value_; }
  // "kavo.json:7: ", with the line of the key that `pointer` (RFC 6901) leads to. If there is no such key, the line of
  // the one above it.
  std::string place(std::string pointer) const;

 private:
  std::string name_;
  std::map<std::string, std::size_t> lines_;  // by pointer; the first is 1
  nlohmann::ordered_json value_;
};

// A key as a step of a pointer.
std::string pointer_step(std::string_view key);

}  // namespace kavo
