// Finds the statements of a MIF file that begin with given keywords, and passes on everything between them.
//
// MIF is nested text: `<Name value>`, strings between ` and ', comments from # to the end of the line. A statement
// begins wherever one of the keywords is, at any depth. Counting "<" and ">" outside strings and comments finds its
// end. Backslash escapes are deliberately not handled: ">" does no harm inside a string, and only the closing ' ends a
// string, which may end in an escaped backslash (`\\').
//
// The file is read through a sliding window of bytes. From block to block the scanner keeps the tail that may begin a
// keyword, or the statement being read, up to kLongestStatement.
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

// The openings of the statements to look for; each begins with "<" and has 4 to 32 bytes. `candidate` returns the first
// place in [p, end) where an opening may begin. It is quick, and may stop at a place where none begins. It ignores a
// "<" that is the last byte.
struct StatementKeywords {
  std::span<const std::string_view> openings;
  const char* (*candidate)(const char* p, const char* end) noexcept;
};

class StatementScanner {
 public:
  // A longer statement is passed on unchanged and not delivered: a catalogue that never closes must not load its whole
  // file. The limit has room for a catalogue that fills a table of 32,768 rows with 64 bytes each. The largest
  // statement met in practice has 13 KB.
  static constexpr std::size_t kLongestStatement = 2 * 1024 * 1024;

  // The statements that were not delivered.
  struct Passed {
    std::uint64_t count = 0;
    std::uint64_t first = 0;       // byte position of the first one
    bool first_is_closed = false;  // false: the file ended inside it
  };

  // Opens `path` at its beginning. The constructor and ReadNextStatement throw `failure` when the file cannot be opened
  // or read. `progress` is borrowed and may be nullptr.
  StatementScanner(std::u16string_view path, const StatementKeywords& keywords, ProgressEvent* progress);
  // Sets where text that is passed on goes. Before, it goes nowhere.
  void output(PendingFile& output) { output_ = &output; }

  // Delivers the next complete statement and writes through what is before it. False at the end of the file. If the
  // file ends inside a statement, that has been written through, too.
  bool ReadNextStatement();

  // The statement read last, from its "<" to its ">". Valid until the next ReadNextStatement.
  std::string_view statement() const { return reader_.window().substr(0, statement_size_); }
  // The index of the keyword that it begins with.
  std::size_t opening() const { return opening_; }
  // Writes text unchanged to the output, if there is one.
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
