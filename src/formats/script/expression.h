// What a script does with its literals: which of them it joins to one text, and where the text goes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "formats/script/token.h"

namespace kavo::script {

// A part of a joined text: a literal (or a piece of one), or an operand between literals. Places in the text of all
// blocks, in bytes.
struct Item {
  bool is_literal = false;
  std::size_t begin = 0;
  std::size_t end = 0;
  // Set for literals only; token.h describes the same fields.
  LiteralForm form = LiteralForm::kDouble;
  bool begins = true;
  bool ends = true;
  std::size_t open = 0;
  std::size_t close = 0;
  // Set for operands only.
  bool is_inserted = false;    // stands in a literal: "$name" and what is between "${" and "}"
  bool is_called = false;      // ends with a call
  bool is_member = false;      // names a member of something
  bool is_simple = false;      // one name, number, call or group: no operator in it
  std::string_view name = {};  // "a.b" in "a.b(1).c"; also set when a method is called on a literal
  std::string_view last = {};  // "c"
  std::string_view key = {};   // the last subscript when it is a literal, with its quotes
};

enum class PlaceKind : std::uint8_t {
  kNowhere,    // the whole statement, or none of the places below
  kArgument,   // of a call or of a statement's word ("echo")
  kAssigned,   // to a variable or a member
  kEntry,      // the value of a key: {key: "..."}, 'key' => "..."
  kReturned,   // from the function that it stands in
  kElement,    // of a list
  kGroup,      // inside parentheses; the next place says where those go
  kCompared,   // with another value, or in a case of a choice
  kCondition,  // decides which way a script goes
  kSubscript,  // [ ]
  kKey,        // of an entry
  kReceiver,   // a method is called on it: "a,b".split(",")
  kOperand,    // of an operator that joins no text
  kLooped,     // its elements go to the variable of a loop, see ExpressionSink::loops()
};

struct Place {
  PlaceKind kind = PlaceKind::kNowhere;
  std::string_view name =
      {};  // of an argument: the call, as it is written ("Response.Write"); else the target or the key
  std::string_view last = {};  // its last part ("Write")
  unsigned argument = 0;       // from 0
  bool is_member = false;
  std::string_view key = {};  // of an assignment to an element: the subscript when it is a literal
  std::size_t loop = 0;       // of a list that is looped over: the number of the loop
};

// Literals and operands that the language's text operator joins, or a single one of either.
struct Join {
  std::span<const Item> items;
  std::span<const Place> places;  // where the text goes, the nearest place first; at most kMostPlaces
  bool has_literal = false;
  bool can_move = false;     // every operator between them joins text, so the parts may change their order
  bool is_constant = false;  // a single literal where the language takes no expression
};
inline constexpr std::size_t kMostPlaces = 8;

class ExpressionSink {
 public:
  virtual ~ExpressionSink() = default;
  // Valid during the call.
  virtual void joined(const Join& join) = 0;
  // Everything until function_ends() is the body. `name` is "" for a function without a name.
  virtual void function_begins(std::string_view name, std::span<const std::string_view> parameters) = 0;
  virtual void function_ends() = 0;
  // The variable that takes the elements of everything at the place kLooped with this number: PHP names it last.
  virtual void loops(std::size_t loop, std::string_view variable) = 0;
  // A variable of the function that it stands in.
  virtual void declared(std::string_view name) = 0;
};

}  // namespace kavo::script
