// Removal and insertion of objects written as plainly as possible, over a list of lines. The tests and the fuzzer
// compare the fast ones with it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mif/line_pieces.h"

namespace kavo::test {

struct TwinLine {
  std::string text;
  bool terminated;
};

inline std::vector<TwinLine> twin_lines(std::string_view bytes) {
  std::vector<TwinLine> lines;
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (c != '\r' && c != '\n') {
      text += c;
      continue;
    }
    if (i + 1 < bytes.size() && (bytes[i + 1] == '\r' || bytes[i + 1] == '\n') && bytes[i + 1] != c) ++i;
    lines.push_back({text, true});
    text.clear();
  }
  if (!text.empty()) lines.push_back({text, false});
  return lines;
}

inline std::string with_crlf(std::string_view bytes) {
  std::string result;
  for (const TwinLine& line : twin_lines(bytes)) result += line.text + (line.terminated ? "\r\n" : "");
  return result;
}

// The first placeholder of a text and what stands before and after it.
struct TwinPlaceholder {
  std::string before, placeholder, after;
};
inline std::optional<TwinPlaceholder> twin_placeholder(const std::string& text) {
  constexpr std::string_view start = "<KAVOObj ";
  for (std::size_t at = 0; (at = text.find(start, at)) != std::string::npos; ++at) {
    const std::size_t close = text.find('>', at);
    if (close == std::string::npos || close - at >= LinePieces::kUncut || text[close - 1] == '\\') continue;
    return TwinPlaceholder{text.substr(0, at), text.substr(at, close + 1 - at), text.substr(close + 1)};
  }
  return std::nullopt;
}

class InsertionTwin {
 public:
  explicit InsertionTwin(std::string_view objects) : objects_(twin_lines(objects)) {}

  std::string run(std::string_view document) {
    bool any = false;
    for (const TwinLine& line : twin_lines(document)) any = any || twin_placeholder(line.text);
    if (!any) return std::string(document);
    for (const TwinLine& line : twin_lines(document)) insert(line);
    return result_;
  }

 private:
  void insert(const TwinLine& line) {
    std::vector<std::string> parts;  // the lines that this one becomes
    std::string rest = line.text;
    while (const auto found = twin_placeholder(rest)) {
      if (!found->before.empty()) parts.push_back(found->before);
      add_object(found->placeholder, parts);
      rest = found->after;
    }
    if (!rest.empty() || parts.empty()) parts.push_back(rest);
    for (std::size_t i = 0; i < parts.size(); ++i)
      result_ += parts[i] + (i + 1 < parts.size() || line.terminated ? "\r\n" : "");
  }

  bool search(const std::string& placeholder) {
    for (int pass = 0; pass < 2; ++pass) {
      while (next_ < objects_.size())
        if (objects_[next_++].text.find(placeholder) != std::string::npos) return true;
      if (pass == 0) next_ = 0;
    }
    return false;
  }

  void add_object(const std::string& placeholder, std::vector<std::string>& parts) {
    if (search(placeholder)) {
      while (next_ < objects_.size()) {
        const std::string& text = objects_[next_++].text;
        if (text.starts_with("<KAVOObj ")) break;
        parts.push_back(text);
        if (text.starts_with("=EndInset")) return;
      }
    }
    parts.push_back("=EndInset");
  }

  std::vector<TwinLine> objects_;
  std::size_t next_ = 0;
  std::string result_;
};

}  // namespace kavo::test
