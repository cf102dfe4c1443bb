// The object file: objects in order, each after the line of its placeholder. A lookup finds the next object with the
// placeholder from the current place on, or else the first one from the beginning. Placeholders in the file's order
// take one pass. The first one out of order builds an index.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/lookup_index.h"
#include "common/pending_file.h"
#include "common/progress_event.h"
#include "mif/line_pieces.h"

namespace kavo {

inline constexpr std::string_view kObjectEnd = "=EndInset";
inline constexpr std::string_view kPlaceholderStart = "<KAVOObj ";
inline constexpr std::string_view kObjectsEnd = "<KAVOObj End>";

// The place of the first placeholder in a line or piece of a line, from its "<" to its ">". A placeholder has at most
// LinePieces::kUncut bytes, far more than any number needs.
struct Placeholder {
  std::size_t begin;
  std::size_t end;
};
std::optional<Placeholder> find_placeholder(std::string_view text);

// For LinePieces::lines_before(): the first place where a line may be more than plain text, because it begins with "="
// or may hold a placeholder. [begin, end) begins with a line.
const char* find_special(const char* begin, const char* end);

// Whether the file holds a place for an object, found as InsertObjects finds it. Throws `failure` when the file cannot
// be read. `progress` is borrowed and may be nullptr.
bool holds_object_placeholder(std::u16string_view mif_file, ProgressEvent* progress);

class MifObjectFile {
 public:
  // Opens the file. Throws `failure` when that fails, as every operation does when the file cannot be read.
  explicit MifObjectFile(std::u16string_view path) : path_(path), lines_(path, nullptr) {}

  // Goes to the place after the next line that holds the placeholder. When there is none, returns false at the end of
  // the file.
  bool find(std::string_view placeholder);
  // True when the object that begins here has its closing line, which is missing in a file that was cut. The first call
  // reads the whole file.
  bool is_complete();
  // Writes the object that begins here. Its lines get CR LF, the closing one no line end.
  void copy_object(PendingFile& output);

 private:
  bool next_line_holds(std::string_view placeholder);
  void build_index();
  void find_incomplete_objects();
  void skip_line(LinePiece piece);

  std::u16string path_;
  LinePieces lines_;
  std::optional<std::vector<std::uint64_t>> incomplete_;          // positions of objects without an end
  std::optional<LookupIndex<std::size_t, std::uint64_t>> index_;  // hash of a placeholder, position of its line
};

}  // namespace kavo
