// How many texts of real pages are found, against labels given by hand. They lie beside the project where it is
// developed.
#include <gtest/gtest.h>

#include <charconv>
#include <cstdio>
#include <fstream>
#include <map>

#include "platform/unicode.h"
#include "script_page.h"
#include "support/corpus.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

using script::Unit;
using script::Verdict;

struct Label {
  std::size_t line = 0;
  std::size_t column = 0;
  std::string language, literal, label, why;
  std::size_t begin = 0;  // in the page, in bytes
  std::size_t end = 0;
};

std::map<std::string, std::vector<Label>> read_labels() {
  std::map<std::string, std::vector<Label>> pages;
  std::ifstream file(KAVO_SCRIPT_LABELS);
  std::string line;
  std::getline(file, line);  // the heads of the columns
  while (std::getline(file, line)) {
    std::vector<std::string> cells(1);
    for (const char c : line)
      if (c == '\t')
        cells.emplace_back();
      else
        cells.back() += c;
    if (cells.size() < 7) continue;
    Label label{.language = cells[3], .literal = cells[4], .label = cells[5], .why = cells[6]};
    std::from_chars(cells[1].data(), cells[1].data() + cells[1].size(), label.line);
    std::from_chars(cells[2].data(), cells[2].data() + cells[2].size(), label.column);
    pages[cells[0]].push_back(label);
  }
  return pages;
}

// Bytes of the page that the label's literal stands for: a line end or a tab is written "\n" or "\t" there.
std::size_t literal_size(std::string_view page, std::size_t begin, std::string_view literal, const TextCoding& coding) {
  std::string bytes;
  coding.encode(literal, bytes, [](std::string_view, std::string&) {});
  std::size_t at = begin;
  for (std::size_t i = 0; i < bytes.size() && at < page.size(); ++i, ++at) {
    if (bytes[i] == page[at]) continue;
    if (bytes[i] == '\\' && i + 1 < bytes.size() && (page[at] == '\n' || page[at] == '\t' || page[at] == '\r')) ++i;
    if (page[at] == '\r' && at + 1 < page.size() && page[at + 1] == '\n') ++at;
  }
  return at - begin;
}

// Marks the letters of a literal that stand outside of its tags, references and escapes.
std::vector<bool> shown_letters(std::string_view literal) {
  std::vector<bool> letters(literal.size());
  const std::size_t first = literal.find_first_of("<>");
  const bool begins_in_tag = first != std::string_view::npos && literal[first] == '>' &&
                             literal.substr(1, first - 1).find_first_of("='\"") != std::string_view::npos;
  // '" alt="'
  const bool begins_with_attribute = literal.size() > 3 && literal[1] == '"' && literal[2] == ' ';
  bool in_tag = begins_in_tag || begins_with_attribute;
  for (std::size_t i = 1; i + 1 < literal.size(); ++i) {
    const char c = literal[i];
    if (c == '<' && (script::is_letter(literal[i + 1]) || literal[i + 1] == '/' || literal[i + 1] == '!'))
      in_tag = true;
    if (!in_tag && (c == '&' || c == '\\') && script::is_letter(literal[i + 1])) {
      const std::size_t end = c == '&' ? literal.find(';', i) : i + 1;
      if (end != std::string_view::npos && end - i < 10) i = end;
      continue;
    }
    letters[i] = !in_tag && script::is_name_start(c) && c != '_';
    if (c == '>') in_tag = false;
  }
  return letters;
}

struct Count {
  int texts = 0, found = 0, open = 0, right = 0;
};

TEST(ScriptLabels, TextsAreFoundAndLittleElse) {
  const auto folder = corpus_folder();
  const auto pages = read_labels();
  if (!folder || pages.empty()) GTEST_SKIP() << "the real pages or their labels are not here: " << KAVO_SCRIPT_LABELS;
  std::map<std::string, Count> counts;
  for (const auto& [name, page_labels] : pages) {
    std::u16string path = *folder + u"\\" + to_utf16(name);
    std::replace(path.begin(), path.end(), u'/', u'\\');
    const std::string page = read_file(path);
    const TextCoding coding(name.find("big-preamble") != std::string::npos ? 1251 : 1252);
    const std::string extension = name.substr(name.rfind('.') + 1);
    const std::vector<Unit> units = units_of_page(page, extension, coding, extension == "phpcnt");
    std::vector<std::size_t> lines{0};
    for (std::size_t i = 0; i < page.size(); ++i)
      if (page[i] == '\n') lines.push_back(i + 1);
    std::vector<bool> is_open(page.size());
    for (const Unit& unit : units)
      for (const auto& part : unit.parts)
        if (unit.verdict == Verdict::kText && !part.is_code)
          std::fill(is_open.begin() + static_cast<std::ptrdiff_t>(part.begin),
                    is_open.begin() + static_cast<std::ptrdiff_t>(part.end), true);
    std::vector<Label> labels = page_labels;
    std::vector<const Label*> by_byte(page.size());
    for (Label& label : labels) {
      label.begin = lines.at(label.line - 1) + label.column - 1;
      label.end = std::min(label.begin + literal_size(page, label.begin, label.literal, coding), page.size());
      for (std::size_t i = label.begin; i < label.end; ++i) by_byte[i] = &label;
      if (label.label != "text") continue;
      const std::string_view literal = std::string_view(page).substr(label.begin, label.end - label.begin);
      const std::vector<bool> letters = shown_letters(literal);
      bool has_any = false, has_all = true;
      for (std::size_t i = 0; i < literal.size(); ++i) {
        has_any = has_any || (script::is_name_start(literal[i]) && is_open[label.begin + i]);
        has_all = has_all && (!letters[i] || is_open[label.begin + i]);
      }
      ++counts[label.language].texts;
      counts[label.language].found += has_any && has_all ? 1 : 0;
      if (!has_any || !has_all) std::printf("missed: %s:%zu %s\n", name.c_str(), label.line, label.literal.c_str());
    }
    for (const Unit& unit : units) {
      if (unit.verdict != Verdict::kText) continue;
      const Label* label = nullptr;
      bool is_right = false;
      for (const auto& part : unit.parts)
        for (std::size_t i = part.begin; i < part.end && !part.is_code; ++i) {
          if (by_byte[i] != nullptr && label == nullptr) label = by_byte[i];
          is_right =
              is_right || (by_byte[i] != nullptr && by_byte[i]->label == "text" && script::is_name_start(page[i]));
        }
      ASSERT_NE(label, nullptr) << name << ": a unit outside of all literals, at byte " << unit.begin;
      ++counts[label->language].open;
      counts[label->language].right += is_right ? 1 : 0;
      if (!is_right) std::printf("no text: %s:%zu %s\n", name.c_str(), label->line, label->literal.c_str());
    }
  }
  Count all;
  for (const auto& [language, count] : counts) {
    all = {all.texts + count.texts, all.found + count.found, all.open + count.open, all.right + count.right};
    std::printf("%-11s texts %4d, found %4d   open units %4d, right %4d\n", language.c_str(), count.texts, count.found,
                count.open, count.right);
    constexpr int kEnough = 50;
    if (count.texts < kEnough) continue;
    EXPECT_GE(count.found * 100, count.texts * 98) << language;
    EXPECT_GE(count.right * 100, count.open * 90) << language;
  }
  std::printf("%-11s texts %4d, found %4d   open units %4d, right %4d\n", "all", all.texts, all.found, all.open,
              all.right);
  EXPECT_GE(all.found * 100, all.texts * 98);
  EXPECT_GE(all.right * 100, all.open * 90);
}

}  // namespace
}  // namespace kavo::test
