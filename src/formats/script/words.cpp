#include "formats/script/words.h"

#include <algorithm>
#include <iterator>

namespace kavo::script {
namespace {

struct Word {
  std::string_view text;
  WordRole role;
};

// Words of VBScript, in small letters.
constexpr Word kVbScript[] = {
    {"and", WordRole::kLogic},         {"byref", WordRole::kSkipped},     {"byval", WordRole::kSkipped},
    {"call", WordRole::kSkipped},      {"case", WordRole::kCase},         {"class", WordRole::kSkipped},
    {"const", WordRole::kDeclares},    {"dim", WordRole::kDeclares},      {"do", WordRole::kStatement},
    {"each", WordRole::kSkipped},      {"else", WordRole::kStatement},    {"elseif", WordRole::kControl},
    {"end", WordRole::kEnd},           {"eqv", WordRole::kLogic},         {"exit", WordRole::kExit},
    {"for", WordRole::kStatement},     {"function", WordRole::kFunction}, {"get", WordRole::kSkipped},
    {"if", WordRole::kControl},        {"imp", WordRole::kLogic},         {"in", WordRole::kSeparator},
    {"is", WordRole::kSeparator},      {"let", WordRole::kSkipped},       {"loop", WordRole::kStatement},
    {"mod", WordRole::kTight},         {"new", WordRole::kSkipped},       {"next", WordRole::kStatement},
    {"not", WordRole::kTight},         {"on", WordRole::kStatement},      {"option", WordRole::kStatement},
    {"or", WordRole::kLogic},          {"preserve", WordRole::kSkipped},  {"private", WordRole::kDeclares},
    {"property", WordRole::kFunction}, {"public", WordRole::kDeclares},   {"redim", WordRole::kDeclares},
    {"select", WordRole::kControl},    {"set", WordRole::kSkipped},       {"step", WordRole::kSeparator},
    {"sub", WordRole::kFunction},      {"then", WordRole::kStatement},    {"to", WordRole::kSeparator},
    {"until", WordRole::kControl},     {"wend", WordRole::kStatement},    {"while", WordRole::kControl},
    {"with", WordRole::kStatement},    {"xor", WordRole::kLogic},
};

// Words of JavaScript, Java and PHP. One table serves all three: hardly a script uses a word of another language as a
// name.
constexpr Word kCurly[] = {
    {"as", WordRole::kSeparator},         {"async", WordRole::kSkipped},
    {"await", WordRole::kSkipped},        {"case", WordRole::kCase},
    {"catch", WordRole::kControl},        {"const", WordRole::kDeclares},
    {"do", WordRole::kStatement},         {"else", WordRole::kStatement},
    {"elseif", WordRole::kControl},       {"extends", WordRole::kSeparator},
    {"final", WordRole::kSkipped},        {"finally", WordRole::kStatement},
    {"for", WordRole::kControl},          {"foreach", WordRole::kControl},
    {"function", WordRole::kFunction},    {"if", WordRole::kControl},
    {"implements", WordRole::kSeparator}, {"in", WordRole::kSeparator},
    {"instanceof", WordRole::kSeparator}, {"let", WordRole::kDeclares},
    {"new", WordRole::kSkipped},          {"of", WordRole::kSeparator},
    {"private", WordRole::kSkipped},      {"protected", WordRole::kSkipped},
    {"public", WordRole::kSkipped},       {"return", WordRole::kReturns},
    {"static", WordRole::kSkipped},       {"switch", WordRole::kControl},
    {"synchronized", WordRole::kControl}, {"throw", WordRole::kSkipped},
    {"throws", WordRole::kSeparator},     {"try", WordRole::kStatement},
    {"typeof", WordRole::kTight},         {"var", WordRole::kDeclares},
    {"while", WordRole::kControl},        {"with", WordRole::kControl},
};

// Words of PHP alone.
constexpr Word kPhp[] = {
    {"and", WordRole::kLogic},       {"clone", WordRole::kSkipped},        {"die", WordRole::kName},
    {"echo", WordRole::kCommand},    {"endif", WordRole::kStatement},      {"global", WordRole::kSkipped},
    {"include", WordRole::kCommand}, {"include_once", WordRole::kCommand}, {"or", WordRole::kLogic},
    {"print", WordRole::kCommand},   {"require", WordRole::kCommand},      {"require_once", WordRole::kCommand},
    {"xor", WordRole::kLogic},       {"yield", WordRole::kSkipped},
};

template <std::size_t kCount>
const Word* find(const Word (&words)[kCount], std::string_view word, bool any_case) {
  const auto* const found = std::find_if(std::begin(words), std::end(words), [&](const Word& row) {
    return any_case ? equal_word(word, row.text) : word == row.text;
  });
  return found != std::end(words) ? found : nullptr;
}

constexpr std::size_t kLongestWord = 12;

}  // namespace

WordRole role_of_word(Language language, std::string_view word) {
  if (word.empty() || word.size() > kLongestWord || word.front() == '$') return WordRole::kName;
  const bool any_case = ignores_case(language);
  const Word* row = nullptr;
  if (language == Language::kVbScript) {
    row = find(kVbScript, word, any_case);
  } else {
    if (language == Language::kPhp) row = find(kPhp, word, any_case);
    if (row == nullptr) row = find(kCurly, word, any_case);
  }
  return row != nullptr ? row->role : WordRole::kName;
}

OperatorRole role_of_operator(Language language, std::string_view text) {
  const bool is_basic = language == Language::kVbScript;
  const bool is_php = language == Language::kPhp;
  const char first = text[0];
  if (text.size() == 1) {
    switch (first) {
      case '(':
        return OperatorRole::kOpenParen;
      case ')':
        return OperatorRole::kCloseParen;
      case '[':
        return OperatorRole::kOpenBracket;
      case ']':
        return OperatorRole::kCloseBracket;
      case '{':
        return OperatorRole::kOpenBrace;
      case '}':
        return OperatorRole::kCloseBrace;
      case ',':
        return OperatorRole::kComma;
      case ';':
        return OperatorRole::kSemicolon;
      case ':':
        return is_basic ? OperatorRole::kSemicolon : OperatorRole::kColon;
      case '?':
        return OperatorRole::kQuestion;
      case '=':
        return OperatorRole::kAssigns;
      case '.':
        return is_php ? OperatorRole::kText : OperatorRole::kMember;
      case '&':
        return is_basic ? OperatorRole::kText : OperatorRole::kLoose;
      case '+':
        if (is_basic) return OperatorRole::kPlus;
        return is_php ? OperatorRole::kTight : OperatorRole::kText;
      case '<':
      case '>':
        return OperatorRole::kCompares;
      case '|':
      case '^':
        return is_basic ? OperatorRole::kTight : OperatorRole::kLoose;
      default:
        return OperatorRole::kTight;
    }
  }
  if (text == "->" && language == Language::kJava) return OperatorRole::kArrow;
  if (text == "->" || text == "?->" || text == "::" || text == "?.") return OperatorRole::kMember;
  if (text == "=>" && !is_basic) return OperatorRole::kArrow;
  if (text == "||" || text == "??" || text == "&&") return OperatorRole::kLogic;
  for (const std::string_view compares : {"==", "===", "!=", "!==", "<>", "<=", ">=", "=<", "<=>"})
    if (text == compares) return OperatorRole::kCompares;
  if (text == "<<" || text == ">>" || text == ">>>") return OperatorRole::kLoose;
  if (text == "+=" || text == ".=") return OperatorRole::kAppends;
  if (text == "||=" || text == "&&=" || text == "?\?=" || text == ":=") return OperatorRole::kAssigns;
  if (text.back() == '=') return OperatorRole::kLoose;
  return OperatorRole::kTight;  // "++", "**", "..."
}

bool ignores_case(Language language) { return language == Language::kVbScript || language == Language::kPhp; }

}  // namespace kavo::script
