// What the words and operators of a script do to the expressions around them.
#pragma once

#include <cstdint>
#include <string_view>

#include "formats/script/token.h"

namespace kavo::script {

enum class WordRole : std::uint8_t {
  kName,       // any name: a value
  kSkipped,    // has no effect here: "new", "public"
  kDeclares,   // "var": the next name belongs to the function
  kConstant,   // "Const" of VBScript: the same, and the value must be one literal
  kReturns,    // "return"
  kCommand,    // takes what follows as its argument: "echo"
  kControl,    // "if": a condition in parentheses, or up to "Then"
  kCase,       // what follows is compared
  kStatement,  // ends the statement before it and begins another one: "else", "Then"
  kFunction,   // begins a function
  kEnd,        // "End": the next word says which construct ends
  kExit,       // "Exit": the next word names a construct, which does not end here
  kSeparator,  // separates two expressions: "in", "To"
  kLogic,      // "And"
  kTight,      // an operator that binds tighter than the text operator: "Mod", "typeof"
};
WordRole role_of_word(Language language, std::string_view word);

enum class OperatorRole : std::uint8_t {
  kText,      // joins texts
  kPlus,      // "+" of VBScript: adds, or joins texts
  kTight,     // binds tighter than the text operator
  kLoose,     // binds less tightly than the text operator
  kCompares,  // the same, and compares both sides
  kLogic,     // the value is one of the two sides: "||"
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
// The "=" of VBScript, which assigns or compares, is kAssigns.
OperatorRole role_of_operator(Language language, std::string_view text);

// True for a language in which names are the same when they differ only in case.
bool ignores_case(Language language);

}  // namespace kavo::script
