#include "driver/tud_component.h"

#include "driver/step_failures.h"
#include "platform/ports.h"

namespace kavo {
namespace {

constexpr std::int32_t kDone = 0;

Argument text(std::u16string_view value) { return by_value(std::u16string(value)); }
Argument text_back() { return by_reference(std::u16string()); }

}  // namespace

TudComponent::TudComponent() : document_(ports().automation->create(u"K19Suite.TUDDocument")) {}

void TudComponent::open(std::u16string_view name) {
  Argument arguments[] = {text(name)};
  call(u"Open", arguments);
}

MergeDetails TudComponent::merge_details() {
  Argument arguments[] = {text_back(), text_back(), text_back(), text_back()};
  call(u"GetMergeDetails", arguments);
  return MergeDetails{as_text(arguments[0].value), as_text(arguments[1].value), as_text(arguments[2].value),
                      as_text(arguments[3].value)};
}

void TudComponent::save_open_tag(std::u16string_view name, const std::optional<StatusColours>& colours) {
  if (!colours) {
    Argument arguments[] = {text(name)};
    return call(u"SaveOpenTag", arguments);
  }
  Argument arguments[] = {text(name), by_value((*colours)[0]), by_value((*colours)[1]), by_value((*colours)[2]),
                          by_value((*colours)[3])};
  call(u"SaveColouredOpenTag", arguments);
}

LocatedSkeleton TudComponent::locate_skeleton() {
  Argument arguments[] = {text_back(), by_reference(true)};
  call(u"LocateSkeleton", arguments);
  LocatedSkeleton skeleton{as_text(arguments[0].value), as_flag(arguments[1].value)};
  if (skeleton.path.empty()) refuse(u"LocateSkeleton");
  return skeleton;
}

std::int32_t TudComponent::segment_count() { return as_number(document_->get(u"SegmentCount")); }

TudComponent::SegmentTexts TudComponent::segment(std::int32_t number) {
  Argument arguments[] = {by_value(number), text_back(), text_back(), by_reference(std::int32_t{0}),
                          by_reference(std::int32_t{0})};
  call(u"GetSegment", arguments);
  return SegmentTexts{as_text(arguments[1].value), as_text(arguments[2].value)};
}

void TudComponent::set_segment(std::int32_t number, std::u16string_view target, std::int32_t status,
                               std::int32_t match) {
  Argument arguments[] = {by_value(number), text(target), by_value(status), by_value(match)};
  call(u"SetSegment", arguments);
}

std::u16string TudComponent::set_mark() {
  return document_->has_member(u"SetMark") ? as_text(document_->get(u"SetMark")) : u"";
}

bool TudComponent::has_source_changed() {
  return document_->has_member(u"SourceChanged") && as_flag(document_->get(u"SourceChanged"));
}

void TudComponent::close() { call(u"Close", {}); }

void TudComponent::refuse(std::u16string_view member) const {
  std::u16string reason;
  if (document_->has_member(u"LastError")) reason = as_text(document_->get(u"LastError"));
  throw refusal(reason.empty() ? std::u16string(member) : reason);
}

void TudComponent::call(std::u16string_view member, std::span<Argument> arguments) {
  if (as_number(document_->invoke(member, arguments)) != kDone) refuse(member);
}

}  // namespace kavo
