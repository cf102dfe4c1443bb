// Proves on copies that a document survives the way into bilingual documents and back.
//
// Two runs in a scratch folder. The first one translates nothing: its result must be the document (or the repaired
// document) byte for byte. The second one pseudo-translates every text: its result is prepared once more and must give
// all these texts in order.
//
// MIF documents of one folder share side files: each must come out of the common ones as it does alone. Of an Office
// document, what goes back to the Office program must be what came from it.
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
  LinePlace place;           // for an extra text, the place of the text before it
  std::string expected;      // "" for an extra text
  std::string found;         // "" for a lost one
  std::string problem;       // of broken codes: "code 3 is missing"
};

struct RoadResult {
  MessageList messages;  // of the converters, such as what was repaired
  bool is_page = false;
  bool has_form = false;  // an Office document: its exchange form is compared, and its texts without their codes
  std::uint64_t texts = 0;
  std::uint64_t documents = 0;  // bilingual documents

  // Why a step failed. The results of the later steps are empty then.
  std::optional<Message> unchanged_failure;
  std::optional<Message> translated_failure;

  // The run without a translation is compared with the source, or with the repaired page when it needed repair.
  bool was_repaired = false;
  std::optional<FileDifference> difference;  // line and column of the source
  std::vector<RoadFinding> findings;
  // Where the test translation of a MIF document differs when its whole folder is prepared together.
  std::optional<FileDifference> book_difference;

  bool survives() const {
    return !unchanged_failure && !translated_failure && !difference && findings.empty() && !book_difference;
  }
};

struct RoadLanguages {
  std::u16string source;
  std::u16string target;
};

// Runs the check with the user's own options. With `book` (not owned; may be nullptr) a MIF document is also checked
// together with the others of its folder. Throws `failure` for a document that cannot be read, has a type without a
// filter, or is refused by the preparation (without a description when the messages in `result` say why), and
// `interruption` when the user interrupts.
void check_road(K19FPWObj& driver, const std::u16string& document, MifBook* book, const RoadLanguages& languages,
                const ProgressEvent::Handler& progress, RoadResult& result);

}  // namespace kavo
