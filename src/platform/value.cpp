// Conversions of automation values, with the results that automation hosts give (OLE's VariantChangeType in the
// invariant language): "True" and "False" are never translated and the decimal point is ".".
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>
#include <string>

#include "platform/automation.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/trimmed.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

[[noreturn]] void throw_type_mismatch() { throw failure(FailureNumber::kTypeMismatch, u"Type mismatch"); }

// A decimal number, with sign, fraction and exponent; nothing when the text is anything else.
std::optional<double> parse_number(std::u16string_view text) {
  std::string ascii = to_utf8(trimmed(text, u" \t"));
  if (ascii.find_first_not_of("0123456789+-.eE") != std::string::npos) return std::nullopt;  // also "inf" and "nan"
  std::string_view digits = ascii;
  if (digits.starts_with("+")) {
    digits.remove_prefix(1);
    if (digits.starts_with("-")) return std::nullopt;
  }
  double number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error == std::errc::result_out_of_range) throw failure(FailureNumber::kOverflow, u"Overflow");
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return number;
}

std::int32_t to_number(double number) {
  const double rounded = std::nearbyint(number);  // halves to even in the default rounding mode
  if (!(rounded >= std::numeric_limits<std::int32_t>::min() && rounded <= std::numeric_limits<std::int32_t>::max()))
    throw failure(FailureNumber::kOverflow, u"Overflow");
  return static_cast<std::int32_t>(rounded);
}

std::u16string number_text(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%.15G", number);
  for (char& c : text)
    if (c == ',') c = '.';  // a host process may have set a locale
  return to_utf16(text);
}

struct ToNumber {
  std::int32_t operator()(const Empty&) const { return 0; }
  std::int32_t operator()(Omitted) const { throw_type_mismatch(); }
  std::int32_t operator()(bool flag) const { return flag ? -1 : 0; }
  std::int32_t operator()(std::int16_t number) const { return number; }
  std::int32_t operator()(std::int32_t number) const { return number; }
  std::int32_t operator()(double number) const { return to_number(number); }
  std::int32_t operator()(const std::u16string& text) const {
    const std::optional<double> number = parse_number(text);
    if (!number) throw_type_mismatch();
    return to_number(*number);
  }
  std::int32_t operator()(const ObjectRef&) const { throw_type_mismatch(); }
};

struct ToFlag {
  bool operator()(const Empty&) const { return false; }
  bool operator()(Omitted) const { throw_type_mismatch(); }
  bool operator()(bool flag) const { return flag; }
  bool operator()(std::int16_t number) const { return number != 0; }
  bool operator()(std::int32_t number) const { return number != 0; }
  bool operator()(double number) const { return number != 0; }
  bool operator()(const std::u16string& text) const {
    if (equal_ignoring_case(text, u"True")) return true;
    if (equal_ignoring_case(text, u"False")) return false;
    const std::optional<double> number = parse_number(text);
    if (!number) throw_type_mismatch();
    return *number != 0;
  }
  bool operator()(const ObjectRef&) const { throw_type_mismatch(); }
};

struct ToText {
  std::u16string operator()(const Empty&) const { return {}; }
  std::u16string operator()(Omitted) const { throw_type_mismatch(); }
  std::u16string operator()(bool flag) const { return flag ? u"True" : u"False"; }
  std::u16string operator()(std::int16_t number) const { return formatted(u"{}", number); }
  std::u16string operator()(std::int32_t number) const { return formatted(u"{}", number); }
  std::u16string operator()(double number) const { return number_text(number); }
  std::u16string operator()(const std::u16string& text) const { return text; }
  std::u16string operator()(const ObjectRef&) const { throw_type_mismatch(); }
};

}  // namespace

std::int32_t as_number(const Value& value) { return std::visit(ToNumber{}, value); }

bool as_flag(const Value& value) { return std::visit(ToFlag{}, value); }

std::u16string as_text(const Value& value) { return std::visit(ToText{}, value); }

ObjectRef as_object(const Value& value) {
  const ObjectRef* object = std::get_if<ObjectRef>(&value);
  if (!object) throw_type_mismatch();
  if (!*object) throw failure(FailureNumber::kNoObject, u"Object variable not set");
  return *object;
}

bool is_omitted(const Value& value) { return std::holds_alternative<Omitted>(value); }

}  // namespace kavo
