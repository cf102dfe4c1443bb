// The insertion modes of the HTML standard's tree construction, as far as they open and close elements.
#include <algorithm>

#include "html/html_attributes.h"
#include "html/html_tree.h"

namespace kavo {
namespace {

bool is_hidden_input(const StartTag& tag) {
  const auto type = attribute_value(tag.text, "type");
  return type && equals_ignoring_case(*type, "hidden");
}

bool is_table_child(Tag tag) {
  switch (tag) {
    case Tag::kCaption:
    case Tag::kCol:
    case Tag::kColgroup:
    case Tag::kTbody:
    case Tag::kTd:
    case Tag::kTfoot:
    case Tag::kTh:
    case Tag::kThead:
    case Tag::kTr:
      return true;
    default:
      return false;
  }
}

}  // namespace

// Dispatch.

Content HtmlTree::start_tag(const StartTag& tag) {
  closed_own_ = closed_implied_ = reopened_ = forgot_ = false;
  content_ = Content::kMarkup;
  start(tag);
  return content_;
}

void HtmlTree::start(const StartTag& tag) {
  bool foreign = false;
  if (!stack_.empty() && stack_.back().space != Space::kHtml) {
    const OpenElement& current = stack_.back();
    if (tag.tag == Tag::kSvg && current.tag == Tag::kAnnotationXml && current.space == Space::kMathMl)
      foreign = false;
    else
      foreign = in_foreign() || ((tag.tag == Tag::kMglyph || tag.tag == Tag::kMalignmark) && math_text(current));
  }
  if (foreign)
    start_in_foreign(tag);
  else
    start_outside_foreign(tag);
}

void HtmlTree::end_tag(std::uint64_t name, Tag tag) {
  closed_own_ = closed_implied_ = reopened_ = forgot_ = false;
  if (stack_.empty() || stack_.back().space == Space::kHtml) {
    end_outside_foreign(name, tag);
    return;
  }
  if (tag == Tag::kP || tag == Tag::kBr) {
    leave_foreign();
    end_outside_foreign(name, tag);
    return;
  }
  for (std::size_t i = stack_.size(); i-- > 0 && stack_[i].space != Space::kHtml; ++steps_) {
    if (stack_[i].name != name) continue;
    Closing what;
    what.first = i;
    what.own_end_tag = true;
    close_from(what);
    return;
  }
  end_outside_foreign(name, tag);
}

void HtmlTree::blank() { text(Text::kBlank); }
void HtmlTree::character() { text(Text::kOther); }
void HtmlTree::null() { text(Text::kNull); }

void HtmlTree::text(Text kind) {
  closed_own_ = closed_implied_ = reopened_ = forgot_ = false;
  if (in_foreign()) {
    if (kind == Text::kOther) frameset_ok_ = false;
    return;
  }
  for (;;) {
    switch (mode_) {
      case Mode::kInitial:
        if (kind == Text::kBlank) return;
        mode_ = Mode::kBeforeHtml;
        continue;
      case Mode::kBeforeHtml:
        if (kind == Text::kBlank) return;
        insert_implied(Tag::kHtml);
        mode_ = Mode::kBeforeHead;
        continue;
      case Mode::kBeforeHead:
        if (kind == Text::kBlank) return;
        insert_implied(Tag::kHead);
        head_seen_ = true;
        mode_ = Mode::kInHead;
        continue;
      case Mode::kInHead:
        if (kind == Text::kBlank) return;
        pop();
        mode_ = Mode::kAfterHead;
        continue;
      case Mode::kInHeadNoscript:
        if (kind == Text::kBlank) return;
        pop();
        mode_ = Mode::kInHead;
        continue;
      case Mode::kAfterHead:
        if (kind == Text::kBlank) return;
        insert_implied(Tag::kBody);
        mode_ = Mode::kInBody;
        continue;
      case Mode::kAfterBody:
      case Mode::kAfterAfterBody:
        if (kind == Text::kBlank) {
          reconstruct();
          return;
        }
        mode_ = Mode::kInBody;
        continue;
      case Mode::kInColumnGroup:
        if (kind == Text::kBlank || !current_is(Tag::kColgroup)) return;
        pop_implied();
        mode_ = Mode::kInTable;
        continue;
      case Mode::kInBody:
      case Mode::kInCaption:
      case Mode::kInCell:
      case Mode::kInTemplate:
      case Mode::kInTable:
      case Mode::kInTableBody:
      case Mode::kInRow:
        if (kind == Text::kNull || (kind == Text::kBlank && in_table_text())) return;
        reconstruct();
        if (kind == Text::kOther) frameset_ok_ = false;
        return;
      case Mode::kAfterAfterFrameset:
        if (kind == Text::kBlank) reconstruct();
        return;
      case Mode::kText:
      case Mode::kInSelect:
      case Mode::kInSelectInTable:
      case Mode::kInFrameset:
      case Mode::kAfterFrameset:
        return;
    }
  }
}

void HtmlTree::doctype(bool quirks) {
  if (mode_ != Mode::kInitial) return;
  quirks_ = quirks;
  mode_ = Mode::kBeforeHtml;
}

void HtmlTree::end_of_raw_text() {
  closed_own_ = true;
  closed_implied_ = false;
  pop();
  mode_ = original_mode_;
}

void HtmlTree::start_outside_foreign(const StartTag& tag) {
  for (;;) {
    switch (mode_) {
      case Mode::kInitial:
        mode_ = Mode::kBeforeHtml;
        continue;
      case Mode::kBeforeHtml:
        mode_ = Mode::kBeforeHead;
        if (tag.tag == Tag::kHtml) {
          insert(tag);
          return;
        }
        insert_implied(Tag::kHtml);
        continue;
      case Mode::kBeforeHead:
        if (tag.tag == Tag::kHtml) return;
        mode_ = Mode::kInHead;
        head_seen_ = true;
        if (tag.tag == Tag::kHead) {
          insert(tag);
          return;
        }
        insert_implied(Tag::kHead);
        continue;
      case Mode::kInHead:
        if (tag.tag == Tag::kHtml || tag.tag == Tag::kHead) return;
        if (tag.tag == Tag::kNoscript) {
          insert(tag);
          mode_ = Mode::kInHeadNoscript;
          return;
        }
        if (start_in_head(tag)) return;
        pop();
        mode_ = Mode::kAfterHead;
        continue;
      case Mode::kInHeadNoscript:
        switch (tag.tag) {
          case Tag::kHtml:
          case Tag::kHead:
          case Tag::kNoscript:
            return;
          case Tag::kBasefont:
          case Tag::kBgsound:
          case Tag::kLink:
          case Tag::kMeta:
          case Tag::kNoframes:
          case Tag::kStyle:
            start_in_head(tag);
            return;
          default:
            pop();
            mode_ = Mode::kInHead;
            continue;
        }
      case Mode::kAfterHead:
        switch (tag.tag) {
          case Tag::kHtml:
          case Tag::kHead:
            return;
          case Tag::kBody:
            insert(tag);
            frameset_ok_ = false;
            mode_ = Mode::kInBody;
            return;
          case Tag::kFrameset:
            insert(tag);
            mode_ = Mode::kInFrameset;
            return;
          default:
            if (start_in_head(tag)) return;
            insert_implied(Tag::kBody);
            mode_ = Mode::kInBody;
            continue;
        }
      case Mode::kInBody:
        start_in_body(tag);
        return;
      case Mode::kText:
        return;
      case Mode::kInTable:
        start_in_table(tag);
        return;
      case Mode::kInCaption:
        if (!is_table_child(tag.tag)) {
          start_in_body(tag);
          return;
        }
        if (find_in_scope(Tag::kCaption, Scope::kTable) == kNone) return;
        close_caption(false);
        continue;
      case Mode::kInColumnGroup:
        switch (tag.tag) {
          case Tag::kHtml:
          case Tag::kCol:
            return;
          case Tag::kTemplate:
            start_in_head(tag);
            return;
          default:
            if (!current_is(Tag::kColgroup)) return;
            pop_implied();
            mode_ = Mode::kInTable;
            continue;
        }
      case Mode::kInTableBody:
        start_in_table_body(tag);
        return;
      case Mode::kInRow:
        start_in_row(tag);
        return;
      case Mode::kInCell:
        if (!is_table_child(tag.tag)) {
          start_in_body(tag);
          return;
        }
        if (find_in_scope(Tag::kTd, Scope::kTable) == kNone && find_in_scope(Tag::kTh, Scope::kTable) == kNone) return;
        close_cell(false, Tag::kOther);
        continue;
      case Mode::kInSelectInTable:
        if (tag.tag == Tag::kTable || (is_table_child(tag.tag) && tag.tag != Tag::kCol && tag.tag != Tag::kColgroup)) {
          close_until(Tag::kSelect, {});
          reset_mode();
          if (mode_ == Mode::kInSelectInTable) return;
          start(tag);
          return;
        }
        start_in_select(tag);
        return;
      case Mode::kInSelect:
        start_in_select(tag);
        return;
      case Mode::kInTemplate: {
        if (tag.tag != Tag::kNoscript && start_in_head(tag)) return;
        Mode next = Mode::kInBody;
        if (tag.tag == Tag::kCol)
          next = Mode::kInColumnGroup;
        else if (tag.tag == Tag::kTr)
          next = Mode::kInTableBody;
        else if (tag.tag == Tag::kTd || tag.tag == Tag::kTh)
          next = Mode::kInRow;
        else if (is_table_child(tag.tag))
          next = Mode::kInTable;
        mode_ = template_modes_.back() = next;
        continue;
      }
      case Mode::kAfterBody:
      case Mode::kAfterAfterBody:
        if (tag.tag == Tag::kHtml) return;
        mode_ = Mode::kInBody;
        continue;
      case Mode::kInFrameset:
        if (tag.tag == Tag::kFrameset)
          insert(tag);
        else if (tag.tag == Tag::kNoframes)
          start_in_head(tag);
        return;
      case Mode::kAfterFrameset:
      case Mode::kAfterAfterFrameset:
        if (tag.tag == Tag::kNoframes) start_in_head(tag);
        return;
    }
  }
}

void HtmlTree::end_outside_foreign(std::uint64_t name, Tag tag) {
  const bool opens_body = tag == Tag::kHtml || tag == Tag::kBody || tag == Tag::kBr;
  for (;;) {
    switch (mode_) {
      case Mode::kInitial:
        mode_ = Mode::kBeforeHtml;
        continue;
      case Mode::kBeforeHtml:
        if (!opens_body && tag != Tag::kHead) return;
        insert_implied(Tag::kHtml);
        mode_ = Mode::kBeforeHead;
        continue;
      case Mode::kBeforeHead:
        if (!opens_body && tag != Tag::kHead) return;
        insert_implied(Tag::kHead);
        head_seen_ = true;
        mode_ = Mode::kInHead;
        continue;
      case Mode::kInHead:
        if (tag == Tag::kTemplate) end_template();
        if (tag != Tag::kHead && !opens_body) return;
        pop();
        mode_ = Mode::kAfterHead;
        if (tag == Tag::kHead) return;
        continue;
      case Mode::kInHeadNoscript:
        if (tag != Tag::kNoscript && tag != Tag::kBr) return;
        pop();
        mode_ = Mode::kInHead;
        if (tag == Tag::kNoscript) return;
        continue;
      case Mode::kAfterHead:
        if (tag == Tag::kTemplate) end_template();
        if (!opens_body) return;
        insert_implied(Tag::kBody);
        mode_ = Mode::kInBody;
        continue;
      case Mode::kInBody:
        end_in_body(name, tag);
        return;
      case Mode::kText:
        return;
      case Mode::kInTable:
        end_in_table(name, tag);
        return;
      case Mode::kInCaption:
        if (tag == Tag::kCaption || tag == Tag::kTable) {
          if (find_in_scope(Tag::kCaption, Scope::kTable) == kNone) return;
          close_caption(tag == Tag::kCaption);
          if (tag == Tag::kCaption) return;
          continue;
        }
        if (is_table_child(tag) || tag == Tag::kBody || tag == Tag::kHtml) return;
        end_in_body(name, tag);
        return;
      case Mode::kInColumnGroup:
        if (tag == Tag::kTemplate) {
          end_template();
          return;
        }
        if (tag == Tag::kCol || !current_is(Tag::kColgroup)) return;
        mode_ = Mode::kInTable;
        if (tag == Tag::kColgroup) {
          Closing what;
          what.first = stack_.size() - 1;
          what.own_end_tag = true;
          close_from(what);
          return;
        }
        pop_implied();
        continue;
      case Mode::kInTableBody:
        end_in_table_body(name, tag);
        return;
      case Mode::kInRow:
        end_in_row(name, tag);
        return;
      case Mode::kInCell:
        switch (tag) {
          case Tag::kTd:
          case Tag::kTh:
            if (find_in_scope(tag, Scope::kTable) != kNone) close_cell(true, tag);
            return;
          case Tag::kTable:
          case Tag::kTbody:
          case Tag::kTfoot:
          case Tag::kThead:
          case Tag::kTr:
            if (find_in_scope(tag, Scope::kTable) == kNone) return;
            close_cell(false, Tag::kOther);
            continue;
          case Tag::kBody:
          case Tag::kCaption:
          case Tag::kCol:
          case Tag::kColgroup:
          case Tag::kHtml:
            return;
          default:
            end_in_body(name, tag);
            return;
        }
      case Mode::kInSelectInTable:
        if (tag == Tag::kTable || (is_table_child(tag) && tag != Tag::kCol && tag != Tag::kColgroup)) {
          if (find_in_scope(tag, Scope::kTable) == kNone) return;
          close_until(Tag::kSelect, {});
          reset_mode();
          if (mode_ == Mode::kInSelectInTable) return;
          continue;
        }
        end_in_select(tag);
        return;
      case Mode::kInSelect:
        end_in_select(tag);
        return;
      case Mode::kInTemplate:
        if (tag == Tag::kTemplate) end_template();
        return;
      case Mode::kAfterBody:
        if (tag == Tag::kHtml) {
          mode_ = Mode::kAfterAfterBody;
          return;
        }
        mode_ = Mode::kInBody;
        continue;
      case Mode::kAfterAfterBody:
        mode_ = Mode::kInBody;
        continue;
      case Mode::kInFrameset:
        if (tag != Tag::kFrameset || stack_.size() == 1) return;
        pop();
        if (!current_is(Tag::kFrameset)) mode_ = Mode::kAfterFrameset;
        return;
      case Mode::kAfterFrameset:
        if (tag == Tag::kHtml) mode_ = Mode::kAfterAfterFrameset;
        return;
      case Mode::kAfterAfterFrameset:
        return;
    }
  }
}

// SVG and MathML.

void HtmlTree::leave_foreign() {
  while (foreign_text(stack_.back())) {
    closed_implied_ = true;
    pop();
  }
}

void HtmlTree::start_in_foreign(const StartTag& tag) {
  bool leaves = (traits_of(tag.tag) & kLeavesForeign) != 0;
  if (tag.tag == Tag::kFont)
    leaves =
        attribute_value(tag.text, "color") || attribute_value(tag.text, "face") || attribute_value(tag.text, "size");
  if (leaves) {
    leave_foreign();
    start_outside_foreign(tag);
  } else if (!tag.self_closing) {
    insert(tag, stack_.back().space);
  }
}

// Head, raw text, templates.

void HtmlTree::start_raw(const StartTag& tag, Content content) {
  insert(tag);
  content_ = content;
  original_mode_ = mode_;
  mode_ = Mode::kText;
}

// Start tags that belong into the head wherever they stand; false for others.
bool HtmlTree::start_in_head(const StartTag& tag) {
  switch (tag.tag) {
    case Tag::kBase:
    case Tag::kBasefont:
    case Tag::kBgsound:
    case Tag::kLink:
    case Tag::kMeta:
      return true;
    case Tag::kTitle:
      start_raw(tag, Content::kRcdata);
      return true;
    case Tag::kNoframes:
    case Tag::kStyle:
      start_raw(tag, Content::kRawText);
      return true;
    case Tag::kScript:
      start_raw(tag, Content::kScript);
      return true;
    case Tag::kTemplate:
      insert(tag);
      add_marker();
      note_closed();
      frameset_ok_ = false;
      mode_ = Mode::kInTemplate;
      template_modes_.push_back(Mode::kInTemplate);
      return true;
    default:
      return false;
  }
}

void HtmlTree::end_template() {
  if (count(Tag::kTemplate) == 0) return;
  Closing what;
  what.own_end_tag = true;
  what.forgets = true;
  close_until(Tag::kTemplate, what);
  clear_to_marker();
  template_modes_.pop_back();
  reset_mode();
}

void HtmlTree::reset_mode() {
  for (std::size_t i = landmarks_.size(); i-- > 0; ++steps_) {
    const OpenElement& element = stack_[landmarks_[i]];
    if (element.space != Space::kHtml) continue;
    switch (element.tag) {
      case Tag::kSelect:
        mode_ = Mode::kInSelect;
        for (std::size_t k = i; k-- > 1; ++steps_) {
          const OpenElement& around = stack_[landmarks_[k]];
          if (around.space != Space::kHtml) continue;
          if (around.tag == Tag::kTemplate) return;
          if (around.tag == Tag::kTable) {
            mode_ = Mode::kInSelectInTable;
            return;
          }
        }
        return;
      case Tag::kTd:
      case Tag::kTh:
        mode_ = Mode::kInCell;
        return;
      case Tag::kTr:
        mode_ = Mode::kInRow;
        return;
      case Tag::kTbody:
      case Tag::kThead:
      case Tag::kTfoot:
        mode_ = Mode::kInTableBody;
        return;
      case Tag::kCaption:
        mode_ = Mode::kInCaption;
        return;
      case Tag::kColgroup:
        mode_ = Mode::kInColumnGroup;
        return;
      case Tag::kTable:
        mode_ = Mode::kInTable;
        return;
      case Tag::kTemplate:
        mode_ = template_modes_.back();
        return;
      case Tag::kHead:
        mode_ = Mode::kInHead;
        return;
      case Tag::kBody:
        mode_ = Mode::kInBody;
        return;
      case Tag::kFrameset:
        mode_ = Mode::kInFrameset;
        return;
      case Tag::kHtml:
        mode_ = head_seen_ ? Mode::kAfterHead : Mode::kBeforeHead;
        return;
      default:
        break;
    }
  }
  mode_ = Mode::kInBody;
}

// Body.

void HtmlTree::close_p(bool reopening) {
  const std::size_t first = find_in_scope(Tag::kP, Scope::kButton);
  if (first == kNone) return;
  Closing what;
  what.first = first;
  what.checks_again = true;
  what.reopening = reopening;
  close_from(what);
}

void HtmlTree::start_list_item(const StartTag& tag) {
  frameset_ok_ = false;
  for (std::size_t i = landmarks_.size(); i-- > 0; ++steps_) {
    const OpenElement& element = stack_[landmarks_[i]];
    const bool html = element.space == Space::kHtml;
    const bool same =
        tag.tag == Tag::kLi ? element.tag == Tag::kLi : element.tag == Tag::kDd || element.tag == Tag::kDt;
    if (html && same) {
      Closing what;
      what.first = landmarks_[i];
      close_from(what);
      break;
    }
    const bool passed = html && (element.tag == Tag::kAddress || element.tag == Tag::kDiv || element.tag == Tag::kP);
    if (is_special(element) && !passed) break;
  }
  close_p();
  insert(tag);
}

void HtmlTree::start_in_body(const StartTag& tag) {
  switch (tag.tag) {
    case Tag::kB:
    case Tag::kBig:
    case Tag::kCode:
    case Tag::kEm:
    case Tag::kFont:
    case Tag::kI:
    case Tag::kS:
    case Tag::kSmall:
    case Tag::kStrike:
    case Tag::kStrong:
    case Tag::kTt:
    case Tag::kU:
      reconstruct();
      insert(tag);
      push_formatting(tag);
      return;
    case Tag::kA:
      for (std::size_t i = list_.size(); i-- > 0 && list_[i].number != 0; ++steps_) {
        if (list_[i].tag != Tag::kA) continue;
        const std::uint64_t number = list_[i].number;
        end_formatting(tag.name, Tag::kA, true);
        const std::size_t entry = find_entry(number);
        if (entry != kNone) {
          for (std::size_t k = stack_.size(); k-- > 0; ++steps_) {
            if (stack_[k].number != number) continue;
            take_out(k);
            closed_implied_ = true;
            break;
          }
          erase_entry(entry);
        }
        break;
      }
      reconstruct();
      insert(tag);
      push_formatting(tag);
      return;
    case Tag::kNobr:
      reconstruct();
      if (in_scope(Tag::kNobr)) {
        end_formatting(tag.name, Tag::kNobr, true);
        reconstruct();
      }
      insert(tag);
      push_formatting(tag);
      return;
    case Tag::kH1:
    case Tag::kH2:
    case Tag::kH3:
    case Tag::kH4:
    case Tag::kH5:
    case Tag::kH6:
      close_p();
      if (stack_.back().space == Space::kHtml && stack_.back().tag >= Tag::kH1 && stack_.back().tag <= Tag::kH6) {
        Closing what;
        what.first = stack_.size() - 1;
        // Only the current element is looked at: closed by a tag of its own, it must not uncover another heading.
        what.checks_again = true;
        close_from(what);
      }
      insert(tag);
      return;
    case Tag::kLi:
    case Tag::kDd:
    case Tag::kDt:
      start_list_item(tag);
      return;
    case Tag::kBr:
    case Tag::kImg:
    case Tag::kImage:
    case Tag::kWbr:
    case Tag::kArea:
    case Tag::kEmbed:
    case Tag::kKeygen:
      reconstruct();
      frameset_ok_ = false;
      return;
    case Tag::kInput:
      reconstruct();
      if (!is_hidden_input(tag)) frameset_ok_ = false;
      return;
    case Tag::kParam:
    case Tag::kTrack:
    case Tag::kSource:
      return;
    case Tag::kHr:
      close_p();
      frameset_ok_ = false;
      return;
    case Tag::kRb:
    case Tag::kRtc:
    case Tag::kRp:
    case Tag::kRt:
      if (in_scope(Tag::kRuby)) {
        Closing what;
        what.first = implied_ends(false, tag.tag == Tag::kRp || tag.tag == Tag::kRt ? Tag::kRtc : Tag::kOther);
        if (what.first < stack_.size()) close_from(what);
      }
      insert(tag);
      return;
    case Tag::kPre:
    case Tag::kListing:
      close_p();
      insert(tag);
      frameset_ok_ = false;
      return;
    case Tag::kXmp:
      close_p(true);
      reconstruct();
      frameset_ok_ = false;
      start_raw(tag, Content::kRawText);
      return;
    case Tag::kIframe:
      frameset_ok_ = false;
      start_raw(tag, Content::kRawText);
      return;
    case Tag::kNoembed:
    case Tag::kNoframes:
      start_raw(tag, Content::kRawText);
      return;
    case Tag::kTextarea:
      frameset_ok_ = false;
      start_raw(tag, Content::kRcdata);
      return;
    case Tag::kPlaintext:
      close_p();
      insert(tag);
      content_ = Content::kPlainText;
      return;
    case Tag::kSvg:
    case Tag::kMath:
      reconstruct();
      if (!tag.self_closing) insert(tag, tag.tag == Tag::kSvg ? Space::kSvg : Space::kMathMl);
      return;
    case Tag::kBase:
    case Tag::kBasefont:
    case Tag::kBgsound:
    case Tag::kLink:
    case Tag::kMeta:
    case Tag::kScript:
    case Tag::kStyle:
    case Tag::kTemplate:
    case Tag::kTitle:
      start_in_head(tag);
      return;
    case Tag::kBody:
      if (stack_.size() > 1 && stack_[1].tag == Tag::kBody && count(Tag::kTemplate) == 0) frameset_ok_ = false;
      return;
    case Tag::kFrameset:
      if (frameset_ok_ && stack_.size() > 1 && stack_[1].tag == Tag::kBody) {
        while (stack_.size() > 1) pop();
        note_closed();
        insert(tag);
        mode_ = Mode::kInFrameset;
      }
      return;
    case Tag::kForm:
      if (form_ != 0 && count(Tag::kTemplate) == 0) return;
      close_p();
      insert(tag);
      if (count(Tag::kTemplate) == 0) form_ = stack_.back().number;
      return;
    case Tag::kTable:
      if (!quirks_) close_p();
      insert(tag);
      frameset_ok_ = false;
      mode_ = Mode::kInTable;
      return;
    case Tag::kButton: {
      const std::size_t open = find_in_scope(Tag::kButton, Scope::kDefault);
      if (open != kNone) {
        Closing what;
        what.first = open;
        what.reopening = true;
        what.checks_again = true;
        close_from(what);
      }
      reconstruct();
      insert(tag);
      frameset_ok_ = false;
      return;
    }
    case Tag::kApplet:
    case Tag::kMarquee:
    case Tag::kObject:
      reconstruct();
      insert(tag);
      add_marker();
      note_closed();
      frameset_ok_ = false;
      return;
    case Tag::kSelect: {
      reconstruct();
      insert(tag);
      frameset_ok_ = false;
      const bool in_table = mode_ == Mode::kInTable || mode_ == Mode::kInCaption || mode_ == Mode::kInTableBody ||
                            mode_ == Mode::kInRow || mode_ == Mode::kInCell;
      mode_ = in_table ? Mode::kInSelectInTable : Mode::kInSelect;
      return;
    }
    case Tag::kOptgroup:
    case Tag::kOption:
      if (current_is(Tag::kOption)) {
        Closing what;
        what.first = stack_.size() - 1;
        what.reopening = true;
        close_from(what);
      }
      reconstruct();
      insert(tag);
      return;
    case Tag::kCaption:
    case Tag::kCol:
    case Tag::kColgroup:
    case Tag::kFrame:
    case Tag::kHead:
    case Tag::kHtml:
    case Tag::kTbody:
    case Tag::kTd:
    case Tag::kTfoot:
    case Tag::kTh:
    case Tag::kThead:
    case Tag::kTr:
      return;
    default:
      if ((traits_of(tag.tag) & kBlockEnd) != 0) {
        close_p();
        insert(tag);
      } else if (tag.tag == Tag::kP) {
        close_p();
        insert(tag);
      } else {
        reconstruct();
        insert(tag);
      }
      return;
  }
}

void HtmlTree::end_in_body(std::uint64_t name, Tag tag) {
  Closing what;
  what.own_end_tag = true;
  switch (tag) {
    case Tag::kBody:
    case Tag::kHtml:
      if (!in_scope(Tag::kBody)) return;
      closed_own_ = true;
      mode_ = tag == Tag::kBody ? Mode::kAfterBody : Mode::kAfterAfterBody;
      return;
    case Tag::kP:
      what.first = find_in_scope(Tag::kP, Scope::kButton);
      if (what.first != kNone) close_from(what);  // else an empty paragraph comes and goes
      return;
    case Tag::kLi:
      what.first = find_in_scope(Tag::kLi, Scope::kListItem);
      if (what.first != kNone) close_from(what);
      return;
    case Tag::kDd:
    case Tag::kDt:
      what.first = find_in_scope(tag, Scope::kDefault);
      if (what.first != kNone) close_from(what);
      return;
    case Tag::kH1:
    case Tag::kH2:
    case Tag::kH3:
    case Tag::kH4:
    case Tag::kH5:
    case Tag::kH6:
      what.first = find_heading(stack_.size());
      if (what.first == kNone) return;
      // The end tag of one heading closes another.
      what.own_end_tag = stack_[what.first].tag == tag;
      what.checks_again = !what.own_end_tag;
      close_from(what);
      return;
    case Tag::kBr:
      reconstruct();
      frameset_ok_ = false;
      return;
    case Tag::kForm:
      end_form();
      return;
    case Tag::kApplet:
    case Tag::kMarquee:
    case Tag::kObject:
      what.first = find_in_scope(tag, Scope::kDefault);
      if (what.first == kNone) return;
      what.forgets = true;
      close_from(what);
      clear_to_marker();
      return;
    case Tag::kTemplate:
      end_template();
      return;
    default:
      if ((traits_of(tag) & kFormatting) != 0) {
        end_formatting(name, tag, false);
      } else if ((traits_of(tag) & kBlockEnd) != 0) {
        what.first = find_in_scope(tag, Scope::kDefault);
        if (what.first != kNone) close_from(what);
      } else {
        end_any_other(name, tag);
      }
      return;
  }
}

void HtmlTree::end_form() {
  if (count(Tag::kTemplate) != 0) {
    Closing what;
    what.own_end_tag = true;
    what.first = find_in_scope(Tag::kForm, Scope::kDefault);
    if (what.first != kNone) close_from(what);
    return;
  }
  const std::uint64_t form = form_;
  form_ = 0;
  if (form == 0 || !in_scope(Tag::kForm)) return;
  Closing implied;
  implied.first = implied_ends(false);
  if (implied.first < stack_.size()) close_from(implied);
  for (std::size_t i = stack_.size(); i-- > 0; ++steps_) {
    if (stack_[i].number != form) continue;
    if (i + 1 == stack_.size()) {
      Closing what;
      what.first = i;
      what.own_end_tag = true;
      close_from(what);
    } else {
      // Taken out from under what is open inside, which stays open.
      take_out(i);
      closed_own_ = true;
    }
    return;
  }
}

void HtmlTree::end_any_other(std::uint64_t name, Tag tag) {
  if (tag != Tag::kOther && count(tag) == 0) return;
  for (std::size_t i = stack_.size(); i-- > 1; ++steps_) {
    if (stack_[i].space == Space::kHtml && stack_[i].name == name) {
      Closing what;
      what.first = i;
      what.own_end_tag = true;
      what.order_only = true;
      close_from(what);
      return;
    }
    if (is_special(stack_[i])) return;
  }
}

// The adoption agency algorithm. `replaced`: a start tag of the same name asks for it, not an end tag.
void HtmlTree::end_formatting(std::uint64_t name, Tag tag, bool replaced) {
  if (current_is(tag) && find_entry(stack_.back().number) == kNone) {
    Closing what;
    what.first = stack_.size() - 1;
    what.own_end_tag = !replaced;
    what.order_only = true;
    close_from(what);
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
      Closing what;
      what.first = element;
      what.own_end_tag = !replaced;
      what.order_only = true;
      what.replaced = replaced;
      what.reopening = replaced;
      close_from(what);
      // When the observer closed it, its entry is already gone or marked.
      const std::size_t left = find_entry(number);
      if (left != kNone) erase_entry(left);
      return;
    }
    observer_.crossing(stack_[element], stack_[block]);
    closed_own_ = true;
    closed_implied_ = true;

    // Elements between are opened again around the block, those beyond three or without an entry are not.
    std::size_t bookmark = entry;
    bool bookmark_at_entry = true;
    int inner = 0;
    for (std::size_t node = block; --node > element;) {
      ++inner;
      ++steps_;
      std::size_t node_entry =
          (traits_of(stack_[node].tag) & kFormatting) != 0 ? find_entry(stack_[node].number) : kNone;
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

// Tables.

void HtmlTree::close_cell(bool own, Tag tag) {
  Closing what;
  what.own_end_tag = own;
  what.forgets = true;
  what.first = own ? find_topmost({tag}) : find_topmost({Tag::kTd, Tag::kTh});
  close_from(what);
  clear_to_marker();
  mode_ = Mode::kInRow;
}

void HtmlTree::close_caption(bool own) {
  Closing what;
  what.own_end_tag = own;
  what.forgets = true;
  close_until(Tag::kCaption, what);
  clear_to_marker();
  mode_ = Mode::kInTable;
}

void HtmlTree::start_in_table(const StartTag& tag) {
  switch (tag.tag) {
    case Tag::kCaption:
      clear_back_to({Tag::kTable, Tag::kTemplate, Tag::kHtml});
      add_marker();
      note_closed();
      insert(tag);
      mode_ = Mode::kInCaption;
      return;
    case Tag::kColgroup:
      clear_back_to({Tag::kTable, Tag::kTemplate, Tag::kHtml});
      insert(tag);
      mode_ = Mode::kInColumnGroup;
      return;
    case Tag::kCol:
      clear_back_to({Tag::kTable, Tag::kTemplate, Tag::kHtml});
      insert_implied(Tag::kColgroup);
      mode_ = Mode::kInColumnGroup;
      return;
    case Tag::kTbody:
    case Tag::kTfoot:
    case Tag::kThead:
      clear_back_to({Tag::kTable, Tag::kTemplate, Tag::kHtml});
      insert(tag);
      mode_ = Mode::kInTableBody;
      return;
    case Tag::kTd:
    case Tag::kTh:
    case Tag::kTr:
      clear_back_to({Tag::kTable, Tag::kTemplate, Tag::kHtml});
      insert_implied(Tag::kTbody);
      mode_ = Mode::kInTableBody;
      start_in_table_body(tag);
      return;
    case Tag::kTable: {
      if (find_in_scope(Tag::kTable, Scope::kTable) == kNone) return;
      close_until(Tag::kTable, {});
      reset_mode();
      start(tag);
      return;
    }
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
    if (find_in_scope(Tag::kTable, Scope::kTable) == kNone) return;
    Closing what;
    what.own_end_tag = true;
    close_until(Tag::kTable, what);
    reset_mode();
  } else if (tag == Tag::kTemplate) {
    end_template();
  } else if (!is_table_child(tag) && tag != Tag::kBody && tag != Tag::kHtml) {
    end_in_body(name, tag);
  }
}

void HtmlTree::start_in_table_body(const StartTag& tag) {
  switch (tag.tag) {
    case Tag::kTr:
    case Tag::kTd:
    case Tag::kTh:
      clear_back_to({Tag::kTbody, Tag::kTfoot, Tag::kThead, Tag::kTemplate, Tag::kHtml});
      mode_ = Mode::kInRow;
      if (tag.tag == Tag::kTr) {
        insert(tag);
        return;
      }
      insert_implied(Tag::kTr);
      start_in_row(tag);
      return;
    case Tag::kCaption:
    case Tag::kCol:
    case Tag::kColgroup:
    case Tag::kTbody:
    case Tag::kTfoot:
    case Tag::kThead:
      if (find_in_scope(Tag::kTbody, Scope::kTable) == kNone && find_in_scope(Tag::kThead, Scope::kTable) == kNone &&
          find_in_scope(Tag::kTfoot, Scope::kTable) == kNone)
        return;
      clear_back_to({Tag::kTbody, Tag::kTfoot, Tag::kThead, Tag::kTemplate, Tag::kHtml});
      pop_implied();
      mode_ = Mode::kInTable;
      start_in_table(tag);
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
    case Tag::kThead: {
      if (find_in_scope(tag, Scope::kTable) == kNone) return;
      clear_back_to({Tag::kTbody, Tag::kTfoot, Tag::kThead, Tag::kTemplate, Tag::kHtml});
      Closing what;
      what.first = stack_.size() - 1;
      what.own_end_tag = true;
      close_from(what);
      mode_ = Mode::kInTable;
      return;
    }
    case Tag::kTable:
      if (find_in_scope(Tag::kTbody, Scope::kTable) == kNone && find_in_scope(Tag::kThead, Scope::kTable) == kNone &&
          find_in_scope(Tag::kTfoot, Scope::kTable) == kNone)
        return;
      clear_back_to({Tag::kTbody, Tag::kTfoot, Tag::kThead, Tag::kTemplate, Tag::kHtml});
      pop_implied();
      mode_ = Mode::kInTable;
      end_in_table(name, tag);
      return;
    case Tag::kTd:
    case Tag::kTh:
    case Tag::kTr:
      return;
    default:
      end_in_table(name, tag);
      return;
  }
}

void HtmlTree::start_in_row(const StartTag& tag) {
  switch (tag.tag) {
    case Tag::kTd:
    case Tag::kTh:
      clear_back_to({Tag::kTr, Tag::kTemplate, Tag::kHtml});
      insert(tag);
      mode_ = Mode::kInCell;
      add_marker();
      note_closed();
      return;
    case Tag::kCaption:
    case Tag::kCol:
    case Tag::kColgroup:
    case Tag::kTbody:
    case Tag::kTfoot:
    case Tag::kThead:
    case Tag::kTr:
      if (find_in_scope(Tag::kTr, Scope::kTable) == kNone) return;
      clear_back_to({Tag::kTr, Tag::kTemplate, Tag::kHtml});
      pop_implied();
      mode_ = Mode::kInTableBody;
      start_in_table_body(tag);
      return;
    default:
      start_in_table(tag);
      return;
  }
}

void HtmlTree::end_in_row(std::uint64_t name, Tag tag) {
  switch (tag) {
    case Tag::kTr:
    case Tag::kTable:
    case Tag::kTbody:
    case Tag::kTfoot:
    case Tag::kThead: {
      const bool row = find_in_scope(Tag::kTr, Scope::kTable) != kNone;
      const bool body = tag != Tag::kTr && tag != Tag::kTable && find_in_scope(tag, Scope::kTable) != kNone;
      if (!row && !body) return;
      clear_back_to({Tag::kTr, Tag::kTemplate, Tag::kHtml});
      Closing what;
      what.first = stack_.size() - 1;
      what.own_end_tag = tag == Tag::kTr;
      close_from(what);
      mode_ = Mode::kInTableBody;
      if (tag != Tag::kTr) end_in_table_body(name, tag);
      return;
    }
    case Tag::kTd:
    case Tag::kTh:
      return;
    default:
      end_in_table(name, tag);
      return;
  }
}

// Select.

void HtmlTree::start_in_select(const StartTag& tag) {
  switch (tag.tag) {
    case Tag::kOption:
    case Tag::kOptgroup:
    case Tag::kHr:
      if (current_is(Tag::kOption)) pop_implied();
      if (tag.tag != Tag::kOption && current_is(Tag::kOptgroup)) pop_implied();
      if (tag.tag != Tag::kHr) insert(tag);
      return;
    case Tag::kSelect:
    case Tag::kInput:
    case Tag::kKeygen:
    case Tag::kTextarea:
      if (count(Tag::kSelect) == 0) return;
      close_until(Tag::kSelect, {});
      reset_mode();
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

void HtmlTree::end_in_select(Tag tag) {
  Closing what;
  what.own_end_tag = true;
  switch (tag) {
    case Tag::kOptgroup:
      if (current_is(Tag::kOption) && stack_.size() > 1 && stack_[stack_.size() - 2].tag == Tag::kOptgroup)
        pop_implied();
      if (!current_is(Tag::kOptgroup)) return;
      what.first = stack_.size() - 1;
      close_from(what);
      return;
    case Tag::kOption:
      if (!current_is(Tag::kOption)) return;
      what.first = stack_.size() - 1;
      close_from(what);
      return;
    case Tag::kSelect:
      if (count(Tag::kSelect) == 0) return;
      close_until(Tag::kSelect, what);
      reset_mode();
      return;
    case Tag::kTemplate:
      end_template();
      return;
    default:
      return;
  }
}

}  // namespace kavo
