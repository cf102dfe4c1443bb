// Tables and select lists, whose content obeys rules of its own.
#include "formats/html/tree.h"

namespace kavo {
namespace {

// The elements at which "clear the stack back to a table context" stops.
constexpr std::initializer_list<Tag> kTableContext = {Tag::kTable, Tag::kTemplate, Tag::kHtml};
constexpr std::initializer_list<Tag> kTableBodyContext = {Tag::kTbody, Tag::kTfoot, Tag::kThead, Tag::kTemplate,
                                                          Tag::kHtml};
constexpr std::initializer_list<Tag> kTableRowContext = {Tag::kTr, Tag::kTemplate, Tag::kHtml};

}  // namespace

void HtmlTree::start_in_table(const StartTag& tag) {
  switch (tag.tag) {
    case Tag::kCaption:
      clear_back_to(kTableContext);
      add_marker();
      insert(tag);
      mode_ = Mode::kInCaption;
      return;
    case Tag::kColgroup:
      clear_back_to(kTableContext);
      insert(tag);
      mode_ = Mode::kInColumnGroup;
      return;
    case Tag::kCol:
      clear_back_to(kTableContext);
      insert_implied(Tag::kColgroup);
      mode_ = Mode::kInColumnGroup;
      return;
    case Tag::kTbody:
    case Tag::kTfoot:
    case Tag::kThead:
      clear_back_to(kTableContext);
      insert(tag);
      mode_ = Mode::kInTableBody;
      return;
    case Tag::kTd:
    case Tag::kTh:
    case Tag::kTr:
      clear_back_to(kTableContext);
      insert_implied(Tag::kTbody);
      mode_ = Mode::kInTableBody;
      start_in_table_body(tag);
      return;
    case Tag::kTable:
      if (!close_in_scope(Tag::kTable, Scope::kTable, {})) return;
      reset_mode();
      start(tag);
      return;
    case Tag::kStyle:
    case Tag::kScript:
    case Tag::kTemplate:
      start_in_head(tag);
      return;
    case Tag::kInput:
      if (!is_hidden_input(tag)) start_in_body(tag);
      return;
    case Tag::kForm:
      if (form_ != 0 || count(Tag::kTemplate) != 0) return;
      insert(tag);
      form_ = stack_.back().number;
      pop();
      return;
    default:
      start_in_body(tag);  // foster parented
      return;
  }
}

void HtmlTree::end_in_table(std::uint64_t name, Tag tag) {
  if (tag == Tag::kTable) {
    if (close_in_scope(Tag::kTable, Scope::kTable, {.own_end_tag = true})) reset_mode();
  } else if (tag == Tag::kTemplate) {
    end_template();
  } else if (!has_trait(tag, kTableChild) && tag != Tag::kBody && tag != Tag::kHtml) {
    end_in_body(name, tag);
  }
}

void HtmlTree::start_in_caption(const StartTag& tag) {
  if (!has_trait(tag.tag, kTableChild))
    start_in_body(tag);
  else if (close_caption({}))
    start_outside_foreign(tag);
}

void HtmlTree::end_in_caption(std::uint64_t name, Tag tag) {
  if (tag == Tag::kCaption)
    close_caption({.own_end_tag = true});
  else if (tag != Tag::kTable)
    end_in_table(name, tag);
  else if (close_caption({}))
    end_in_table(name, tag);
}

bool HtmlTree::close_caption(Closing what) {
  what.forgets = true;
  if (!close_in_scope(Tag::kCaption, Scope::kTable, what)) return false;
  clear_to_marker();
  mode_ = Mode::kInTable;
  return true;
}

void HtmlTree::start_in_table_body(const StartTag& tag) {
  switch (tag.tag) {
    case Tag::kTr:
      clear_back_to(kTableBodyContext);
      mode_ = Mode::kInRow;
      insert(tag);
      return;
    case Tag::kTd:
    case Tag::kTh:
      clear_back_to(kTableBodyContext);
      mode_ = Mode::kInRow;
      insert_implied(Tag::kTr);
      start_in_row(tag);
      return;
    case Tag::kCaption:
    case Tag::kCol:
    case Tag::kColgroup:
    case Tag::kTbody:
    case Tag::kTfoot:
    case Tag::kThead:
      if (close_table_body()) start_in_table(tag);
      return;
    default:
      start_in_table(tag);
      return;
  }
}

void HtmlTree::end_in_table_body(std::uint64_t name, Tag tag) {
  switch (tag) {
    case Tag::kTbody:
    case Tag::kTfoot:
    case Tag::kThead:
      if (!in_scope(tag, Scope::kTable)) return;
      clear_back_to(kTableBodyContext);
      close_top({.own_end_tag = true});
      mode_ = Mode::kInTable;
      return;
    case Tag::kTable:
      if (close_table_body()) end_in_table(name, tag);
      return;
    default:
      end_in_table(name, tag);
      return;
  }
}

// Closes the open row group, which has no end tag here.
bool HtmlTree::close_table_body() {
  if (!in_scope(Tag::kTbody, Scope::kTable) && !in_scope(Tag::kThead, Scope::kTable) &&
      !in_scope(Tag::kTfoot, Scope::kTable))
    return false;
  clear_back_to(kTableBodyContext);
  close_top();
  mode_ = Mode::kInTable;
  return true;
}

void HtmlTree::start_in_row(const StartTag& tag) {
  if (tag.tag == Tag::kTd || tag.tag == Tag::kTh) {
    clear_back_to(kTableRowContext);
    insert(tag);
    add_marker();
    mode_ = Mode::kInCell;
  } else if (!has_trait(tag.tag, kTableChild)) {
    start_in_table(tag);
  } else if (in_scope(Tag::kTr, Scope::kTable)) {
    close_row({});
    start_in_table_body(tag);
  }
}

void HtmlTree::end_in_row(std::uint64_t name, Tag tag) {
  const bool row_open = in_scope(Tag::kTr, Scope::kTable);
  if (tag == Tag::kTr) {
    if (row_open) close_row({.own_end_tag = true});
  } else if (tag != Tag::kTable && !has_trait(tag, kRowGroup)) {
    end_in_table(name, tag);
  } else if (row_open || (tag != Tag::kTable && in_scope(tag, Scope::kTable))) {
    close_row({});
    end_in_table_body(name, tag);
  }
}

void HtmlTree::close_row(Closing what) {
  clear_back_to(kTableRowContext);
  close_top(what);
  mode_ = Mode::kInTableBody;
}

void HtmlTree::start_in_cell(const StartTag& tag) {
  if (!has_trait(tag.tag, kTableChild)) {
    start_in_body(tag);
  } else if (in_scope(Tag::kTd, Scope::kTable) || in_scope(Tag::kTh, Scope::kTable)) {
    close_cell(find_topmost({Tag::kTd, Tag::kTh}), false);
    start_outside_foreign(tag);
  }
}

void HtmlTree::end_in_cell(std::uint64_t name, Tag tag) {
  if (tag == Tag::kTd || tag == Tag::kTh) {
    if (in_scope(tag, Scope::kTable)) close_cell(find_topmost({tag}), true);
  } else if (tag == Tag::kTable || tag == Tag::kTr || has_trait(tag, kRowGroup)) {
    if (!in_scope(tag, Scope::kTable)) return;
    close_cell(find_topmost({Tag::kTd, Tag::kTh}), false);
    end_outside_foreign(name, tag);
  } else {
    end_in_table(name, tag);
  }
}

void HtmlTree::close_cell(std::size_t cell, bool own) {
  close_from({.first = cell, .own_end_tag = own, .forgets = true});
  clear_to_marker();
  mode_ = Mode::kInRow;
}

// Whether the tag ends a select list in a table: a part of the table does.
bool HtmlTree::ends_select(Tag tag) const {
  return mode_ == Mode::kInSelectInTable &&
         (tag == Tag::kTable || (has_trait(tag, kTableChild) && tag != Tag::kCol && tag != Tag::kColgroup));
}

void HtmlTree::close_select(Closing what) {
  close_until(Tag::kSelect, what);
  reset_mode();
}

void HtmlTree::start_in_select(const StartTag& tag) {
  if (ends_select(tag.tag)) {
    close_select({});
    if (mode_ != Mode::kInSelectInTable) start(tag);
    return;
  }
  switch (tag.tag) {
    case Tag::kOption:
    case Tag::kOptgroup:
    case Tag::kHr:
      if (current_is(Tag::kOption)) close_top();
      if (tag.tag != Tag::kOption && current_is(Tag::kOptgroup)) close_top();
      if (tag.tag != Tag::kHr) insert(tag);
      return;
    case Tag::kSelect:
    case Tag::kInput:
    case Tag::kKeygen:
    case Tag::kTextarea:
      if (count(Tag::kSelect) == 0) return;
      close_select({});
      if (tag.tag != Tag::kSelect) start(tag);
      return;
    case Tag::kScript:
    case Tag::kTemplate:
      start_in_head(tag);
      return;
    default:
      return;
  }
}

void HtmlTree::end_in_select(std::uint64_t name, Tag tag) {
  if (ends_select(tag)) {
    if (!in_scope(tag, Scope::kTable)) return;
    close_select({});
    if (mode_ != Mode::kInSelectInTable) end_outside_foreign(name, tag);
    return;
  }
  switch (tag) {
    case Tag::kOptgroup:
      if (current_is(Tag::kOption) && stack_.size() > 1 && stack_[stack_.size() - 2].tag == Tag::kOptgroup) close_top();
      if (current_is(Tag::kOptgroup)) close_top({.own_end_tag = true});
      return;
    case Tag::kOption:
      if (current_is(Tag::kOption)) close_top({.own_end_tag = true});
      return;
    case Tag::kSelect:
      if (count(Tag::kSelect) != 0) close_select({.own_end_tag = true});
      return;
    case Tag::kTemplate:
      end_template();
      return;
    default:
      return;
  }
}

}  // namespace kavo
