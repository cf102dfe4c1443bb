#include "suite/components/tud_document.h"

#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/filters/filter.h"

namespace kavo {
namespace {

constexpr std::int32_t kDone = 0;
constexpr std::int32_t kFailed = 1;

// Hosts count segments from 1.
std::size_t index_of(const Value& number) {
  const std::int32_t value = as_number(number);
  if (value < 1) throw failure(FailureNumber::kSubscriptOutOfRange, u"Subscript out of range");
  return static_cast<std::size_t>(value - 1);
}

TranslationStatus status_from(const Value& number) {
  const std::int32_t value = as_number(number);
  if (value < 0 || value > static_cast<std::int32_t>(TranslationStatus::kApproved))
    throw failure(FailureNumber::kInvalidCall, u"A segment's status must be 0 to 5");
  return static_cast<TranslationStatus>(value);
}

// The name of a filter that the suite does not have stays.
std::u16string identifier_of(std::string_view tag) {
  for (const FilterEntry& filter : all_filters())
    if (to_utf8(filter.tag) == tag && !filter.identifier.empty()) return std::u16string(filter.identifier);
  return to_utf16(tag);
}

// Hosts recognise the texts of scripts by the quotes around them. So they get every such text in quotes, whatever its
// delimiters in the script, and may return it with or without them.
std::u16string with_quotes(const std::u16string& text) { return text.empty() ? text : u"\"" + text + u"\""; }

std::u16string_view without_quotes(std::u16string_view text) {
  const bool has_quotes = text.size() >= 2 && text.front() == u'"' && text.back() == u'"';
  return has_quotes ? text.substr(1, text.size() - 2) : text;
}

}  // namespace

TUDDocument::TUDDocument()
    : TableObject({
          {u"Open", MemberKind::kMethod, 1, 1, [this](auto arguments) { return open(arguments); }},
          {u"GetMergeDetails", MemberKind::kMethod, 4, 4, [this](auto arguments) { return merge_details(arguments); }},
          {u"SaveOpenTag", MemberKind::kMethod, 1, 1, [this](auto arguments) { return save_open_tag(arguments); }},
          {u"SaveColouredOpenTag", MemberKind::kMethod, 5, 5,
           [this](auto arguments) { return save_coloured_open_tag(arguments); }},
          {u"LocateSkeleton", MemberKind::kMethod, 2, 2, [this](auto arguments) { return locate_skeleton(arguments); }},
          {u"SegmentCount", MemberKind::kPropertyGet, 0, 0,
           [this](auto) -> Value { return static_cast<std::int32_t>(document().size()); }},
          {u"SetMark", MemberKind::kPropertyGet, 0, 0,
           [this](auto) -> Value { return to_utf16(document().header().set.mark); }},
          {u"SourceChanged", MemberKind::kPropertyGet, 0, 0,
           [this](auto) -> Value { return document().is_source_changed(); }},
          {u"GetSegment", MemberKind::kMethod, 5, 5, [this](auto arguments) { return segment(arguments); }},
          {u"SetSegment", MemberKind::kMethod, 4, 4, [this](auto arguments) { return change_segment(arguments); }},
          {u"Close", MemberKind::kMethod, 0, 0, [this](auto) { return close(); }},
          {u"LastError", MemberKind::kPropertyGet, 0, 0, [this](auto) -> Value { return last_error_; }},
      }) {}

template <class Step>
Value TUDDocument::status_of_step(Step&& step) {
  try {
    step();
    last_error_.clear();
    return kDone;
  } catch (const failure& reason) {
    last_error_ = reason.description();
    return kFailed;
  }
}

BilingualDocument& TUDDocument::document() const {
  if (!document_) throw failure(FailureNumber::kNoObject, u"No document is open");
  return *document_;
}

Value TUDDocument::open(std::span<Argument> arguments) {
  return status_of_step([&] {
    document_.reset();
    document_ = std::make_unique<BilingualDocument>(as_text(arguments[0].value));
  });
}

Value TUDDocument::merge_details(std::span<Argument> arguments) {
  return status_of_step([&] {
    const TudHeader& header = document().header();
    if (header.filter.empty())
      throw failure(FailureNumber::kInvalidCall, u"The document does not say which filter made it");
    arguments[0].value = to_utf16(header.source_format);
    arguments[1].value = document().target_name();
    arguments[2].value = core_file_name(header.skeleton);
    arguments[3].value = identifier_of(header.filter);
  });
}

Value TUDDocument::save_open_tag(std::span<Argument> arguments) {
  return status_of_step([&] { document().save_open_tag(as_text(arguments[0].value)); });
}

Value TUDDocument::save_coloured_open_tag(std::span<Argument> arguments) {
  return status_of_step([&] {
    SegmentColours colours;
    for (std::size_t i = 0; i < colours.size(); ++i)
      colours[i] = static_cast<std::uint32_t>(as_number(arguments[i + 1].value));
    document().save_open_tag(as_text(arguments[0].value), colours);
  });
}

Value TUDDocument::locate_skeleton(std::span<Argument> arguments) {
  return status_of_step([&] {
    const auto skeleton = document().locate_skeleton();
    if (!skeleton)
      throw failure(FailureNumber::kFileNotFound, u"The skeleton of " + document().path() + u" is missing");
    arguments[0].value = skeleton->path;
    arguments[1].value = skeleton->keep;
  });
}

Value TUDDocument::segment(std::span<Argument> arguments) {
  return status_of_step([&] {
    const BilingualSegment segment = document().segment(index_of(arguments[0].value));
    const bool is_script = document().header().datatype == kScriptDatatype;
    arguments[1].value = is_script ? with_quotes(to_host_text(segment.source)) : to_host_text(segment.source);
    arguments[2].value = is_script ? with_quotes(to_host_text(segment.target)) : to_host_text(segment.target);
    arguments[3].value = static_cast<std::int32_t>(segment.status);
    arguments[4].value = static_cast<std::int32_t>(segment.match);
  });
}

Value TUDDocument::change_segment(std::span<Argument> arguments) {
  return status_of_step([&] {
    const std::int32_t match = as_number(arguments[3].value);
    if (match < 0 || match > 100) throw failure(FailureNumber::kInvalidCall, u"The match value must be 0 to 100");
    const std::u16string given = as_text(arguments[1].value);
    const bool is_script = document().header().datatype == kScriptDatatype;
    const std::u16string_view text = is_script ? without_quotes(given) : given;
    document().set_segment(index_of(arguments[0].value), from_host_text(text), status_from(arguments[2].value),
                           static_cast<std::int16_t>(match));
  });
}

Value TUDDocument::close() {
  return status_of_step([&] {
    document().save();
    document_.reset();
  });
}

}  // namespace kavo
