#include "html/repair/end_tag_rules.h"

#include <algorithm>

#include "formats/html/elements.h"

namespace kavo {
namespace {

// True when the end tag of `outer` closes the element inside it as well and a parser builds the same document.
// Formatting elements stay in the parser's list, so they count only when the list does not matter any more
// (`is_forgotten`).
bool closes_with(const OpenElement& outer, const OpenElement& element, bool is_forgotten) {
  if (has_trait(element.tag, kFormatting)) return is_forgotten;
  const bool closes_blocks = has_trait(outer.tag, kBlockEnd | kHeading) || outer.tag == Tag::kTd ||
                             outer.tag == Tag::kTh || outer.tag == Tag::kCaption;
  return closes_blocks && has_trait(element.tag, kBlockEnd | kImpliedEnd);
}

}  // namespace

bool EndTagRules::must_close(const OpenElement& element) const {
  if (element.space != Space::kHtml || !element.has_tag || !element.repairable) return false;
  if (element.tag == Tag::kP) return true;
  return element.listed >= 0 && !is_exempt(element);
}

bool EndTagRules::is_exempt(const OpenElement& element) const {
  return element.tag == Tag::kA || element.tag == Tag::kFont ||
         (element.listed >= 0 && table_.may_overlap(element.listed));
}

// True when an end tag, written while the element is the current one, would not do exactly what the parser does.
bool EndTagRules::is_obstacle(std::size_t index, const Closing& what) const {
  const OpenElement& element = tree_.stack()[index];
  if (element.space != Space::kHtml || !element.has_tag || !element.repairable) return true;
  if (element.tag == Tag::kOther) return element.listed < 0;
  if (has_trait(element.tag, kBlockEnd | kImpliedEnd | kFormatting | kHeading)) return false;
  if (element.tag == Tag::kCaption || element.tag == Tag::kColgroup) return index != what.first;
  return has_trait(element.tag, kSpecial);
}

// A later end tag may name a formatting element that was closed early. If another element with that name were open, the
// end tag would close that one in the repaired page.
bool EndTagRules::is_sole_of_its_name(std::size_t index, std::size_t first, const Closing& what) const {
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
std::size_t EndTagRules::lowest_closable(std::size_t from, const Closing& what) const {
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

std::vector<bool> EndTagRules::without_end_tag(std::size_t lowest, bool is_forgotten, IsWanted is_wanted) const {
  const auto& stack = tree_.stack();
  std::vector<bool> result(stack.size() - lowest);
  std::size_t outer = lowest;
  for (std::size_t i = lowest + 1; i < stack.size(); ++i) {
    if ((this->*is_wanted)(stack[i]))
      outer = i;
    else
      result[i - lowest] =
          (i == outer + 1 || result[i - 1 - lowest]) && closes_with(stack[outer], stack[i], is_forgotten);
  }
  return result;
}

std::size_t EndTagRules::first_to_close(std::size_t from, const Closing& what, bool all) const {
  const auto& stack = tree_.stack();
  if (what.checks_again && !what.own_end_tag) {
    const Tag tag = stack[what.first].tag;
    const bool another =
        has_trait(tag, kHeading) ? tree_.heading_in_scope(what.first) : tree_.scope_holds(tag, what.first);
    if (another) ++from;
  }
  std::size_t lowest = stack.size();
  for (bool sound = false; !sound;) {
    lowest = lowest_closable(from, what);
    sound = true;
    if (what.forgets) break;
    for (std::size_t i = stack.size(); i-- > lowest && sound;) {
      if (!has_trait(stack[i].tag, kFormatting) || (what.replaced && i == what.first)) continue;
      if (is_sole_of_its_name(i, lowest, what)) continue;
      from = i + 1;
      sound = false;
    }
  }
  if (all && lowest != what.first) return stack.size();
  // All of them or none: an outer end tag would close the elements inside it, too.
  const bool crosses_branches = std::any_of(stack.begin() + static_cast<std::ptrdiff_t>(lowest), stack.end(),
                                            [this](const OpenElement& element) { return is_in_other_branch(element); });
  return crosses_branches ? stack.size() : lowest;
}

bool EndTagRules::is_wanted_at_end(const OpenElement& element) const {
  return element.space == Space::kHtml && element.has_tag && (element.listed >= 0 || element.tag == Tag::kP);
}

EndTagRules::OpenAtEnd EndTagRules::open_at_end(bool may_edit) const {
  const auto& stack = tree_.stack();
  OpenAtEnd open{.bottom = 0, .lowest = stack.size(), .is_complete = true};
  while (open.bottom < stack.size() && (stack[open.bottom].tag == Tag::kHtml || stack[open.bottom].tag == Tag::kBody))
    ++open.bottom;
  // An end tag finds formatting elements only back to the last marker, and a parser may keep a marker whose element is
  // gone.
  const auto marked = std::count_if(stack.begin(), stack.end(), HtmlTree::sets_marker);
  const auto markers = std::count_if(tree_.formatting().begin(), tree_.formatting().end(),
                                     [](const FormattingEntry& entry) { return entry.number == 0; });
  std::size_t entries = tree_.formatting().size();  // those left when it is this element's turn
  bool blocked = !may_edit || marked != markers;
  for (std::size_t i = stack.size(); i-- > open.bottom;) {
    const OpenElement& element = stack[i];
    const bool nameless = element.tag == Tag::kOther && element.listed < 0;
    if (element.space != Space::kHtml || nameless || (element.has_tag && !element.repairable)) blocked = true;
    if (element.tag == Tag::kForm && !tree_.is_current_form(element)) blocked = true;
    // The parser is about to reopen another element of this name, and would take the end tag for that one's.
    if (has_trait(element.tag, kFormatting) && tree_.has_naturally_closed(element.tag, entries)) blocked = true;
    if (HtmlTree::sets_marker(element)) entries = tree_.last_marker(entries);
    if (element.has_tag && is_in_other_branch(element)) blocked = true;
    if (!is_wanted_at_end(element)) continue;
    if (blocked)
      open.is_complete = false;
    else
      open.lowest = i;
  }
  return open;
}

}  // namespace kavo
