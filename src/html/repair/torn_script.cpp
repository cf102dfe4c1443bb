#include "html/repair/torn_script.h"

#include <string>
#include <vector>

#include "formats/html/marker_reader.h"
#include "formats/script/control_flow.h"

namespace kavo {

std::optional<std::uint64_t> find_torn_script(std::u16string_view script_file, script::Language server) {
  html::MarkerReader markers(script_file, true);
  script::PageScripts scripts(server);
  std::vector<script::Piece> pieces;
  std::string before;
  for (bool has_next = markers.next() != 0; has_next;) {
    const std::uint64_t begin = markers.position();
    before.clear();
    has_next = markers.next(&before) != 0;
    const std::string_view block = html::text_of_block(before);
    if (before.size() > html::kLongestBlock) continue;
    pieces.clear();
    scripts.add_block(block, 0, block.size(), pieces);
    for (const script::Piece& piece : pieces)
      if (piece.language == script::Language::kPhp && (has_next || piece.end != block.size()) &&
          script::flow_of(block, piece).goes_on)
        return begin + static_cast<std::uint64_t>(block.data() - before.data()) + piece.end;
  }
  return std::nullopt;
}

}  // namespace kavo
