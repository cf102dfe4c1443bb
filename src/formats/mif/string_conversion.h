// Strings of one MIF document as another document of another coding writes them.
//
// Escapes that all versions understand, line ends and ASCII stay as they are; every other character is written in the
// other document's way. So a value that is converted twice alike gives the same bytes twice, and two documents can be
// compared by what their values are in a third.
#pragma once

#include <string>
#include <string_view>

#include "formats/mif/string_coding.h"

namespace kavo::mif {

class StringConversion {
 public:
  // Both must outlive the conversion.
  StringConversion(const StringCoding& from, const StringCoding& to) : from_(from), to_(to) {}

  // The converted value; valid until the next call. What the other document cannot hold is written as `\uNNNN`, a byte
  // that is no character as `\xNN `.
  const std::string& convert(std::string_view value);
  // Of the last value the first character (UTF-8) or byte (as an escape) that did not fit; "" when all did.
  const std::string& misfit() const { return misfit_; }

 private:
  void convert_part(const StringPart& part);
  void convert_run(std::string_view run);
  void write_text(std::string_view utf8);
  void write_character(std::string_view utf8);
  void write_invalid(std::string_view bytes);
  void keep(std::string_view bytes);
  void keep_misfit(std::string_view shown);

  const StringCoding& from_;
  const StringCoding& to_;
  std::string result_;
  std::string misfit_;
  std::string written_;        // one character
  bool joins_escape_ = false;  // the escape written last and another one would read as one character
};

}  // namespace kavo::mif
