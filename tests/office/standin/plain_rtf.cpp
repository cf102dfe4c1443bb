#include "office/standin/plain_rtf.h"

#include <windows.h>
// windows.h first.
#include <charconv>
#include <cstdint>

#include "platform/unicode.h"

namespace kavo::test {
namespace {

constexpr std::string_view kPicture = "picture ";

class Reader {
 public:
  explicit Reader(std::string_view rtf) : rest_(rtf) {}

  std::vector<std::string> read() {
    while (!rest_.empty()) {
      const char c = rest_[0];
      rest_.remove_prefix(1);
      if (c == '{')
        groups_.push_back(groups_.empty() ? Group{} : groups_.back());
      else if (c == '}' && groups_.size() > 1)
        groups_.pop_back();
      else if (c == '\\')
        control();
      else if (c != '\r' && c != '\n' && c != '}')
        character(static_cast<unsigned char>(c));
    }
    return texts_;
  }

 private:
  struct Group {
    bool is_left_out = false;
    bool is_picture = false;
    std::size_t uc = 1;  // characters after \u for readers without Unicode
  };

  void control() {
    std::size_t length = 0;
    while (length < rest_.size() && is_letter(rest_[length])) ++length;
    if (length == 0) return symbol();
    const std::string_view word = take(length);
    length = rest_.starts_with('-') ? 1 : 0;
    while (length < rest_.size() && rest_[length] >= '0' && rest_[length] <= '9') ++length;
    const std::string_view digits = take(length);
    int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (rest_.starts_with(' ')) take(1);
    obey(word, number);
  }

  void symbol() {
    const char c = take(1)[0];
    if (c == '*') {
      groups_.back().is_left_out = true;
    } else if (c == '\'') {
      unsigned char code = 0;
      const std::string_view digits = take(2);
      std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
      const char byte = static_cast<char>(code);
      wchar_t unit = 0;
      MultiByteToWideChar(1252, 0, &byte, 1, &unit, 1);  // what the tests translate to is written in it
      character(static_cast<char16_t>(unit));
    } else if (c == '\\' || c == '{' || c == '}') {
      character(static_cast<char16_t>(c));
    } else if (c == '~') {
      character(u'\u00A0');
    }
  }

  void obey(std::string_view word, int number) {
    Group& group = groups_.back();
    if (word == "fonttbl" || word == "colortbl" || word == "stylesheet" || word == "info") group.is_left_out = true;
    if (word == "uc") group.uc = static_cast<std::size_t>(number);
    if (word == "u") {
      skipped_ = 0;
      character(static_cast<char16_t>(number));
      skipped_ = group.uc;
    }
    if (word == "pict" && !group.is_left_out) {
      group.is_picture = true;
      text_ += to_utf16(kPicture);
    }
    if (word == "par") {
      texts_.push_back(to_utf8(text_));
      text_.clear();
    }
  }

  void character(char16_t unit) {
    if (groups_.empty() || groups_.back().is_left_out) return;
    if (skipped_ > 0)
      --skipped_;
    else
      text_ += unit;
  }

  static bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

  std::string_view take(std::size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::string_view rest_;
  std::vector<Group> groups_;
  std::size_t skipped_ = 0;
  std::u16string text_;
  std::vector<std::string> texts_;
};

}  // namespace

std::string rtf_of(const std::vector<std::string>& texts) {
  std::string rtf = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}}\r\n";
  for (const std::string& text : texts) {
    rtf += "\\pard\\plain\\f0\\fs20 ";
    if (text.starts_with(kPicture)) {
      rtf += "{\\pict\\wmetafile8\\picw10\\pich10 " + text.substr(kPicture.size()) + "}";
    } else {
      for (const char16_t unit : to_utf16(text)) {
        if (unit == u'\\' || unit == u'{' || unit == u'}') rtf += '\\';
        rtf += unit < 0x80 ? std::string(1, static_cast<char>(unit))
                           : "\\u" + std::to_string(static_cast<std::int16_t>(unit)) + "?";
      }
    }
    rtf += "\\par\r\n";
  }
  return rtf + "}";
}

std::vector<std::string> texts_of_rtf(std::string_view rtf) { return Reader(rtf).read(); }

}  // namespace kavo::test
