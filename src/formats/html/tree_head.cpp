// Tree construction, continued: the head, raw text and templates.
#include "formats/html/attributes.h"
#include "formats/html/tree.h"

namespace kavo {

// Head, raw text, templates.

void HtmlTree::start_raw(const StartTag& tag, Content content) {
  insert(tag);
  content_ = content;
  original_mode_ = mode_;
  mode_ = Mode::kText;
}

// Handles a start tag that belongs in the head wherever it is. False for any other.
bool HtmlTree::start_in_head(const StartTag& tag) {
  if (!has_trait(tag.tag, kHeadContent)) return false;
  switch (tag.tag) {
    case Tag::kTitle:
      start_raw(tag, Content::kRcdata);
      break;
    case Tag::kNoframes:
    case Tag::kStyle:
      start_raw(tag, Content::kRawText);
      break;
    case Tag::kScript:
      start_raw(tag, Content::kScript);
      break;
    case Tag::kTemplate:
      insert(tag);
      add_marker();
      frameset_ok_ = false;
      mode_ = Mode::kInTemplate;
      template_modes_.push_back(Mode::kInTemplate);
      break;
    default:  // without content
      break;
  }
  return true;
}

void HtmlTree::end_template() {
  if (count(Tag::kTemplate) == 0) return;
  close_until(Tag::kTemplate, {.own_end_tag = true, .forgets = true});
  clear_to_marker();
  template_modes_.pop_back();
  reset_mode();
}

HtmlTree::Mode HtmlTree::mode_inside_template(Tag first) {
  switch (first) {
    case Tag::kCol:
      return Mode::kInColumnGroup;
    case Tag::kTr:
      return Mode::kInTableBody;
    case Tag::kTd:
    case Tag::kTh:
      return Mode::kInRow;
    default:
      return has_trait(first, kTableChild) ? Mode::kInTable : Mode::kInBody;
  }
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

}  // namespace kavo
