// Private profile files as on Windows: ANSI text in the code page in use, or UTF-16 with a byte order mark.
//
// A file is taken apart into lines that keep their bytes; writing changes or adds one line and leaves every other byte
// as it is, whatever the lines hold.
#include "platform/profile_files.h"

#include <optional>
#include <vector>

#include "platform/adapters.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/posix/host.h"
#include "platform/posix/paths.h"
#include "platform/trimmed.h"
#include "platform/utf16_bytes.h"

namespace kavo {
namespace {

constexpr std::string_view kUtf16Mark = "\xFF\xFE";

constexpr std::u16string_view kWhiteSpace = u" \t\r\n";

std::u16string_view unquoted(std::u16string_view value) {
  const bool quoted =
      value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') && value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// A line with its line end, as the file has it.
struct Line {
  std::string bytes;
  std::u16string text;
};

class Profile {
 public:
  explicit Profile(std::string_view bytes) : wide_(bytes.starts_with(kUtf16Mark)) {
    if (wide_) bytes.remove_prefix(kUtf16Mark.size());
    const std::size_t unit = wide_ ? 2 : 1;
    const std::string_view line_feed = wide_ ? std::string_view("\n\0", 2) : std::string_view("\n");
    while (!bytes.empty()) {
      std::size_t end = 0;
      while (end + unit <= bytes.size() && bytes.substr(end, unit) != line_feed) end += unit;
      end = std::min(end + unit, bytes.size());
      lines_.push_back({std::string(bytes.substr(0, end)), decode(bytes.substr(0, end))});
      bytes.remove_prefix(end);
    }
  }

  std::optional<std::u16string> value(std::u16string_view section, std::u16string_view key) const {
    const std::optional<std::size_t> line = find_key(section, key);
    if (!line) return std::nullopt;
    const std::u16string_view text = lines_[*line].text;
    return std::u16string(unquoted(trimmed(text.substr(text.find(u'=') + 1), kWhiteSpace)));
  }

  void set(std::u16string_view section, std::u16string_view key, std::u16string_view value) {
    const std::u16string text = formatted(u"{}={}\r\n", trimmed(key, kWhiteSpace), trimmed(value, kWhiteSpace));
    if (const std::optional<std::size_t> line = find_key(section, key)) {
      lines_[*line] = make_line(text);
      return;
    }
    std::optional<std::size_t> header = find_section(section);
    if (!header) {
      end_last_line();
      lines_.push_back(make_line(formatted(u"[{}]\r\n", trimmed(section, kWhiteSpace))));
      header = lines_.size() - 1;
    }
    // The new line goes after the section's last line that is not blank.
    std::size_t last = *header;
    for (std::size_t i = *header + 1; i < lines_.size() && !is_header(lines_[i].text); ++i)
      if (!trimmed(lines_[i].text, kWhiteSpace).empty()) last = i;
    if (last + 1 == lines_.size()) end_last_line();
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(last) + 1, make_line(text));
  }

  std::string bytes() const {
    std::string all(wide_ ? kUtf16Mark : std::string_view());
    for (const Line& line : lines_) all += line.bytes;
    return all;
  }

 private:
  std::u16string decode(std::string_view bytes) const {
    if (!wide_) return ports().code_page->decode(bytes);
    return from_utf16_bytes(bytes);
  }

  Line make_line(const std::u16string& text) const {
    if (!wide_) return {ports().code_page->encode(text), text};
    std::string bytes;
    append_utf16_bytes(bytes, text);
    return {bytes, text};
  }

  void end_last_line() {
    if (lines_.empty() || lines_.back().text.ends_with(u'\n')) return;
    lines_.back().text += u"\r\n";
    lines_.back().bytes += make_line(u"\r\n").bytes;
  }

  static bool is_header(std::u16string_view text) { return trimmed(text, kWhiteSpace).starts_with(u'['); }

  // Of several sections with the same name the first one counts.
  std::optional<std::size_t> find_section(std::u16string_view section) const {
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      std::u16string_view text = trimmed(lines_[i].text, kWhiteSpace);
      if (!text.starts_with(u'[')) continue;
      text = text.substr(1, text.rfind(u']') - 1);
      if (equal_ignoring_case(trimmed(text, kWhiteSpace), trimmed(section, kWhiteSpace))) return i;
    }
    return std::nullopt;
  }

  std::optional<std::size_t> find_key(std::u16string_view section, std::u16string_view key) const {
    const std::optional<std::size_t> header = find_section(section);
    if (!header) return std::nullopt;
    for (std::size_t i = *header + 1; i < lines_.size() && !is_header(lines_[i].text); ++i) {
      const std::u16string_view text = trimmed(lines_[i].text, kWhiteSpace);
      const std::size_t equals = text.find(u'=');
      if (text.starts_with(u';') || equals == std::u16string_view::npos) continue;
      if (equal_ignoring_case(trimmed(text.substr(0, equals), kWhiteSpace), trimmed(key, kWhiteSpace))) return i;
    }
    return std::nullopt;
  }

  bool wide_;
  std::vector<Line> lines_;
};

// A file without a folder is among the user's settings. (Windows, too, keeps such files in a folder of its own.)
std::string profile_path(std::u16string_view file) {
  if (file.find_first_of(u"\\/") != std::u16string_view::npos) return resolve(file);
  return resolve(path_from_host(config_folder() + "/") + std::u16string(file));
}

class PosixProfileFiles final : public ProfileFiles {
 public:
  std::u16string read(std::u16string_view section, std::u16string_view key, std::u16string_view fallback,
                      std::u16string_view file, std::size_t limit) override {
    std::optional<std::u16string> value;
    try {
      if (const std::optional<std::string> bytes = read_host_file(profile_path(file)))
        value = Profile(*bytes).value(section, key);
    } catch (const failure&) {
      // A file that cannot be read counts as missing.
    }
    // GetPrivateProfileString removes the blanks at the end of its default, too.
    if (!value) value = fallback.substr(0, fallback.find_last_not_of(u' ') + 1);
    return value->substr(0, limit);
  }

  bool write(std::u16string_view section, std::u16string_view key, std::u16string_view value,
             std::u16string_view file) override try {
    const std::string path = profile_path(file);
    if (path.starts_with(config_folder() + "/")) make_host_folder(config_folder());
    Profile profile(read_host_file(path).value_or(""));
    profile.set(section, key, value);
    replace_host_file(path, profile.bytes());
    return true;
  } catch (const failure&) {
    return false;
  }
};

}  // namespace

ProfileFiles& system_profile_files() {
  static PosixProfileFiles profile_files;
  return profile_files;
}

}  // namespace kavo
