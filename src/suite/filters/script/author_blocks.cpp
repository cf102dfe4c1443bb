#include "suite/filters/script/author_blocks.h"

#include <algorithm>

#include "formats/script/token.h"
#include "platform/ports.h"

namespace kavo::script {
namespace {

// How many bytes of a block are looked for.
constexpr std::size_t kEnough = 1024;

}  // namespace

AuthorBlocks::AuthorBlocks(const ConversionSettings& settings) {
  if (!settings.author_document.empty() && ports().files->info(settings.author_document))
    page_.emplace(settings.author_document);
}

std::int64_t AuthorBlocks::line_of(std::string_view block) {
  if (!page_ || block.empty()) return 0;
  const std::string_view wanted = block.substr(0, kEnough);
  for (;;) {
    const std::size_t found = page_->window().find(wanted);
    if (found != std::string_view::npos) {
      pass(found);
      const std::int64_t line = line_;
      pass(wanted.size());
      return line;
    }
    const std::size_t kept = std::min(page_->window().size(), wanted.size() - 1);
    pass(page_->window().size() - kept);
    if (page_->more()) continue;
    page_.reset();
    return 0;
  }
}

// Each CR LF, LF or CR ends a line.
void AuthorBlocks::pass(std::size_t size) {
  for (const char c : page_->window().substr(0, size)) {
    if (ends_line(c) && !(c == '\n' && last_ == '\r')) ++line_;
    last_ = c;
  }
  page_->consume(size);
}

}  // namespace kavo::script
