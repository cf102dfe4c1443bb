#include "suite/filters/mif/mif_colours.h"

#include <cstdio>

#include "formats/mif/tokens.h"
#include "suite/filters/mif/mif_text_place.h"

namespace kavo::mif {
namespace {

constexpr std::string_view kNames[] = {"KAVO untranslated", "KAVO fuzzy", "KAVO exact match", "KAVO translated"};
constexpr std::string_view kOwnFont = "<Font <FTag `'> <FLocked No>>";

std::string colour_statement(std::size_t colour) { return "<FColor `" + std::string(kNames[colour]) + "'>"; }

// Writes statements and sets the colour in each font among them. Returns the last of these fonts as it was, "" for
// none.
std::string_view append_with_colour(std::string_view statements, const std::string& colour, std::string& bytes) {
  std::string_view last_font;
  int depth = 0;
  bool is_in_font = false;
  bool is_in_colour = false;
  std::size_t font = 0;
  MifTokenScanner scanner;
  MifToken token;
  for (std::size_t at = 0; at < statements.size(); at += token.bytes.size()) {
    scanner.next(statements.substr(at), true, token);
    if (token.kind == MifTokenKind::kOpen && ++depth == 1 && token.name() == "Font") {
      is_in_font = true;
      font = at;
    }
    if (is_in_font && depth == 2 && token.kind == MifTokenKind::kOpen) is_in_colour = token.name() == "FColor";
    const bool is_dropped = is_in_colour;
    if (token.kind == MifTokenKind::kClose) {
      --depth;
      if (depth == 1) is_in_colour = false;
      if (is_in_font && depth == 0) {
        bytes += colour;
        is_in_font = false;
        last_font = statements.substr(font, at + 1 - font);
      }
    }
    if (!is_dropped) bytes += token.bytes;
  }
  return last_font;
}

// Writes the colour as cyan, magenta and yellow in percent, without black, as the catalogue writes its plain colours.
void append_colour_definition(std::string_view name, std::uint32_t colour, std::string& bytes) {
  const auto percent = [&](unsigned shift) { return 100.0 - (colour >> shift & 0xFF) * 100.0 / 255.0; };
  char inks[160];
  std::snprintf(inks, sizeof inks, "<ColorCyan %.6f> <ColorMagenta %.6f> <ColorYellow %.6f> <ColorBlack 0.000000>",
                percent(0), percent(8), percent(16));
  bytes.append(" <Color <ColorTag `").append(name).append("'> ").append(inks).append(">");
}

}  // namespace

void append_colour_definitions(std::string_view opening, const SegmentColours& colours, std::string& bytes) {
  const bool has_catalogue = opening == kColourCatalogue;
  bytes += kColourCatalogue;
  for (std::size_t i = 0; i < colours.size(); ++i) append_colour_definition(kNames[i], colours[i], bytes);
  if (!has_catalogue) bytes.append("> ").append(opening);
}

void append_coloured(std::string_view segment, std::size_t colour, std::string_view font, std::string_view separator,
                     std::string& bytes) {
  const std::string statement = colour_statement(colour);
  append_with_colour(font.empty() ? kOwnFont : font, statement, bytes);
  bytes += separator;
  const std::string_view last_font = append_with_colour(segment, statement, bytes);
  bytes += separator;
  if (!last_font.empty()) font = last_font;
  bytes += font.empty() ? kOwnFont : font;
}

}  // namespace kavo::mif
