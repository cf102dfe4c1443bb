#include "suite/filters/html/text_attributes.h"

#include <algorithm>
#include <iterator>

#include "suite/filters/script/script_rules.h"

namespace kavo::html {
namespace {

// Attributes that people read, and the element in which they do ("" for any).
struct ReadAttribute {
  std::string_view name;
  std::string_view element;
};
constexpr ReadAttribute kReadAttributes[] = {
    {"alt", ""},
    {"title", ""},
    {"placeholder", ""},
    {"aria-label", ""},
    {"aria-description", ""},
    {"aria-placeholder", ""},
    {"aria-roledescription", ""},
    {"aria-valuetext", ""},
    {"label", "option"},
    {"label", "optgroup"},
    {"label", "track"},
    {"label", "menu"},
    {"label", "menuitem"},
    {"summary", "table"},
    {"abbr", "th"},
    {"standby", "object"},
};
// Types of "input" whose value is a caption or the initial text of a field ("" for no type).
constexpr std::string_view kReadTypes[] = {"submit", "button", "reset", "text", "search", ""};
// Values of "name" or "property" of a tag "meta" whose content people read.
constexpr std::string_view kReadMeta[] = {"description",    "keywords",      "og:title",
                                          "og:description", "twitter:title", "twitter:description"};
// Attributes of tag library tags, whose names hold a colon. Only values that are words count: many are keys of
// messages.
constexpr std::string_view kLibraryAttributes[] = {"label",   "caption", "header",   "heading", "tooltip",
                                                   "summary", "message", "confirm",  "text",    "description",
                                                   "default", "footer",  "emptytext"};
constexpr std::string_view kLibraryButtons[] = {"submit", "button", "reset", "cancel", "commandbutton"};

template <std::size_t kSize>
bool is_one_of(const std::string_view (&names)[kSize], std::string_view name) {
  return std::any_of(std::begin(names), std::end(names), [&](std::string_view row) { return equal_name(row, name); });
}

template <std::size_t kSize>
std::string_view same_of(const std::string_view (&names)[kSize], std::string_view name) {
  for (const std::string_view row : names)
    if (equal_name(row, name)) return row;
  return {};
}

// Accepts an attribute of a library's tag if its value is meant for people, not the key of a message or the name of a
// property.
std::string_view read_in_library(const StartTag& tag, std::string_view name, std::string_view value) {
  const std::size_t colon = tag.token.name.find(':');
  if (colon == std::string_view::npos || value.find('<') != std::string_view::npos) return {};
  std::string_view read = same_of(kLibraryAttributes, name);
  if (equal_name(name, "value") && is_one_of(kLibraryButtons, tag.token.name.substr(colon + 1))) read = "value";
  if (read.empty()) return {};
  const script::Looks looks = script::look_at(value);
  return looks.look >= script::Look::kWord ? read : std::string_view();
}

}  // namespace

const AttributeSpan* StartTag::find(std::string_view name) const {
  for (const AttributeSpan& attribute : attributes)
    if (equal_name(token.bytes.substr(attribute.name, attribute.name_end - attribute.name), name)) return &attribute;
  return nullptr;
}

std::string_view StartTag::value(std::string_view name) const {
  const AttributeSpan* const found = find(name);
  return found ? token.bytes.substr(found->value, found->value_end - found->value) : std::string_view();
}

TextAttributes::TextAttributes(const FilterOptions& options) : added_(option_items(options, "html.text-attributes")) {}

std::string_view TextAttributes::read_name(const StartTag& tag, const AttributeSpan& attribute) const {
  const std::string_view bytes = tag.token.bytes;
  const std::string_view name = bytes.substr(attribute.name, attribute.name_end - attribute.name);
  for (const ReadAttribute& row : kReadAttributes)
    if (equal_name(name, row.name) && (row.element.empty() || row.element == tag.element.name)) return row.name;
  for (const std::string& added : added_)
    if (equal_name(name, added)) return added;
  if (tag.element.name == "input" && equal_name(name, "value") && is_one_of(kReadTypes, tag.value("type")))
    return "value";
  if (tag.element.name == "meta" && equal_name(name, "content") &&
      (is_one_of(kReadMeta, tag.value("name")) || is_one_of(kReadMeta, tag.value("property"))))
    return "content";
  return read_in_library(tag, name, bytes.substr(attribute.value, attribute.value_end - attribute.value));
}

}  // namespace kavo::html
