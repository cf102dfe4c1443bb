#include "html/scripts/script_file.h"

#include <algorithm>

#include "common/byte_scan.h"
#include "formats/html/script_marker.h"
#include "platform/fnv_hash.h"

namespace kavo {
namespace {

// The part of a marker line by which its block is looked up: up to the first end of a comment. "" for a line that has
// none, or has it too far from the beginning, since no placeholder matches that.
std::string_view placeholder_in(std::string_view line) {
  line = line.substr(0, html::placeholder::kLongestPlaceholder);
  const auto end = line.find(html::placeholder::kMarkerEnd);
  return end == line.npos ? std::string_view() : line.substr(0, end + html::placeholder::kMarkerEnd.size());
}

// The bytes of the line end after a block's text. Protection writes CR LF. A tool that has changed the line ends of
// the script file leaves a single CR or LF. The text must not lose a byte then.
std::size_t line_end_length(std::string_view text) {
  if (text.ends_with(html::placeholder::kLineEnd)) return 2;
  return !text.empty() && html::placeholder::is_line_end(text.back()) ? 1 : 0;
}

}  // namespace

bool ScriptFile::find(std::string_view placeholder) {
  pass_to_marker([](std::string_view) {});
  const auto is_it = [&](std::uint64_t position) {
    go_to(position);
    if (!skip_line_of(placeholder)) return false;
    count_use(position);
    return true;
  };
  if (is_it(reader_.position())) return true;
  if (!indexed_) build_index();
  // Two placeholders may share a hash, so the line itself is compared.
  if (index_.find(fnv_hash(placeholder), reader_.position(), is_it)) return true;
  go_to(reader_.size());
  return false;
}

void ScriptFile::read_block(const Sink& sink) { pass_to_marker(sink); }

// Passes on the bytes up to the next line that begins with the marker, or to the end, without the line end before it.
void ScriptFile::pass_to_marker(const Sink& sink) {
  // Keeps the last line end back: it may turn out to be the one that is not passed on, and it shows that a "<" begins a
  // line.
  constexpr std::size_t kHeld = 2;
  const auto pass = [&](std::size_t count) {
    if (count == 0) return;
    sink(reader_.window().substr(0, count));
    reader_.consume(count);
  };
  std::size_t scanned = 0;  // bytes of the window; while it is 0, the window begins with a line
  for (;;) {
    const std::string_view window = reader_.window();
    const std::size_t at = std::min(window.find('<', scanned), window.size());
    const std::string_view rest = window.substr(at);
    const bool begins_line = at == 0 || html::placeholder::is_line_end(window[at - 1]);
    const bool is_marker = begins_line && rest.starts_with(html::placeholder::kMarker);
    const bool may_be_cut = begins_line && rest.size() < html::placeholder::kMarker.size() && !reader_.exhausted();
    if (!rest.empty() && !is_marker && !may_be_cut) {
      scanned = at + 1;
    } else if (is_marker || reader_.exhausted()) {
      const std::string_view text = window.substr(0, at);
      const std::size_t line_end = line_end_length(text);
      if (!is_marker && in_block_ && line_end == 0 && !text.ends_with('>')) ends_inside_block_ = true;
      in_block_ = false;
      pass(at - line_end);
      reader_.consume(line_end);
      return;
    } else {
      const std::size_t passed = at > kHeld ? at - kHeld : 0;
      pass(passed);
      scanned = at - passed;
      reader_.more();
    }
  }
}

// When the line begins with the placeholder, skips the line and returns true.
bool ScriptFile::skip_line_of(std::string_view placeholder) {
  fill(placeholder.size());
  if (!reader_.window().starts_with(placeholder)) return false;
  skip_line();
  return true;
}

void ScriptFile::skip_line() {
  in_block_ = true;
  for (;;) {
    const std::string_view window = reader_.window();
    const auto end =
        static_cast<std::size_t>(find_any<'\r', '\n'>(window.data(), window.data() + window.size()) - window.data());
    if (end + 1 >= window.size() && !reader_.exhausted()) {
      reader_.consume(end);
      reader_.more();
      continue;
    }
    // CR LF and LF CR are one line end.
    const bool pair =
        end + 1 < window.size() && html::placeholder::is_line_end(window[end + 1]) && window[end + 1] != window[end];
    reader_.consume(std::min(end + (pair ? 2 : 1), window.size()));
    return;
  }
}

template <class Each>
void ScriptFile::for_each_marker(Each&& each) {
  for (;;) {
    pass_to_marker([](std::string_view) {});
    fill(html::placeholder::kLongestPlaceholder);
    if (reader_.window().empty()) return;
    each(reader_.position());
    skip_line();
  }
}

void ScriptFile::build_index() {
  const std::uint64_t here = reader_.position();
  go_to(0);
  for_each_marker([this](std::uint64_t position) {
    blocks_.push_back(position);
    const std::string_view window = reader_.window();
    const std::string_view line = window.substr(0, window.find_first_of(html::placeholder::kLineEnd));
    if (const auto placeholder = placeholder_in(line); !placeholder.empty())
      index_.add(fnv_hash(placeholder), position);
  });
  index_.sort();
  used_.assign(blocks_.size(), false);
  std::fill_n(used_.begin(), in_order_, true);
  indexed_ = true;
  go_to(here);
}

void ScriptFile::count_use(std::uint64_t position) {
  if (!indexed_) {
    ++in_order_;
    return;
  }
  const auto block = std::ranges::lower_bound(blocks_, position) - blocks_.begin();
  if (used_[static_cast<std::size_t>(block)]) ++repeated_;
  used_[static_cast<std::size_t>(block)] = true;
}

ScriptFile::Unused ScriptFile::unused() {
  Unused unused;
  const auto add = [&](std::uint64_t position) {
    if (unused.count++ == 0) unused.position = position;
  };
  if (indexed_) {
    for (std::size_t i = 0; i < blocks_.size(); ++i)
      if (!used_[i]) add(blocks_[i]);
  } else {
    for_each_marker(add);
  }
  if (unused.count != 0) unused.placeholder = line_at(unused.position);
  return unused;
}

std::string ScriptFile::line_at(std::uint64_t position) {
  go_to(position);
  fill(html::placeholder::kLongestPlaceholder);
  const std::string_view line = reader_.window().substr(0, html::placeholder::kLongestPlaceholder);
  return std::string(line.substr(0, line.find_first_of(html::placeholder::kLineEnd)));
}

void ScriptFile::fill(std::size_t count) {
  while (reader_.window().size() < count && reader_.more()) {
  }
}

void ScriptFile::go_to(std::uint64_t position) {
  in_block_ = false;
  const std::uint64_t here = reader_.position();
  if (position >= here && position <= reader_.bytes_read())
    reader_.consume(static_cast<std::size_t>(position - here));
  else
    reader_.seek(position);
}

}  // namespace kavo
