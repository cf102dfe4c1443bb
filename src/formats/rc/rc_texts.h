// Finds the literals of a statement that people read, and names these texts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "formats/rc/rc_text_run.h"

namespace kavo::rc {

struct RcText {
  enum Kind : std::uint8_t { kString, kCaption, kControl, kMenuItem, kVersion };

  Kind kind = kString;
  RcTextRun run;
  std::string name;            // the identifier of the control or string, or the key of the version value
  bool has_access_key = true;  // "&" marks one
  bool is_fixed = false;       // names a file or a version: shown, but not translated
};

// The texts of a statement. Left out are empty literals, keys, and the names of classes, fonts and pictures.
std::vector<RcText> texts_of(const RcStatement& statement);

}  // namespace kavo::rc
