// What the words and operators of a script do to the expressions around them.
#pragma once

#include <cstdint>
#include <string_view>

#include "formats/script/token.h"

namespace kavo::script {

enum class WordRole : std::uint8_t {
  kName,       // any name: a value
  kSkipped,    // has no effect here: "new", "public"
  kDeclares,   // "var": the name behind it belongs to the function
  kConstant,   // "Const" of VBScript: the same, and its value is one literal
  kReturns,    // "return"
  kCommand,    // takes what follows as its argument: "echo"
  kControl,    // "if": a condition in parentheses, or up to "Then"
  kCase,       // what follows is compared
  kStatement,  // ends the statement before it and begins another one: "else", "Then"
  kFunction,   // begins a function
  kEnd,        // "End": the next word says what ends
  kExit,       // "Exit": the next word names a construct, which does not end here
  kSeparator,  // stands between two expressions: "in", "To"
  kLogic,      // "And"
  kTight,      // an operator that binds tighter than the text operator: "Mod", "typeof"
};
WordRole role_of_word(Language language, std::string_view word);

enum class OperatorRole : std::uint8_t {
  kText,      // joins texts
  kPlus,      // "+" of VBScript: adds, or joins texts
  kTight,     // binds tighter
  kLoose,     // binds less tightly, and joins no text
  kCompares,  // the same, and compares them
  kLogic,     // either side is the value: "||"
  kAssigns,
  kAppends,  // "+=", ".="
  kMember,
  kComma,
  kSemicolon,
  kQuestion,
  kColon,
  kArrow,  // "=>"
  kOpenParen,
  kCloseParen,
  kOpenBracket,
  kCloseBracket,
  kOpenBrace,
  kCloseBrace,
};
// "=" of VBScript assigns or compares: kAssigns.
OperatorRole role_of_operator(Language language, std::string_view text);

// True for a language in which names that differ in case only are the same.
bool ignores_case(Language language);

}  // namespace kavo::script
