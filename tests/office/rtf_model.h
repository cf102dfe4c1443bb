// The slow twin of the RTF operations: whole documents in memory, byte by byte, written to be read against the format
// and to share nothing with the library.
#pragma once

#include <cctype>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavo::test {

struct ModelExtraction {
  std::string rtf;
  std::string objects;
  std::size_t count = 0;
};

struct ModelInsertion {
  std::int32_t result = 0;
  std::string rtf;
};

namespace model {

inline const std::string kStart = "{\\v\\mor OBJ ";

inline std::string marker(std::size_t number) { return kStart + std::to_string(number) + " }"; }

inline bool is_rtf(std::string_view text) {
  std::size_t at = text.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
  while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at]))) ++at;
  return text.substr(at, 5) == "{\\rtf";
}

// Length of the marker line "{\v\mor OBJ n } CR LF" at a position; 0 when none stands there.
inline std::size_t marker_line(std::string_view text, std::size_t at) {
  if (text.substr(at, kStart.size()) != kStart) return 0;
  std::size_t p = at + kStart.size();
  const std::size_t digits = p;
  while (p < text.size() && std::isdigit(static_cast<unsigned char>(text[p]))) ++p;
  if (p == digits || text[digits] == '0' || p - digits > 10) return 0;
  if (std::stoull(std::string(text.substr(digits, p - digits))) > 0xFFFFFFFFu) return 0;
  return text.substr(p, 4) == " }\r\n" ? p + 4 - at : 0;
}

inline bool line_begins(std::string_view text, std::size_t at) {
  return at == 0 || (at >= 2 && text[at - 2] == '\r' && text[at - 1] == '\n');
}

inline std::size_t count_marker_lines(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) count += line_begins(text, i) && marker_line(text, i) != 0;
  return count;
}

// Position after the group that begins at `at`; the size of the document when it never ends.
inline std::size_t group_end(std::string_view text, std::size_t at) {
  std::size_t depth = 0;
  std::size_t i = at;
  while (i < text.size()) {
    if (text[i] == '{') ++depth;
    if (text[i] == '}' && --depth == 0) return i + 1;
    if (text[i] == '\\' && text.substr(i, 2) == "\\\\") {
      i += 2;
      continue;
    }
    if (text.substr(i, 4) == "\\bin") {
      std::size_t p = i + 4;
      while (p < text.size() && std::isdigit(static_cast<unsigned char>(text[p]))) ++p;
      const std::size_t digits = p - (i + 4);
      if (digits >= 1 && digits <= 10) {
        const auto size = std::stoull(std::string(text.substr(i + 4, digits)));
        if (p < text.size() && text[p] == ' ') ++p;
        if (size >= text.size() - p) return text.size();
        i = p + static_cast<std::size_t>(size);
        continue;
      }
    }
    ++i;
  }
  return text.size();
}

}  // namespace model

// Nothing for a document that is refused because it is not RTF or holds a marker already.
inline std::optional<ModelExtraction> model_extract(std::string_view document) {
  ModelExtraction result;
  if (!model::is_rtf(document)) return std::nullopt;
  for (std::size_t i = 0; i < document.size();) {
    if (document.substr(i, model::kStart.size()) == model::kStart) return std::nullopt;
    if (document.substr(i, 6) == "{\\pict" || document.substr(i, 8) == "{\\object") {
      ++result.count;
      const std::size_t end = model::group_end(document, i);
      result.rtf += model::marker(result.count);
      result.objects += model::marker(result.count) + "\r\n";
      result.objects += document.substr(i, end - i);
      result.objects += "\r\n";
      i = end;
    } else {
      result.rtf += document[i++];
    }
  }
  result.objects += model::marker(result.count + 1) + "\r\n";
  if (model::count_marker_lines(result.objects) != result.count + 1) return std::nullopt;
  return result;
}

inline ModelInsertion model_insert(std::string_view rtf, std::string_view objects) {
  if (!model::is_rtf(rtf)) return {.result = 1, .rtf = std::string(rtf)};
  ModelInsertion result;
  std::size_t place = 0;
  const auto look_up = [&](std::string_view wanted) -> std::optional<std::string> {
    const std::string line = std::string(wanted) + "\r\n";
    for (const std::size_t from : {place, std::size_t{0}}) {
      for (std::size_t i = from; i < objects.size(); ++i) {
        if (!model::line_begins(objects, i) || model::marker_line(objects, i) == 0 ||
            objects.substr(i, line.size()) != line)
          continue;
        const std::size_t begin = i + line.size();
        for (std::size_t end = begin; end < objects.size(); ++end) {
          if (!model::line_begins(objects, end) || model::marker_line(objects, end) == 0) continue;
          place = end;
          return std::string(objects.substr(begin, end == begin ? 0 : end - begin - 2));
        }
      }
    }
    return std::nullopt;
  };
  for (std::size_t i = 0; i < rtf.size();) {
    if (rtf.substr(i, model::kStart.size()) != model::kStart) {
      result.rtf += rtf[i++];
      continue;
    }
    const std::size_t end = rtf.find('}', i);
    if (end != std::string_view::npos) {
      if (const auto object = look_up(rtf.substr(i, end + 1 - i))) {
        result.rtf += *object;
        i = end + 1;
        continue;
      }
    }
    result.result = 1;
    result.rtf += model::kStart;
    i += model::kStart.size();
  }
  return result;
}

}  // namespace kavo::test
