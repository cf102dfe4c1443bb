// The stack of open elements. The rules are in tree_modes.cpp, tree_body.cpp and tree_tables.cpp, the formatting
// elements in tree_formatting.cpp.
#include "formats/html/tree.h"

#include <algorithm>

#include "formats/html/attributes.h"

namespace kavo {

bool HtmlTree::math_text(const OpenElement& element) {
  if (element.space != Space::kMathMl) return false;
  switch (element.tag) {
    case Tag::kMi:
    case Tag::kMo:
    case Tag::kMn:
    case Tag::kMs:
    case Tag::kMtext:
      return true;
    default:
      return false;
  }
}

bool HtmlTree::is_barrier(const OpenElement& element) {
  switch (element.space) {
    case Space::kHtml:
      return has_trait(element.tag, kScopeBarrier);
    case Space::kMathMl:
      return math_text(element) || element.tag == Tag::kAnnotationXml;
    case Space::kSvg:
      return element.tag == Tag::kForeignObject || element.tag == Tag::kDesc || element.tag == Tag::kTitle;
  }
  return false;
}

bool HtmlTree::is_special(const OpenElement& element) {
  return element.space == Space::kHtml ? has_trait(element.tag, kSpecial) : is_barrier(element);
}

// The special elements, and all others that a search "in scope" may look for.
bool HtmlTree::is_landmark(const OpenElement& element) {
  if (is_special(element)) return true;
  return element.space == Space::kHtml &&
         (has_trait(element.tag, kBlockEnd) || element.tag == Tag::kNobr || element.tag == Tag::kRuby);
}

void HtmlTree::push(OpenElement element) {
  element.number = next_number_++;
  if (element.space == Space::kHtml) ++counts_[static_cast<std::size_t>(element.tag)];
  if (is_landmark(element)) landmarks_.push_back(stack_.size());
  stack_.push_back(element);
}

void HtmlTree::take_out(std::size_t at) {
  if (stack_[at].space == Space::kHtml) --counts_[static_cast<std::size_t>(stack_[at].tag)];
  stack_.erase(stack_.begin() + static_cast<std::ptrdiff_t>(at));
  auto above = std::ranges::lower_bound(landmarks_, at);
  if (above != landmarks_.end() && *above == at) above = landmarks_.erase(above);
  for (; above != landmarks_.end(); ++above, ++steps_) --*above;
}

void HtmlTree::put_in(std::size_t at, const OpenElement& element) {
  if (element.space == Space::kHtml) ++counts_[static_cast<std::size_t>(element.tag)];
  stack_.insert(stack_.begin() + static_cast<std::ptrdiff_t>(at), element);
  auto above = std::ranges::lower_bound(landmarks_, at);
  if (is_landmark(element)) above = landmarks_.insert(above, at) + 1;
  for (; above != landmarks_.end(); ++above, ++steps_) ++*above;
}

void HtmlTree::insert(const StartTag& tag, Space space) {
  OpenElement element;
  static_cast<ElementFacts&>(element) = tag;
  element.space = space;
  element.has_tag = true;
  if (space == Space::kSvg) {
    element.html_inside = tag.tag == Tag::kForeignObject || tag.tag == Tag::kDesc || tag.tag == Tag::kTitle;
  } else if (space == Space::kMathMl && tag.tag == Tag::kAnnotationXml) {
    const auto encoding = attribute_value(tag.text, "encoding");
    element.html_inside = encoding && (equals_ignoring_case(*encoding, "text/html") ||
                                       equals_ignoring_case(*encoding, "application/xhtml+xml"));
  }
  push(element);
}

void HtmlTree::insert_implied(Tag tag) {
  OpenElement element;
  element.tag = tag;
  element.name = name_hash(name_of(tag));
  push(element);
}

void HtmlTree::pop() {
  const OpenElement& element = stack_.back();
  if (element.space == Space::kHtml) {
    --counts_[static_cast<std::size_t>(element.tag)];
    if (has_trait(element.tag, kFormatting)) {
      const std::size_t entry = find_entry(element.number);
      if (entry != kNone) list_[entry].open = false;
    }
  }
  stack_.pop_back();
  if (!landmarks_.empty() && landmarks_.back() == stack_.size()) landmarks_.pop_back();
}

void HtmlTree::close_from(Closing what) {
  observer_.closing(what);
  if (what.own_end_tag) closed_own_ = true;
  // The observer may have closed all elements above what.first, or that one as well.
  if (stack_.size() > what.first + (what.own_end_tag ? 1 : 0)) closed_implied_ = true;
  while (stack_.size() > what.first) pop();
  note_closed();
}

void HtmlTree::close_until(Tag tag, Closing what) {
  what.first = find_topmost({tag});
  if (what.first != kNone) close_from(what);
}

void HtmlTree::close_top(Closing what) {
  what.first = stack_.size() - 1;
  close_from(what);
}

bool HtmlTree::close_in_scope(Tag tag, Scope scope, Closing what) {
  what.first = find_in_scope(tag, scope);
  if (what.first == kNone) return false;
  close_from(what);
  return true;
}

void HtmlTree::close_current(bool keep_for_reopening) {
  const OpenElement element = stack_.back();
  pop();
  if (has_trait(element.tag, kFormatting) && element.space == Space::kHtml) {
    const std::size_t entry = find_entry(element.number);
    if (entry != kNone) {
      if (keep_for_reopening) {
        list_[entry].closed_early = true;
        ++closed_early_;
      } else {
        erase_entry(entry);
      }
    }
  }
  if (form_ == element.number) form_ = 0;
  note_closed();
}

void HtmlTree::leave_current() {
  pop();
  note_closed();
}

bool HtmlTree::current_is(Tag tag) const {
  return !stack_.empty() && stack_.back().tag == tag && stack_.back().space == Space::kHtml;
}

std::size_t HtmlTree::find_topmost(std::initializer_list<Tag> tags) const {
  std::size_t open = 0;
  for (const Tag tag : tags) open += count(tag);
  if (open == 0) return kNone;
  for (std::size_t i = landmarks_.size(); i-- > 0; ++steps_) {
    const OpenElement& element = stack_[landmarks_[i]];
    if (element.space == Space::kHtml && std::find(tags.begin(), tags.end(), element.tag) != tags.end())
      return landmarks_[i];
  }
  return kNone;
}

std::size_t HtmlTree::find_in_scope(Tag tag, Scope scope, std::size_t below) const {
  if (count(tag) == 0) return kNone;
  for (std::size_t i = landmarks_.size(); i-- > 0; ++steps_) {
    if (landmarks_[i] >= below) continue;
    const OpenElement& element = stack_[landmarks_[i]];
    const bool html = element.space == Space::kHtml;
    if (html && element.tag == tag) return landmarks_[i];
    if (scope == Scope::kTable) {
      if (html && (element.tag == Tag::kTable || element.tag == Tag::kTemplate || element.tag == Tag::kHtml))
        return kNone;
      continue;
    }
    if (is_barrier(element)) return kNone;
    if (html && scope == Scope::kButton && element.tag == Tag::kButton) return kNone;
    if (html && scope == Scope::kListItem && (element.tag == Tag::kOl || element.tag == Tag::kUl)) return kNone;
  }
  return kNone;
}

std::size_t HtmlTree::find_heading(std::size_t below) const {
  for (std::size_t i = landmarks_.size(); i-- > 0; ++steps_) {
    if (landmarks_[i] >= below) continue;
    const OpenElement& element = stack_[landmarks_[i]];
    if (element.space == Space::kHtml && has_trait(element.tag, kHeading)) return landmarks_[i];
    if (is_barrier(element)) return kNone;
  }
  return kNone;
}

bool HtmlTree::scope_holds(Tag tag, std::size_t below) const {
  return find_in_scope(tag, Scope::kButton, below) != kNone;
}

bool HtmlTree::heading_in_scope(std::size_t below) const { return find_heading(below) != kNone; }

void HtmlTree::close_implied_ends(Tag except) {
  std::size_t first = stack_.size();
  for (; first > 1; --first, ++steps_) {
    const OpenElement& element = stack_[first - 1];
    if (element.space != Space::kHtml || element.tag == except || !has_trait(element.tag, kImpliedEnd)) break;
  }
  if (first < stack_.size()) close_from({.first = first});
}

void HtmlTree::clear_back_to(std::initializer_list<Tag> tags) {
  const std::size_t context = find_topmost(tags);
  if (context == kNone || context + 1 == stack_.size()) return;
  close_from({.first = context + 1});
}

bool HtmlTree::text_stays_here() const {
  if (count(Tag::kBody) == 0 || count(Tag::kTemplate) != 0) return false;
  const std::size_t table = find_topmost({Tag::kTable, Tag::kTd, Tag::kTh, Tag::kCaption});
  return table == kNone || stack_[table].tag != Tag::kTable || has_trait(stack_.back().tag, kTablePart);
}

bool HtmlTree::blank_stays_here() const {
  steps_ += list_.size();
  return text_stays_here() && std::none_of(list_.begin(), list_.end(), [](const FormattingEntry& entry) {
           return entry.number != 0 && !entry.open && !entry.closed_early;
         });
}

bool HtmlTree::in_table_text() const {
  switch (mode_) {
    case Mode::kInTable:
    case Mode::kInTableBody:
    case Mode::kInRow:
      return stack_.back().space == Space::kHtml && has_trait(stack_.back().tag, kTablePart);
    default:
      return false;
  }
}

bool HtmlTree::blank_reopens() const {
  if (!has_closed_ || in_foreign()) return false;
  switch (mode_) {
    case Mode::kInBody:
    case Mode::kInCaption:
    case Mode::kInCell:
    case Mode::kInTemplate:
    case Mode::kAfterBody:
    case Mode::kAfterAfterBody:
    case Mode::kAfterAfterFrameset:
      return true;
    case Mode::kInTable:
    case Mode::kInTableBody:
    case Mode::kInRow:
      return !in_table_text();
    default:
      return false;
  }
}

bool HtmlTree::body_end_counts() const { return mode_ == Mode::kInBody && in_scope(Tag::kBody); }

}  // namespace kavo
