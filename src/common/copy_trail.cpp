#include "common/copy_trail.h"

#include <algorithm>

namespace kavo {

void CopyTrail::copied(std::uint64_t input, std::uint64_t output, std::uint64_t size) {
  if (size == 0) return;
  if (count_ != 0 && last_.input_end() == input && last_.output_end() == output) {
    last_.size += size;
    return;
  }
  if (count_ != 0) code_last();
  ++count_;
  last_ = {input, output, size};
}

// Writes three numbers, seven bits in each byte: the distance from the run before in the input (which may be negative),
// the distance in the output, and the size.
void CopyTrail::code_last() {
  if ((count_ - 1) % kRunsOfAnchor == 0) anchors_.push_back({before_, coded_.size(), last_.output});
  const std::uint64_t step = last_.input - before_.input_end();
  code(step << 1 ^ (step >> 63 != 0 ? ~std::uint64_t{0} : 0));
  code(last_.output - before_.output_end());
  code(last_.size);
  before_ = last_;
}

void CopyTrail::code(std::uint64_t number) {
  for (; number >= 0x80; number >>= 7) coded_.push_back(static_cast<unsigned char>(number & 0x7F) | 0x80);
  coded_.push_back(static_cast<unsigned char>(number));
}

std::uint64_t CopyTrail::Reader::number() {
  std::uint64_t value = 0;
  for (unsigned shift = 0;; shift += 7) {
    const unsigned char byte = trail_.coded_[at_++];
    value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
    if (byte < 0x80) return value;
  }
}

bool CopyTrail::Reader::next(Run& run) {
  if (run_ >= trail_.count_) return false;
  if (++run_ == trail_.count_) {
    run = trail_.last_;
    return true;
  }
  const std::uint64_t step = number();
  run.input = last_.input_end() + (step >> 1 ^ ((step & 1) != 0 ? ~std::uint64_t{0} : 0));
  run.output = last_.output_end() + number();
  run.size = number();
  last_ = run;
  return true;
}

void CopyTrail::Reader::go_near(std::uint64_t output) {
  const auto behind = std::ranges::upper_bound(trail_.anchors_, output, {}, &Anchor::output);
  const std::size_t anchor =
      behind == trail_.anchors_.begin() ? 0 : static_cast<std::size_t>(behind - trail_.anchors_.begin()) - 1;
  run_ = anchor * kRunsOfAnchor;
  at_ = anchor < trail_.anchors_.size() ? trail_.anchors_[anchor].at : 0;
  last_ = anchor < trail_.anchors_.size() ? trail_.anchors_[anchor].before : Run();
}

std::uint64_t CopyTrail::input_of(std::uint64_t output) const {
  Reader reader(*this);
  reader.go_near(output);
  Run found;
  bool has_found = false;
  for (Run run; reader.next(run) && run.output <= output;) {
    found = run;
    has_found = true;
  }
  return has_found ? found.input + std::min(output - found.output, found.size) : 0;
}

}  // namespace kavo
