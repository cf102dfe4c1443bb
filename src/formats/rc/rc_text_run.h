// Finds the literals that form one text, with the macros between them.
//
// The preprocessor puts a literal in the place of a macro, and the compiler joins literals that follow each other:
// "About " APP_NAME ", " VERSION_TEXT(2) is one text. What a macro stands for is in a header that is not read.
#pragma once

#include <cstddef>
#include <optional>

#include "formats/rc/rc_parser.h"

namespace kavo::rc {

struct RcTextRun {
  std::size_t first = 0;  // items, both included
  std::size_t last = 0;
};

// The last item of the macro that begins at an item: a name, or a name with its arguments. Nothing when there is none,
// or when its arguments hold a literal, which may be a text (`_T("About")`).
std::optional<std::size_t> macro_end(const RcStatement& statement, std::size_t item);

// The literals from an item on that only blanks and comments separate; nothing when the item is not a literal.
std::optional<RcTextRun> literals_at(const RcStatement& statement, std::size_t item);

// Where a name after a literal is still a macro of its text.
enum class RcMacros : std::uint8_t {
  kOnLine,      // on the same line: at the start of a line the next name or statement begins
  kEverywhere,  // the next statement begins with a keyword
};

// The literals and macros from an item on; nothing when there is no literal among them.
std::optional<RcTextRun> text_at(const RcStatement& statement, std::size_t item, RcMacros macros);
// Without the macros after its last literal.
RcTextRun without_last_macros(const RcStatement& statement, RcTextRun run);

}  // namespace kavo::rc
