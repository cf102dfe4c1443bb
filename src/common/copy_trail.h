// Records which bytes of an output were copied from which bytes of its input, so that a place in the output can be
// reported as a place in the document that the author has.
//
// A page of a million placeholders has a million runs. They are kept as differences, a few bytes each. Every 64th one
// is kept whole, so that reading can begin there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace kavo {

class CopyTrail {
 public:
  struct Run {
    std::uint64_t input = 0;
    std::uint64_t output = 0;
    std::uint64_t size = 0;
    std::uint64_t input_end() const { return input + size; }
    std::uint64_t output_end() const { return output + size; }
  };

  // Adds a run of `size` copied bytes. Positions are 0-based and ascend in the output. A run that continues the last
  // one takes no memory.
  void copied(std::uint64_t input, std::uint64_t output, std::uint64_t size);
  void clear() { *this = CopyTrail(); }
  std::size_t size() const { return count_; }  // runs

  // The position in the input of the byte at `output`. For a byte that was not copied: the position after the last
  // copied byte before it, 0 when there is none.
  std::uint64_t input_of(std::uint64_t output) const;

  // Goes from run to run; the trail must stay as it is.
  class Reader {
   public:
    // From the first run on.
    explicit Reader(const CopyTrail& trail) : trail_(trail) {}
    // Reads the next run. False after the last one.
    bool next(Run& run);
    // Goes to a run that begins at or before `output`, at most 64 runs before it.
    void go_near(std::uint64_t output);

   private:
    std::uint64_t number();

    const CopyTrail& trail_;
    std::size_t run_ = 0;  // the run that next() reads
    std::size_t at_ = 0;   // in coded_
    Run last_;
  };

 private:
  static constexpr std::size_t kRunsOfAnchor = 64;
  // Where reading can begin at a certain run.
  struct Anchor {
    Run before;          // the run before it
    std::size_t at = 0;  // in coded_
    std::uint64_t output = 0;
  };
  void code_last();
  void code(std::uint64_t number);

  std::vector<Anchor> anchors_;
  std::deque<unsigned char> coded_;  // of every run but the last one
  std::size_t count_ = 0;
  Run last_;    // may still grow
  Run before_;  // the run before it
};

}  // namespace kavo
