// Which literals of a statement people read, and the names of these texts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "formats/rc/rc_parser.h"

namespace kavo::rc {

struct RcText {
  enum Kind : std::uint8_t { kString, kCaption, kControl, kMenuItem, kVersion };

  Kind kind = kString;
  RcTextRun run;
  std::string name;           // the identifier of the control or string, or the key of the version value
  bool has_access_key = true;  // "&" marks one
  bool is_fixed = false;       // names a file or a version: to be shown, not to be translated
};

// Without empty literals, names of classes, fonts and pictures, and keys.
std::vector<RcText> texts_of(const RcStatement& statement);

}  // namespace kavo::rc
