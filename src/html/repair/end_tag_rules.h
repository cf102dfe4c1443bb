// Which of the open elements a repair gives end tags, so that a parser builds the same document from the repaired page.
#pragma once

#include <cstddef>
#include <vector>

#include "formats/html/tree.h"
#include "html/repair/script_branches.h"
#include "html/repair/tag_table.h"

namespace kavo {

class EndTagRules {
 public:
  // Borrows both.
  EndTagRules(const HtmlTree& tree, const TagTable& table) : tree_(tree), table_(table) {}
  // Borrowed. When set, no end tag is written into another branch than that of its start tag.
  void branches(const ScriptBranches* value) { branches_ = value; }

  // Whether an end tag must be written where the parser closes the element.
  bool must_close(const OpenElement& element) const;
  // Whether the element may overlap others.
  bool is_exempt(const OpenElement& element) const;
  bool is_in_other_branch(const ElementFacts& element) const {
    return branches_ != nullptr && branches_->at(element.place.position) != branches_->current();
  }

  // The index of the lowest element, not below `from`, that must be closed and can be closed before this tag with all
  // above it. The stack's size when there is none, or with `all` when what.first itself cannot be closed.
  std::size_t first_to_close(std::size_t from, const Closing& what, bool all) const;

  // For each open element from `lowest` on (which is wanted): true when it needs no end tag, because a wanted element
  // around it closes it. The elements between the two need none either.
  using IsWanted = bool (EndTagRules::*)(const OpenElement& element) const;
  std::vector<bool> without_end_tag(std::size_t lowest, bool is_forgotten, IsWanted is_wanted) const;

  // At the end of the page every open paragraph and every open element of the table is wanted.
  bool is_wanted_at_end(const OpenElement& element) const;
  struct OpenAtEnd {
    std::size_t bottom;  // the lowest element inside the body
    std::size_t lowest;  // the lowest wanted element that can be closed with all above it
    bool is_complete;    // all wanted elements can be closed
  };
  OpenAtEnd open_at_end(bool may_edit) const;

 private:
  std::size_t lowest_closable(std::size_t from, const Closing& what) const;
  bool is_obstacle(std::size_t index, const Closing& what) const;
  bool is_sole_of_its_name(std::size_t index, std::size_t first, const Closing& what) const;

  const HtmlTree& tree_;
  const TagTable& table_;
  const ScriptBranches* branches_ = nullptr;
};

}  // namespace kavo
