#include "suite/filters/script/script_blocks.h"

#include <algorithm>

#include "formats/html/script_marker.h"

namespace kavo::script {

namespace placeholder = html::placeholder;

// A block is between the line of its placeholder and the line of the next one, without the line ends around it.
ScriptBlocks::ScriptBlocks(BlockReader& file, ProgressEvent& progress) : file_(file), start_(file.position()) {
  std::uint64_t reported = 0;
  for (std::size_t searched = 0;;) {
    if (file.bytes_read() != reported) {
      reported = file.bytes_read();
      progress.report(static_cast<std::int16_t>(file.percent() / 2));
    }
    const std::string_view window = file.window();
    const std::size_t next = placeholder::find_marker_line(window, searched);
    if (next == window.size() && file.more()) {
      // The end of the window may cut a placeholder.
      searched = std::max(searched, window.size() - std::min(window.size(), placeholder::kMarker.size()));
      continue;
    }
    if (window.starts_with(placeholder::kMarker)) {
      std::size_t begin = std::min(window.find_first_of("\r\n"), next);
      std::size_t end = next;
      while (begin < next && is_line_end(window[begin])) ++begin;
      while (end > begin && is_line_end(window[end - 1])) --end;
      trail_.copied(file.position() + begin, text_.size(), end - begin);
      text_ += window.substr(begin, end - begin);
    }
    if (next == window.size()) break;
    file.consume(next);
    searched = 1;
  }
}

bool ScriptBlocks::Walk::next(Block& block) {
  CopyTrail::Run run;
  if (!runs_.next(run)) return false;
  block = {static_cast<std::size_t>(run.output), static_cast<std::size_t>(run.output_end())};
  return true;
}

ScriptBlocks::Gaps::Gaps(ScriptBlocks& blocks) : file_(blocks.file_), runs_(blocks.trail_) {
  file_.seek(blocks.start_);
}

std::string_view ScriptBlocks::Gaps::before(const Block& block) {
  CopyTrail::Run run;
  gap_.clear();
  pass(size_, nullptr);
  size_ = block.end - block.begin;
  if (runs_.next(run)) pass(run.input - file_.position(), &gap_);
  return gap_;
}

std::string_view ScriptBlocks::Gaps::rest() {
  pass(size_, nullptr);
  size_ = 0;
  file_.consume(given_);
  if (file_.window().empty()) file_.more();
  given_ = file_.window().size();
  return file_.window();
}

void ScriptBlocks::Gaps::pass(std::uint64_t size, std::string* bytes) {
  while (size != 0 && (!file_.window().empty() || file_.more())) {
    const std::string_view part =
        file_.window().substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(size, file_.window().size())));
    if (bytes != nullptr) *bytes += part;
    size -= part.size();
    file_.consume(part.size());
  }
}

}  // namespace kavo::script
