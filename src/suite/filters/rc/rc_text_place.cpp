#include "suite/filters/rc/rc_text_place.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "formats/text/text_coding.h"
#include "platform/case_fold.h"
#include "platform/unicode.h"
#include "suite/languages/language_tags.h"

namespace kavo::rc {
namespace {

constexpr char kSeparator = '\n';

// The parts between separators; the last one may hold separators itself.
std::vector<std::string_view> parts_of(std::string_view text, std::size_t count) {
  std::vector<std::string_view> parts;
  while (parts.size() + 1 < count) {
    const std::size_t end = text.find(kSeparator);
    parts.push_back(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  parts.push_back(text);
  return parts;
}

unsigned to_number(std::string_view text) {
  unsigned number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

// Identifiers of languages without a region that nevertheless have a sublanguage.
struct UsualRegion {
  LanguageId id;
  LanguageId usual;
};
constexpr UsualRegion kUsualRegions[] = {
    {0x0004, 0x0804},                    // Chinese: simplified, in China
    {0x7804, 0x0804}, {0x7C04, 0x0404},  // traditional, in Taiwan
    {0x7C14, 0x0414},                    // Norwegian Bokmål
    {0x7814, 0x0814},                    // Nynorsk
    {0x7C1A, 0x241A},                    // Serbian, Latin in Serbia
    {0x701A, 0x241A}, {0x6C1A, 0x281A},  // Cyrillic
    {0x781A, 0x141A},                    // Bosnian, Latin
    {0x641A, 0x201A},                    // Cyrillic
    {0x681A, 0x141A}, {0x742C, 0x082C},  // Azerbaijani, Cyrillic
    {0x782C, 0x042C},                    // Latin
    {0x7843, 0x0843},                    // Uzbek, Cyrillic
    {0x7C43, 0x0443},                    // Latin
    {0x7C5D, 0x085D},                    // Inuktitut, Latin
};

}  // namespace

bool is_ascii(std::string_view bytes) {
  return std::ranges::none_of(bytes, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

std::string access_key_of(std::string_view utf8) {
  std::string key;
  for (std::size_t at = utf8.find('&'); at < utf8.size(); at = utf8.find('&', at)) {
    const std::string_view next = utf8.substr(at + 1);
    const std::size_t length = utf8_character_length(next);
    at += 1 + length;
    if (length == 0 || next.front() == '&' || next.front() == ' ') continue;
    if (!key.empty()) return {};
    key = to_utf8(upper_case(to_utf16(next.substr(0, length))));
  }
  return key;
}

std::string to_context(const RcTextPlace& place) {
  std::string context;
  if (place.is_wide) context += 'L';
  if (place.is_glued) context += 'g';
  if (place.begins_with_macro) context += 'b';
  if (place.ends_with_macro) context += 'e';
  for (const std::string& part : {std::to_string(place.code_page), std::to_string(place.dialog), place.key, place.tail})
    context += kSeparator + part;
  return context;
}

RcTextPlace to_place(std::string_view context) {
  const auto parts = parts_of(context, 5);
  const auto has = [&](char flag) { return parts[0].find(flag) != std::string_view::npos; };
  return {.is_wide = has('L'),
          .is_glued = has('g'),
          .begins_with_macro = has('b'),
          .ends_with_macro = has('e'),
          .code_page = to_number(parts[1]),
          .dialog = to_number(parts[2]),
          .key = std::string(parts[3]),
          .tail = std::string(parts[4])};
}

std::string to_data(const RcFacts& facts) {
  std::string data = std::to_string(facts.target_code_page);
  (data += kSeparator) += facts.has_cr_lf ? "crlf" : "lf";
  for (const std::string& text : {facts.font.size, facts.font.charset, facts.font.face}) (data += kSeparator) += text;
  return data;
}

RcFacts to_facts(std::string_view data) {
  const auto parts = parts_of(data, 5);
  return {
      to_number(parts[0]), parts[1] == "crlf", {std::string(parts[4]), std::string(parts[2]), std::string(parts[3])}};
}

LanguageId with_usual_region(LanguageId id) {
  for (const UsualRegion& row : kUsualRegions)
    if (row.id == id) return row.usual;
  // The sublanguages 30 and 31 stand for scripts without a region.
  const bool is_without_region = sublanguage_of(id) == 0 || sublanguage_of(id) >= 30;
  constexpr LanguageId kDefaultSublanguage = 1 << 10;
  return is_without_region && id != 0 ? static_cast<LanguageId>(primary_of(id) | kDefaultSublanguage) : id;
}

std::optional<LanguageId> resource_language(std::string_view suite_code) {
  constexpr std::int32_t kNoIdentifier = 0x1000;
  const LanguageRow* const row = find_language(to_utf16(suite_code));
  if (!row || row->lcid == kNoIdentifier) return std::nullopt;
  return with_usual_region(static_cast<LanguageId>(row->lcid));
}

std::string language_text(const std::optional<LanguageId>& id) {
  if (!id) return "an unknown language";
  const LanguageRow* found = nullptr;
  for (const LanguageRow& row : language_rows()) {
    if (row.lcid > 0xFFFF || with_usual_region(static_cast<LanguageId>(row.lcid)) != with_usual_region(*id)) continue;
    // The shorter code, without a region, is the one that people use.
    if (!found || row.code.size() < found->code.size()) found = &row;
  }
  return found ? to_utf8(found->code) : "language " + language_words(*id, false);
}

}  // namespace kavo::rc
