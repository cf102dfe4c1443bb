#include "formats/script/script_reader.h"

#include <algorithm>

namespace kavo::script {

void ScriptReader::begin(std::string_view block) {
  block_ = block;
  pieces_.clear();
  scripts_.add_block(block, 0, block.size(), pieces_);
  piece_ = read_ = 0;
  lexer_ = nullptr;
}

bool ScriptReader::next(Read& read) {
  read = Read();
  for (; piece_ < pieces_.size(); ++piece_, lexer_ = nullptr) {
    const Piece& piece = pieces_[piece_];
    if (lexer_ == nullptr) {
      if (read_ < piece.begin) {
        between(piece.begin, read);
        return true;
      }
      lexer_ = &lexer_of(piece);
      lexer_->begin(block_.substr(piece.begin, piece.end - piece.begin),
                    piece.goes_on ? Between::kValue : Between::kPage);
    }
    if (!lexer_->next(read.token)) continue;
    read.token.begin += piece.begin;
    read.token.end += piece.begin;
    read.language = piece.language;
    read.in_element = piece.element != 0;
    read_ = read.token.end;
    return true;
  }
  if (read_ == block_.size()) return false;
  between(block_.size(), read);
  return true;
}

void ScriptReader::between(std::size_t end, Read& read) {
  read.is_between = true;
  read.token.kind = TokenKind::kUnknown;
  read.token.begin = read_;
  read.token.end = read_ = end;
  if (piece_ == 0 || piece_ == pieces_.size()) return;
  read.enters_block = pieces_[piece_].element == 0 && pieces_[piece_ - 1].element != 0;
  read.leaves_block = pieces_[piece_].goes_on && pieces_[piece_ - 1].element == 0;
}

Lexer& ScriptReader::lexer_of(const Piece& piece) {
  if (piece.element != 0) {
    if (!element_.lexer || element_.element != piece.element)
      element_ = {piece.language, piece.element, make_lexer(piece.language, &coding_)};
    return *element_.lexer;
  }
  const auto found = std::ranges::find(servers_, piece.language, &Program::language);
  if (found != servers_.end()) return *found->lexer;
  servers_.push_back({piece.language, 0, make_lexer(piece.language, &coding_)});
  return *servers_.back().lexer;
}

}  // namespace kavo::script
