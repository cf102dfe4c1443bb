#include "html/repair/repaired_page.h"

#include <algorithm>
#include <cstddef>

#include "common/block_reader.h"
#include "platform/failure.h"

namespace kavo {

void RepairedPage::copy_until(std::uint64_t position) {
  if (position <= copied_) return;
  if (output_ != nullptr) output_->write(scanner_.view(copied_, position));
  if (trail_) trail_->copied(copied_, copied_ + growth_, position - copied_);
  copied_ = position;
}

void RepairedPage::insert(std::uint64_t position, std::string_view text) {
  copy_until(position);
  write_repair(text);
  inserted_ += text.size();
  growth_ += text.size();
}

void RepairedPage::replace(std::uint64_t begin, std::uint64_t end, std::string_view text) {
  copy_until(begin);
  write_repair(text);
  copied_ = end;
  growth_ += text.size() - (end - begin);
}

void RepairedPage::write_repair(std::string_view text) {
  if (repairs_++ == 0 && open_) begin_output();
  if (output_ != nullptr) output_->write(text);
}

// Reads the bytes before the first repair once more.
void RepairedPage::begin_output() {
  output_ = &open_();
  BlockReader page(output_->final_path());
  for (std::uint64_t left = copied_; left != 0;) {
    if (!page.more()) throw failure(FailureNumber::kDeviceError, u"The page became shorter while it was read");
    const std::string_view block =
        page.window().substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(left, page.window().size())));
    output_->write(block);
    left -= block.size();
    page.consume(block.size());
  }
}

}  // namespace kavo
