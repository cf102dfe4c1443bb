// Finds the statements of a MIF file that begin with given keywords and passes everything between them on.
//
// MIF is a nested text: `<Name value>`, strings between ` and ', comments from # to the end of the line. A statement
// begins wherever one of the keywords stands, at any depth; its end is found by counting "<" and ">" outside strings
// and comments. There is deliberately no handling of backslash escapes: ">" is harmless inside a string, and a string
// may end in an escaped backslash (`\\'), so only the closing ' counts.
//
// The document is read as a sliding window of bytes. What is carried from block to block is the tail that may hold
// the beginning of a keyword, or the statement being read, up to kLongestStatement.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "common/block_reader.h"
#include "common/pending_file.h"
#include "common/progress_event.h"
#include "mif/mif_coding.h"

namespace kavo {

// The openings of statements to look for; each begins with "<" and is 4 to 32 bytes long. `candidate` finds the
// first place in [p, end) where one may begin, quickly and perhaps in vain; a "<" that is the last byte does not
// count.
struct StatementKeywords {
  std::span<const std::string_view> openings;
  const char* (*candidate)(const char* p, const char* end) noexcept;
};

class StatementScanner {
 public:
  // A longer statement is passed on unchanged and not delivered, so that a catalogue that never closes does not load
  // its whole file: room for a catalogue that fills a table of 32,768 rows with 64 bytes each. The largest statement
  // met in practice has 13 KB.
  static constexpr std::size_t kLongestStatement = 2 * 1024 * 1024;

  // A statement that was not delivered.
  struct Passed {
    std::uint64_t count = 0;
    std::uint64_t first = 0;       // byte position of the first one
    bool first_is_closed = false;  // false: the file ended inside it
  };

  // Reads `path` from its beginning; `progress` may be nullptr. Throws `failure` when the file cannot be opened, as
  // ReadNextStatement does when it cannot be read on. `progress` is not owned.
  StatementScanner(std::u16string_view path, const StatementKeywords& keywords, ProgressEvent* progress);
  // What receives the text that is passed on; at first nothing does.
  void output(PendingFile& output) { output_ = &output; }

  // Delivers the next complete statement; what stands before it is written through. False when the file is exhausted;
  // a statement that the file ends inside of has then been written through as well.
  bool ReadNextStatement();

  // The statement just read, from its "<" to its ">". Valid until the next ReadNextStatement.
  std::string_view statement() const { return reader_.window().substr(0, statement_size_); }
  // Which of the keywords it begins with: an index into their openings.
  std::size_t opening() const { return opening_; }
  // Writes text, unchanged, to the output if there is one.
  void WriteThrough(std::string_view text) {
    if (output_ != nullptr) output_->write(text);
  }

  const MifCoding& coding() const { return coding_; }
  const Passed& passed() const { return passed_; }

 private:
  enum class State {
    kOpening,  // after "<": "#" is text
    kBetween,  // after ">": "#" begins a comment
    kString,
    kComment,
  };

  bool ReadChunk();
  bool find_opening();
  bool find_end();
  bool is_opening(std::string_view text);
  std::size_t skip(std::string_view text, std::size_t from);
  void pass_on(std::size_t count);

  BlockReader reader_;
  StatementKeywords keywords_;
  PendingFile* output_ = nullptr;
  ProgressEvent* progress_;
  MifCoding coding_;
  Passed passed_;
  std::size_t statement_size_ = 0;
  std::size_t opening_ = 0;
  State state_ = State::kOpening;
  State outside_ = State::kOpening;  // the state that a string returns to
  std::size_t depth_ = 0;
};

}  // namespace kavo
