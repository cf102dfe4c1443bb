// Proves that a rebuilt script file holds the scripts of its source.
//
// Both files are cut into tokens side by side. Outside the expressions whose text was translated, every token must be
// that of the source. Inside such an expression every operand must come back exactly once; apart from operands it may
// hold only literals and expressions for characters that no literal can hold. So no part of a translation becomes
// script, even if a segment was written wrongly.
//
// The files pass through block by block. Only the current block is kept, once for each file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/script/script_reader.h"
#include "suite/filters/filter.h"

namespace kavo::script {

class ScriptProof {
 public:
  // `server` is the language of the page's server blocks until it declares another one. `source` and `target` are the
  // codings of the two files and must outlive the proof.
  ScriptProof(Language server, const TextCoding& source, const TextCoding& target);

  // Takes the parts of both files in order; then call finish(). Both throw `failure` 5, which names the place of the
  // translation that would change a script.
  void add(const WrittenPart& part);
  void finish() { prove_blocks(true); }

 private:
  struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  // A segment whose translation was written, and where it is in the texts of the two sides.
  struct Change {
    Hole place;  // its number, line and column
    bool holds_segments = false;
    Range source;
    Range target;
  };
  // One of the two files.
  struct Side {
    Side(Range Change::*of_change, Language server, const TextCoding& of_file)
        : range(of_change), coding(of_file), reader(server, of_file) {}
    // Goes to the block whose marker stands at the beginning of [from, to).
    void begin(std::size_t from, std::size_t to);
    void next() { has = reader.next(read); }
    std::string_view bytes(std::size_t from, std::size_t to) const {
      return std::string_view(text).substr(from, to - from);
    }
    std::size_t token_begin() const { return block + read.token.begin; }
    std::size_t token_end() const { return block + read.token.end; }
    std::string_view token() const { return bytes(token_begin(), token_end()); }

    Range Change::*range;
    const TextCoding& coding;
    ScriptReader reader;
    std::string text;       // from the marker of the first block that is not complete
    std::size_t block = 0;  // where the current block begins in `text`
    ScriptReader::Read read;
    bool has = false;
  };

  class Operands;
  // The tokens that changes touch. A literal may contain several changes.
  struct Expression {
    Range place;
    ScriptReader::Read first;
    ScriptReader::Read last;
    std::size_t last_change = 0;
  };

  void prove_blocks(bool is_end);
  void prove_block(Range source, Range target, Range changes);
  std::size_t prove_expression(Range changes);
  Expression read_expression(Side& side, Range changes, Operands& operands) const;
  bool is_same(std::string_view source, std::string_view target) const;
  [[noreturn]] void refuse(std::size_t change) const;

  Side source_;
  Side target_;
  std::vector<Change> changes_;
  std::size_t searched_ = 0;  // how far the source's text has been searched
};

}  // namespace kavo::script
