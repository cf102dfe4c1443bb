#include "cli/option_values.h"

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

CLI::Validator filter_option_value() {
  return {[](std::string& text) {
            const std::size_t equals = text.find('=');
            if (equals == std::string::npos) return "\"" + text + "\" is no NAME=VALUE";
            return option_problem(text.substr(0, equals), text.substr(equals + 1));
          },
          ""};
}

}  // namespace kavo
