// The body of a page: what its start and end tags open and close, by the HTML standard's rules "in body".
#include "formats/html/attributes.h"
#include "formats/html/tree.h"

namespace kavo {

bool HtmlTree::is_hidden_input(const StartTag& tag) {
  const auto type = attribute_value(tag.text, "type");
  return type && equals_ignoring_case(*type, "hidden");
}

void HtmlTree::start_in_body(const StartTag& tag) {
  switch (tag.tag) {
    case Tag::kA:
      close_anchor(tag);
      start_formatting(tag);
      return;
    case Tag::kNobr:
      reconstruct();
      if (in_scope(Tag::kNobr)) end_formatting(tag.name, Tag::kNobr, true);
      start_formatting(tag);
      return;
    case Tag::kH1:
    case Tag::kH2:
    case Tag::kH3:
    case Tag::kH4:
    case Tag::kH5:
    case Tag::kH6:
      close_p();
      // Only the current element counts. Had it been closed by a tag of its own, this must not close another heading
      // below it.
      if (stack_.back().space == Space::kHtml && has_trait(stack_.back().tag, kHeading))
        close_top({.checks_again = true});
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
    case Tag::kHr:
      close_p();
      frameset_ok_ = false;
      return;
    case Tag::kRb:
    case Tag::kRtc:
      if (in_scope(Tag::kRuby)) close_implied_ends();
      insert(tag);
      return;
    case Tag::kRp:
    case Tag::kRt:
      if (in_scope(Tag::kRuby)) close_implied_ends(Tag::kRtc);
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
    case Tag::kBody:
      if (stack_.size() > 1 && stack_[1].tag == Tag::kBody && count(Tag::kTemplate) == 0) frameset_ok_ = false;
      return;
    case Tag::kFrameset:
      if (!frameset_ok_ || stack_.size() < 2 || stack_[1].tag != Tag::kBody) return;
      while (stack_.size() > 1) pop();
      note_closed();
      insert(tag);
      mode_ = Mode::kInFrameset;
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
    case Tag::kButton:
      close_in_scope(Tag::kButton, Scope::kDefault, {.reopening = true, .checks_again = true});
      reconstruct();
      insert(tag);
      frameset_ok_ = false;
      return;
    case Tag::kApplet:
    case Tag::kMarquee:
    case Tag::kObject:
      reconstruct();
      insert(tag);
      add_marker();
      frameset_ok_ = false;
      return;
    case Tag::kSelect:
      reconstruct();
      insert(tag);
      frameset_ok_ = false;
      mode_ = mode_ == Mode::kInBody ? Mode::kInSelect : Mode::kInSelectInTable;
      return;
    case Tag::kOptgroup:
    case Tag::kOption:
      if (current_is(Tag::kOption)) close_top({.reopening = true});
      reconstruct();
      insert(tag);
      return;
    case Tag::kP:
      close_p();
      insert(tag);
      return;
    case Tag::kFrame:
    case Tag::kHead:
    case Tag::kHtml:
    case Tag::kParam:
    case Tag::kSource:
    case Tag::kTrack:
      return;
    default:
      break;
  }
  if (has_trait(tag.tag, kTableChild) || start_in_head(tag)) return;
  if (has_trait(tag.tag, kFormatting)) {
    start_formatting(tag);
  } else if (has_trait(tag.tag, kBlockEnd)) {
    close_p();
    insert(tag);
  } else {
    reconstruct();
    insert(tag);
  }
}

void HtmlTree::end_in_body(std::uint64_t name, Tag tag) {
  switch (tag) {
    case Tag::kBody:
    case Tag::kHtml:
      if (!in_scope(Tag::kBody)) return;
      closed_own_ = true;
      mode_ = tag == Tag::kBody ? Mode::kAfterBody : Mode::kAfterAfterBody;
      return;
    case Tag::kP:
      // Without an open paragraph, this tag makes an empty one and closes it.
      close_in_scope(Tag::kP, Scope::kButton, {.own_end_tag = true});
      return;
    case Tag::kLi:
      close_in_scope(Tag::kLi, Scope::kListItem, {.own_end_tag = true});
      return;
    case Tag::kDd:
    case Tag::kDt:
      close_in_scope(tag, Scope::kDefault, {.own_end_tag = true});
      return;
    case Tag::kH1:
    case Tag::kH2:
    case Tag::kH3:
    case Tag::kH4:
    case Tag::kH5:
    case Tag::kH6: {
      const std::size_t heading = find_heading(stack_.size());
      if (heading == kNone) return;
      // The end tag of one heading closes any other, too.
      const bool own = stack_[heading].tag == tag;
      close_from({.first = heading, .own_end_tag = own, .checks_again = !own});
      return;
    }
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
      if (close_in_scope(tag, Scope::kDefault, {.own_end_tag = true, .forgets = true})) clear_to_marker();
      return;
    case Tag::kTemplate:
      end_template();
      return;
    default:
      if (has_trait(tag, kFormatting))
        end_formatting(name, tag, false);
      else if (has_trait(tag, kBlockEnd))
        close_in_scope(tag, Scope::kDefault, {.own_end_tag = true});
      else
        end_any_other(name, tag);
      return;
  }
}

void HtmlTree::close_p(bool reopening) {
  close_in_scope(Tag::kP, Scope::kButton, {.reopening = reopening, .checks_again = true});
}

void HtmlTree::start_list_item(const StartTag& tag) {
  frameset_ok_ = false;
  for (std::size_t i = landmarks_.size(); i-- > 0; ++steps_) {
    const OpenElement& element = stack_[landmarks_[i]];
    const bool html = element.space == Space::kHtml;
    const bool same =
        tag.tag == Tag::kLi ? element.tag == Tag::kLi : element.tag == Tag::kDd || element.tag == Tag::kDt;
    if (html && same) {
      close_from({.first = landmarks_[i]});
      break;
    }
    const bool passed = html && (element.tag == Tag::kAddress || element.tag == Tag::kDiv || element.tag == Tag::kP);
    if (is_special(element) && !passed) break;
  }
  close_p();
  insert(tag);
}

void HtmlTree::end_form() {
  if (count(Tag::kTemplate) != 0) {
    close_in_scope(Tag::kForm, Scope::kDefault, {.own_end_tag = true});
    return;
  }
  const std::uint64_t form = form_;
  form_ = 0;
  if (form == 0 || !in_scope(Tag::kForm)) return;
  close_implied_ends();
  for (std::size_t i = stack_.size(); i-- > 0; ++steps_) {
    if (stack_[i].number != form) continue;
    if (i + 1 == stack_.size()) {
      close_top({.own_end_tag = true});
    } else {
      // Elements inside it stay open.
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
      close_from({.first = i, .own_end_tag = true, .order_only = true});
      return;
    }
    if (is_special(stack_[i])) return;
  }
}

}  // namespace kavo
