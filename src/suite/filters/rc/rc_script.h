// Reads a resource script for its filter, statement by statement, with the coding of each.
//
// A byte order mark gives the coding of the whole script. Without one, #pragma code_page gives the coding of what
// follows it. Before the first pragma the user's code page counts. If that is UTF-8 but the script is not, the Windows
// code page of the source language counts, because compilers use that of their system.
#pragma once

#include <map>
#include <memory>
#include <string_view>

#include "common/block_reader.h"
#include "common/progress_event.h"
#include "formats/html/page_input.h"
#include "formats/rc/rc_parser.h"
#include "suite/filters/filter.h"

namespace kavo::rc {

class RcScript {
 public:
  // The document must outlive the script. To find the coding, it may be read to its end.
  RcScript(BlockReader& document, const ConversionSettings& settings);

  std::string_view mark() const { return mark_; }
  // True when the whole script has one coding, whatever it declares.
  bool is_marked() const { return !mark_.empty(); }
  // The code page of the bytes after a declaration of `declared` (0 for none).
  unsigned code_page(unsigned declared) const;
  // Throws `failure` 5 for an unknown code page.
  const TextCoding& coding(unsigned code_page);

  // Reads the script from its byte order mark to its end.
  void read(const RcParser::Taker& take, ProgressEvent* progress);
  // The script's own bytes for bytes of a statement from read(). Valid until the next call.
  std::string_view original(std::string_view bytes) { return input_->original(bytes); }
  std::size_t original_size(std::string_view bytes) const { return input_->original_size(bytes); }
  // After read(): the last byte of a script in UTF-16, if it is half a unit.
  std::string_view odd_byte() const { return input_->odd_byte(); }

 private:
  const TextCoding* scanner_coding(unsigned declared);

  BlockReader& document_;
  std::string_view mark_;
  unsigned code_page_ = 0;  // without a declaration
  std::unique_ptr<html::PageInput> input_;
  std::map<unsigned, std::unique_ptr<TextCoding>> codings_;
};

}  // namespace kavo::rc
