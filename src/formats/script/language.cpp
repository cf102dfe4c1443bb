#include "formats/script/language.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/trimmed.h"

namespace kavo::script {
namespace {

struct Row {
  std::string_view name;  // in small letters; longer names that begin with it count, too ("javascript1.2")
  Language language;
};

constexpr Row kNames[] = {
    {"vbs", Language::kVbScript},
    {"visualbasic", Language::kVbScript},
    {"javascript", Language::kJavaScript},
    {"jscript", Language::kJavaScript},
    {"js", Language::kJavaScript},
    {"ecmascript", Language::kJavaScript},
    {"livescript", Language::kJavaScript},
    {"x-javascript", Language::kJavaScript},
    {"x-ecmascript", Language::kJavaScript},
    {"babel", Language::kJavaScript},
    {"module", Language::kJavaScript},
    {"java", Language::kJava},
    {"php", Language::kPhp},
    {"x-php", Language::kPhp},
    {"x-httpd-php", Language::kPhp},
};

constexpr Row kExtensions[] = {
    {"asp", Language::kVbScript}, {"asa", Language::kVbScript}, {"jsp", Language::kJava},   {"jspf", Language::kJava},
    {"jspx", Language::kJava},    {"php", Language::kPhp},      {"phtml", Language::kPhp},  {"php3", Language::kPhp},
    {"php4", Language::kPhp},     {"php5", Language::kPhp},     {"phpcnt", Language::kPhp},
};

bool begins_with_word(std::string_view text, std::string_view word) {
  return text.size() >= word.size() && equal_word(text.substr(0, word.size()), word);
}

constexpr std::string_view kWhiteSpace = " \t\f\v\r\n";

}  // namespace

Language language_of_name(std::string_view name) {
  name = trimmed(name, kWhiteSpace);
  if (const std::size_t parameters = name.find(';'); parameters != std::string_view::npos)
    name = trimmed(name.substr(0, parameters), kWhiteSpace);
  for (const std::string_view type : {"text/", "application/"})
    if (begins_with_word(name, type)) name.remove_prefix(type.size());
  for (const Row& row : kNames) {
    if (!begins_with_word(name, row.name)) continue;
    const std::string_view rest = name.substr(row.name.size());
    if (rest.empty() || !is_letter(rest.front()) || row.name == "vbs") return row.language;
  }
  return Language::kUnknown;
}

Language language_of_extension(std::string_view extension) {
  const auto* const found = std::find_if(std::begin(kExtensions), std::end(kExtensions),
                                         [&](const Row& row) { return equal_word(extension, row.name); });
  return found != std::end(kExtensions) ? found->language : Language::kUnknown;
}

// A page with any other extension is most likely an ASP page.
Language language_of_page(std::string_view extension) {
  const Language language = language_of_extension(extension);
  return language != Language::kUnknown ? language : Language::kVbScript;
}

std::optional<std::string_view> attribute_of(std::string_view tag, std::string_view name) {
  if (tag.starts_with("<%@")) tag.remove_prefix(3);
  if (tag.ends_with("%>")) tag.remove_suffix(2);
  std::size_t at = 0;
  const auto skip_space = [&] {
    while (at < tag.size() && (is_blank(tag[at]) || ends_line(tag[at]))) ++at;
  };
  const auto is_separator = [](char c) { return is_blank(c) || ends_line(c) || c == '>' || c == '='; };
  while (at < tag.size()) {
    skip_space();
    const std::size_t begin = at;
    while (at < tag.size() && !is_separator(tag[at])) ++at;
    const std::string_view word = tag.substr(begin, at - begin);
    skip_space();
    if (at >= tag.size()) return std::nullopt;
    if (tag[at] != '=') {
      if (at == begin) ++at;
      continue;
    }
    ++at;
    skip_space();
    const char quote = at < tag.size() && (tag[at] == '"' || tag[at] == '\'') ? tag[at] : '\0';
    if (quote != '\0') ++at;
    const std::size_t value = at;
    while (at < tag.size() && (quote != '\0' ? tag[at] != quote : !is_separator(tag[at]))) ++at;
    if (equal_word(word, name)) return tag.substr(value, at - value);
    if (quote != '\0' && at < tag.size()) ++at;
  }
  return std::nullopt;
}

Language language_of_directive(std::string_view directive, Language otherwise) {
  const auto value = attribute_of(directive, "language");
  return value ? language_of_name(*value) : otherwise;
}

ScriptTag read_script_tag(std::string_view tag, Language client, Language server) {
  ScriptTag result;
  const auto runat = attribute_of(tag, "runat");
  result.on_server = runat && equal_word(trimmed(*runat, kWhiteSpace), "server");
  result.language = result.on_server ? server : client;
  const auto type = attribute_of(tag, "type");
  const auto language = attribute_of(tag, "language");
  // Browsers go by the attribute "type". An element whose old attribute "language" has an unknown value is still a
  // script.
  if (type && !trimmed(*type, kWhiteSpace).empty()) {
    result.language = language_of_name(*type);
    result.is_script = result.language != Language::kUnknown || trimmed(*type, kWhiteSpace).ends_with("script");
  } else if (language && !trimmed(*language, kWhiteSpace).empty()) {
    result.language = language_of_name(*language);
  }
  return result;
}

}  // namespace kavo::script
