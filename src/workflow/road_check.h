// Proves on copies that a document survives the way into bilingual documents and back.
//
// Two runs: one without a translation, whose result must be the document byte for byte (or the document as its repair
// left it), and one with every text pseudo-translated, whose result is prepared once more and must give these texts,
// all of them, in order. MIF documents of one folder share side files: each must come out of their common ones as it
// does alone, byte for byte. Of an Office document what goes back to the Office program must be what came from it, byte
// for byte. Everything happens in a scratch folder; the document is only read.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/file_comparison.h"
#include "common/line_index.h"
#include "common/messages.h"
#include "common/progress_event.h"
#include "driver/K19FPWObj.h"
#include "workflow/mif_book.h"
#include "workflow/text_comparison.h"

namespace kavo {

// A text that did not come back as it should, in UTF-8 with its codes as tags.
struct RoadFinding {
  TextChange change = TextChange::kChanged;
  std::u16string side_file;  // of a MIF document, when the place is in one; else "", the place is the document's own
  LinePlace place;           // of a text too much that of the text before it
  std::string expected;      // "" for a text too much
  std::string found;         // "" for a lost one
  std::string problem;       // of broken codes: "code 3 is missing"
};

struct RoadResult {
  MessageList messages;  // of the converters: of a page what was repaired
  bool is_page = false;
  bool has_form = false;  // an Office document: what goes back to its program is compared, and texts without codes
  std::uint64_t texts = 0;
  std::uint64_t documents = 0;  // bilingual documents

  // Why a step could not be done, nothing when all were; what comes after is empty then.
  std::optional<Message> unchanged_failure;
  std::optional<Message> translated_failure;

  // Of the run without a translation: against the source, or against the repaired page when the page needed repair.
  bool was_repaired = false;
  std::optional<FileDifference> difference;  // line and column of the source
  std::vector<RoadFinding> findings;
  // Where the test translation of a MIF document differs when it is prepared together with the others of its folder.
  std::optional<FileDifference> book_difference;

  bool survives() const {
    return !unchanged_failure && !translated_failure && !difference && findings.empty() && !book_difference;
  }
};

struct RoadLanguages {
  std::u16string source;
  std::u16string target;
};

// Walks the road with the user's own options, a MIF document also together with the others of its book (not owned; may
// be nullptr). Throws `failure` for a document that cannot be read, that is of a type without a filter, or that the
// preparation refuses (without a description when the messages in `result` tell why). Throws
// `interruption` when the user interrupts.
void check_road(K19FPWObj& driver, const std::u16string& document, MifBook* book, const RoadLanguages& languages,
                const ProgressEvent::Handler& progress, RoadResult& result);

}  // namespace kavo
