// Converts strings of a MIF document to the coding of another MIF document.
//
// Line ends, ASCII, and the escapes that all versions understand stay unchanged. Every other character is written as
// the other document writes it. Equal values give equal bytes, so two documents can be compared by their values in the
// coding of a third.
#pragma once

#include <string>
#include <string_view>

#include "formats/mif/string_coding.h"

namespace kavo::mif {

class StringConversion {
 public:
  // Both must outlive the conversion.
  StringConversion(const StringCoding& from, const StringCoding& to) : from_(from), to_(to) {}

  // The converted value, valid until the next call. A character that the other document cannot hold becomes `\uNNNN`, a
  // byte that is not a character `\xNN `.
  const std::string& convert(std::string_view value);
  // The first character (UTF-8) or byte (as an escape) of the last value that did not fit; "" when all did.
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
  bool joins_escape_ = false;  // the last escape and another one after it would read as one character
};

}  // namespace kavo::mif
