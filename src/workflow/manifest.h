// manifest.json in the folder of the bilingual documents: what was prepared, from what, with which options.
//
// It suits version control: its order is fixed, it holds no times, and nothing in it changes while people translate. A
// run that changes nothing does not write the file.
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
  // Reads the manifest of a folder; it is empty when there is none. Throws `failure` 58 for a file with this name that
  // is something else, and for one that cannot be read.
  explicit Manifest(std::u16string_view folder);

  static std::u16string path_in_folder(std::u16string_view folder);

  // Sources are named by their paths in the tree. True when there is an entry for the source with this checksum; a run
  // that was killed may have left an older entry.
  bool knows(std::u16string_view source, std::u16string_view language, std::uint64_t checksum) const;
  // True when the source is known to have been prepared with other options.
  bool has_other_options(std::u16string_view source, std::u16string_view language, std::string_view options) const;
  // Puts an entry in the place of the old one.
  void note(std::u16string_view source, std::u16string_view language, nlohmann::json entry);
  // Writes the file if it has entries and a byte of it changes. Throws `failure`.
  void save() const;

  // The entry for the bilingual documents of one language, which are in `folder` or below. Throws `failure` for one
  // that cannot be read.
  static nlohmann::json entry_of(std::u16string_view folder, const std::vector<std::u16string>& documents,
                                 std::string_view options);

 private:
  // Null when there is no such entry.
  nlohmann::json find(std::u16string_view source, std::u16string_view language) const;
  void for_each_piece(const std::function<void(std::string_view)>& take) const;

  std::u16string path_;
  bool is_there_ = false;
  std::uint64_t checksum_ = 0;                // of the file as it was read
  std::map<std::string, std::string> files_;  // by source: the entries of all languages, as JSON
};

// The path of a file from a folder, with "/" between names; "" for a file outside the folder.
std::string place_below(std::u16string_view folder, std::u16string_view file);

// 16 hexadecimal digits.
std::string checksum_text(std::uint64_t checksum);

}  // namespace kavo
