// The insertion modes of the HTML standard's tree construction, as far as they open and close elements: which mode a
// token meets, and the modes before, around and after the body.
//
// A mode either handles a token or ends, and then the next mode sees the same token. end_mode() is that step for tokens
// of all kinds.
#include "formats/html/attributes.h"
#include "formats/html/tree.h"

namespace kavo {

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
    if (tag.tag != Tag::kSvg || current.tag != Tag::kAnnotationXml || current.space != Space::kMathMl)
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
    close_from({.first = i, .own_end_tag = true});
    return;
  }
  end_outside_foreign(name, tag);
}

void HtmlTree::blank() { text(Text::kBlank); }
void HtmlTree::character() { text(Text::kOther); }
void HtmlTree::null() { text(Text::kNull); }

// Ends the current mode. The token that ended it has not been handled yet.
void HtmlTree::end_mode() {
  switch (mode_) {
    case Mode::kInitial:
      mode_ = Mode::kBeforeHtml;
      return;
    case Mode::kBeforeHtml:
      insert_implied(Tag::kHtml);
      mode_ = Mode::kBeforeHead;
      return;
    case Mode::kBeforeHead:
      insert_implied(Tag::kHead);
      head_seen_ = true;
      mode_ = Mode::kInHead;
      return;
    case Mode::kInHead:
      pop();
      mode_ = Mode::kAfterHead;
      return;
    case Mode::kInHeadNoscript:
      pop();
      mode_ = Mode::kInHead;
      return;
    case Mode::kAfterHead:
      insert_implied(Tag::kBody);
      mode_ = Mode::kInBody;
      return;
    case Mode::kInColumnGroup:
      close_top();
      mode_ = Mode::kInTable;
      return;
    default:  // after the body
      mode_ = Mode::kInBody;
      return;
  }
}

void HtmlTree::text(Text kind) {
  closed_own_ = closed_implied_ = reopened_ = forgot_ = false;
  if (in_foreign()) {
    if (kind == Text::kOther) frameset_ok_ = false;
    return;
  }
  for (;; end_mode()) {
    switch (mode_) {
      case Mode::kInitial:
      case Mode::kBeforeHtml:
      case Mode::kBeforeHead:
      case Mode::kInHead:
      case Mode::kInHeadNoscript:
      case Mode::kAfterHead:
        if (kind == Text::kBlank) return;
        continue;
      case Mode::kAfterBody:
      case Mode::kAfterAfterBody:
        if (kind != Text::kBlank) continue;
        reconstruct();
        return;
      case Mode::kInColumnGroup:
        if (kind == Text::kBlank || !current_is(Tag::kColgroup)) return;
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
  for (;; end_mode()) {
    switch (mode_) {
      case Mode::kInitial:
        continue;
      case Mode::kBeforeHtml:
        if (tag.tag != Tag::kHtml) continue;
        insert(tag);
        mode_ = Mode::kBeforeHead;
        return;
      case Mode::kBeforeHead:
        if (tag.tag == Tag::kHtml) return;
        if (tag.tag != Tag::kHead) continue;
        insert(tag);
        head_seen_ = true;
        mode_ = Mode::kInHead;
        return;
      case Mode::kInHead:
        if (tag.tag == Tag::kHtml || tag.tag == Tag::kHead || start_in_head(tag)) return;
        if (tag.tag != Tag::kNoscript) continue;
        insert(tag);
        mode_ = Mode::kInHeadNoscript;
        return;
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
            continue;
        }
      case Mode::kAfterHead:
        if (tag.tag == Tag::kHtml || tag.tag == Tag::kHead || start_in_head(tag)) return;
        if (tag.tag == Tag::kBody) {
          insert(tag);
          frameset_ok_ = false;
          mode_ = Mode::kInBody;
          return;
        }
        if (tag.tag != Tag::kFrameset) continue;
        insert(tag);
        mode_ = Mode::kInFrameset;
        return;
      case Mode::kInBody:
        start_in_body(tag);
        return;
      case Mode::kText:
        return;
      case Mode::kInTable:
        start_in_table(tag);
        return;
      case Mode::kInCaption:
        start_in_caption(tag);
        return;
      case Mode::kInColumnGroup:
        if (tag.tag == Tag::kTemplate) start_in_head(tag);
        if (tag.tag == Tag::kHtml || tag.tag == Tag::kCol || tag.tag == Tag::kTemplate || !current_is(Tag::kColgroup))
          return;
        continue;
      case Mode::kInTableBody:
        start_in_table_body(tag);
        return;
      case Mode::kInRow:
        start_in_row(tag);
        return;
      case Mode::kInCell:
        start_in_cell(tag);
        return;
      case Mode::kInSelectInTable:
      case Mode::kInSelect:
        start_in_select(tag);
        return;
      case Mode::kInTemplate:
        if (start_in_head(tag)) return;
        mode_ = template_modes_.back() = mode_inside_template(tag.tag);
        start_outside_foreign(tag);
        return;
      case Mode::kAfterBody:
      case Mode::kAfterAfterBody:
        if (tag.tag == Tag::kHtml) return;
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
  for (;; end_mode()) {
    switch (mode_) {
      case Mode::kInitial:
        continue;
      case Mode::kBeforeHtml:
      case Mode::kBeforeHead:
        if (!opens_body && tag != Tag::kHead) return;
        continue;
      case Mode::kInHead:
        if (tag == Tag::kTemplate) end_template();
        if (tag == Tag::kHead) end_mode();
        if (!opens_body) return;
        continue;
      case Mode::kInHeadNoscript:
        if (tag == Tag::kNoscript) end_mode();
        if (tag != Tag::kBr) return;
        continue;
      case Mode::kAfterHead:
        if (tag == Tag::kTemplate) end_template();
        if (!opens_body) return;
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
        end_in_caption(name, tag);
        return;
      case Mode::kInColumnGroup:
        if (tag == Tag::kTemplate) end_template();
        if (tag == Tag::kTemplate || tag == Tag::kCol || !current_is(Tag::kColgroup)) return;
        if (tag != Tag::kColgroup) continue;
        close_top({.own_end_tag = true});
        mode_ = Mode::kInTable;
        return;
      case Mode::kInTableBody:
        end_in_table_body(name, tag);
        return;
      case Mode::kInRow:
        end_in_row(name, tag);
        return;
      case Mode::kInCell:
        end_in_cell(name, tag);
        return;
      case Mode::kInSelectInTable:
      case Mode::kInSelect:
        end_in_select(name, tag);
        return;
      case Mode::kInTemplate:
        if (tag == Tag::kTemplate) end_template();
        return;
      case Mode::kAfterBody:
        if (tag != Tag::kHtml) continue;
        mode_ = Mode::kAfterAfterBody;
        return;
      case Mode::kAfterAfterBody:
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
  bool leaves = has_trait(tag.tag, kLeavesForeign);
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

}  // namespace kavo
