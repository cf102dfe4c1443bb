// The list of active formatting elements: what is opened again in the next block, and the adoption agency algorithm,
// by which an end tag closes a formatting element across others.
#include "formats/html/attributes.h"
#include "formats/html/tree.h"

namespace kavo {

void HtmlTree::start_formatting(const StartTag& tag) {
  reconstruct();
  insert(tag);
  push_formatting(tag);
}

// An anchor is never inside another one: its start tag closes the open one first.
void HtmlTree::close_anchor(const StartTag& tag) {
  for (std::size_t i = list_.size(); i-- > 0 && list_[i].number != 0; ++steps_) {
    if (list_[i].tag != Tag::kA) continue;
    const std::uint64_t number = list_[i].number;
    end_formatting(tag.name, Tag::kA, true);
    const std::size_t entry = find_entry(number);
    if (entry == kNone) return;
    for (std::size_t k = stack_.size(); k-- > 0; ++steps_) {
      if (stack_[k].number != number) continue;
      take_out(k);
      closed_implied_ = true;
      break;
    }
    erase_entry(entry);
    return;
  }
}

// The adoption agency algorithm. `replaced`: a start tag of the same name caused this, not an end tag.
void HtmlTree::end_formatting(std::uint64_t name, Tag tag, bool replaced) {
  if (current_is(tag) && find_entry(stack_.back().number) == kNone) {
    close_top({.own_end_tag = !replaced, .order_only = true});
    return;
  }
  constexpr int kRounds = 8;
  constexpr int kInnerRounds = 3;
  for (int round = 0; round < kRounds; ++round) {
    std::size_t entry = list_.size();
    while (entry > 0 && list_[entry - 1].number != 0 && list_[entry - 1].tag != tag) --entry, ++steps_;
    if (entry == 0 || list_[entry - 1].number == 0) {
      end_any_other(name, tag);
      return;
    }
    --entry;
    if (!list_[entry].open) {
      forgot_ = replaced && !list_[entry].closed_early;
      erase_entry(entry);
      return;
    }
    const std::uint64_t number = list_[entry].number;
    std::size_t element = stack_.size();
    std::size_t block = kNone;
    bool scoped = true;
    for (; element > 0 && stack_[element - 1].number != number; --element, ++steps_) {
      if (is_barrier(stack_[element - 1])) scoped = false;
      if (is_special(stack_[element - 1])) block = element - 1;
    }
    --element;
    if (!scoped) return;
    if (block == kNone) {
      close_from({.first = element,
                  .own_end_tag = !replaced,
                  .order_only = true,
                  .reopening = replaced,
                  .replaced = replaced});
      // When the observer closed it, its entry is gone or marked already.
      const std::size_t left = find_entry(number);
      if (left != kNone) erase_entry(left);
      return;
    }
    observer_.crossing(stack_[element], stack_[block]);
    closed_own_ = true;
    closed_implied_ = true;

    // A parser reopens the elements between around the block, except those beyond the third or without an entry.
    std::size_t bookmark = entry;
    bool bookmark_at_entry = true;
    int inner = 0;
    for (std::size_t node = block; --node > element;) {
      ++inner;
      ++steps_;
      std::size_t node_entry = has_trait(stack_[node].tag, kFormatting) ? find_entry(stack_[node].number) : kNone;
      if (inner > kInnerRounds && node_entry != kNone) {
        erase_entry(node_entry);
        if (node_entry < entry) --entry;
        if (node_entry < bookmark) --bookmark;
        node_entry = kNone;
      }
      if (node_entry == kNone) {
        take_out(node);
        --block;
        continue;
      }
      stack_[node].number = list_[node_entry].number = next_number_++;
      if (bookmark_at_entry) {
        bookmark = node_entry + 1;
        bookmark_at_entry = false;
      }
    }

    OpenElement copy = stack_[element];
    FormattingEntry copy_entry = list_[entry];
    copy.number = copy_entry.number = next_number_++;
    list_.insert(list_.begin() + static_cast<std::ptrdiff_t>(bookmark), copy_entry);
    list_.erase(list_.begin() + static_cast<std::ptrdiff_t>(bookmark <= entry ? entry + 1 : entry));
    put_in(block + 1, copy);
    take_out(element);
    steps_ += list_.size() + stack_.size() - element;
    note_closed();
  }
}

void HtmlTree::add_marker() {
  list_.push_back({});
  has_closed_ = false;
}

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

void HtmlTree::push_formatting(const StartTag& tag) {
  // Of elements with the same name and attributes only the last three are kept (the standard's "Noah's Ark clause").
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
  // The observer may have given up entries that it cannot write down.
  for (std::size_t i = first; i < list_.size(); ++i) {
    FormattingEntry& entry = list_[i];
    OpenElement element;
    static_cast<ElementFacts&>(element) = entry;
    element.has_tag = true;
    entry.number = next_number_;  // the number that push() assigns
    entry.open = true;
    if (entry.closed_early) {
      entry.closed_early = false;
      --closed_early_;
    }
    push(element);
  }
  has_closed_ = false;
}

}  // namespace kavo
