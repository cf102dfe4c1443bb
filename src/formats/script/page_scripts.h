// The scripts of a page, block by block: which bytes are code, in which language, and which earlier piece they
// continue.
//
//   <% statements %>   <%= value %>   <%! declarations %>   <%@ directive %>   <%-- comment --%>
//   <?php statements ?>   <?= value ?>   <? statements ?>
//   <script ...> statements, with server blocks in them </script>
//
// The caller finds the blocks (in a script file or in a page) and hands them in one by one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "formats/script/language.h"

namespace kavo::script {

enum class PieceKind : std::uint8_t { kStatements, kValue, kDeclarations };

// A run of code in one language.
struct Piece {
  Language language = Language::kUnknown;
  PieceKind kind = PieceKind::kStatements;
  bool on_server = true;
  // The number of the client script's element. Pieces with the same number are one program. All server code of a page
  // is one program and has the number 0.
  std::size_t element = 0;
  bool goes_on = false;   // a server block stood between the element's last piece and this one
  std::size_t begin = 0;  // byte offset in the text of all blocks
  std::size_t end = 0;
};

class PageScripts {
 public:
  // `server` is the language of server blocks until the page declares another one.
  explicit PageScripts(Language server) : server_(server) {}

  // Appends the pieces of the block at [begin, end) of `text`. Server blocks inside an element come in order between
  // its own pieces. A block that begins in none of the ways above has no pieces.
  void add_block(std::string_view text, std::size_t begin, std::size_t end, std::vector<Piece>& pieces);

  Language server() const { return server_; }

 private:
  void server_block(std::string_view text, std::size_t begin, std::size_t end, std::vector<Piece>& pieces);
  void element(std::string_view text, std::size_t begin, std::size_t end, std::vector<Piece>& pieces);

  Language server_;
  std::size_t elements_ = 0;
};

// Where the server block that begins at `begin` ends: after its "%>" or "?>", or at the end of the text.
std::size_t server_block_end(std::string_view text, std::size_t begin);
// Where the first "<%" or "<?" of server code is, from `begin` on.
std::size_t find_server_block(std::string_view text, std::size_t begin);

}  // namespace kavo::script
