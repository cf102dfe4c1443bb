// The simple twins of script protection and restoring: the documented rules, a character at a time and a line at a
// time, with no thought for speed. The scanners must give the same bytes.
//
// They do not handle pages with text that looks like a placeholder; asp2html_look_alike_test.cpp tests those.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace kavo::test {

inline std::string lower(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  return text;
}

// Lines with their ends; CR LF and LF CR are one end.
inline std::vector<std::string> twin_lines(std::string_view text) {
  std::vector<std::string> lines;
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    line += text[i];
    if (text[i] != '\r' && text[i] != '\n') continue;
    const bool pair = i + 1 < text.size() && (text[i + 1] == '\r' || text[i + 1] == '\n') && text[i + 1] != text[i];
    if (pair) line += text[++i];
    lines.push_back(line);
    line.clear();
  }
  if (!line.empty()) lines.push_back(line);
  return lines;
}

struct Protected {
  std::string page;
  std::string script;
  bool operator==(const Protected&) const = default;
};

inline Protected twin_protect(std::string_view input) {
  Protected out;
  out.script = "\r\n";
  long count = 0;
  bool in_asp = false, in_php = false, in_script = false, in_comment = false, in_tag = false, in_quotes = false;
  int depth = 0;
  std::string quote, previous, recent;
  for (const std::string& line : twin_lines(input)) {
    std::string page, script;
    const auto at = [&](std::size_t i, std::size_t n) { return i <= line.size() ? line.substr(i - 1, n) : ""; };
    for (std::size_t i = 1; i <= line.size(); ++i) {
      const std::string c = at(i, 1);
      const auto in_block = [&] { return in_asp || in_php || in_script; };
      const bool was_open = in_block();
      bool begins_asp = false, begins_php = false, begins_script = false;
      if (c == "<" && !in_comment) {
        if (at(i, 2) == "<%" && !in_script && !in_php) {
          begins_asp = true;
        } else if (lower(at(i, 5)) == "<?php" && !in_script && !in_asp) {
          begins_php = true;
        } else if ((lower(at(i, 7)) == "<script" || lower(at(i, 5)) == "<java") && !in_asp && !in_php) {
          begins_script = true;
        } else if (at(i, 4) == "<!--") {
          in_comment = true;
        } else if (!in_block() && !in_quotes) {
          const std::string next = lower(at(i + 1, 1));
          if (next.empty() || std::string("/abcdefghijklmnopqrstuvwxyz").find(next) != std::string::npos) {
            in_tag = true;
            in_quotes = false;
            ++depth;
          }
        }
      }
      if (c == ">") {
        if (in_comment && i > 2 && at(i - 2, 3) == "-->") in_comment = false;
        if (!in_comment && in_tag && !in_block() && !in_quotes && --depth == 0) in_tag = false;
      }
      if (c == quote && !in_comment && in_tag && !in_block()) {
        in_quotes = false;
        quote.clear();
      } else if ((c == "\"" || c == "'") && !in_comment && in_tag && !in_block() && !in_quotes) {
        in_quotes = true;
        quote = c;
      }
      if (begins_asp || begins_php || begins_script) {
        ++count;
        if (was_open) {
          out.script += script + "\r\n";
          script.clear();
        }
        const bool wrap = !begins_script && in_tag && !in_quotes;
        const std::string placeholder = "<!-- ASP2HTML " + std::to_string(count) + (wrap ? " Q" : "") + " -->";
        if (wrap) page += previous == "=" ? "\"" : "ASP2HTML=\"";
        page += placeholder;
        if (wrap) page += "\"";
        out.script += placeholder + "\r\n";
        if (begins_asp) in_asp = true;
        if (begins_php) in_php = true;
        if (begins_script) in_script = true;
      }
      if (c != " ") previous = c;
      (in_block() ? script : page) += c;
      recent = recent + c;
      if (recent.size() > 10) recent.erase(0, recent.size() - 10);
      const auto ends = [&](std::string_view text) { return lower(recent).ends_with(text); };
      bool ended = false;
      if (ends("%>") && in_asp) {
        in_asp = false;
        ended = true;
      } else if (ends("?>") && in_php) {
        in_php = false;
        ended = true;
      } else if ((ends("</script>") || ends("</java>")) && in_script) {
        in_script = in_quotes = in_asp = in_tag = false;
        ended = true;
      }
      if (ended && !script.empty()) {
        out.script += script + "\r\n";
        script.clear();
      }
    }
    out.script += script;
    out.page += page;
  }
  if (in_asp || in_php || in_script) out.script += "\r\n";
  return out;
}

inline std::string twin_unescape(std::string line) {
  for (std::size_t from = 0;;) {
    const auto at = lower(line).find("&lt;!-- asp2html", from);
    if (at == std::string::npos) return line;
    line.replace(at, 16, "<!-- ASP2HTML");
    if (const auto end = lower(line).find("--&gt;", at); end != std::string::npos) line.replace(end, 6, "-->");
    from = at + 13;
  }
}

// `text` must not hold a block whose text holds a marker: that one would be searched again, for ever.
inline std::string twin_restore(std::string_view html, std::string_view script) {
  const std::vector<std::string> blocks = twin_lines(script);
  const std::string marker = "<!-- ASP2HTML", attribute = "ASP2HTML=\"";
  std::size_t reader = 0;
  std::string out;
  for (std::string line : twin_lines(html)) {
    line = twin_unescape(line);
    for (;;) {
      auto p = line.find(marker);
      if (p == std::string::npos) break;
      const auto end = line.find("-->", p);
      if (end == std::string::npos) break;  // a comment that does not end on its line is no placeholder
      if (p >= 10 && line.substr(p - 10, 10) == attribute) p -= 10;
      std::string placeholder = line.substr(p, end + 3 - p);
      if (placeholder[0] != '<' && end + 3 < line.size()) placeholder += line[end + 3];
      line.erase(p, placeholder.size());
      const bool wrapped = placeholder.find("Q -->") != std::string::npos;
      if (placeholder[0] != '<') {
        placeholder = placeholder.substr(10, placeholder.size() - 11);
      } else if (wrapped && p >= 1 && line.substr(p - 1, 2) == "\"\"") {
        line.erase(p - 1, 2);
        --p;
      }
      bool found = false;
      for (int pass = 1; pass <= 2 && !found; ++pass) {
        while (reader < blocks.size() && !found) found = blocks[reader++].starts_with(placeholder);
        if (!found && pass == 1) reader = 0;
      }
      if (!found) continue;
      std::string text;
      while (reader < blocks.size() && !blocks[reader].starts_with(marker)) text += blocks[reader++];
      text.resize(text.size() - std::min<std::size_t>(2, text.size()));
      line.insert(p, text);
    }
    out += line;
  }
  return out;
}

}  // namespace kavo::test
