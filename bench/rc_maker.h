// Makes resource scripts of any size as a dialog editor writes them: string tables, dialogs, menus, an icon and a key
// table here and there.
#pragma once

#include <cstddef>
#include <iterator>
#include <random>
#include <string>

namespace kavo::bench {

class RcMaker {
 public:
  std::string make(std::size_t bytes) {
    text_ =
        "// Generated for measurements\r\n#include \"resource.h\"\r\n#include <windows.h>\r\n\r\n"
        "LANGUAGE LANG_ENGLISH, SUBLANG_ENGLISH_US\r\n#pragma code_page(1252)\r\n\r\n";
    while (text_.size() < bytes) {
      const std::string number = std::to_string(++resources_);
      switch (random_() % 8) {
        case 0:
          add_menu(number);
          break;
        case 1:
          add_left_alone(number);
          break;
        case 2:
        case 3:
        case 4:
          add_dialog(number);
          break;
        default:
          add_strings();
          break;
      }
    }
    return std::move(text_);
  }

 private:
  // Two of five have a marker or an escape, as in real scripts.
  std::string sentence() {
    static constexpr const char* words[] = {"the",    "file",   "cannot",  "be",      "opened", "because",
                                            "before", "folder", "caf\xe9", "program", "of",     "printer"};
    static constexpr const char* marks[] = {"%s", "%1!d!", "\"\"new\"\"", "copy\\n"};
    std::string text;
    for (std::size_t i = 2 + random_() % 9; i > 0; --i) (text += words[random_() % std::size(words)]) += ' ';
    if (random_() % 5 < 2) (text += marks[random_() % std::size(marks)]) += ' ';
    text.back() = '.';
    return text;
  }

  std::string key_text() { return std::string("&") + static_cast<char>('A' + keys_++ % 26) + sentence(); }

  void add_strings() {
    text_ += "STRINGTABLE DISCARDABLE\r\nBEGIN\r\n";
    for (std::size_t i = 4 + random_() % 13; i > 0; --i)
      text_ += "    IDS_TEXT_" + std::to_string(++strings_) + "          \"" + sentence() + "\"\r\n";
    text_ += "END\r\n\r\n";
  }

  void add_dialog(const std::string& number) {
    text_ += "IDD_DIALOG_" + number +
             " DIALOGEX 0, 0, 240, 180\r\nSTYLE DS_SETFONT | DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU\r\n"
             "CAPTION \"" +
             sentence() + "\"\r\nFONT 8, \"MS Shell Dlg\", 400, 0, 0x1\r\nBEGIN\r\n";
    for (std::size_t i = 3 + random_() % 12; i > 0; --i) {
      const std::string place = std::to_string(random_() % 200) + ",";
      switch (random_() % 4) {
        case 0:
          text_ += "    LTEXT           \"" + sentence() + "\",IDC_STATIC," + place + "7,60,8\r\n";
          break;
        case 1:
          text_ += "    EDITTEXT        IDC_EDIT_" + std::to_string(i) + "," + place + "20,90,14,ES_AUTOHSCROLL\r\n";
          break;
        case 2:
          text_ += "    CONTROL         \"" + key_text() + "\",IDC_CHECK_" + std::to_string(i) +
                   ",\"Button\",BS_AUTOCHECKBOX |\r\n                    WS_TABSTOP," + place + "40,100,10\r\n";
          break;
        default:
          text_ += "    PUSHBUTTON      \"" + key_text() + "\",IDC_BUTTON_" + std::to_string(i) + "," + place +
                   "160,50,14\r\n";
          break;
      }
    }
    text_ += "END\r\n\r\n";
  }

  void add_menu(const std::string& number) {
    text_ += "IDR_MENU_" + number + " MENU\r\nBEGIN\r\n";
    for (std::size_t popup = 2 + random_() % 4; popup > 0; --popup) {
      text_ += "    POPUP \"" + key_text() + "\"\r\n    BEGIN\r\n";
      for (std::size_t i = 3 + random_() % 8; i > 0; --i)
        text_ += "        MENUITEM \"" + key_text() + "\\tCtrl+N\",    ID_COMMAND_" + std::to_string(random_() % 999) +
                 "\r\n";
      text_ += "        MENUITEM SEPARATOR\r\n    END\r\n";
    }
    text_ += "END\r\n\r\n";
  }

  void add_left_alone(const std::string& number) {
    text_ += "IDI_ICON_" + number + " ICON \"res\\\\icon.ico\"\r\nIDR_KEYS_" + number + " ACCELERATORS\r\nBEGIN\r\n";
    for (std::size_t i = 5 + random_() % 9; i > 0; --i)
      text_ +=
          "    \"N\",            ID_COMMAND_" + std::to_string(random_() % 999) + ", VIRTKEY, CONTROL, NOINVERT\r\n";
    text_ += "END\r\n\r\n";
  }

  std::mt19937 random_{20260101};
  std::string text_;
  std::size_t resources_ = 0;
  std::size_t strings_ = 0;
  std::size_t keys_ = 0;  // each is a new letter until all have been used
};

}  // namespace kavo::bench
