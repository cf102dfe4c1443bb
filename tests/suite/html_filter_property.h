// What holds for any bytes on the way through the HTML filter; tests and the fuzzer share it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "suite/document/coded_text.h"
#include "suite/filter_road.h"

namespace kavo::test {

// A translation that shows whether every step took place: each vowel gets an accent, codes stay.
inline std::string accented(std::string_view coded) {
  std::string result;
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code) {
      append_code(result, part.kind, part.text);
      continue;
    }
    for (const char c : part.text) {
      const std::size_t vowel = std::string_view("aeiou").find(c);
      if (vowel == std::string_view::npos)
        result += c;
      else
        result += std::string_view("\xC3\xA0\xC3\xA9\xC3\xAE\xC3\xB4\xC3\xBB").substr(vowel * 2, 2);
    }
  }
  return result;
}

// "" when a page comes back unchanged byte for byte and, when `translates`, translated with every text in its place;
// else what is broken.
inline std::string broken_html_property(std::string_view page, unsigned code_page, bool translates,
                                        std::size_t* text_count = nullptr) {
  FilterRoad road(u"K19HTM", u".htm", code_page);
  const std::vector<std::string> texts = road.take_apart(page);
  if (text_count) *text_count = texts.size();
  if (road.put_together({}) != page) return "the unchanged page differs";
  if (!translates) return {};
  std::vector<std::string> wanted;
  for (const std::string& text : texts) wanted.push_back(accented(text));
  return broken_texts(wanted, road.take_apart(road.put_together(wanted)));
}

// For any bytes: the first tells the size of the blocks and the coding, the rest is the page.
inline std::string broken_html_filter_property(std::string_view input) {
  if (input.empty()) return {};
  const auto choice = static_cast<unsigned char>(input.front());
  const BlockSizeScope scope(choice / 4 == 0 ? 4096 : choice / 4);
  constexpr unsigned code_pages[] = {65001, 1252, 932, 65001};
  // In other codings an invalid byte may join the text that a translation puts after it.
  const unsigned code_page = code_pages[choice % 4];
  const std::string_view page = input.substr(1);
  const bool translates = code_page == 65001 && page.find("charset") == std::string_view::npos &&
                          page.find("CHARSET") == std::string_view::npos;
  return broken_html_property(page, code_page, translates);
}

}  // namespace kavo::test
