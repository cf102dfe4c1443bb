// What holds for any bytes on the way through the HTML filter; tests and the fuzzer share it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "common/tud_names.h"
#include "platform/ports.h"
#include "suite/bilingual_document.h"
#include "suite/coded_text.h"
#include "suite/conversion.h"
#include "support/memory_files.h"

namespace kavo::test {

// A translation that every step can be seen in: each vowel gets an accent, codes stay.
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

class HtmlRoad {
 public:
  explicit HtmlRoad(unsigned code_page) : code_page_(code_page) { ports().files = &files_; }

  // The texts of a page, as coded text.
  std::vector<std::string> take_apart(std::string_view page) {
    files_.put(kPage, page);
    ConversionRequest request;
    request.document = kPage;
    request.tud = kTud;
    request.source_language = u"EN-US";
    request.target_language = u"EN-US";
    request.source_code_page = code_page_;
    request.filter = u"K19HTM";
    ProgressEvent progress;
    convert_document(request, progress);
    const BilingualDocument document(kTud);
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < document.size(); ++i) texts.emplace_back(document.segment(i).source);
    return texts;
  }

  // The page that was taken apart last, with these texts; {} for its own.
  std::string put_together(const std::vector<std::string>& texts) {
    BilingualDocument document(kTud);
    for (std::size_t i = 0; i < texts.size(); ++i) document.set_segment(i, texts[i], TranslationStatus::kTranslated, 0);
    document.save();
    TargetRequest request;
    request.target = kTarget;
    request.open_tag = kOpenTag;
    request.skeleton = skeleton_name_of(kTud);
    document.save_open_tag(request.open_tag);
    ProgressEvent progress;
    create_target(request, progress);
    return files_.get(kTarget);
  }

 private:
  static constexpr const char16_t* kPage = u"C:\\work\\a.htm";
  static constexpr const char16_t* kTud = u"C:\\work\\a.tud";
  static constexpr const char16_t* kOpenTag = u"C:\\work\\a.otf";
  static constexpr const char16_t* kTarget = u"C:\\work\\b.htm";

  PortsScope scope_;
  MemoryFiles files_;
  unsigned code_page_;
};

// "" when a page comes back unchanged byte for byte and, when `translates`, translated with every text in its place;
// else what is broken.
inline std::string broken_html_property(std::string_view page, unsigned code_page, bool translates,
                                        std::size_t* text_count = nullptr) {
  HtmlRoad road(code_page);
  const std::vector<std::string> texts = road.take_apart(page);
  if (text_count) *text_count = texts.size();
  if (road.put_together({}) != page) return "the unchanged page differs";
  if (!translates) return {};
  std::vector<std::string> wanted;
  for (const std::string& text : texts) wanted.push_back(accented(text));
  const std::string translated = road.put_together(wanted);
  const std::vector<std::string> found = road.take_apart(translated);
  for (std::size_t i = 0; i < wanted.size() && i < found.size(); ++i)
    if (found[i] != wanted[i])
      return "text " + std::to_string(i + 1) + " is \"" + found[i] + "\" instead of \"" + wanted[i] + "\"";
  if (found.size() != wanted.size())
    return std::to_string(found.size()) + " texts instead of " + std::to_string(wanted.size());
  return {};
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
