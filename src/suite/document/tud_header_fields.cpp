#include "suite/document/tud_header_fields.h"

#include <charconv>
#include <type_traits>
#include <utility>

#include "suite/document/file_uri.h"

namespace kavo {
namespace {

// Returns 0 for a text that is not a number.
template <class Number>
void read_number(std::string_view text, Number& number) {
  number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
}

// A row for a member of the header or of its set.
template <auto kMember, class Header>
auto& fact(Header& header) {
  if constexpr (std::is_invocable_v<decltype(kMember), TudHeader&>)
    return header.*kMember;
  else
    return header.set.*kMember;
}

template <auto kMember>
constexpr HeaderField name_field(std::string_view name) {
  return {name, true, [](const TudHeader& header) { return readable_name(fact<kMember>(header)); },
          [](TudHeader& header, std::string_view value) { fact<kMember>(header) = value; }};
}

template <auto kMember>
constexpr HeaderField number_field(std::string_view name) {
  return {name, false, [](const TudHeader& header) { return std::to_string(fact<kMember>(header)); },
          [](TudHeader& header, std::string_view value) { read_number(value, fact<kMember>(header)); }};
}

// This fact is stated only together with the name of the author's document.
constexpr HeaderField author_checksum_field() {
  HeaderField field = number_field<&SetMark::author_checksum>("author-checksum");
  field.text = [](const TudHeader& header) {
    return header.set.author_document.empty() ? std::string() : std::to_string(header.set.author_checksum);
  };
  return field;
}

// In the order in which they are written.
constexpr HeaderField kFields[] = {
    name_field<&TudHeader::source_format>("source-format"),
    name_field<&TudHeader::filter>("filter"),
    name_field<&TudHeader::source_language>("source-language"),
    name_field<&TudHeader::target_language>("target-language"),
    number_field<&TudHeader::source_code_page>("source-code-page"),
    number_field<&TudHeader::target_code_page>("target-code-page"),
    number_field<&TudHeader::checksum>("checksum"),
    name_field<&SetMark::mark>("mark"),
    name_field<&SetMark::author_document>("author-document"),
    author_checksum_field(),
};

}  // namespace

std::span<const HeaderField> header_fields() { return kFields; }

}  // namespace kavo
