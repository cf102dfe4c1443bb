#include "html/repair/html_repair.h"

#include <algorithm>
#include <utility>

#include "formats/html/elements.h"
#include "formats/html/quirks.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

// The longest opening text that is written again. A longer one holds data, not formatting.
constexpr std::size_t kLongestOpeningText = 4096;
// Repairs may add this many bytes for each byte of the page. Otherwise a hostile page could grow to the square of its
// size.
constexpr std::uint64_t kGrowth = 16;
constexpr std::uint64_t kFreeGrowth = 64 * 1024;
// The steps that searches through the open elements may take for each byte of the page. Real pages need less than one.
// The limit keeps the time linear for every page.
constexpr std::uint64_t kStepsPerByte = 32;
constexpr std::uint64_t kFreeSteps = 1'000'000;
// The most elements that may be open; they take about 6 MB.
constexpr std::size_t kDeepest = 120'000;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";  // not text of the page

}  // namespace

HtmlRepair::HtmlRepair(BlockReader& reader, const TagTable& table, OpenRepairedPage open, MessageList& messages,
                       CopyTrail* trail, ProgressEvent& progress)
    : reader_(reader),
      table_(table),
      progress_(progress),
      tree_(*this),
      scanner_(reader, *this),
      token_(scanner_.token()),
      rules_(tree_, table),
      ahead_(reader, scanner_),
      page_(scanner_, std::move(open), trail),
      report_(table, messages) {}

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
      report_.add(html_validate_text::kNotRepaired, place_of(token_.begin), "everything that follows");
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
  page_.copy_until(reader_.bytes_read());
  report_.finish();
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
    if (tree_.has_closed() && ahead_.text_follows(end))
      tree_.character();
    else
      tree_.blank();
  } else if (tree_.blank_reopens() && tree_.has_closed_early()) {
    // White space at the very end reopens nothing, because the reopened elements would contain nothing else.
    if (tree_.text_stays_here() && ahead_.rest(begin, tree_.after_body(), tree_.body_end_counts()) != PageRest::kMore)
      tree_.forget_closed_early(0);
    else if (tree_.after_body() && scanner_.look_ahead(end, 4) == "<!--")
      report_.add(html_validate_text::kNotRepaired, place_of(begin),
                  "a comment after the end of the body");  // a tag opened here would go into the body
    tree_.blank();
  } else {
    tree_.blank();
  }
}

void HtmlRepair::stray(std::uint64_t position, bool less) {
  if (less && ServerCode::begins(scanner_.look_ahead(position, 2))) {
    server_.enter(position, false);
    return;
  }
  report_.add(less ? html_validate_text::kLessSignWritten : html_validate_text::kGreaterSignWritten, place_of(position),
              less ? "<" : ">");
  page_.replace(position, position + 1, less ? "&lt;" : "&gt;");
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
    const PageRest rest = ahead_.rest(token.end, tree_.body_end_counts(), tree_.body_end_counts());
    if (rest != PageRest::kMore) close_all(rest);
  }
  tree_.end_tag(token.name, token.tag);
  if (!edit_allowed_ || tree_.last_tag_closed_own()) return;
  const int listed = table_.find(token.name);
  if (listed >= 0)
    report_.add(html_validate_text::kEndTagLeft, place_of(token.begin), table_.name(listed));
  else if (token.tag == Tag::kP)
    report_.add(html_validate_text::kEndTagLeft, place_of(token.begin), "P");
}

bool HtmlRepair::too_much() const { return page_.inserted() > kFreeGrowth + kGrowth * token_.begin; }

void HtmlRepair::closing(const Closing& what) {
  const auto& stack = tree_.stack();
  const std::size_t from = what.first + (what.own_end_tag ? 1 : 0);
  if (from >= stack.size()) return;
  // One <nobr> tag first reopens formatting elements and then closes a <nobr> around them; nothing can be written
  // between.
  if (what.replaced && stack[what.first].tag == Tag::kNobr) return;
  if (what.own_end_tag && what.order_only && rules_.is_exempt(stack[what.first])) return;
  const bool wanted = std::any_of(stack.begin() + static_cast<std::ptrdiff_t>(from), stack.end(),
                                  [this](const OpenElement& element) { return rules_.must_close(element); });
  // What a tag reopens can only be written once everything that it closes has been closed.
  const bool all = what.reopening && (wanted || tree_.has_closed_early() || what.replaced);
  if (!wanted && !all) return;

  // An end tag would be written before this tag. What the tag reopened is not open yet there, and what it closed still
  // is.
  const bool possible = edit_allowed_ && !too_much() && !tree_.reopened_by_token() && !tree_.closed_without_tag();
  const std::size_t lowest = possible ? rules_.first_to_close(from, what, all) : stack.size();
  if (edit_allowed_) {
    for (std::size_t i = stack.size(); i-- > from;)
      if (i < lowest && rules_.must_close(stack[i])) report_left(stack[i], current_tag_name());
  }
  if (lowest == stack.size()) return;
  const std::vector<bool> left = rules_.without_end_tag(lowest, what.forgets, &EndTagRules::must_close);
  while (stack.size() > lowest) {
    if (left[stack.size() - 1 - lowest]) {
      tree_.leave_current();
      continue;
    }
    const OpenElement element = stack.back();
    const std::string name = report_.name_of_element(element.tag, element.listed);
    if (element.tag == Tag::kP)
      report_.add(html_validate_text::kParagraphClosed, element.place, name, current_tag_name());
    else
      report_.add(what.own_end_tag ? html_validate_text::kClosedBefore : html_validate_text::kClosedWhereItEnds,
                  element.place, name, current_tag_name());
    page_.insert(edit_at_, "</" + name + ">");
    tree_.close_current(!what.forgets);
  }
}

void HtmlRepair::reopening(std::size_t first) {
  const auto& list = tree_.formatting();
  while (first < list.size() && !list[first].closed_early) ++first;
  if (first == list.size()) return;
  const bool possible = edit_allowed_ && !tree_.closed_without_tag() &&
                        std::none_of(list.begin() + static_cast<std::ptrdiff_t>(first), list.end(),
                                     [this](const FormattingEntry& entry) { return rules_.is_in_other_branch(entry); });
  // The opening texts come before the tag. Without this end tag they would reopen the element that the tag replaces.
  if (possible && tree_.forgot_by_token())
    page_.insert(edit_at_, "</" + report_.name_of_element(token_.tag, TagTable::kNotListed) + ">");
  for (std::size_t i = first; i < list.size(); ++i) {
    const std::string name = report_.name_of_element(list[i].tag, TagTable::kNotListed);
    report_.add(possible ? html_validate_text::kClosedAndReopened : html_validate_text::kNotRepaired, list[i].place,
                name);
    if (possible) page_.insert(edit_at_, tree_.opening_text(list[i]));
  }
  if (!possible) tree_.forget_closed_early(first);
}

void HtmlRepair::crossing(const OpenElement& element, const OpenElement& block) {
  if (edit_allowed_ && rules_.must_close(element))
    report_.add(html_validate_text::kOverlapLeft, element.place, report_.name_of_element(element.tag, element.listed),
                report_.name_of_element(block.tag, block.listed));
}

// The end of the page.

void HtmlRepair::end_of_page() {
  edit_at_ = scanner_.position();
  follow_server_code(edit_at_);
  edit_allowed_ = !scanner_.ended_inside() && !server_.active() && !ends_in_script_;
  close_all(PageRest::kNothing);
}

// Closes every open paragraph and every open element of the table, with all that is inside. Before the end of the page
// it does so only when all of them can be closed.
void HtmlRepair::close_all(PageRest rest) {
  const bool at_end = rest == PageRest::kNothing;
  const auto& stack = tree_.stack();
  const auto [bottom, lowest, is_complete] = rules_.open_at_end(edit_allowed_);
  if (!at_end && !is_complete) return;
  if (at_end) {
    for (std::size_t i = lowest; i-- > bottom;)
      if (rules_.is_wanted_at_end(stack[i])) report_left(stack[i], "the end of the page");
  }
  const std::vector<bool> left =
      rules_.without_end_tag(lowest, rest != PageRest::kBlankEnd, &EndTagRules::is_wanted_at_end);
  while (stack.size() > lowest) {
    const OpenElement element = stack.back();
    if (left[stack.size() - 1 - lowest]) {
      tree_.leave_current();
      continue;
    }
    if (element.has_tag) {
      const std::string name = report_.name_of_element(element.tag, element.listed);
      report_.add(html_validate_text::kClosedAtEnd, element.place, name);
      page_.insert(edit_at_, "</" + name + ">");
    }
    tree_.close_current(false);
    if (HtmlTree::sets_marker(element)) tree_.clear_to_marker();
    if (at_end && element.has_tag && tree_.text_stays_here() && !tree_.has_naturally_closed())
      page_.insert(edit_at_, "\r\n");
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
  page_.copy_until(position);
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

PagePlace HtmlRepair::place_of(std::uint64_t position) {
  if (position > lines_.fed()) lines_.feed(scanner_.view(lines_.fed(), reader_.bytes_read()));
  return lines_.at(position);
}

// The tag being worked on, for messages.
std::string HtmlRepair::current_tag_name() const {
  const bool is_end = token_.kind == PageTokenKind::kEndTag;
  return (is_end ? "</" : "<") + report_.name_of_element(token_.tag, table_.find(token_.name)) + ">";
}

void HtmlRepair::report_left(const OpenElement& element, std::string_view where) {
  const bool is_elsewhere = rules_.is_in_other_branch(element);
  report_.add(is_elsewhere ? html_validate_text::kOtherBranch : html_validate_text::kOpenElementLeft, element.place,
              report_.name_of_element(element.tag, element.listed), where);
}

}  // namespace kavo
