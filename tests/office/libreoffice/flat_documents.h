// Documents of ours in LibreOffice's own XML, put together from their parts.
#pragma once

#include <string>
#include <string_view>

namespace kavo::test {

inline constexpr std::string_view kHead =
    R"(<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
 xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"
 xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0"
 xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0"
 xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0"
 xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0"
 xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0"
 xmlns:presentation="urn:oasis:names:tc:opendocument:xmlns:presentation:1.0"
 xmlns:chart="urn:oasis:names:tc:opendocument:xmlns:chart:1.0"
 xmlns:of="urn:oasis:names:tc:opendocument:xmlns:of:1.2"
 xmlns:xlink="http://www.w3.org/1999/xlink" office:version="1.2" office:mimetype=")";

inline std::string workbook_of(std::string_view sheets, std::string_view styles = {}) {
  return std::string(kHead) + "application/vnd.oasis.opendocument.spreadsheet\"><office:styles><style:style " +
         "style:name=\"Code\" style:family=\"table-cell\"/></office:styles><office:automatic-styles>" +
         "<style:style style:name=\"bold\" style:family=\"text\"><style:text-properties fo:font-weight=\"bold\"/>" +
         "</style:style><style:style style:name=\"hidden\" style:family=\"table\"><style:table-properties "
         "table:display=\"false\"/></style:style>" +
         std::string(styles) + "</office:automatic-styles><office:body><office:spreadsheet>" + std::string(sheets) +
         "</office:spreadsheet></office:body></office:document>";
}

// `style` is "Code", or "" for the usual one.
inline std::string cell(std::string_view text, std::string_view style = {}) {
  const std::string attribute = style.empty() ? "" : "table:style-name=\"" + std::string(style) + "\" ";
  return "<table:table-cell " + attribute + "office:value-type=\"string\"><text:p>" + std::string(text) +
         "</text:p></table:table-cell>";
}

inline std::string sheet(std::string_view name, std::string_view rows, std::string_view attributes = {}) {
  return "<table:table table:name=\"" + std::string(name) + "\" " + std::string(attributes) + ">" + std::string(rows) +
         "</table:table>";
}

inline std::string row(std::string_view cells) {
  return "<table:table-row>" + std::string(cells) + "</table:table-row>";
}

inline std::string presentation_of(std::string_view slides) {
  return std::string(kHead) + "application/vnd.oasis.opendocument.presentation\"><office:automatic-styles>" +
         "<style:style style:name=\"bold\" style:family=\"text\"><style:text-properties fo:font-weight=\"bold\"/>" +
         "</style:style></office:automatic-styles><office:body><office:presentation>" + std::string(slides) +
         "</office:presentation></office:body></office:document>";
}

inline std::string text_box(std::string_view paragraphs) {
  return "<draw:frame svg:x=\"2cm\" svg:y=\"2cm\" svg:width=\"10cm\" svg:height=\"3cm\"><draw:text-box>" +
         std::string(paragraphs) + "</draw:text-box></draw:frame>";
}

// A chart with titles, of the numbers in A1:A1 of its sheet.
inline std::string chart(std::string_view title, std::string_view x, std::string_view y) {
  const auto titled = [](std::string_view text) {
    return "<chart:title><text:p>" + std::string(text) + "</text:p></chart:title>";
  };
  return "<draw:frame svg:x=\"8cm\" svg:y=\"2cm\" svg:width=\"9cm\" svg:height=\"6cm\"><draw:object>" +
         std::string(kHead) +
         "application/vnd.oasis.opendocument.chart\"><office:body><office:chart><chart:chart svg:width=\"9cm\" "
         "svg:height=\"6cm\" chart:class=\"chart:bar\">" +
         titled(title) + "<chart:plot-area><chart:axis chart:dimension=\"x\">" + titled(x) +
         "</chart:axis><chart:axis chart:dimension=\"y\">" + titled(y) +
         "</chart:axis><chart:series chart:values-cell-range-address=\"One.D1:One.D1\"/></chart:plot-area>"
         "</chart:chart></office:chart></office:body></office:document></draw:object></draw:frame>";
}

}  // namespace kavo::test
