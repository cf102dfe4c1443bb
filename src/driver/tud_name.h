// What the name of a bilingual document says: the document that it belongs to, the type of the prepared file and the
// language, from which the names of all files around it follow.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kavo {

class TudName {
 public:
  // Splits the base name from the right at "_": page_asp_htm_FR.tud has the parts page, asp, htm, FR. A shorter name
  // leaves the first parts empty, a longer one has its further "_" in part 0.
  explicit TudName(std::u16string_view path);

  const std::u16string& folder() const { return folder_; }  // with its "\"
  const std::u16string& base() const { return base_; }
  const std::u16string& part(std::size_t index) const { return parts_[index]; }  // 0 to 3
  const std::u16string& prepared_type() const { return parts_[2]; }
  const std::u16string& language() const { return parts_[3]; }

  // A file beside the document: the parts from 0 to `last_part`, joined by "_" (without the missing ones), then "_"
  // and the language when asked for, "." and the extension.
  std::u16string file_name(std::size_t last_part, std::u16string_view extension, bool with_language) const;
  // The script file's bilingual document, for the page's.
  std::u16string script_tud() const;
  // True for the document of a script file whose page's document lies beside it, and of a MIF document's side file: the
  // main document's way back takes it along.
  bool is_taken_along() const;

 private:
  std::u16string folder_;
  std::u16string base_;
  std::array<std::u16string, 4> parts_;
  std::size_t first_part_ = 0;  // those before it are missing, not empty
};

}  // namespace kavo
