// Writes a made document to standard output: make_document page|html|mif|rtf|letter|rc|text MEGABYTES
//
// "rtf" is mostly pictures, "letter" RTF without any.
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>

#include "mif_maker.h"
#include "page_maker.h"
#include "rc_maker.h"
#include "rtf_maker.h"

namespace {

// Paragraphs of a few dozen words, a line each, with blank lines between.
std::string make_text(std::size_t bytes) {
  constexpr std::string_view kWords[] = {"order",  "the",    "customer", "\"basket\"", "of",     "caf\xC3\xA9",
                                         "number", "before", "delivery", "and",        "prices", "today"};
  std::string text;
  for (unsigned paragraph = 1; text.size() < bytes; ++paragraph) {
    text += "Paragraph " + std::to_string(paragraph);
    for (unsigned word = 0; word < 12 + paragraph % 29; ++word)
      (text += ' ') += kWords[(paragraph * 7 + word * word * 5) % std::size(kWords)];
    text += ".\r\n\r\n";
  }
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view kind = argc == 3 ? argv[1] : "";
  const std::size_t bytes = argc == 3 ? static_cast<std::size_t>(std::atof(argv[2]) * 1e6) : 0;
  std::string text;
  if (kind == "page") text = kavo::bench::PageMaker(kavo::bench::PageKind::kServer).make(bytes);
  if (kind == "html") text = kavo::bench::PageMaker(kavo::bench::PageKind::kPlain).make(bytes);
  if (kind == "mif") text = kavo::bench::MifMaker().make(bytes);
  if (kind == "rtf") text = kavo::bench::RtfMaker().make(bytes);
  if (kind == "letter") text = kavo::bench::RtfMaker(0).make(bytes);
  if (kind == "rc") text = kavo::bench::RcMaker().make(bytes);
  if (kind == "text") text = make_text(bytes);
  if (text.empty()) {
    std::fprintf(stderr, "usage: make_document page|html|mif|rtf|letter|rc|text MEGABYTES\n");
    return 2;
  }
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() ? 0 : 1;
}
