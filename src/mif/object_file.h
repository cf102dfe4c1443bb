// The object side file: objects in order, each a placeholder line followed by the object's lines. Lookups answer what
// reading forward from the current place, and then once more from the beginning, would find; placeholders in their
// own order cost one pass, any other order an index that is built at the first lookup out of order.
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

// The place of the first placeholder, from its "<" to its ">", in a line or piece of a line. It is at most
// LinePieces::kUncut bytes long: many more than any number has.
struct Placeholder {
  std::size_t begin;
  std::size_t end;
};
std::optional<Placeholder> find_placeholder(std::string_view text);

// For LinePieces::lines_before(): the first place where a line may be more than plain text, because "=" begins it or
// because it may hold a placeholder. [begin, end) begins with a line.
const char* find_special(const char* begin, const char* end);

// Whether the file holds a place that an object is to be put back to, as the insertion finds them. Throws `failure`
// when it cannot be read. `progress` (not owned) may be nullptr.
bool holds_object_placeholder(std::u16string_view mif_file, ProgressEvent* progress);

class MifObjectFile {
 public:
  // Throws `failure` when the file cannot be opened, as all operations do when it cannot be read.
  explicit MifObjectFile(std::u16string_view path) : path_(path), lines_(path, nullptr) {}

  // Goes behind the next line that holds the placeholder; false, and to the end of the file, when there is none.
  bool find(std::string_view placeholder);
  // Whether the object that begins here is there with its closing line, which it is not where a file was cut. The first
  // call reads the file once.
  bool is_complete();
  // Writes the object that begins here, its lines with CR LF, the closing one without a line end.
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
