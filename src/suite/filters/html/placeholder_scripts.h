// The scripts that the placeholders of a page stand for, read from the script file that was made with the page.
//
// Both files hold the same placeholders in the same order, so the script file is read alongside the page, block by
// block: memory holds the scripts of one paragraph. If the two do not agree, nothing is said about any placeholder: a
// wrong script beside a text is worse than none.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "formats/html/marker_reader.h"
#include "formats/script/page_scripts.h"
#include "formats/text/text_coding.h"
#include "suite/filters/filter.h"

namespace kavo::html {

class PlaceholderScripts {
 public:
  // For the page that is being converted. `coding` is the coding of its bytes and must outlive the object. The script
  // file is the companion that `settings` names, or else the one beside the page.
  PlaceholderScripts(const ConversionSettings& settings, const TextCoding& coding);

  // What a placeholder or server code stands for, in short, in the page's coding; "" when it is not known.
  std::string meaning(std::string_view server_code);
  // True when it decides which part of the page is sent, so that the text after it does not continue the text before
  // it.
  bool divides(std::string_view server_code);
  // The PHP of server code after whose end PHP continues (formats/script/php_end.h); "" for any other server code.
  std::string unended_php(std::string_view server_code);
  // The script of a placeholder, in the page's coding. Returns any other bytes unchanged. Ask for placeholders in
  // order.
  std::string text(std::string_view bytes);
  // The number after that of the last script that was asked for.
  std::uint64_t reached() const { return first_ + read_.size(); }
  // Scripts before this number are not asked for again.
  void forget(std::uint64_t number) {
    for (; first_ < number && !read_.empty(); ++first_) read_.pop_front();
  }

 private:
  struct Script {
    std::string meaning;
    bool divides = false;
    std::string unended_php;
    std::string text;  // the script's text, if it was asked for
  };
  void open(const ConversionSettings& settings);
  const Script* find(std::string_view marker);
  Script script_of(std::string_view block);

  const TextCoding& coding_;
  script::PageScripts languages_;
  std::vector<script::Piece> pieces_;
  std::optional<MarkerReader> file_;
  std::uint64_t first_ = 1;  // number of the first script in read_
  std::deque<Script> read_;
  std::string block_;
  bool keeps_text_ = false;
};

}  // namespace kavo::html
