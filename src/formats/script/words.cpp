#include "formats/script/words.h"

#include <initializer_list>
#include <span>
#include <string>
#include <unordered_map>

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
    {"const", WordRole::kConstant},    {"dim", WordRole::kDeclares},      {"do", WordRole::kStatement},
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

// Words of JavaScript, Java and PHP. One table serves all three, because hardly any script uses a keyword of another
// language as a name.
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

constexpr std::size_t kLongestWord = 12;

// A hash table, since every name of a script is looked up.
using Roles = std::unordered_map<std::string_view, WordRole>;
Roles roles_of(std::initializer_list<std::span<const Word>> tables) {
  Roles roles;
  for (const std::span<const Word> words : tables)
    for (const Word& row : words) roles.emplace(row.text, row.role);
  return roles;
}

const Roles& roles_of(Language language) {
  static const Roles basic = roles_of({kVbScript});
  static const Roles php = roles_of({kPhp, kCurly});
  static const Roles curly = roles_of({kCurly});
  return language == Language::kVbScript ? basic : language == Language::kPhp ? php : curly;
}

}  // namespace

WordRole role_of_word(Language language, std::string_view word) {
  if (word.empty() || word.size() > kLongestWord || word.front() == '$') return WordRole::kName;
  std::string small;
  if (ignores_case(language)) {
    small = word;
    for (char& c : small) c = lower(c);
    word = small;
  }
  const Roles& roles = roles_of(language);
  const auto found = roles.find(word);
  return found != roles.end() ? found->second : WordRole::kName;
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
