#include "suite/components/filter_catalogue.h"

#include <algorithm>

#include "interchange/office_interchange.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/document/conversion.h"
#include "suite/filters/document_facts.h"
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

ScriptSettings script_settings(const FilterOptions& options) {
  const auto words = [&](std::string_view key) {
    std::string list;
    for (const std::string& word : option_items(options, key)) (list += word) += ' ';
    return list;
  };
  ScriptSettings settings;
  settings.texts = words("scripts.texts");
  settings.never = words("scripts.never");
  const std::string_view offer = option_text(options, "scripts.offer");
  if (offer == "all") settings.offer = ScriptSettings::Offer::kAll;
  if (offer == "none") settings.offer = ScriptSettings::Offer::kNone;
  return settings;
}

// The options that the user has stored, replaced by those that were chosen for this run. Throws `failure` 5 for an
// invalid choice.
void choose_options(ConversionRequest& request, FilterOptions chosen) {
  request.options = std::move(chosen);
  request.options.merge(stored_filter_options());
  for (const auto& [key, value] : request.options)
    if (const std::string problem = option_problem(key, value); !problem.empty())
      throw failure(FailureNumber::kInvalidCall, to_utf16(problem));
  request.scripts = script_settings(request.options);
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

// "name=value" on each line.
FilterOptions options_from(const Value& text) {
  FilterOptions options;
  const std::string lines = to_utf8(as_text(text));
  for (std::size_t at = 0; at < lines.size();) {
    const std::size_t end = std::min(lines.find('\n', at), lines.size());
    const std::string line = lines.substr(at, end - at);
    if (const std::size_t equals = line.find('='); equals != std::string::npos)
      options[line.substr(0, equals)] = line.substr(equals + 1);
    at = end + 1;
  }
  return options;
}

// These filters have no settings dialog.
Value settings(std::span<Argument> arguments) {
  find_filter(as_text(arguments[0].value));
  return kNoSettings;
}

}  // namespace

FilterCatalogue::FilterCatalogue()
    : TableObject({
          {u"Enumerate", MemberKind::kMethod, 5, 5, enumerate},
          {u"Convert", MemberKind::kMethod, 8, 9, [this](auto arguments) { return convert(arguments); }},
          {u"ConvertInSet", MemberKind::kMethod, 11, 12, [this](auto arguments) { return convert_in_set(arguments); }},
          {u"CreateTarget", MemberKind::kMethod, 5, 5, [this](auto arguments) { return create(arguments); }},
          {u"Messages", MemberKind::kPropertyGet, 0, 0, [this](auto) { return Value(messages_); }},
          {u"Settings", MemberKind::kMethod, 1, 1, settings},
      }) {}

FilterCatalogue::~FilterCatalogue() { release_office_interchange(); }

MessageTaker FilterCatalogue::new_messages() {
  messages_.clear();
  return [this](const Message& message) {
    if (!messages_.empty()) messages_ += u'\n';
    messages_ += message.text;
  };
}

Value FilterCatalogue::convert(std::span<Argument> arguments) {
  ConversionRequest request = conversion_from(arguments);
  choose_options(request, {});
  request.tell = new_messages();
  return static_cast<std::int32_t>(convert_document(request, progress_));
}

Value FilterCatalogue::convert_in_set(std::span<Argument> arguments) {
  ConversionRequest request = conversion_from(arguments);
  request.mark = to_utf8(as_text(arguments[9].value));
  request.author_document = as_text(arguments[10].value);
  FilterOptions options = is_omitted(arguments[11].value) ? FilterOptions() : options_from(arguments[11].value);
  FilterOptions facts;
  for (const std::string_view name : {kCompanion, kAuthorLines})
    if (auto fact = options.extract(std::string(name))) facts.insert(std::move(fact));
  choose_options(request, std::move(options));
  request.options.merge(facts);
  request.tell = new_messages();
  return static_cast<std::int32_t>(convert_document(request, progress_));
}

Value FilterCatalogue::create(std::span<Argument> arguments) {
  TargetRequest request;
  request.target = as_text(arguments[0].value);
  request.open_tag = as_text(arguments[1].value);
  request.skeleton = as_text(arguments[2].value);
  request.language = as_text(arguments[3].value);
  request.filter = as_text(arguments[4].value);
  request.tell = new_messages();
  create_target(request, progress_);
  return Empty{};
}

}  // namespace kavo
