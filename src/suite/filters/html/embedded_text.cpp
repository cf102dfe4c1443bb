#include "suite/filters/html/embedded_text.h"

#include <algorithm>
#include <optional>

#include "formats/html/elements.h"
#include "formats/html/entities.h"
#include "formats/script/page_scripts.h"
#include "suite/filters/html/typed_bracket.h"

namespace kavo::html {
namespace {

constexpr char kEmbedded = 'e';  // no PlaceKind

// Attributes whose value is an address that a browser goes to.
constexpr std::string_view kAddresses[] = {"href", "action", "formaction", "src", "data", "location"};
constexpr std::string_view kScriptScheme = "javascript:";

bool is_event(std::string_view name) {
  return name.size() > 3 && equal_name(name.substr(0, 2), "on") &&
         std::ranges::all_of(name, [](char c) { return script::is_letter(c); });
}

bool begins_with(std::string_view text, std::string_view lower_case) {
  return script::equal_word(text.substr(0, lower_case.size()), lower_case);
}

// True for "%20" and the like: what such an address means is known only when it is used.
bool has_percent_escape(std::string_view text) {
  for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1))
    if (at + 2 < text.size() && script::is_hex_digit(text[at + 1]) && script::is_hex_digit(text[at + 2])) return true;
  return false;
}

// The script of a value; nothing for an address of another kind.
std::optional<script::Piece> script_in(std::string_view text, bool is_address, bool is_basic) {
  script::Piece piece;
  piece.language = is_basic ? script::Language::kVbScript : script::Language::kJavaScript;
  piece.on_server = false;
  piece.element = 1;
  piece.end = text.size();
  while (piece.begin < piece.end && is_html_space(text[piece.begin])) ++piece.begin;
  text.remove_prefix(piece.begin);
  constexpr std::string_view kBasicScheme = "vbscript:";
  if (begins_with(text, kScriptScheme)) {
    piece.language = script::Language::kJavaScript;
    piece.begin += kScriptScheme.size();
  } else if (begins_with(text, kBasicScheme)) {
    piece.language = script::Language::kVbScript;
    piece.begin += kBasicScheme.size();
  } else if (is_address) {
    return std::nullopt;
  }
  if (is_address && has_percent_escape(text)) return std::nullopt;
  return piece;
}

}  // namespace

std::string to_context(const EmbeddedPlace& place) {
  std::string context{kEmbedded, static_cast<char>(place.embedding), place.quote == 0 ? '-' : place.quote};
  return context += place.script;
}

bool read_context(std::string_view context, EmbeddedPlace& place) {
  if (context.size() < 3 || context[0] != kEmbedded) return false;
  place = {static_cast<Embedding>(context[1]), context[2] == '-' ? '\0' : context[2], context.substr(3)};
  return true;
}

EmbeddedValue read_embedded(std::string_view bytes, bool has_references, const TextCoding& coding) {
  EmbeddedValue value;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::string_view rest = bytes.substr(at);
    const std::size_t from = value.text.size();
    std::size_t length = 1;
    Reference reference;
    if (const std::size_t code = rest.front() == '<' && has_references ? server_code_length(rest) : 0; code != 0) {
      length = code;
      value.text += rest.substr(0, code);
      value.server_code.push_back({from, value.text.size()});
    } else if (has_references && rest.front() == '&' &&
               !(reference = read_reference(rest.substr(0, kLongestReference), true)).text.empty()) {
      length = reference.length;
      value.text += reference.text;
    } else {
      bool is_valid = false;
      length = coding.decode_one(rest, value.text, is_valid);
      if (!is_valid) {
        value.is_valid = false;
        value.text.resize(from);
        value.text += rest.substr(0, length);
      }
    }
    value.begin.resize(value.text.size(), static_cast<std::uint32_t>(at));
    at += length;
    value.end.resize(value.text.size(), static_cast<std::uint32_t>(at));
  }
  return value;
}

void append_embedded(std::string_view script, const EmbeddedPlace& place, std::string& utf8) {
  if (place.embedding == Embedding::kServer) {
    utf8 += script;
    return;
  }
  for (std::size_t at = 0; at < script.size(); ++at) {
    const char c = script[at];
    switch (c) {
      case '&':
        utf8 += "&amp;";
        break;
      case '<':
        utf8 += reference_to_bracket(script.substr(at));
        break;
      case '>':
        utf8 += "&gt;";
        break;
      case '\t':
      case '\n':
      case '\r':
        utf8 += "&#" + std::to_string(static_cast<int>(c)) + ";";
        break;
      case '"':
        utf8 += place.quote == '\'' ? "\"" : "&quot;";
        break;
      case '\'':
        utf8 += place.quote == '"' ? "'" : "&#39;";
        break;
      case ' ':
        utf8 += place.quote != 0 ? " " : "&#32;";
        break;
      case '%':
        utf8 += place.embedding == Embedding::kAddress ? "%25" : "%";
        break;
      default:
        utf8 += c;
    }
  }
}

// Reads a value that is one piece of script, apart from what the server writes into it.
std::vector<script::Unit> EmbeddedTexts::units_of_script(const EmbeddedValue& value, const script::Piece& all) const {
  std::vector<script::Piece> pieces;
  script::Piece piece = all;
  for (const auto& code : value.server_code) {
    if (code.begin < all.begin) return {};
    piece.end = code.begin;
    pieces.push_back(piece);
    piece.begin = code.end;
    piece.goes_on = true;
  }
  piece.end = all.end;
  pieces.push_back(piece);
  return units_of_pieces(value.text, pieces);
}

std::vector<script::Unit> EmbeddedTexts::units_of_pieces(std::string_view text,
                                                         std::span<const script::Piece> pieces) const {
  const TextCoding utf8(kUtf8CodePage);
  script::ScriptUnits finder(text, utf8, rules_);
  finder.follow(pieces);
  finder.turn();
  std::vector<script::Unit> units;
  finder.units(pieces, units);
  return units;
}

std::vector<script::Unit> EmbeddedTexts::units_of_page(const EmbeddedValue& value) const {
  std::vector<script::Item> items;
  std::size_t from = 0;
  const auto literal_up_to = [&](std::size_t end) {
    if (end > from) items.push_back({.is_literal = true, .begin = from, .end = end});
  };
  for (const auto& code : value.server_code) {
    literal_up_to(code.begin);
    items.push_back({.begin = code.begin, .end = code.end, .is_inserted = true});
    from = code.end;
  }
  literal_up_to(value.text.size());
  const TextCoding utf8(kUtf8CodePage);
  std::vector<script::Unit> units;
  script::ScriptUnits(value.text, utf8, rules_).markup(items, units);
  return units;
}

// Texts in operands of other texts are left out.
void EmbeddedTexts::add(const EmbeddedValue& value, std::size_t begin, Embedding embedding, char quote,
                        std::vector<script::Unit> units, std::vector<EmbeddedText>& texts) const {
  std::size_t done = 0;
  for (script::Unit& unit : units) {
    if (unit.begin < done) continue;
    done = unit.end;
    const auto to_tag = [&](auto& part) {
      part.end = begin + value.end[part.end - 1];
      part.begin = begin + value.begin[part.begin];
    };
    for (script::UnitPart& part : unit.parts) to_tag(part);
    to_tag(unit);
    // PHP in the page itself must not hold what looks like a placeholder.
    unit.in_element = embedding == Embedding::kServer;
    texts.push_back({embedding, quote, std::move(unit), {}});
  }
}

std::vector<EmbeddedText> EmbeddedTexts::of_attribute(std::string_view tag, const AttributeSpan& attribute,
                                                      bool is_basic) const {
  const std::string_view name = tag.substr(attribute.name, attribute.name_end - attribute.name);
  const std::string_view bytes = tag.substr(attribute.value, attribute.value_end - attribute.value);
  const bool is_page = equal_name(name, "srcdoc");
  const bool is_address = std::ranges::any_of(kAddresses, [&](auto row) { return equal_name(name, row); });
  if (offer_ == ScriptSettings::Offer::kNone || (!is_page && !is_address && !is_event(name))) return {};
  // A script without a quote has no text, and few addresses have one.
  if (!is_page && bytes.find_first_of("'\"`&") == std::string_view::npos) return {};
  const EmbeddedValue value = read_embedded(bytes, true, coding_);
  if (!value.is_valid || value.text.empty()) return {};
  std::vector<script::Unit> units;
  if (is_page)
    units = units_of_page(value);
  else if (const auto piece = script_in(value.text, is_address, is_basic))
    units = units_of_script(value, *piece);
  const Embedding embedding = is_page ? Embedding::kPage : is_address ? Embedding::kAddress : Embedding::kEvent;
  std::vector<EmbeddedText> texts;
  add(value, attribute.value, embedding, attribute.quote, std::move(units), texts);
  for (EmbeddedText& text : texts)
    for (const char c : name) text.attribute += script::lower(c);
  return texts;
}

std::vector<EmbeddedText> EmbeddedTexts::of_server_code(std::string_view block) const {
  std::vector<EmbeddedText> texts;
  if (!block.starts_with("<?") || offer_ == ScriptSettings::Offer::kNone) return texts;
  const EmbeddedValue value = read_embedded(block, false, coding_);
  if (!value.is_valid) return texts;
  std::vector<script::Piece> pieces;
  script::PageScripts(script::Language::kPhp).add_block(value.text, 0, value.text.size(), pieces);
  add(value, 0, Embedding::kServer, 0, units_of_pieces(value.text, pieces), texts);
  return texts;
}

}  // namespace kavo::html
