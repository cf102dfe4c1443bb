#include "suite/filters/rc/rc_checks.h"

#include <algorithm>

#include "formats/rc/rc_literal.h"
#include "platform/unicode.h"

namespace kavo::rc {
namespace {

// Finds markers that were typed as text.
void add_markers(std::string_view text, std::vector<std::string>& markers) {
  for (std::size_t at = text.find('%'); at < text.size(); at = text.find('%', at)) {
    const std::size_t length = marker_length(text.substr(at), at == 0 ? '\0' : text[at - 1]);
    if (length != 0) markers.emplace_back(text.substr(at, length));
    at += std::max<std::size_t>(length, 1);
  }
}

// True for "%d", which means the next argument. "%1", "%2" and macros say what they stand for.
bool has_order(const std::string& marker) {
  return !is_macro(marker) && marker.back() != '!' && !is_digit(marker.back());
}

std::vector<std::string> ordered(std::vector<std::string> markers) {
  std::erase_if(markers, [](const std::string& marker) { return !has_order(marker); });
  return markers;
}

}  // namespace

void RcChecks::see(const Hole& hole, std::string_view translation, const TextCoding& coding) {
  if (!tell_) return;
  const auto marker_of = [&](std::size_t begin, std::size_t end) {
    std::string text;
    coding.decode_run(std::string_view(hole.original).substr(begin, end - begin), text);
    return text.starts_with('%') || is_macro(text) ? text : std::string();
  };
  std::vector<std::string> wanted;
  for (const Hole::Code& code : hole.codes)
    if (std::string marker = marker_of(code.begin, code.end); !marker.empty()) wanted.push_back(std::move(marker));
  std::vector<std::string> found;
  std::string plain;
  CodedTextReader reader(translation);
  for (CodedPart part; reader.next(part);) {
    if (!part.is_code) {
      plain += part.text;
      add_markers(part.text, found);
    } else if (const Hole::Code* const code = hole.find(part)) {
      plain += ' ';
      if (std::string marker = marker_of(code->begin, code->end); !marker.empty()) found.push_back(std::move(marker));
    }
  }
  check_markers(hole, wanted, found);
  check_key(hole, to_place(hole.context), plain);
}

void RcChecks::check_markers(const Hole& hole, const std::vector<std::string>& wanted,
                             const std::vector<std::string>& found) {
  if (wanted == found) return;
  std::map<std::string, std::ptrdiff_t> counts;
  for (const std::string& marker : wanted) ++counts[marker];
  for (const std::string& marker : found) --counts[marker];
  bool is_complete = true;
  for (const auto& [marker, count] : counts) {
    if (count == 0) continue;
    is_complete = false;
    const bool is_known = std::ranges::find(wanted, marker) != wanted.end();
    tell(hole, (is_macro(marker) ? "the macro " : "the marker ") + marker +
                   (count > 0  ? " is missing"
                    : is_known ? " is doubled"
                               : " is not in the source"));
  }
  if (is_complete && ordered(wanted) != ordered(found))
    tell(hole, "the markers are in another order than in the source, which the program does not expect");
}

void RcChecks::check_key(const Hole& hole, const RcTextPlace& place, std::string_view plain) {
  const std::string key = access_key_of(plain);
  if (!place.key.empty() && key.empty()) {
    const bool is_doubled = plain.find('&') != std::string_view::npos;
    tell(hole, is_doubled ? "the translation has several access keys (&), or none that is a letter; the source has one"
                          : "the access key (&) is missing");
  }
  if (place.dialog != dialog_) {
    dialog_ = place.dialog;
    keys_.clear();
  }
  if (place.dialog == 0 || key.empty()) return;
  const auto [other, is_first] = keys_.try_emplace(key, Key{place.key, place_of(hole)});
  // A conflict that the source has, too, is not reported.
  if (is_first || (!place.key.empty() && place.key == other->second.in_source)) return;
  tell(hole,
       "the access key " + key + " is already used by another control of the dialog, " + to_utf8(other->second.place));
}

void RcChecks::tell(const Hole& hole, const std::string& text) const {
  tell_({place_of(hole) + u": " + to_utf16(text)});
}

}  // namespace kavo::rc
