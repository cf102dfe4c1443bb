// The parts of a bilingual document's name: the document that it belongs to, the type of the prepared file, and the
// language. The names of all files around it follow from them.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kavo {

class TudName {
 public:
  // Splits the base name from the right at "_": page_asp_htm_FR.tud has the parts page, asp, htm, FR. In a shorter name
  // the first parts are empty; in a longer one part 0 holds the remaining "_".
  explicit TudName(std::u16string_view path);

  const std::u16string& folder() const { return folder_; }  // with its "\"
  const std::u16string& base() const { return base_; }
  const std::u16string& part(std::size_t index) const { return parts_[index]; }  // 0 to 3
  // Whether the name is long enough for it; the part itself may be empty.
  bool has_part(std::size_t index) const { return index >= first_part_; }
  const std::u16string& prepared_type() const { return parts_[2]; }
  const std::u16string& language() const { return parts_[3]; }

  // A file beside the document. Its name joins the parts from 0 to `last_part` by "_", leaving out missing ones, adds
  // "_" and the language when asked for, then "." and the extension.
  std::u16string file_name(std::size_t last_part, std::u16string_view extension, bool with_language) const;
  // For the document of a page: the bilingual document of its script file.
  std::u16string script_tud() const;
  // True for the document of a script file whose page's document lies beside it, and for that of a MIF document's side
  // file. Rebuilding the main document rebuilds these, too.
  bool is_taken_along() const;

 private:
  std::u16string folder_;
  std::u16string base_;
  std::array<std::u16string, 4> parts_;
  std::size_t first_part_ = 0;  // the parts before it are missing, not empty
};

}  // namespace kavo
