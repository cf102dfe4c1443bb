// Reads the blocks of a page's scripts as one row of tokens. A literal or comment goes on in the next block where the
// language says so. What stands between two scripts (the tag of an element, the "<%=" of a block inside it) is a token
// too, so every byte of a block belongs to a token.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "formats/script/lexer.h"
#include "formats/script/page_scripts.h"

namespace kavo::script {

class ScriptReader {
 public:
  struct Read {
    Token token;  // its places count from the block's start; its kind means nothing between two scripts
    Language language = Language::kUnknown;
    bool in_element = false;  // of a script in an element, whose end tag ends it
    bool is_between = false;
    bool enters_block = false;  // of what stands between: a server block begins inside of a client script
    bool leaves_block = false;  // and ends
  };

  // `server` as in PageScripts; `coding` must outlive the reader.
  ScriptReader(Language server, const TextCoding& coding) : coding_(coding), scripts_(server) {}

  // The next block, which must stay until the next call.
  void begin(std::string_view block);
  bool next(Read& read);

 private:
  Lexer& lexer_of(const Piece& piece);
  void between(std::size_t end, Read& read);

  struct Program {
    Language language = Language::kUnknown;
    std::size_t element = 0;
    std::unique_ptr<Lexer> lexer;
  };

  const TextCoding& coding_;
  PageScripts scripts_;
  std::vector<Program> servers_;
  Program element_;
  std::string_view block_;
  std::vector<Piece> pieces_;
  std::size_t piece_ = 0;   // the one being read, or the next one
  Lexer* lexer_ = nullptr;  // of the one being read
  std::size_t read_ = 0;    // of the block
};

}  // namespace kavo::script
