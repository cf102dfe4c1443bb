// Writes a made document to standard output: make_document page|html|mif|rtf MEGABYTES
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "mif_maker.h"
#include "page_maker.h"
#include "rtf_maker.h"

int main(int argc, char** argv) {
  const std::string_view kind = argc == 3 ? argv[1] : "";
  const std::size_t bytes = argc == 3 ? static_cast<std::size_t>(std::atof(argv[2]) * 1e6) : 0;
  std::string text;
  if (kind == "page") text = kavo::bench::PageMaker(kavo::bench::PageKind::kServer).make(bytes);
  if (kind == "html") text = kavo::bench::PageMaker(kavo::bench::PageKind::kPlain).make(bytes);
  if (kind == "mif") text = kavo::bench::MifMaker().make(bytes);
  if (kind == "rtf") text = kavo::bench::RtfMaker().make(bytes);
  if (text.empty()) {
    std::fprintf(stderr, "usage: make_document page|html|mif|rtf MEGABYTES\n");
    return 2;
  }
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() ? 0 : 1;
}
