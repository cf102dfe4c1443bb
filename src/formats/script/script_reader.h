// Reads the blocks of a page's scripts as one sequence of tokens. A literal or comment continues in the next block
// where the language allows that. What is between two scripts (the tag of an element, the "<%=" of a block inside it)
// is a token, too, so every byte of a block belongs to a token.
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
    Token token;  // its places count from the start of the block; its kind means nothing when is_between is set
    Language language = Language::kUnknown;
    bool in_element = false;  // the script is in a <script> element, so an end tag ends it
    bool is_between = false;
    bool enters_block = false;  // is_between, and a server block begins inside a client script
    bool leaves_block = false;  // is_between, and that server block ends
  };

  // `server` is as in PageScripts. `coding` must outlive the reader.
  ScriptReader(Language server, const TextCoding& coding) : coding_(coding), scripts_(server) {}

  // Begins the next block, which must stay in place until the next call.
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
  std::size_t piece_ = 0;   // the piece that is being read, or the next one
  Lexer* lexer_ = nullptr;  // the lexer of that piece
  std::size_t read_ = 0;    // how many bytes of the block have been read
};

}  // namespace kavo::script
