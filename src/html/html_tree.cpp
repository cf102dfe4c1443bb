// The stack of open elements and the list of active formatting elements; the rules are in html_tree_rules.cpp.
#include "html/html_tree.h"

#include <algorithm>

#include "html/html_attributes.h"

namespace kavo {

// Stack of open elements.

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
      return (traits_of(element.tag) & kScopeBarrier) != 0;
    case Space::kMathMl:
      return math_text(element) || element.tag == Tag::kAnnotationXml;
    case Space::kSvg:
      return element.tag == Tag::kForeignObject || element.tag == Tag::kDesc || element.tag == Tag::kTitle;
  }
  return false;
}

bool HtmlTree::is_special(const OpenElement& element) {
  return element.space == Space::kHtml ? (traits_of(element.tag) & kSpecial) != 0 : is_barrier(element);
}

// The special elements, and the others that are looked for in a scope.
bool HtmlTree::is_landmark(const OpenElement& element) {
  if (is_special(element)) return true;
  return element.space == Space::kHtml &&
         ((traits_of(element.tag) & kBlockEnd) != 0 || element.tag == Tag::kNobr || element.tag == Tag::kRuby);
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
    if ((traits_of(element.tag) & kFormatting) != 0) {
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
  // The observer may have closed everything down to what.first, or all of it.
  if (stack_.size() > what.first + (what.own_end_tag ? 1 : 0)) closed_implied_ = true;
  while (stack_.size() > what.first) pop();
  note_closed();
}

void HtmlTree::close_until(Tag tag, Closing what) {
  what.first = find_topmost({tag});
  if (what.first != kNone) close_from(what);
}

void HtmlTree::pop_implied() {
  Closing what;
  what.first = stack_.size() - 1;
  close_from(what);
}

void HtmlTree::close_current(bool keep_for_reopening) {
  const OpenElement element = stack_.back();
  pop();
  if ((traits_of(element.tag) & kFormatting) != 0 && element.space == Space::kHtml) {
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
    if (element.space == Space::kHtml && element.tag >= Tag::kH1 && element.tag <= Tag::kH6) return landmarks_[i];
    if (is_barrier(element)) return kNone;
  }
  return kNone;
}

bool HtmlTree::scope_holds(Tag tag, std::size_t below) const {
  return find_in_scope(tag, Scope::kButton, below) != kNone;
}

bool HtmlTree::heading_in_scope(std::size_t below) const { return find_heading(below) != kNone; }

std::size_t HtmlTree::implied_ends(bool thoroughly, Tag except) const {
  std::size_t first = stack_.size();
  for (; first > 1; --first, ++steps_) {
    const OpenElement& element = stack_[first - 1];
    if (element.space != Space::kHtml || element.tag == except) break;
    const bool implied = (traits_of(element.tag) & kImpliedEnd) != 0;
    const bool table = element.tag == Tag::kCaption || element.tag == Tag::kColgroup || element.tag == Tag::kTbody ||
                       element.tag == Tag::kTd || element.tag == Tag::kTfoot || element.tag == Tag::kTh ||
                       element.tag == Tag::kThead || element.tag == Tag::kTr;
    if (!implied && !(thoroughly && table)) break;
  }
  return first;
}

void HtmlTree::clear_back_to(std::initializer_list<Tag> tags) {
  const std::size_t context = find_topmost(tags);
  if (context == kNone || context + 1 == stack_.size()) return;
  Closing what;
  what.first = context + 1;
  close_from(what);
}

// List of active formatting elements.

std::size_t HtmlTree::find_entry(std::uint64_t number) const {
  for (std::size_t i = list_.size(); i-- > 0; ++steps_)
    if (list_[i].number == number) return i;
  return kNone;
}

void HtmlTree::erase_entry(std::size_t index) {
  if (list_[index].closed_early) --closed_early_;
  steps_ += list_.size() - index;
  list_.erase(list_.begin() + static_cast<std::ptrdiff_t>(index));
  note_closed();
}

void HtmlTree::note_closed() { has_closed_ = !list_.empty() && list_.back().number != 0 && !list_.back().open; }

bool HtmlTree::sets_marker(const OpenElement& element) {
  return element.space == Space::kHtml && is_barrier(element) && element.tag != Tag::kTable &&
         element.tag != Tag::kHtml;
}

void HtmlTree::clear_to_marker() {
  while (!list_.empty()) {
    const FormattingEntry entry = list_.back();
    if (entry.closed_early) --closed_early_;
    list_.pop_back();
    if (entry.number == 0) break;
  }
  note_closed();
}

void HtmlTree::forget_closed_early(std::size_t first) {
  for (std::size_t i = list_.size(); i-- > first;)
    if (list_[i].closed_early) erase_entry(i);
}

bool HtmlTree::has_naturally_closed() const {
  for (std::size_t i = list_.size(); i-- > 0; ++steps_) {
    if (list_[i].number == 0 || list_[i].open) return false;
    if (!list_[i].closed_early) return true;
  }
  return false;
}

bool HtmlTree::has_naturally_closed(Tag tag, std::size_t entries) const {
  for (std::size_t i = entries; i-- > 0 && list_[i].number != 0; ++steps_)
    if (list_[i].tag == tag && !list_[i].open && !list_[i].closed_early) return true;
  return false;
}

std::size_t HtmlTree::last_marker(std::size_t entries) const {
  while (entries > 0 && list_[--entries].number != 0) ++steps_;
  return entries;
}

bool HtmlTree::text_stays_here() const {
  if (count(Tag::kBody) == 0 || count(Tag::kTemplate) != 0) return false;
  const std::size_t table = find_topmost({Tag::kTable, Tag::kTd, Tag::kTh, Tag::kCaption});
  return table == kNone || stack_[table].tag != Tag::kTable || (traits_of(stack_.back().tag) & kTablePart) != 0;
}

bool HtmlTree::blank_stays_here() const {
  steps_ += list_.size();
  return text_stays_here() && std::none_of(list_.begin(), list_.end(), [](const FormattingEntry& entry) {
           return entry.number != 0 && !entry.open && !entry.closed_early;
         });
}

void HtmlTree::push_formatting(const StartTag& tag) {
  // Noah's ark: of elements with the same name and attributes only the last three are remembered.
  std::size_t named = 0;
  for (std::size_t i = list_.size(); i-- > 0 && list_[i].number != 0; ++steps_)
    if (list_[i].name == tag.name) ++named;
  std::size_t same = 0;
  std::size_t earliest = kNone;
  if (named >= 3) {
    for (std::size_t i = list_.size(); i-- > 0 && list_[i].number != 0; ++steps_) {
      if (list_[i].name == tag.name && same_attributes(opening_text(list_[i]), tag.text)) {
        earliest = i;
        ++same;
      }
    }
  }
  if (same >= 3) erase_entry(earliest);

  FormattingEntry entry;
  static_cast<ElementFacts&>(entry) = tag;
  entry.number = stack_.back().number;
  entry.open = true;
  compact_texts();
  entry.text_begin = texts_.size();
  entry.text_size = tag.text.size();
  texts_ += tag.text;
  list_.push_back(entry);
  has_closed_ = false;
}

void HtmlTree::compact_texts() {
  constexpr std::size_t kWorthIt = 64 * 1024;
  if (list_.empty()) texts_.clear();
  if (texts_.size() < kWorthIt) return;
  std::size_t used = 0;
  for (const FormattingEntry& entry : list_) used += entry.text_size;
  if (used > texts_.size() / 2) return;
  std::string kept;
  kept.reserve(used);
  for (FormattingEntry& entry : list_) {
    const std::string_view text = opening_text(entry);
    entry.text_begin = kept.size();
    kept += text;
  }
  texts_.swap(kept);
}

bool HtmlTree::same_attributes(std::string_view a, std::string_view b) const {
  steps_ += a.size() / 16;
  return a == b || equal_attributes(a, b);
}

void HtmlTree::reconstruct() {
  if (!has_closed_) return;
  std::size_t first = list_.size();
  for (; first > 0 && list_[first - 1].number != 0 && !list_[first - 1].open; ++steps_) --first;
  observer_.reopening(first);
  reopened_ = true;
  // The observer may have forgotten entries that it cannot write down.
  for (std::size_t i = first; i < list_.size(); ++i) {
    FormattingEntry& entry = list_[i];
    OpenElement element;
    static_cast<ElementFacts&>(element) = entry;
    element.has_tag = true;
    entry.number = next_number_;  // the one that push() gives
    entry.open = true;
    if (entry.closed_early) {
      entry.closed_early = false;
      --closed_early_;
    }
    push(element);
  }
  has_closed_ = false;
}

bool HtmlTree::in_table_text() const {
  switch (mode_) {
    case Mode::kInTable:
    case Mode::kInTableBody:
    case Mode::kInRow:
      return stack_.back().space == Space::kHtml && (traits_of(stack_.back().tag) & kTablePart) != 0;
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
