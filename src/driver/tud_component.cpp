#include "driver/tud_component.h"

#include "platform/ports.h"

namespace kavo {
namespace {

constexpr std::int32_t kDone = 0;

Argument text(std::u16string_view value) { return by_value(std::u16string(value)); }
Argument text_back() { return by_reference(std::u16string()); }

}  // namespace

TudComponent::TudComponent() : document_(ports().automation->create(u"K19Suite.TUDDocument")) {}

bool TudComponent::open(std::u16string_view name) {
  Argument arguments[] = {text(name)};
  return call(u"Open", arguments);
}

std::optional<MergeDetails> TudComponent::merge_details() {
  Argument arguments[] = {text_back(), text_back(), text_back(), text_back()};
  if (!call(u"GetMergeDetails", arguments)) return std::nullopt;
  return MergeDetails{as_text(arguments[0].value), as_text(arguments[1].value), as_text(arguments[2].value),
                      as_text(arguments[3].value)};
}

bool TudComponent::save_open_tag(std::u16string_view name, const std::optional<StatusColours>& colours) {
  if (!colours) {
    Argument arguments[] = {text(name)};
    return call(u"SaveOpenTag", arguments);
  }
  Argument arguments[] = {text(name), by_value((*colours)[0]), by_value((*colours)[1]), by_value((*colours)[2]),
                          by_value((*colours)[3])};
  return call(u"SaveColouredOpenTag", arguments);
}

std::optional<LocatedSkeleton> TudComponent::locate_skeleton() {
  Argument arguments[] = {text_back(), by_reference(true)};
  if (!call(u"LocateSkeleton", arguments)) return std::nullopt;
  return LocatedSkeleton{as_text(arguments[0].value), as_flag(arguments[1].value)};
}

std::int32_t TudComponent::segment_count() { return as_number(document_->get(u"SegmentCount")); }

std::optional<TudComponent::SegmentTexts> TudComponent::segment(std::int32_t number) {
  Argument arguments[] = {by_value(number), text_back(), text_back(), by_reference(std::int32_t{0}),
                          by_reference(std::int32_t{0})};
  if (!call(u"GetSegment", arguments)) return std::nullopt;
  return SegmentTexts{as_text(arguments[1].value), as_text(arguments[2].value)};
}

bool TudComponent::set_segment(std::int32_t number, std::u16string_view target, std::int32_t status,
                               std::int32_t match) {
  Argument arguments[] = {by_value(number), text(target), by_value(status), by_value(match)};
  return call(u"SetSegment", arguments);
}

std::u16string TudComponent::set_mark() {
  return document_->has_member(u"SetMark") ? as_text(document_->get(u"SetMark")) : u"";
}

bool TudComponent::has_source_changed() {
  return document_->has_member(u"SourceChanged") && as_flag(document_->get(u"SourceChanged"));
}

bool TudComponent::close() { return call(u"Close", {}); }

std::u16string TudComponent::reason() const {
  std::u16string told;
  if (document_->has_member(u"LastError")) told = as_text(document_->get(u"LastError"));
  return told.empty() ? std::u16string(last_member_) : told;
}

bool TudComponent::call(std::u16string_view member, std::span<Argument> arguments) {
  last_member_ = member;
  return as_number(document_->invoke(member, arguments)) == kDone;
}

}  // namespace kavo
