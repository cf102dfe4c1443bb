#include "cli/option_values.h"

#include <algorithm>
#include <sstream>

#include "platform/code_page.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/filters/filter_options.h"
#include "suite/languages/language_tags.h"

namespace kavo {

CLI::Validator language_value() {
  return {[](std::string& text) {
            const LanguageRow* const language = find_language(to_utf16(text));
            if (language == nullptr) return to_utf8(unknown_language_text(to_utf16(text)));
            text = to_utf8(language->code);
            return std::string();
          },
          ""};
}

std::vector<std::string> listed_languages(const std::string& list) {
  std::vector<std::string> languages;
  std::stringstream words(list);
  for (std::string word; std::getline(words, word, ',');)
    if (std::ranges::find(languages, word) == languages.end()) languages.push_back(word);
  return languages;
}

CLI::Validator language_list_value() {
  return {[](std::string& text) {
            std::string codes;
            if (text.empty()) return to_utf8(unknown_language_text(u""));
            for (std::string& language : listed_languages(text)) {
              const auto first = language.find_first_not_of(' '), last = language.find_last_not_of(' ');
              language = first == std::string::npos ? "" : language.substr(first, last - first + 1);
              const LanguageRow* const row = find_language(to_utf16(language));
              if (row == nullptr) return to_utf8(unknown_language_text(to_utf16(language)));
              codes += (codes.empty() ? "" : ",") + to_utf8(row->code);
            }
            text = codes;
            return std::string();
          },
          ""};
}

CLI::Validator code_page_value() {
  return {[](std::string& text) {
            try {
              code_page_number(text);
              return std::string();
            } catch (const failure& reason) {
              return std::string(reason.what());
            }
          },
          ""};
}

CLI::Validator language_code_page_value() {
  return {[](std::string& text) {
            const std::size_t equals = text.find('=');
            std::string language = text.substr(0, equals == std::string::npos ? 0 : equals);
            std::string code_page = equals == std::string::npos ? text : text.substr(equals + 1);
            if (equals != std::string::npos)
              if (std::string problem = language_value()(language); !problem.empty()) return problem;
            if (std::string problem = code_page_value()(code_page); !problem.empty()) return problem;
            text = equals == std::string::npos ? code_page : language + "=" + code_page;
            return std::string();
          },
          ""};
}

CLI::Validator filter_option_value() {
  return {[](std::string& text) {
            const std::size_t equals = text.find('=');
            if (equals == std::string::npos) return "\"" + text + "\" is not of the form NAME=VALUE";
            return option_problem(text.substr(0, equals), text.substr(equals + 1));
          },
          ""};
}

}  // namespace kavo
