#include "mif/value_conversion.h"

namespace kavo {
namespace {

bool have_same_coding(const mif::DocumentCoding& side_file, const mif::DocumentCoding& document) {
  if (side_file.reads_as(document)) return true;
  return !side_file.is_utf8 && side_file.declared.empty() && !document.is_utf8;
}

}  // namespace

ValueConversion::ValueConversion(const MifCoding& side_file, const MifCoding& document)
    : document_(document),
      is_same_(have_same_coding(side_file.document(), document.document())),
      to_side_file_(document.strings(), side_file.strings()),
      to_document_(is_same_ ? document.strings() : side_file.strings(), document.strings()) {}

std::string_view ValueConversion::to_side_file(std::string_view value) {
  return is_same_ ? value : std::string_view(to_side_file_.convert(value));
}

std::string_view ValueConversion::to_document(std::string_view value) {
  misfit_ = {};
  // When both are before 8.0 and in the same coding, the side file may contain only one thing that the document cannot:
  // an escape for a character that the coding lacks.
  const bool may_misfit = !document_.document().is_utf8 && value.find("\\u") != std::string_view::npos;
  if (is_same_ && !may_misfit) return value;
  const std::string& converted = to_document_.convert(value);
  misfit_ = to_document_.misfit();
  return converted;
}

}  // namespace kavo
