// What an HTML parser has open at each place of a page: the tree construction of the HTML standard without the tree.
//
// It keeps the stack of open elements, the list of active formatting elements and the insertion mode exactly as the
// standard's algorithm does (with scripting off, as a translator sees the page). It calls its observer just before it
// closes elements that the page does not close there, and just before it reopens formatting elements. A validator needs
// no more to write down what a parser would do anyway. No nodes are built, so memory grows only with the depth of the
// page.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/html/tag_names.h"
#include "formats/text/line_counter.h"

namespace kavo {

enum class Space : std::uint8_t { kHtml, kSvg, kMathMl };

// How the scanner reads on after a start tag.
enum class Content : std::uint8_t { kMarkup, kRcdata, kRawText, kScript, kPlainText };

// The facts of a start tag that are needed again when its element is closed or reopened.
struct ElementFacts {
  std::uint64_t name = 0;  // hash, see tag_names.h
  Tag tag = Tag::kOther;
  bool repairable = false;   // its opening text is kept whole and holds no server code
  std::int16_t listed = -1;  // index in the table of checked elements, -1 for none
  PagePlace place;
};

struct StartTag : ElementFacts {
  bool self_closing = false;
  std::string_view text;  // "<name ...>"
};

struct OpenElement : ElementFacts {
  std::uint64_t number = 0;  // identity, also in the list of formatting elements
  Space space = Space::kHtml;
  bool html_inside = false;  // an integration point: its content follows HTML rules
  bool has_tag = false;      // a start tag of the page opened it
};

struct FormattingEntry : ElementFacts {
  std::uint64_t number = 0;  // of the open element; 0: a marker
  bool open = false;         // the element is on the stack
  // An end tag was written for it, so a parser of the repaired page does not have this entry.
  bool closed_early = false;
  std::size_t text_begin = 0;  // opening text, in HtmlTree::opening_text
  std::size_t text_size = 0;
};

// Elements about to be closed; see TreeObserver.
struct Closing {
  std::size_t first = 0;      // these and all above on the stack
  bool own_end_tag = false;   // the first one is closed by its own end tag
  bool order_only = false;    // that end tag belongs to an inline element
  bool reopening = false;     // the same tag reopens formatting elements
  bool replaced = false;      // another element of its kind replaces the first one
  bool forgets = false;       // formatting elements inside are never reopened
  bool checks_again = false;  // the tag would look for another element to close if the first were closed before
};

class TreeObserver {
 public:
  // Called just before elements are closed. The observer may close topmost ones itself with HtmlTree::close_current().
  virtual void closing(const Closing& what) = 0;
  // Called just before the entries of formatting() from `first` on, none of which is open, are reopened.
  virtual void reopening(std::size_t first) = 0;
  // Called when an end tag closes a formatting element around an open block. A parser rebuilds both; no tag can say
  // that.
  virtual void crossing(const OpenElement& element, const OpenElement& block) = 0;

 protected:
  ~TreeObserver() = default;
};

class HtmlTree {
 public:
  explicit HtmlTree(TreeObserver& observer) : observer_(observer) {}

  // Each takes one token. The tokens of a page come in order.
  Content start_tag(const StartTag& tag);
  void end_tag(std::uint64_t name, Tag tag);
  void blank();      // white space
  void character();  // other text
  void null();       // U+0000
  void doctype(bool quirks);
  void end_of_raw_text();  // the end tag of a raw-text element

  // True when text changes nothing, so that a scanner need not look at it.
  bool ignores_text() const {
    return (mode_ == Mode::kInBody || mode_ == Mode::kInCell) && !frameset_ok_ && !has_closed_;
  }
  // True when text stands directly inside a table. A run of it is treated as one; a run of white space stays in place.
  bool in_table_text() const;
  // True when blank() would reopen formatting elements.
  bool blank_reopens() const;
  bool in_foreign() const { return !stack_.empty() && foreign_text(stack_.back()); }
  bool cdata_allowed() const { return !stack_.empty() && stack_.back().space != Space::kHtml; }
  // True when an end tag would close this form.
  bool is_current_form(const OpenElement& form) const { return form_ == form.number || count(Tag::kTemplate) != 0; }
  // True when an end tag of body or html takes effect here.
  bool body_end_counts() const;
  bool after_body() const { return mode_ == Mode::kAfterBody || mode_ == Mode::kAfterAfterBody; }
  bool has_closed() const { return has_closed_; }  // text would reopen formatting elements

  const std::vector<OpenElement>& stack() const { return stack_; }
  const std::vector<FormattingEntry>& formatting() const { return list_; }
  // Valid until the next start_tag().
  std::string_view opening_text(const FormattingEntry& entry) const {
    return std::string_view(texts_).substr(entry.text_begin, entry.text_size);
  }
  // HTML elements of a known name on the stack.
  std::size_t count(Tag tag) const { return counts_[static_cast<std::size_t>(tag)]; }
  // Whether there is, among the formatting elements since the last marker, an entry that is not open and that a parser
  // of the repaired page has as well.
  bool has_naturally_closed() const;
  // The same for one name, among the first `entries` and after their last marker.
  bool has_naturally_closed(Tag tag, std::size_t entries) const;
  // The index of the last marker among the first `entries`; 0 when there is none.
  std::size_t last_marker(std::size_t entries) const;
  // True when text at this place, the end of the page, would be the last of the document. It is not when a parser moves
  // it to before a table or into the head.
  bool text_stays_here() const;
  // The same for white space, wherever the end tags of the page's end put it: it reopens no element.
  bool blank_stays_here() const;
  bool has_closed_early() const { return closed_early_ != 0; }

  // For the observer, and at the end of the page: gives the current element an end tag of its own.
  void close_current(bool keep_for_reopening);
  // Gives the current element none: the end tag of an element around it follows and closes it, too.
  void leave_current();
  // True when the element's content has formatting elements of its own. Their part of the list is cleared when the
  // element ends.
  static bool sets_marker(const OpenElement& element);
  void clear_to_marker();
  // From this entry of formatting() on, elements that were closed early are not reopened any more.
  void forget_closed_early(std::size_t first);

  bool last_tag_closed_own() const { return closed_own_; }     // the last end_tag() closed an element of its name
  bool closed_without_tag() const { return closed_implied_; }  // the last token closed elements without end tags
  bool reopened_by_token() const { return reopened_; }         // the last token opened formatting elements again
  // The last token, a start tag, removed an element of its name from the entries to be reopened.
  bool forgot_by_token() const { return forgot_; }
  bool scope_holds(Tag tag, std::size_t below) const;  // in button scope, among the elements below an index
  bool heading_in_scope(std::size_t below) const;

  // How many steps searches have taken so far, not counting each search's last one.
  std::uint64_t steps() const { return steps_; }

 private:
  enum class Mode : std::uint8_t {
    kInitial,
    kBeforeHtml,
    kBeforeHead,
    kInHead,
    kInHeadNoscript,
    kAfterHead,
    kInBody,
    kText,
    kInTable,
    kInCaption,
    kInColumnGroup,
    kInTableBody,
    kInRow,
    kInCell,
    kInSelect,
    kInSelectInTable,
    kInTemplate,
    kAfterBody,
    kInFrameset,
    kAfterFrameset,
    kAfterAfterBody,
    kAfterAfterFrameset
  };
  enum class Scope : std::uint8_t { kDefault, kListItem, kButton, kTable };
  enum class Text : std::uint8_t { kBlank, kNull, kOther };
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  // Modes.
  void text(Text kind);
  void start(const StartTag& tag);
  void start_outside_foreign(const StartTag& tag);
  void end_outside_foreign(std::uint64_t name, Tag tag);
  void start_in_foreign(const StartTag& tag);
  void leave_foreign();
  void end_mode();
  void reset_mode();
  static Mode mode_inside_template(Tag first);
  bool start_in_head(const StartTag& tag);
  void start_raw(const StartTag& tag, Content content);
  void end_template();

  // Body.
  void start_in_body(const StartTag& tag);
  void end_in_body(std::uint64_t name, Tag tag);
  void close_p(bool reopening = false);
  void start_list_item(const StartTag& tag);
  void end_form();
  void end_any_other(std::uint64_t name, Tag tag);
  static bool is_hidden_input(const StartTag& tag);

  // Tables and select lists. The functions that close something return whether it was open.
  void start_in_table(const StartTag& tag);
  void end_in_table(std::uint64_t name, Tag tag);
  void start_in_caption(const StartTag& tag);
  void end_in_caption(std::uint64_t name, Tag tag);
  bool close_caption(Closing what);
  void start_in_table_body(const StartTag& tag);
  void end_in_table_body(std::uint64_t name, Tag tag);
  bool close_table_body();
  void start_in_row(const StartTag& tag);
  void end_in_row(std::uint64_t name, Tag tag);
  void close_row(Closing what);
  void start_in_cell(const StartTag& tag);
  void end_in_cell(std::uint64_t name, Tag tag);
  void close_cell(std::size_t cell, bool own);
  void start_in_select(const StartTag& tag);
  void end_in_select(std::uint64_t name, Tag tag);
  bool ends_select(Tag tag) const;
  void close_select(Closing what);

  // Stack.
  void insert(const StartTag& tag, Space space = Space::kHtml);
  void insert_implied(Tag tag);
  void push(OpenElement element);
  void pop();                     // without calling the observer
  void take_out(std::size_t at);  // one element from under others, which stay open
  void put_in(std::size_t at, const OpenElement& element);
  void close_from(Closing what);
  // These find what.first themselves. close_top: the current element. close_in_scope: an element in scope; false when
  // there is none. close_until: the topmost element of a name.
  void close_top(Closing what = {});
  bool close_in_scope(Tag tag, Scope scope, Closing what);
  void close_until(Tag tag, Closing what);
  void close_implied_ends(Tag except = Tag::kOther);
  void clear_back_to(std::initializer_list<Tag> tags);
  bool current_is(Tag tag) const;
  std::size_t find_in_scope(Tag tag, Scope scope) const { return find_in_scope(tag, scope, stack_.size()); }
  std::size_t find_in_scope(Tag tag, Scope scope, std::size_t below) const;
  std::size_t find_heading(std::size_t below) const;
  bool in_scope(Tag tag, Scope scope = Scope::kDefault) const { return find_in_scope(tag, scope) != kNone; }
  std::size_t find_topmost(std::initializer_list<Tag> tags) const;
  static bool foreign_text(const OpenElement& element) {
    return element.space != Space::kHtml && !element.html_inside && !math_text(element);
  }
  static bool math_text(const OpenElement& element);
  static bool is_barrier(const OpenElement& element);
  static bool is_special(const OpenElement& element);
  static bool is_landmark(const OpenElement& element);

  // List of active formatting elements.
  void start_formatting(const StartTag& tag);
  void close_anchor(const StartTag& tag);
  // `replaced`: a start tag of the same name caused this, not an end tag.
  void end_formatting(std::uint64_t name, Tag tag, bool replaced);
  void push_formatting(const StartTag& tag);
  void add_marker();
  void reconstruct();
  std::size_t find_entry(std::uint64_t number) const;
  void erase_entry(std::size_t index);
  void note_closed();
  void compact_texts();
  bool same_attributes(std::string_view a, std::string_view b) const;

  TreeObserver& observer_;
  std::vector<OpenElement> stack_;
  // Indexes into the stack at which the search for a block, a scope or a mode may end. The inline elements between
  // them, which pile up when a page never closes them, are skipped.
  std::vector<std::size_t> landmarks_;
  std::vector<FormattingEntry> list_;
  std::string texts_;  // opening texts of the list's entries
  std::array<std::size_t, static_cast<std::size_t>(Tag::kCount)> counts_{};
  std::vector<Mode> template_modes_;
  Mode mode_ = Mode::kInitial;
  Mode original_mode_ = Mode::kInitial;
  Content content_ = Content::kMarkup;
  bool quirks_ = true;
  bool frameset_ok_ = true;
  bool head_seen_ = false;
  bool has_closed_ = false;  // the last entry of the list is not open
  bool closed_own_ = false;
  bool closed_implied_ = false;
  bool reopened_ = false;
  bool forgot_ = false;
  std::size_t closed_early_ = 0;  // how many entries of the list are closed early
  std::uint64_t form_ = 0;        // number of the form element, 0 for none
  std::uint64_t next_number_ = 1;
  mutable std::uint64_t steps_ = 0;
};

}  // namespace kavo
