#include "common/clsCommon.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "common/cRegistry.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

constexpr std::size_t kHighestPosition = std::numeric_limits<std::int16_t>::max();
constexpr std::size_t kLongestSetting = 1023;
constexpr std::u16string_view kLibraryIni = u"K19FPW.ini";

// 1-based positions are 16 bits wide.
void check_position(std::size_t position) {
  if (position > kHighestPosition) throw failure(FailureNumber::kOverflow, u"Overflow");
}

void add_file_error(MessageList* errors, TextRow row, std::u16string_view file_name, std::u16string_view description) {
  if (errors == nullptr) return;
  std::u16string text(row.text);
  text += file_name;
  if (!description.empty()) text += u" - ";
  text += description;
  errors->push_back({std::move(text), row.number});
}

// "&h1F" as a number; nothing for any other text.
std::optional<std::int32_t> hexadecimal_number(std::u16string_view text) {
  if (text.size() < 3 || text[0] != u'&' || (text[1] != u'h' && text[1] != u'H')) return std::nullopt;
  const std::string digits = to_utf8(text.substr(2));
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  if (error != std::errc{} || end != digits.data() + digits.size()) return std::nullopt;
  return static_cast<std::int32_t>(number);
}

std::optional<std::u16string> information_program(const clsCommon& common) {
  constexpr auto machine = static_cast<std::uint32_t>(Hive::kLocalMachine);
  if (auto path = common.GetKeyValue(machine, u"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", u"PATH")) return path;
  auto folder = common.GetKeyValue(machine, u"SOFTWARE\\Microsoft\\Shared Tools Location", u"MSINFO");
  if (folder) *folder += u"\\MSINFO32.EXE";
  return folder;
}

}  // namespace

void clsCommon::CentreForm(FormFrame& form) const {
  const Extent screen = form.screen_extent();
  const Extent extent = form.extent();
  form.move((screen.width - extent.width) / 2, (screen.height - extent.height) / 2);
}

std::u16string clsCommon::GetINISetting(std::u16string_view section, std::u16string_view key,
                                        std::u16string_view default_value,
                                        std::optional<std::u16string_view> ini_file) const {
  return ports().profile_files->read(section, key, default_value, ini_file.value_or(kLibraryIni), kLongestSetting);
}

void clsCommon::SetINISetting(std::u16string_view section, std::u16string_view key, std::u16string_view value,
                              std::optional<std::u16string_view> ini_file) const {
  ports().profile_files->write(section, key, value, ini_file.value_or(kLibraryIni));
}

void clsCommon::HighLight(TextBoxFrame& box) const { box.select(0, box.text_length()); }

void clsCommon::StartSysInfo() const {
  if (const auto program = information_program(*this)) {
    try {
      ports().shell->start(*program, {});
      return;
    } catch (const failure&) {
      // A program that is registered but does not exist counts as missing.
    }
  }
  ports().desktop->message_box(u"System Information Is Unavailable At This Time", u"KAVO", MessageIcon::kNone);
}

std::optional<std::u16string> clsCommon::GetKeyValue(std::uint32_t hive, std::u16string_view path,
                                                     std::u16string_view name) const {
  cRegistry registry;
  registry.ClassKey(hive);
  registry.SectionKey(path);
  registry.ValueKey(name);
  const cRegistry::Variant value = registry.Value();
  if (const auto* number = std::get_if<std::int32_t>(&value)) return formatted(u"{}", *number);
  const auto* text = std::get_if<std::u16string>(&value);
  if (text == nullptr) return std::nullopt;
  if (const auto number = hexadecimal_number(*text)) return formatted(u"{}", *number);
  return *text;
}

bool clsCommon::IsLoaded(std::u16string_view form_name) const { return FormFrame::is_loaded(form_name); }

std::u16string clsCommon::SandR(std::u16string_view text, std::u16string_view search,
                                std::u16string_view replacement) const {
  std::u16string result;
  if (search.empty()) return std::u16string(text);
  std::size_t begin = 0;
  for (std::size_t match; (match = text.find(search, begin)) != std::u16string_view::npos;) {
    result += text.substr(begin, match - begin);
    // The position counts in the text as it is now, with the replacements made so far.
    check_position(result.size() + 1);
    result += replacement;
    begin = match + search.size();
  }
  result += text.substr(begin);
  return result;
}

std::u16string clsCommon::strParseFileName(std::u16string_view file_name, std::int16_t mode) const {
  // Positions are 1-based, 0 when absent: npos + 1 is 0.
  const std::size_t dot = file_name.rfind(u'.') + 1;
  const std::size_t slash = file_name.rfind(u'\\') + 1;
  check_position(dot);
  check_position(slash);
  switch (mode) {
    case 0:
      return folder_of(file_name);
    case 1:
      return stem_of(file_name);
    case 2:
      return extension_of(file_name);
    default:
      return u"";
  }
}

bool clsCommon::MoveFile(std::u16string_view source, std::u16string_view destination, MessageList* errors) const {
  FileSystem& files = *ports().files;
  bool replaces = false;
  try {
    replaces = files.info(destination).has_value();
    if (!replace_file(source, destination)) add_file_error(errors, move_file_text::kNotRemoved, source, u"");
    return true;
  } catch (const failure& reason) {
    if (replaces && FileExists(source))
      add_file_error(errors, move_file_text::kNotReplaced, destination, reason.description());
    else
      add_file_error(errors, move_file_text::kNotCopied, source, reason.description());
    return false;
  }
}

std::u16string clsCommon::SetCaption(std::u16string_view text, std::size_t width) const {
  constexpr std::u16string_view dots = u"....";
  if (text.size() <= width) return std::u16string(text);
  if (width <= dots.size()) return std::u16string(dots.substr(0, width));
  const auto is_low_surrogate = [&](std::size_t at) { return text[at] >= 0xDC00 && text[at] <= 0xDFFF; };
  const std::size_t kept = width - dots.size();
  std::size_t left = (kept + 1) / 2;
  std::size_t right = text.size() - kept / 2;
  if (is_low_surrogate(left)) --left;
  if (right < text.size() && is_low_surrogate(right)) ++right;
  std::u16string caption(text.substr(0, left));
  caption += dots;
  caption += text.substr(right);
  return caption;
}

std::u16string clsCommon::FormatString(std::u16string_view format, std::span<const std::u16string> values) const {
  std::u16string text(format);
  for (std::size_t n = 1; n <= 6; ++n) {
    const std::u16string placeholder{u'%', static_cast<char16_t>(u'0' + n), u'%'};
    const std::u16string value = n <= values.size() ? values[n - 1] : u"";
    // Every round searches from the start of the text, so a value may form a new placeholder together with its
    // neighbours. That may never end, even if no value contains the placeholder itself: the rounds are limited.
    std::size_t rounds_left = 8 * (text.size() + value.size());
    for (std::size_t at; (at = text.find(placeholder)) != std::u16string::npos; --rounds_left) {
      if (rounds_left == 0 || value.find(placeholder) != std::u16string::npos)
        throw failure(FailureNumber::kInvalidCall,
                      formatted(u"The value for {} brings back its placeholder", placeholder));
      text.replace(at, placeholder.size(), value);
    }
  }
  return text;
}

void clsCommon::DeleteFile(std::u16string_view file_name) const {
  FileSystem& files = *ports().files;
  try {
    const auto info = files.info(file_name);
    if (info && info->is_read_only) files.set_read_only(file_name, false);
    files.remove_file(file_name);
  } catch (const failure&) {
    // By contract this function does not fail.
  }
}

bool clsCommon::FileExists(std::u16string_view file_name) const {
  try {
    return !ports().files->find(file_name).empty();
  } catch (const failure&) {
    return false;  // a flag is all that hosts get; our own code asks the port
  }
}

std::u16string ForegroundCaption() { return ports().desktop->foreground_caption().value_or(u"*"); }

}  // namespace kavo
