#include "suite/filters/script/tag_placeholders.h"

#include <algorithm>

#include "formats/html/elements.h"
#include "formats/html/marker_reader.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/filters/document_facts.h"

namespace kavo::script {

TagPlaceholders::TagPlaceholders(const ConversionSettings& settings, const TextCoding& coding)
    : attributes_(settings.options) {
  const std::u16string page = to_utf16(fact(settings.options, kCompanion));
  if (!page.empty() && ports().files->info(page)) page_.emplace(page, coding);
}

bool TagPlaceholders::holds(std::uint64_t number) {
  for (html::PageToken token; page_ && reached_ < number;) {
    if (!page_->scanner.next(token)) {
      page_.reset();
      break;
    }
    if (token.bytes.find(html::placeholder::kMarker) != std::string_view::npos) add(token);
  }
  in_tags_.erase(in_tags_.begin(), in_tags_.lower_bound(number));
  return in_tags_.contains(number);
}

void TagPlaceholders::add(const html::PageToken& token) {
  const html::Element& element = html::find_element(token.name);
  const html::StartTag tag{token, element, page_->scanner.attributes()};
  for (std::size_t at = token.bytes.find(html::placeholder::kMarker); at != std::string_view::npos;
       at = token.bytes.find(html::placeholder::kMarker, at + 1)) {
    const std::uint64_t number = html::placeholder_number(token.bytes.substr(at));
    if (number == 0) continue;
    reached_ = std::max(reached_, number);
    const bool is_read =
        token.kind != html::TokenKind::kStartTag ||
        std::ranges::any_of(tag.attributes, [&](const html::AttributeSpan& attribute) {
          return attribute.value <= at && at < attribute.value_end && !attributes_.read_name(tag, attribute).empty();
        });
    if (!is_read) in_tags_.insert(number);
  }
}

}  // namespace kavo::script
