#include "mif/object_file.h"

#include <algorithm>
#include <functional>
#include <limits>

#include "common/byte_scan.h"

namespace kavo {
namespace {

constexpr std::uint64_t kFileEnd = std::numeric_limits<std::uint64_t>::max();

// Calls visit(placeholder) at each place of the text where a placeholder begins, even inside another one, until it
// returns true.
template <class Visit>
bool any_placeholder(std::string_view text, Visit visit) {
  std::size_t from = 0;
  while (const auto found = find_placeholder(text.substr(from))) {
    if (visit(text.substr(from + found->begin, found->end - found->begin))) return true;
    from += found->begin + 1;
  }
  return false;
}

}  // namespace

std::optional<Placeholder> find_placeholder(std::string_view text) {
  const char* const end = text.data() + text.size();
  for (const char* p = text.data(); (p = find_pair<'<', 'K'>(p, end)) != end; ++p) {
    const std::string_view rest(p, std::min<std::size_t>(static_cast<std::size_t>(end - p), LinePieces::kUncut));
    if (!rest.starts_with(kPlaceholderStart)) continue;
    // In a MIF string ">" follows a backslash, so such a text only looks like a placeholder.
    const std::size_t close = rest.find('>');
    if (close == std::string_view::npos || rest[close - 1] == '\\') continue;
    const auto begin = static_cast<std::size_t>(p - text.data());
    return Placeholder{begin, begin + close + 1};
  }
  return std::nullopt;
}

const char* find_special(const char* begin, const char* end) {
  // Both bytes are rare in documents and in facets.
  const char* p = find_any<'=', 'K'>(begin, end);
  while (p != end && !(*p == '=' ? p == begin || is_line_end(p[-1]) : p != begin && p[-1] == '<'))
    p = find_any<'=', 'K'>(p + 1, end);
  return p;
}

bool holds_object_placeholder(std::u16string_view mif_file, ProgressEvent* progress) {
  LinePieces lines(mif_file, progress);
  for (LinePiece piece;;) {
    if (!lines.lines_before(find_special).empty()) continue;
    if (!lines.next(piece)) return false;
    if (find_placeholder(piece.text)) return true;
  }
}

bool MifObjectFile::find(std::string_view placeholder) {
  const std::uint64_t position = lines_.position();
  if (next_line_holds(placeholder)) return true;
  if (!index_) build_index();
  const auto is_it = [&](std::uint64_t line) {
    lines_.seek(line);
    return next_line_holds(placeholder);
  };
  if (index_->find(std::hash<std::string_view>{}(placeholder), position, is_it)) return true;
  lines_.seek(kFileEnd);
  return false;
}

bool MifObjectFile::next_line_holds(std::string_view placeholder) {
  LinePiece piece;
  bool holds = false;
  do {
    if (!lines_.next(piece)) return false;
    holds = holds || any_placeholder(piece.text, [&](std::string_view found) { return found == placeholder; });
  } while (!piece.ends);
  return holds;
}

void MifObjectFile::build_index() {
  index_.emplace();
  LinePieces lines(path_, nullptr);
  std::uint64_t line = 0;
  for (LinePiece piece; lines.next(piece);) {
    any_placeholder(piece.text, [&](std::string_view found) {
      index_->add(std::hash<std::string_view>{}(found), line);
      return false;
    });
    if (piece.ends) line = lines.position();
  }
  index_->sort();
}

bool MifObjectFile::is_complete() {
  if (!incomplete_) find_incomplete_objects();
  return !std::ranges::binary_search(*incomplete_, lines_.position());
}

void MifObjectFile::find_incomplete_objects() {
  incomplete_.emplace();
  LinePieces lines(path_, nullptr);
  bool is_open = false;         // the last object has not ended yet
  std::uint64_t begin = 0;      // where its lines begin
  bool is_placeholder = false;  // in the line of a placeholder
  for (LinePiece piece;;) {
    if (!lines.lines_before(find_special).empty()) continue;
    if (!lines.next(piece)) break;
    if (piece.begins) {
      is_placeholder = piece.text.starts_with(kPlaceholderStart);
      if (is_placeholder && is_open) incomplete_->push_back(begin);
      if (piece.text.starts_with(kObjectEnd)) is_open = false;
    }
    if (!piece.ends || !is_placeholder) continue;
    is_open = true;
    begin = lines.position();
  }
  if (is_open) incomplete_->push_back(begin);
}

void MifObjectFile::copy_object(PendingFile& output) {
  bool is_end = false;
  for (LinePiece piece;;) {
    if (const auto plain = lines_.lines_before(find_special); !plain.empty()) {
      write_lines(output, plain);
      continue;
    }
    if (!lines_.next(piece)) break;
    if (piece.begins) {
      if (piece.text.starts_with(kPlaceholderStart)) {
        skip_line(piece);
        break;
      }
      is_end = piece.text.starts_with(kObjectEnd);
    }
    output.write(piece.text);
    if (!piece.ends) continue;
    if (is_end) return;
    output.write("\r\n");
  }
  output.write(kObjectEnd);
}

void MifObjectFile::skip_line(LinePiece piece) {
  while (!piece.ends && lines_.next(piece)) {
  }
}

}  // namespace kavo
