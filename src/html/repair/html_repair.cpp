#include "html/repair/html_repair.h"

#include <algorithm>
#include <array>

#include "common/clsCommon.h"
#include "formats/html/attributes.h"
#include "formats/html/elements.h"
#include "formats/html/quirks.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

// The longest opening text that is written again. A longer one holds data, not formatting.
constexpr std::size_t kLongestOpeningText = 4096;
// The end of a page ("</body></html>" and comments) is recognised within its last bytes.
constexpr std::size_t kLongestEnd = 8192;
// How far white space inside a table is searched for text behind it.
constexpr std::size_t kLongestBlank = 64 * 1024;
// Repairs may add this many bytes for each byte of the page. A hostile page could otherwise grow to its square.
constexpr std::uint64_t kGrowth = 16;
constexpr std::uint64_t kFreeGrowth = 64 * 1024;
// The steps that searches through the open elements may take for each byte of the page. Real pages need less than one.
// The limit keeps the time linear for every page.
constexpr std::uint64_t kStepsPerByte = 32;
constexpr std::uint64_t kFreeSteps = 1'000'000;
// The most elements that may be open; they take about 6 MB.
constexpr std::size_t kDeepest = 120'000;
constexpr std::size_t kMostMessages = 10'000;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";  // not text of the page

// The length of a character reference at the start of `text` that means white space; 0 when none stands there.
std::size_t blank_reference(std::string_view text) {
  for (const std::string_view name : {"&Tab;", "&NewLine;"})
    if (text.starts_with(name)) return name.size();
  if (!text.starts_with("&#")) return 0;
  std::size_t i = 2;
  const bool hex = i < text.size() && (text[i] == 'x' || text[i] == 'X');
  if (hex) ++i;
  const std::size_t digits = i;
  unsigned value = 0;
  for (; i < text.size() && value < 256; ++i) {
    const char c = text[i];
    if (c >= '0' && c <= '9')
      value = value * (hex ? 16 : 10) + static_cast<unsigned>(c - '0');
    else if (hex && ((c | 32) >= 'a' && (c | 32) <= 'f'))
      value = value * 16 + static_cast<unsigned>((c | 32) - 'a' + 10);
    else
      break;
  }
  if (i == digits || value >= 256 || !html::is_html_space(static_cast<char>(value))) return 0;
  return i < text.size() && text[i] == ';' ? i + 1 : i;
}

std::string upper(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  return result;
}

}  // namespace

HtmlRepair::HtmlRepair(BlockReader& reader, const TagTable& table, PendingFile* output, MessageList& messages,
                       CopyTrail* trail, ProgressEvent& progress)
    : reader_(reader),
      table_(table),
      output_(output),
      messages_(messages),
      trail_(trail),
      progress_(progress),
      tree_(*this),
      scanner_(reader, *this),
      token_(scanner_.token()) {}

void HtmlRepair::run() {
  if (reader_.window().starts_with(kUtf8Mark)) scanner_.skip(kUtf8Mark.size());
  if (table_.empty()) {
    copy_rest();
    return;
  }
  for (;;) {
    if (server_.active()) follow_server_code(scanner_.position());
    edit_allowed_ = !server_.active();
    server_code_in_token_ = false;
    scanner_.next(tree_.cdata_allowed());
    edit_at_ = token_.begin;
    if (tree_.steps() > kFreeSteps + kStepsPerByte * token_.begin || tree_.stack().size() > kDeepest) {
      report(html_validate_text::kNotRepaired, place_of(token_.begin), "everything that follows");
      copy_rest();
      break;
    }
    if (token_.kind == PageTokenKind::kText) {
      text(token_.begin, token_.end);
      continue;
    }
    if (token_.kind == PageTokenKind::kStrayLess || token_.kind == PageTokenKind::kStrayGreater) {
      newline_ = Newline::kCounts;
      if (!tree_.ignores_text()) tree_.character();
      if (edit_allowed_) stray(token_.begin, token_.kind == PageTokenKind::kStrayLess);
      continue;
    }
    newline_ = Newline::kCounts;
    if (token_.kind == PageTokenKind::kStartTag) {
      if (!start_tag(token_)) break;
    } else if (token_.kind == PageTokenKind::kEndTag) {
      end_tag(token_);
    } else if (token_.kind == PageTokenKind::kDoctype) {
      const std::uint64_t end = std::min<std::uint64_t>(token_.end, token_.begin + HtmlScanner::kLongestDoctype);
      const std::uint64_t begin = std::max(token_.begin, reader_.position());
      tree_.doctype(doctype_means_quirks(begin < end ? scanner_.view(begin, end) : std::string_view(),
                                         begin == token_.begin && !scanner_.ended_inside()));
    } else if (token_.kind == PageTokenKind::kCdata) {
      tree_.character();
    } else if (token_.kind == PageTokenKind::kEnd) {
      end_of_page();
      break;
    }
  }
  copy_until(reader_.bytes_read());
  if (untold_ != 0) {
    const std::u16string count[] = {formatted(u"{}", untold_)};
    messages_.push_back({clsCommon().FormatString(u"%1% more messages are not listed", count)});
  }
}

// Text.

void HtmlRepair::text(std::uint64_t begin, std::uint64_t end) {
  if (newline_ != Newline::kCounts) {
    const char first = scanner_.view(begin, begin + 1)[0];
    const bool feed_only = newline_ == Newline::kLineFeedIgnored;
    newline_ = Newline::kCounts;
    if (first == '\n' || (first == '\r' && !feed_only)) {
      ++begin;
      if (first == '\r') {
        if (begin == end) {
          newline_ = Newline::kLineFeedIgnored;
        } else if (scanner_.view(begin, begin + 1)[0] == '\n') {
          ++begin;
        }
      }
    }
  }
  while (begin < end) {
    if (tree_.ignores_text()) return;
    const std::string_view rest = scanner_.view(begin, end);
    const char first = rest[0];  // looking ahead moves the window
    std::size_t blank = 0;
    while (blank < rest.size() && html::is_html_space(rest[blank])) ++blank;
    if (blank == 0 && first == '&') {
      constexpr std::size_t kLongestReference = 32;
      const std::size_t reference = blank_reference(scanner_.look_ahead(begin, kLongestReference));
      blank = std::min(reference, static_cast<std::size_t>(end - begin));
    }
    edit_at_ = begin;
    if (blank != 0) {
      blanks(begin, begin + blank);
      begin += blank;
    } else if (first == '\0') {
      tree_.null();
      ++begin;
    } else {
      tree_.character();
      return;  // the rest of the run changes nothing more
    }
  }
}

void HtmlRepair::blanks(std::uint64_t begin, std::uint64_t end) {
  if (tree_.in_table_text()) {
    if (tree_.has_closed() && text_follows(end))
      tree_.character();
    else
      tree_.blank();
  } else if (tree_.blank_reopens() && tree_.has_closed_early()) {
    // White space at the very end reopens nothing: the reopened elements would hold nothing else.
    if (tree_.text_stays_here() && rest_of_page(begin, tree_.after_body()) != Rest::kMore)
      tree_.forget_closed_early(0);
    else if (tree_.after_body() && scanner_.look_ahead(end, 4) == "<!--")
      report(html_validate_text::kNotRepaired, place_of(begin),
             "a comment behind the end of the body");  // a tag opened here would go into the body
    tree_.blank();
  } else {
    tree_.blank();
  }
}

bool HtmlRepair::text_follows(std::uint64_t position) {
  for (std::size_t size = 64; size <= kLongestBlank; size *= 4) {
    const std::string_view ahead = scanner_.look_ahead(position, size);
    const auto found =
        std::find_if(ahead.begin(), ahead.end(), [](char c) { return !html::is_html_space(c) && c != '\0'; });
    if (found == ahead.end()) {
      if (ahead.size() < size) return false;
      continue;
    }
    if (*found != '<') return true;
    const auto offset = static_cast<std::uint64_t>(found - ahead.begin());
    const std::string_view markup = scanner_.look_ahead(position + offset, 2);
    if (markup.size() < 2) return true;
    const char c = markup[1];
    return !((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '/' || c == '!' || c == '?');
  }
  return false;
}

// What follows `position`. The end of a page is white space, the end tags of body and html and, behind these, comments;
// kEnd when it has no white space. `ended`: such an end tag stands before `position`.
HtmlRepair::Rest HtmlRepair::rest_of_page(std::uint64_t position, bool ended) {
  if (reader_.size() - position > kLongestEnd) return Rest::kMore;
  Rest result = Rest::kEnd;
  const bool counts = tree_.body_end_counts();
  std::string_view rest = scanner_.look_ahead(position, kLongestEnd);
  while (!rest.empty()) {
    std::size_t size = html::is_html_space(rest[0]) ? 1 : blank_reference(rest);
    if (size != 0) result = Rest::kBlankEnd;
    if (size == 0 && ended && rest.starts_with("<!--")) {
      size = rest.find("-->", 4);
      if (size == std::string_view::npos || rest[4] == '>' || rest.substr(4, 2) == "->" || rest.find("--!>", 4) < size)
        return Rest::kMore;
      size += 3;
    } else if (size == 0) {
      if (rest.size() < 7 || !rest.starts_with("</")) return Rest::kMore;
      const std::string_view name = rest.substr(2, 4);
      if (!equals_ignoring_case(name, "body") && !equals_ignoring_case(name, "html")) return Rest::kMore;
      size = rest.find('>');
      if (size == std::string_view::npos || (size != 6 && !html::is_html_space(rest[6]))) return Rest::kMore;
      ++size;
      ended = ended || counts;
    }
    rest.remove_prefix(size);
  }
  return result;
}

void HtmlRepair::stray(std::uint64_t position, bool less) {
  if (less && ServerCode::begins(scanner_.look_ahead(position, 2))) {
    server_.enter(position, false);
    return;
  }
  report(less ? html_validate_text::kLessSignWritten : html_validate_text::kGreaterSignWritten, place_of(position),
         less ? "<" : ">");
  replace(position, position + 1, less ? "&lt;" : "&gt;");
}

// Tags.

// False at the end of the page.
bool HtmlRepair::start_tag(const Token& token) {
  StartTag tag;
  tag.name = token.name;
  tag.tag = token.tag;
  tag.self_closing = token.self_closing;
  tag.text = scanner_.view(token.begin, token.end);
  tag.listed = static_cast<std::int16_t>(table_.find(token.name));
  tag.repairable = edit_allowed_ && !server_code_in_token_ && token.whole && tag.text.size() <= kLongestOpeningText;
  tag.place = place_of(token.begin);
  const Content content = tree_.start_tag(tag);
  if (content == Content::kMarkup) {
    if ((tag.tag == Tag::kPre || tag.tag == Tag::kListing) && tree_.stack().back().tag == tag.tag)
      newline_ = Newline::kIgnored;
    return true;
  }
  scanner_.skip_raw_text(content, token_.name);
  edit_at_ = token_.begin;
  if (token_.kind == PageTokenKind::kEnd) {
    edit_at_ = scanner_.position();
    end_of_page();
    return false;
  }
  tree_.end_of_raw_text();
  return true;
}

void HtmlRepair::end_tag(const Token& token) {
  if ((token.tag == Tag::kBody || token.tag == Tag::kHtml) && edit_allowed_ && tree_.blank_stays_here()) {
    const Rest rest = rest_of_page(token.end, tree_.body_end_counts());
    if (rest != Rest::kMore) close_all(rest);
  }
  tree_.end_tag(token.name, token.tag);
  if (!edit_allowed_ || tree_.last_tag_closed_own()) return;
  const int listed = table_.find(token.name);
  if (listed >= 0)
    report(html_validate_text::kEndTagLeft, place_of(token.begin), table_.name(listed));
  else if (token.tag == Tag::kP)
    report(html_validate_text::kEndTagLeft, place_of(token.begin), "P");
}

// Whether an end tag must be written where the parser closes the element.
bool HtmlRepair::must_close(const OpenElement& element) const {
  if (element.space != Space::kHtml || !element.has_tag || !element.repairable) return false;
  if (element.tag == Tag::kP) return true;
  return element.listed >= 0 && !is_exempt(element);
}

// Whether the element may overlap others.
bool HtmlRepair::is_exempt(const OpenElement& element) const {
  return element.tag == Tag::kA || element.tag == Tag::kFont ||
         (element.listed >= 0 && table_.may_overlap(element.listed));
}

// True when an end tag, written while the element is the current one, would not do exactly what the parser does.
bool HtmlRepair::is_obstacle(std::size_t index, const Closing& what) const {
  const OpenElement& element = tree_.stack()[index];
  if (element.space != Space::kHtml || !element.has_tag || !element.repairable) return true;
  if (element.tag == Tag::kOther) return element.listed < 0;
  if (has_trait(element.tag, kBlockEnd | kImpliedEnd | kFormatting | kHeading)) return false;
  if (element.tag == Tag::kCaption || element.tag == Tag::kColgroup) return index != what.first;
  return has_trait(element.tag, kSpecial);
}

// An end tag further on may name a formatting element that was closed early. Were another element of that name open,
// the end tag would close that one in the repaired page.
bool HtmlRepair::is_sole_of_its_name(std::size_t index, std::size_t first, const Closing& what) const {
  const auto& stack = tree_.stack();
  const OpenElement& element = stack[index];
  std::size_t inside = 0;
  for (std::size_t i = first; i < stack.size(); ++i)
    if (stack[i].space == Space::kHtml && stack[i].tag == element.tag) ++inside;
  if (what.own_end_tag && first > what.first && stack[what.first].tag == element.tag) ++inside;
  if (tree_.count(element.tag) != inside) return false;
  return !tree_.has_naturally_closed(element.tag, tree_.formatting().size());
}

// The index of the lowest element, not below `from`, that must be closed and can be closed with all above it. The
// stack's size when there is none.
std::size_t HtmlRepair::first_to_close(std::size_t from, const Closing& what) const {
  const auto& stack = tree_.stack();
  const auto& list = tree_.formatting();
  std::size_t lowest = stack.size();
  std::size_t entry = list.size();
  for (std::size_t i = stack.size(); i-- > from;) {
    if (is_obstacle(i, what)) break;
    if (has_trait(stack[i].tag, kFormatting)) {
      // A parser reopens elements in the order of the list, so this one must be the last in it, not counting those
      // closed early.
      while (entry > 0 && list[entry - 1].closed_early) --entry;
      if (entry == 0 || list[entry - 1].number != stack[i].number) break;
      --entry;
    }
    if (must_close(stack[i]) || (what.replaced && i == what.first)) lowest = i;
  }
  return lowest;
}

// True when the end tag of `outer` closes the element inside it as well and a parser builds the same document.
// Formatting elements stay in the parser's list, so they count only when the list does not matter any more
// (`is_forgotten`).
bool HtmlRepair::closes_with(const OpenElement& outer, const OpenElement& element, bool is_forgotten) {
  if (has_trait(element.tag, kFormatting)) return is_forgotten;
  const bool closes_blocks = has_trait(outer.tag, kBlockEnd | kHeading) || outer.tag == Tag::kTd ||
                             outer.tag == Tag::kTh || outer.tag == Tag::kCaption;
  return closes_blocks && has_trait(element.tag, kBlockEnd | kImpliedEnd);
}

// For each open element from `lowest` on (which is wanted): whether it needs no end tag, because a wanted element
// around it closes it. Between the two stand only elements that need none either.
template <class IsWanted>
std::vector<bool> HtmlRepair::without_end_tag(std::size_t lowest, bool is_forgotten, const IsWanted& is_wanted) const {
  const auto& stack = tree_.stack();
  std::vector<bool> result(stack.size() - lowest);
  std::size_t outer = lowest;
  for (std::size_t i = lowest + 1; i < stack.size(); ++i) {
    if (is_wanted(stack[i]))
      outer = i;
    else
      result[i - lowest] =
          (i == outer + 1 || result[i - 1 - lowest]) && closes_with(stack[outer], stack[i], is_forgotten);
  }
  return result;
}

bool HtmlRepair::too_much() const { return inserted_ > kFreeGrowth + kGrowth * token_.begin; }

void HtmlRepair::closing(const Closing& what) {
  const auto& stack = tree_.stack();
  std::size_t from = what.first + (what.own_end_tag ? 1 : 0);
  if (from >= stack.size()) return;
  // One <nobr> tag first reopens formatting elements and then closes a <nobr> around them; nothing can be written
  // between.
  if (what.replaced && stack[what.first].tag == Tag::kNobr) return;
  if (what.own_end_tag && what.order_only && is_exempt(stack[what.first])) return;
  const bool wanted = std::any_of(stack.begin() + static_cast<std::ptrdiff_t>(from), stack.end(),
                                  [this](const OpenElement& element) { return must_close(element); });
  // What a tag reopens can only be written once everything that it closes has been closed.
  const bool all = what.reopening && (wanted || tree_.has_closed_early() || what.replaced);
  if (!wanted && !all) return;

  std::size_t lowest = stack.size();
  // An end tag would be written before this tag. What the tag reopened is not open yet there, and what it closed still
  // is.
  if (edit_allowed_ && !too_much() && !tree_.reopened_by_token() && !tree_.closed_without_tag()) {
    if (what.checks_again && !what.own_end_tag) {
      const Tag tag = stack[what.first].tag;
      const bool another =
          has_trait(tag, kHeading) ? tree_.heading_in_scope(what.first) : tree_.scope_holds(tag, what.first);
      if (another) ++from;
    }
    for (bool sound = false; !sound;) {
      lowest = first_to_close(from, what);
      sound = true;
      if (what.forgets) break;
      for (std::size_t i = stack.size(); i-- > lowest && sound;) {
        if (!has_trait(stack[i].tag, kFormatting) || (what.replaced && i == what.first)) continue;
        if (is_sole_of_its_name(i, lowest, what)) continue;
        from = i + 1;
        sound = false;
      }
    }
    if (all && lowest != what.first) lowest = stack.size();
    // All of them or none: an outer end tag would close the elements inside it, too.
    if (std::any_of(stack.begin() + static_cast<std::ptrdiff_t>(lowest), stack.end(),
                    [this](const OpenElement& element) { return is_in_other_branch(element); }))
      lowest = stack.size();
  }

  if (edit_allowed_) {
    for (std::size_t i = stack.size(); i-- > what.first + (what.own_end_tag ? 1 : 0);)
      if (i < lowest && must_close(stack[i])) report_left(stack[i], current_tag_name());
  }
  if (lowest == stack.size()) return;
  const std::vector<bool> left =
      without_end_tag(lowest, what.forgets, [this](const OpenElement& element) { return must_close(element); });
  while (stack.size() > lowest) {
    if (left[stack.size() - 1 - lowest]) {
      tree_.leave_current();
      continue;
    }
    const OpenElement element = stack.back();
    const std::string name = name_of_element(element);
    if (element.tag == Tag::kP)
      report(html_validate_text::kParagraphClosed, element.place, name, current_tag_name());
    else
      report(what.own_end_tag ? html_validate_text::kClosedBefore : html_validate_text::kClosedWhereItEnds,
             element.place, name, current_tag_name());
    insert("</" + name + ">");
    tree_.close_current(!what.forgets);
  }
}

void HtmlRepair::reopening(std::size_t first) {
  const auto& list = tree_.formatting();
  while (first < list.size() && !list[first].closed_early) ++first;
  if (first == list.size()) return;
  const bool possible = edit_allowed_ && !tree_.closed_without_tag() &&
                        std::none_of(list.begin() + static_cast<std::ptrdiff_t>(first), list.end(),
                                     [this](const FormattingEntry& entry) { return is_in_other_branch(entry); });
  // The opening texts come before the tag. Without this end tag they would reopen the element that the tag replaces.
  if (possible && tree_.forgot_by_token()) insert("</" + upper(name_of(token_.tag)) + ">");
  for (std::size_t i = first; i < list.size(); ++i) {
    const std::string name = upper(name_of(list[i].tag));
    report(possible ? html_validate_text::kClosedAndReopened : html_validate_text::kNotRepaired, list[i].place, name);
    if (possible) insert(tree_.opening_text(list[i]));
  }
  if (!possible) tree_.forget_closed_early(first);
}

void HtmlRepair::crossing(const OpenElement& element, const OpenElement& block) {
  if (edit_allowed_ && must_close(element))
    report(html_validate_text::kOverlapLeft, element.place, name_of_element(element), name_of_element(block));
}

// The end of the page.

void HtmlRepair::end_of_page() {
  edit_at_ = scanner_.position();
  follow_server_code(edit_at_);
  edit_allowed_ = !scanner_.ended_inside() && !server_.active() && !ends_in_script_;
  close_all(Rest::kNothing);
}

// Closes every open paragraph and every open element of the table, with all that is inside. Before the end of the page
// it does so only when all of them can be closed.
void HtmlRepair::close_all(Rest rest) {
  const bool at_end = rest == Rest::kNothing;
  const auto& stack = tree_.stack();
  std::size_t bottom = 0;
  while (bottom < stack.size() && (stack[bottom].tag == Tag::kHtml || stack[bottom].tag == Tag::kBody)) ++bottom;
  const auto wanted = [](const OpenElement& element) {
    return element.space == Space::kHtml && element.has_tag && (element.listed >= 0 || element.tag == Tag::kP);
  };
  std::size_t lowest = stack.size();
  bool complete = true;
  // An end tag finds formatting elements only as far as the last marker, and a parser may keep a marker whose element
  // is gone.
  const auto marked = std::count_if(stack.begin(), stack.end(), HtmlTree::sets_marker);
  const auto markers = std::count_if(tree_.formatting().begin(), tree_.formatting().end(),
                                     [](const FormattingEntry& entry) { return entry.number == 0; });
  std::size_t entries = tree_.formatting().size();  // those left when it is this element's turn
  bool blocked = !edit_allowed_ || marked != markers;
  for (std::size_t i = stack.size(); i-- > bottom;) {
    const OpenElement& element = stack[i];
    const bool nameless = element.tag == Tag::kOther && element.listed < 0;
    if (element.space != Space::kHtml || nameless || (element.has_tag && !element.repairable)) blocked = true;
    if (element.tag == Tag::kForm && !tree_.is_current_form(element)) blocked = true;
    // The parser is about to reopen another element of this name, and would take the end tag for that one's.
    if (has_trait(element.tag, kFormatting) && tree_.has_naturally_closed(element.tag, entries)) blocked = true;
    if (HtmlTree::sets_marker(element)) entries = tree_.last_marker(entries);
    if (element.has_tag && is_in_other_branch(element)) blocked = true;
    if (!wanted(element)) continue;
    if (blocked)
      complete = false;
    else
      lowest = i;
  }
  if (!at_end && !complete) return;
  if (at_end) {
    for (std::size_t i = lowest; i-- > bottom;)
      if (wanted(stack[i])) report_left(stack[i], "the end of the page");
  }
  const std::vector<bool> left = without_end_tag(lowest, rest != Rest::kBlankEnd, wanted);
  while (stack.size() > lowest) {
    const OpenElement element = stack.back();
    if (left[stack.size() - 1 - lowest]) {
      tree_.leave_current();
      continue;
    }
    if (element.has_tag) {
      const std::string name = name_of_element(element);
      report(html_validate_text::kClosedAtEnd, element.place, name);
      insert("</" + name + ">");
    }
    tree_.close_current(false);
    if (HtmlTree::sets_marker(element)) tree_.clear_to_marker();
    if (at_end && element.has_tag && tree_.text_stays_here() && !tree_.has_naturally_closed()) insert("\r\n");
  }
}

// Copies the rest of the page without repairs.
void HtmlRepair::copy_rest() {
  do {
    release(reader_.bytes_read());
    reader_.consume(reader_.window().size());
    if (!reader_.more()) return;
    block_read();
  } while (true);
}

// Bytes in and out.

void HtmlRepair::release(std::uint64_t position) {
  follow_server_code(position);
  place_of(position);
  copy_until(position);
}

void HtmlRepair::block_read() { progress_.report(reader_.percent()); }

void HtmlRepair::follow_server_code(std::uint64_t position) {
  if (server_.active() && position > server_.position()) server_.feed(scanner_.view(server_.position(), position));
}

void HtmlRepair::server_code_in_tag(std::uint64_t position, char quote) {
  if (server_.active()) return;
  const std::string_view text = scanner_.view(position, std::min<std::uint64_t>(position + 5, reader_.bytes_read()));
  server_code_in_token_ = true;
  server_.enter_in_tag(position, text[1] == '?', quote);
}

// A placeholder may begin or end a branch.
void HtmlRepair::comment(std::uint64_t position) {
  constexpr std::size_t kLongestNumber = 24;
  if (branches_ == nullptr) return;
  const std::size_t longest = html::placeholder::kMarker.size() + kLongestNumber;
  branches_->placeholder(scanner_.look_ahead(position, longest), position);
}

void HtmlRepair::processing_instruction(std::uint64_t position) {
  constexpr std::size_t kLongestOpening = 5;
  follow_server_code(position);
  if (!server_.active() && ServerCode::begins(scanner_.look_ahead(position, kLongestOpening)))
    server_.enter(position, true);
}

void HtmlRepair::stray_in_text(std::uint64_t position, bool less) {
  follow_server_code(position);
  if (!server_.active()) stray(position, less);
}

void HtmlRepair::copy_until(std::uint64_t position) {
  if (position <= copied_) return;
  if (output_ != nullptr && repairs_ != 0) output_->write(scanner_.view(copied_, position));
  if (trail_) trail_->copied(copied_, copied_ + growth_, position - copied_);
  copied_ = position;
}

void HtmlRepair::insert(std::string_view text) {
  copy_until(edit_at_);
  write_repair(text);
  inserted_ += text.size();
  growth_ += text.size();
}

void HtmlRepair::replace(std::uint64_t begin, std::uint64_t end, std::string_view text) {
  copy_until(begin);
  write_repair(text);
  copied_ = end;
  growth_ += text.size() - (end - begin);
}

// Writes nothing before the first repair, since most pages need none. The first one reads what went before once more.
void HtmlRepair::write_repair(std::string_view text) {
  if (repairs_++ == 0 && output_ != nullptr) {
    BlockReader page(output_->final_path());
    for (std::uint64_t left = copied_; left != 0;) {
      if (!page.more()) throw failure(FailureNumber::kDeviceError, u"The page became shorter while it was read");
      const std::string_view block =
          page.window().substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(left, page.window().size())));
      output_->write(block);
      left -= block.size();
      page.consume(block.size());
    }
  }
  if (output_ != nullptr) output_->write(text);
}

PagePlace HtmlRepair::place_of(std::uint64_t position) {
  if (position > lines_.fed()) lines_.feed(scanner_.view(lines_.fed(), reader_.bytes_read()));
  return lines_.at(position);
}

// Messages.

std::string HtmlRepair::name_of_element(const OpenElement& element) const {
  return element.listed >= 0 ? table_.name(element.listed) : upper(name_of(element.tag));
}

// The tag being worked on, for messages.
std::string HtmlRepair::current_tag_name() const {
  const bool end = token_.kind == PageTokenKind::kEndTag;
  const int listed = table_.find(token_.name);
  const std::string name = listed >= 0 ? table_.name(listed) : upper(name_of(token_.tag));
  return (end ? "</" : "<") + name + ">";
}

void HtmlRepair::report_left(const OpenElement& element, std::string_view where) {
  report(is_in_other_branch(element) ? html_validate_text::kOtherBranch : html_validate_text::kOpenElementLeft,
         element.place, name_of_element(element), where);
}

void HtmlRepair::report(TextRow name, const PagePlace& place, std::string_view element, std::string_view other) {
  if (messages_.size() >= kMostMessages) {
    ++untold_;
    return;
  }
  const LinePlace told = origin_ ? origin_(place.position) : LinePlace{place.line, place.column};
  std::u16string shown = to_utf16(element);
  std::replace(shown.begin(), shown.end(), u'%', u'?');  // FormatString would take it for a placeholder
  const std::u16string values[] = {shown, formatted(u"{}", told.line), formatted(u"{}", told.column), to_utf16(other)};
  messages_.push_back({clsCommon().FormatString(name.text, values), name.number, told.line, told.column});
}

}  // namespace kavo
