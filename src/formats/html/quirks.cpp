#include "formats/html/quirks.h"

#include <algorithm>
#include <optional>
#include <string>

#include "formats/html/elements.h"

namespace kavo {
namespace {

constexpr std::string_view kQuirksPrefixes[] = {
    "+//silmaril//dtd html pro v0r11 19970101//",
    "-//as//dtd html 3.0 aswedit + extensions//",
    "-//advasoft ltd//dtd html 3.0 aswedit + extensions//",
    "-//ietf//dtd html 2.0 level 1//",
    "-//ietf//dtd html 2.0 level 2//",
    "-//ietf//dtd html 2.0 strict level 1//",
    "-//ietf//dtd html 2.0 strict level 2//",
    "-//ietf//dtd html 2.0 strict//",
    "-//ietf//dtd html 2.0//",
    "-//ietf//dtd html 2.1e//",
    "-//ietf//dtd html 3.0//",
    "-//ietf//dtd html 3.2 final//",
    "-//ietf//dtd html 3.2//",
    "-//ietf//dtd html 3//",
    "-//ietf//dtd html level 0//",
    "-//ietf//dtd html level 1//",
    "-//ietf//dtd html level 2//",
    "-//ietf//dtd html level 3//",
    "-//ietf//dtd html strict level 0//",
    "-//ietf//dtd html strict level 1//",
    "-//ietf//dtd html strict level 2//",
    "-//ietf//dtd html strict level 3//",
    "-//ietf//dtd html strict//",
    "-//ietf//dtd html//",
    "-//metrius//dtd metrius presentational//",
    "-//microsoft//dtd internet explorer 2.0 html strict//",
    "-//microsoft//dtd internet explorer 2.0 html//",
    "-//microsoft//dtd internet explorer 2.0 tables//",
    "-//microsoft//dtd internet explorer 3.0 html strict//",
    "-//microsoft//dtd internet explorer 3.0 html//",
    "-//microsoft//dtd internet explorer 3.0 tables//",
    "-//netscape comm. corp.//dtd html//",
    "-//netscape comm. corp.//dtd strict html//",
    "-//o'reilly and associates//dtd html 2.0//",
    "-//o'reilly and associates//dtd html extended 1.0//",
    "-//o'reilly and associates//dtd html extended relaxed 1.0//",
    "-//sq//dtd html 2.0 hotmetal + extensions//",
    "-//softquad software//dtd hotmetal pro 6.0::19990601::extensions to html 4.0//",
    "-//softquad//dtd hotmetal pro 4.0::19971010::extensions to html 4.0//",
    "-//spyglass//dtd html 2.0 extended//",
    "-//sun microsystems corp.//dtd hotjava html//",
    "-//sun microsystems corp.//dtd hotjava strict html//",
    "-//w3c//dtd html 3 1995-03-24//",
    "-//w3c//dtd html 3.2 draft//",
    "-//w3c//dtd html 3.2 final//",
    "-//w3c//dtd html 3.2//",
    "-//w3c//dtd html 3.2s draft//",
    "-//w3c//dtd html 4.0 frameset//",
    "-//w3c//dtd html 4.0 transitional//",
    "-//w3c//dtd html experimental 19960712//",
    "-//w3c//dtd html experimental 970421//",
    "-//w3c//dtd w3 html//",
    "-//w3o//dtd w3 html 3.0//",
    "-//webtechs//dtd mozilla html 2.0//",
    "-//webtechs//dtd mozilla html//",
};
constexpr std::string_view kQuirksPrefixesWithoutSystem[] = {
    "-//w3c//dtd html 4.01 frameset//",
    "-//w3c//dtd html 4.01 transitional//",
};
constexpr std::string_view kQuirksIdentifiers[] = {
    "-//w3o//dtd w3 html strict 3.0//en//",
    "-/w3c/dtd html 4.0 transitional/en",
    "html",
};
constexpr std::string_view kQuirksSystem = "http://www.ibm.com/data/dtd/v11/ibmxhtml1-transitional.dtd";

// Reads the declaration, which is in lower case already.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}
  void skip_blanks() {
    while (!text_.empty() && html::is_html_space(text_[0])) text_.remove_prefix(1);
  }
  std::string_view word() {
    std::size_t size = 0;
    while (size < text_.size() && !html::is_html_space(text_[size])) ++size;
    return take(size);
  }
  bool skip(std::string_view word) {
    if (!text_.starts_with(word)) return false;
    text_.remove_prefix(word.size());
    return true;
  }
  // Reads a quoted identifier. Returns nothing when there is none here. Clears `sound` when its end is missing.
  std::optional<std::string_view> quoted(bool& sound) {
    skip_blanks();
    if (text_.empty() || (text_[0] != '"' && text_[0] != '\'')) return std::nullopt;
    const char quote = text_[0];
    text_.remove_prefix(1);
    const std::size_t size = std::min(text_.find(quote), text_.size());
    if (size == text_.size()) sound = false;
    const std::string_view value = take(size);
    if (!text_.empty()) text_.remove_prefix(1);
    return value;
  }
  bool empty() const { return text_.empty(); }

 private:
  std::string_view take(std::size_t size) {
    const std::string_view result = text_.substr(0, size);
    text_.remove_prefix(size);
    return result;
  }
  std::string_view text_;
};

}  // namespace

bool doctype_means_quirks(std::string_view text, bool complete) {
  std::string lower(text);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  constexpr std::size_t kKeyword = std::string_view("<!doctype").size();
  std::string_view body = std::string_view(lower).substr(std::min(kKeyword, lower.size()));
  if (body.ends_with('>')) body.remove_suffix(1);
  if (!complete) return true;

  Reader reader(body);
  reader.skip_blanks();
  if (reader.word() != "html") return true;
  reader.skip_blanks();
  if (reader.empty()) return false;
  bool sound = true;
  std::optional<std::string_view> public_id, system_id;
  if (reader.skip("public")) {
    public_id = reader.quoted(sound);
    if (!public_id || !sound) return true;
    system_id = reader.quoted(sound);
    if (!system_id) {
      reader.skip_blanks();
      if (!reader.empty()) return true;
    }
  } else if (reader.skip("system")) {
    system_id = reader.quoted(sound);
    if (!system_id) return true;
  } else {
    return true;
  }
  if (!sound) return true;

  if (system_id && *system_id == kQuirksSystem) return true;
  if (!public_id) return false;
  const auto begins_with_one = [&](const auto& prefixes) {
    return std::any_of(std::begin(prefixes), std::end(prefixes),
                       [&](std::string_view prefix) { return public_id->starts_with(prefix); });
  };
  return std::find(std::begin(kQuirksIdentifiers), std::end(kQuirksIdentifiers), *public_id) !=
             std::end(kQuirksIdentifiers) ||
         begins_with_one(kQuirksPrefixes) || (!system_id && begins_with_one(kQuirksPrefixesWithoutSystem));
}

}  // namespace kavo
