// Records which bytes of an output were copied from which bytes of its input, so that a place in the output can be
// reported as a place in the document that the author has.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace kavo {

class CopyTrail {
 public:
  // Adds a run of `size` copied bytes. Positions are 0-based and ascend in the output. A run that continues the last
  // one takes no memory.
  void copied(std::uint64_t input, std::uint64_t output, std::uint64_t size) {
    if (size == 0) return;
    if (!runs_.empty() && runs_.back().input_end() == input && runs_.back().output_end() == output)
      runs_.back().size += size;
    else
      runs_.push_back({input, output, size});
  }
  void clear() { runs_.clear(); }

  // The position in the input of the byte at `output`. For a byte that is not a copy: the position behind the last
  // copied byte before it, 0 when there is none.
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
