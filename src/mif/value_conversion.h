// Converts values between a document and its side file, which may be of different versions.
#pragma once

#include <string_view>

#include "formats/mif/string_conversion.h"
#include "mif/mif_coding.h"

namespace kavo {

class ValueConversion {
 public:
  // Both must outlive the conversion. A side file before version 8.0 that declares no coding has that of a document
  // before 8.0, because it was made only from such documents.
  ValueConversion(const MifCoding& side_file, const MifCoding& document);

  const MifCoding& document() const { return document_; }

  // A value of the document in the side file's coding. Valid until the next call.
  std::string_view to_side_file(std::string_view value);
  // A value of the side file in the document's coding. Valid until the next call.
  std::string_view to_document(std::string_view value);
  // What the document cannot hold of the value that to_document() converted last: a character (UTF-8) or a byte (as an
  // escape). "" when the document can hold the whole value.
  std::string_view misfit() const { return misfit_; }

 private:
  const MifCoding& document_;
  bool is_same_;
  mif::StringConversion to_side_file_;
  mif::StringConversion to_document_;
  std::string_view misfit_;
};

}  // namespace kavo
