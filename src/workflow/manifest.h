// manifest.json in the folder of the bilingual documents: what was prepared, from what, with which options.
//
// It is made for version control: in one order, without times, and nothing in it changes while people translate. A run
// that changes nothing leaves the file alone.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

class Manifest {
 public:
  // Reads that of a folder; an empty one when there is none. Throws `failure` 58 for a file of this name that is
  // something else, and for one that cannot be read.
  explicit Manifest(std::u16string_view folder);

  static std::u16string path_in_folder(std::u16string_view folder);

  // Sources are named by their paths in the tree. Whether there is an entry of the source with this checksum: a run that
  // was killed leaves the entry of the source as it was before.
  bool knows(std::u16string_view source, std::u16string_view language, std::uint64_t checksum) const;
  // Whether the options that it was prepared with are known to be others.
  bool has_other_options(std::u16string_view source, std::u16string_view language, std::string_view options) const;
  // Puts an entry in the place of the old one.
  void note(std::u16string_view source, std::u16string_view language, nlohmann::json entry);
  // Writes it if that changes a byte and there is something to say. Throws `failure`.
  void save() const;

  // The entry for the bilingual documents of one language, which are in `folder` or below. Throws `failure` for one that
  // cannot be read.
  static nlohmann::json entry_of(std::u16string_view folder, const std::vector<std::u16string>& documents,
                                 std::string_view options);

 private:
  // Null for one that is not there.
  nlohmann::json find(std::u16string_view source, std::u16string_view language) const;
  void for_each_piece(const std::function<void(std::string_view)>& take) const;

  std::u16string path_;
  bool is_there_ = false;
  std::uint64_t checksum_ = 0;                // of the file as it was read
  std::map<std::string, std::string> files_;  // by source: the entries of all languages, as JSON
};

// The path of a file from a folder, with "/" between names; "" for a file elsewhere.
std::string place_below(std::u16string_view folder, std::u16string_view file);

// 16 hexadecimal digits.
std::string checksum_text(std::uint64_t checksum);

}  // namespace kavo
