// What a script does with its literals: which of them it joins into one text, and where that text goes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "formats/script/token.h"

namespace kavo::script {

// A part of a joined text: a literal (or a piece of one), or an operand between literals. Its places are byte offsets
// in the text of all blocks.
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
  bool is_inserted = false;    // it is inside a literal: "$name", or what is between "${" and "}"
  bool is_called = false;      // it ends with a call
  bool is_member = false;      // it names a member of something
  bool is_simple = false;      // one name, number, call or group: no operator in it
  std::string_view name = {};  // "a.b" in "a.b(1).c"; also set when a method is called on a literal
  std::string_view last = {};  // "c"
  std::string_view key = {};   // the last subscript with its quotes, when that is a literal
};

enum class PlaceKind : std::uint8_t {
  kNowhere,    // the whole statement, or none of the places below
  kArgument,   // an argument of a call, or of a statement's word ("echo")
  kAssigned,   // assigned to a variable or a member
  kEntry,      // the value of a key: {key: "..."}, 'key' => "..."
  kReturned,   // returned from the enclosing function
  kElement,    // an element of a list
  kGroup,      // inside parentheses; the next place says where those go
  kCompared,   // compared with another value, or named in a "case"
  kCondition,  // a condition of "if", "while" ...
  kSubscript,  // [ ]
  kKey,        // the key of an entry
  kReceiver,   // a method is called on it: "a,b".split(",")
  kOperand,    // an operand of an operator that does not join text
  kLooped,     // a list whose elements go to the variable of a loop: see ExpressionSink::loops()
};

struct Place {
  PlaceKind kind = PlaceKind::kNowhere;
  std::string_view name =
      {};  // of an argument: the call as it is written ("Response.Write"); of others: the target or the key
  std::string_view last = {};  // its last part ("Write")
  unsigned argument = 0;       // from 0
  bool is_member = false;
  std::string_view key = {};  // of an assignment to an element: the subscript, when that is a literal
  std::size_t loop = 0;       // of kLooped: the number of the loop
};

// Literals and operands that the language's text operator joins. There may be only one.
struct Join {
  std::span<const Item> items;
  std::span<const Place> places;  // where the text goes, the nearest place first; at most kMostPlaces
  bool has_literal = false;
  bool can_move = false;     // every operator between the items joins text, so a translation may reorder them
  bool is_constant = false;  // a single literal, at a place where the language takes no expression
};
inline constexpr std::size_t kMostPlaces = 8;

class ExpressionSink {
 public:
  virtual ~ExpressionSink() = default;
  // The spans of `join` are valid during the call.
  virtual void joined(const Join& join) = 0;
  // Everything that is reported until function_ends() belongs to the body. `name` is "" for a function without a name.
  virtual void function_begins(std::string_view name, std::span<const std::string_view> parameters) = 0;
  virtual void function_ends() = 0;
  // `variable` takes the elements of every list that was reported at the place kLooped with the number `loop`. A
  // separate call, since PHP names the variable after the list.
  virtual void loops(std::size_t loop, std::string_view variable) = 0;
  // A variable that belongs to the enclosing function.
  virtual void declared(std::string_view name) = 0;
};

}  // namespace kavo::script
