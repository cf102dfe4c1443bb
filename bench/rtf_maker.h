// Makes RTF documents of any size as word processors write them: runs of text in nested groups, pictures in hexadecimal
// lines or raw data, and embedded objects with a picture as their result.
#pragma once

#include <cstddef>
#include <random>
#include <string>

namespace kavo::bench {

class RtfMaker {
 public:
  // `picture_percent` of the bytes are pictures and objects, the rest is text.
  explicit RtfMaker(unsigned picture_percent = 60) : picture_percent_(picture_percent) {}

  std::string make(std::size_t bytes) {
    text_ =
        "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\froman\\fcharset0 Serif;}{\\f1\\fswiss\\fcharset0 "
        "Sans;}}\r\n"
        "{\\colortbl;\\red0\\green0\\blue0;}\\viewkind4\\uc1\\pard\\f0\\fs24\r\n";
    std::size_t pictures = 0;
    while (text_.size() < bytes) {
      const std::size_t before = text_.size();
      if (pictures * 100 < text_.size() * picture_percent_) {
        add_object();
        pictures += text_.size() - before;
      } else {
        add_paragraph();
      }
    }
    text_ += "}\r\n";
    return std::move(text_);
  }

 private:
  void add_paragraph() {
    static constexpr const char* words[] = {"the",    "pump",    "must",           "be",    "closed",
                                            "before", "service", "r\\'e9sum\\'e9", "valve", "pressure",
                                            "see",    "page",    "caution"};
    text_ += "\\pard\\plain \\ltrpar\\ql \\li0\\ri0\\widctlpar\\rin0\\lin0\\itap0 ";
    const std::size_t runs = 2 + random_() % 6;
    for (std::size_t run = 0; run < runs; ++run) {
      text_ += random_() % 3 == 0 ? "{\\b\\rtlch\\fcs1 \\af0 \\ltrch\\fcs0 \\insrsid1509823 " : "{\\insrsid9831240 ";
      const std::size_t count = 3 + random_() % 20;
      for (std::size_t i = 0; i < count; ++i) {
        text_ += words[random_() % std::size(words)];
        text_ += i % 8 == 7 ? ",\r\n" : " ";
      }
      text_ += '}';
    }
    text_ += "\\par\r\n";
  }

  void add_object() {
    switch (random_() % 4) {
      case 0:
        text_ += "{\\object\\objemb\\objw3600\\objh3600{\\*\\objclass Chart}{\\*\\objdata \r\n";
        add_hex(20'000 + random_() % 200'000);
        text_ += "}{\\result {\\fs20 ";
        add_picture();
        text_ += "}}}";
        break;
      case 1:
        text_ += "{\\*\\shppict";
        add_picture();
        text_ += "}{\\nonshppict";
        add_picture();
        text_ += '}';
        break;
      case 2:
        add_raw_picture();
        break;
      default:
        add_picture();
        break;
    }
  }

  void add_picture() {
    text_ +=
        "{\\pict\\picscalex100\\picscaley100\\picw6350\\pich6350\\picwgoal3600\\pichgoal3600\\pngblip\\bliptag1\r\n";
    add_hex(5'000 + random_() % 150'000);
    text_ += '}';
  }

  void add_hex(std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; i += 64) {
      for (int word = 0; word < 8; ++word) {
        std::uint32_t bits = static_cast<std::uint32_t>(random_());
        for (int digit = 0; digit < 8; ++digit, bits >>= 4) text_ += "0123456789abcdef"[bits & 15];
      }
      text_ += "\r\n";
    }
  }

  void add_raw_picture() {
    const std::size_t bytes = 5'000 + random_() % 100'000;
    text_ += "{\\pict\\jpegblip\\picw1106\\pich263\\bin" + std::to_string(bytes) + " ";
    for (std::size_t i = 0; i < bytes; ++i) text_ += static_cast<char>(random_());
    text_ += '}';
  }

  unsigned picture_percent_;
  std::mt19937 random_{20260101};
  std::string text_;
};

}  // namespace kavo::bench
