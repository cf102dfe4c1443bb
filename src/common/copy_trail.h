// Which bytes of an output are copies of which bytes of the input that it was made of: what tells the place of a text
// in the document that its author has.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace kavo {

class CopyTrail {
 public:
  // The next copied bytes: places ascend in the output, 0-based. Runs that go on where the last one ends take no
  // memory.
  void copied(std::uint64_t input, std::uint64_t output, std::uint64_t size) {
    if (size == 0) return;
    if (!runs_.empty() && runs_.back().input_end() == input && runs_.back().output_end() == output)
      runs_.back().size += size;
    else
      runs_.push_back({input, output, size});
  }
  void clear() { runs_.clear(); }

  // The place in the input of the output's byte at `output`. Of a byte that is no copy, the place behind the last
  // copied one before it; 0 when there is none.
  std::uint64_t input_of(std::uint64_t output) const {
    const auto behind = std::ranges::upper_bound(runs_, output, {}, &Run::output);
    if (behind == runs_.begin()) return 0;
    const Run& run = *(behind - 1);
    return run.input + std::min(output - run.output, run.size);
  }

  struct Run {
    std::uint64_t input;
    std::uint64_t output;
    std::uint64_t size;
    std::uint64_t input_end() const { return input + size; }
    std::uint64_t output_end() const { return output + size; }
  };
  const std::vector<Run>& runs() const { return runs_; }

 private:
  std::vector<Run> runs_;
};

}  // namespace kavo
