// One run over a page: writes it out with its tag structure repaired.
//
// A repair writes down what an HTML parser would do anyway: an end tag where the parser closes an element, and the
// opening text where it opens a formatting element again. So the page means the same to a parser before and after, and
// a repaired page needs no repair. Where the same result cannot be reached by writing tags at that place (a parser
// moves blocks around when an inline element crosses one), the bytes stay and a message says why.
//
// An element that is not in the table gets an end tag only where a listed one could not be closed without it. <b><s>1
// becomes <b><s>1</B>: the end tag of B closes S as well, and nothing follows that would reopen S. In <b><div>1 a
// parser would move elements around at </B>, so </DIV> comes first. At the end of the page each end tag gets a line of
// its own, except where an element was left open, which the line end would open again. With an empty table nothing is
// checked, neither paragraphs nor stray brackets.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "common/copy_trail.h"
#include "common/line_index.h"
#include "common/messages.h"
#include "common/progress_event.h"
#include "formats/html/scanner.h"
#include "formats/html/server_code.h"
#include "formats/html/tree.h"
#include "formats/text/line_counter.h"
#include "html/repair/end_tag_rules.h"
#include "html/repair/page_ahead.h"
#include "html/repair/repair_report.h"
#include "html/repair/repaired_page.h"
#include "html/repair/script_branches.h"
#include "html/repair/tag_table.h"

namespace kavo {

class HtmlRepair final : private TreeObserver, private ScannerListener {
 public:
  // Borrows all its arguments but `open`. Without `open` nothing is written and repairs are only counted; `trail` may
  // be null.
  HtmlRepair(BlockReader& reader, const TagTable& table, OpenRepairedPage open, MessageList& messages, CopyTrail* trail,
             ProgressEvent& progress);
  // Maps the places that messages name. Without it messages name places in the page itself.
  void origin(PlaceOrigin origin) { report_.origin(std::move(origin)); }

  // When set, nothing is written after the page's last byte.
  void ends_in_script(bool value) { ends_in_script_ = value; }
  // Borrowed. When set, no end tag is written into another branch than that of its start tag.
  void branches(ScriptBranches* value) {
    branches_ = value;
    rules_.branches(value);
  }
  // Reads to the end of the page. A byte order mark must be in the window already. Throws what `open`, reading, writing and the
  // progress event throw.
  void run();
  // How many places were changed, or would have been.
  std::uint64_t repairs() const { return page_.repairs(); }

 private:
  // TreeObserver
  void closing(const Closing& what) override;
  void reopening(std::size_t first) override;
  void crossing(const OpenElement& element, const OpenElement& block) override;
  // ScannerListener
  void release(std::uint64_t position) override;
  void block_read() override;
  void server_code_in_tag(std::uint64_t position, char quote) override;
  void comment(std::uint64_t position) override;
  void processing_instruction(std::uint64_t position) override;
  void stray_in_text(std::uint64_t position, bool less) override;

  void text(std::uint64_t begin, std::uint64_t end);
  void blanks(std::uint64_t begin, std::uint64_t end);
  void stray(std::uint64_t position, bool less);
  bool start_tag(const Token& token);
  void end_tag(const Token& token);
  void end_of_page();
  void copy_rest();

  void close_all(PageRest rest);
  bool too_much() const;
  void report_left(const OpenElement& element, std::string_view where);

  void follow_server_code(std::uint64_t position);
  PagePlace place_of(std::uint64_t position);

  std::string current_tag_name() const;

  BlockReader& reader_;
  const TagTable& table_;
  ProgressEvent& progress_;
  HtmlTree tree_;
  HtmlScanner scanner_;
  const Token& token_;  // the scanner's: the one being worked on
  EndTagRules rules_;
  PageAhead ahead_;
  RepairedPage page_;
  RepairReport report_;
  ServerCode server_;
  LineCounter lines_;

  enum class Newline : std::uint8_t { kCounts, kIgnored, kLineFeedIgnored };
  Newline newline_ = Newline::kCounts;  // directly after <pre>
  std::uint64_t edit_at_ = 0;           // where text may be inserted
  bool edit_allowed_ = true;
  bool ends_in_script_ = false;
  ScriptBranches* branches_ = nullptr;
  bool server_code_in_token_ = false;
};

}  // namespace kavo
