#include "suite/components/filter_catalogue.h"

#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/document/conversion.h"
#include "suite/filters/filter.h"

namespace kavo {
namespace {

constexpr std::int32_t kFound = 1;
constexpr std::int32_t kPastTheLast = 0;
constexpr std::int32_t kNoSettings = 0;

Value enumerate(std::span<Argument> arguments) {
  const std::int32_t index = as_number(arguments[0].value);
  const std::span<const FilterEntry> filters = all_filters();
  if (index < 0 || static_cast<std::size_t>(index) >= filters.size()) return kPastTheLast;
  const FilterEntry& filter = filters[static_cast<std::size_t>(index)];
  arguments[1].value = std::u16string(filter.text);
  arguments[2].value = std::u16string(filter.pattern);
  arguments[3].value = std::u16string(filter.tag);
  arguments[4].value = index + 1;
  return kFound;
}

unsigned code_page_from(const Value& number) {
  const std::int32_t value = as_number(number);
  if (value < 0) throw failure(FailureNumber::kInvalidCall, u"There is no code page with a negative number");
  return static_cast<unsigned>(value);
}

ConversionRequest conversion_from(std::span<Argument> arguments) {
  const Value& segmentation = arguments[8].value;
  if (!is_omitted(segmentation) && !equal_ignoring_ascii_case(as_text(segmentation), u"Paragraph"))
    throw failure(FailureNumber::kInvalidCall, u"Documents are segmented by \"Paragraph\" only");
  ConversionRequest request;
  request.document = as_text(arguments[0].value);
  request.tud = as_text(arguments[1].value);
  request.skeleton = as_text(arguments[2].value);
  request.source_language = as_text(arguments[3].value);
  request.source_code_page = code_page_from(arguments[4].value);
  request.target_language = as_text(arguments[5].value);
  request.target_code_page = code_page_from(arguments[6].value);
  request.filter = as_text(arguments[7].value);
  return request;
}

Value convert(std::span<Argument> arguments, ProgressEvent& progress) {
  return static_cast<std::int32_t>(convert_document(conversion_from(arguments), progress));
}

Value convert_in_set(std::span<Argument> arguments, ProgressEvent& progress) {
  ConversionRequest request = conversion_from(arguments);
  request.mark = to_utf8(as_text(arguments[9].value));
  request.author_document = as_text(arguments[10].value);
  return static_cast<std::int32_t>(convert_document(request, progress));
}

Value create(std::span<Argument> arguments, ProgressEvent& progress) {
  TargetRequest request;
  request.target = as_text(arguments[0].value);
  request.open_tag = as_text(arguments[1].value);
  request.skeleton = as_text(arguments[2].value);
  request.language = as_text(arguments[3].value);
  request.filter = as_text(arguments[4].value);
  create_target(request, progress);
  return Empty{};
}

// None of these filters has anything to set.
Value settings(std::span<Argument> arguments) {
  find_filter(as_text(arguments[0].value));
  return kNoSettings;
}

}  // namespace

FilterCatalogue::FilterCatalogue()
    : TableObject({
          {u"Enumerate", MemberKind::kMethod, 5, 5, enumerate},
          {u"Convert", MemberKind::kMethod, 8, 9, [this](auto arguments) { return convert(arguments, progress_); }},
          {u"ConvertInSet", MemberKind::kMethod, 11, 11,
           [this](auto arguments) { return convert_in_set(arguments, progress_); }},
          {u"CreateTarget", MemberKind::kMethod, 5, 5, [this](auto arguments) { return create(arguments, progress_); }},
          {u"Settings", MemberKind::kMethod, 1, 1, settings},
      }) {}

}  // namespace kavo
