// JSON (RFC 8259) that people write by hand: each key is known by its line, so that what is wrong can be found.
#pragma once

#include <cstddef>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace kavo {

class PlacedJson {
 public:
  // `name` of the file for messages. Throws `failure` 5 for a text that is no JSON, and for a key that stands twice in
  // one object (which readers understand differently), with its line.
  PlacedJson(std::string_view text, std::string name);

  const nlohmann::ordered_json& value() const { return value_; }
  // "kavo.json:7: ", with the line of a key; `pointer` leads to it (RFC 6901). Without a key of that name the line of
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
