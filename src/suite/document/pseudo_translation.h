// Texts that look translated and can still be read: a test of the whole road without a translator.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "common/progress_event.h"
#include "suite/document/tud_format.h"

namespace kavo {

class PseudoTranslation {
 public:
  // The letters get accents where the code page has them.
  explicit PseudoTranslation(unsigned code_page, bool is_script = false);
  // For the segments of a document.
  explicit PseudoTranslation(const TudHeader& header);

  // The coded text with accents and with its words in brackets. Codes and the blanks at both ends stay where they are.
  // In a script each text between quotes gets brackets of its own, so that it is still a script.
  std::string of(std::string_view coded) const;
  // The same without brackets, for a name that cannot hold them (Segment::element).
  std::string name(std::string_view coded) const;

 private:
  std::string script(std::string_view coded) const;
  std::string text(std::string_view coded) const;
  void append_letters(std::string& result, std::string_view text) const;

  std::array<std::string_view, 128> letters_{};  // what an ASCII letter becomes, "" for itself
  bool is_script_;
};

// Fills every segment of a bilingual document that is not locked, and returns their number. The document is read as a
// stream, and no part of it is kept in memory. Throws `failure`; the document is then as it was.
std::uint64_t pseudo_translate(std::u16string_view tud, ProgressEvent& progress);

}  // namespace kavo
