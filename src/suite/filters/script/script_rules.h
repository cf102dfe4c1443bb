// The rules that say which literals of a script people read, each with its reason.
//
// Two things decide: where a literal goes (a place that people see, or one that only programs read) and what it looks
// like (words, or a name, a path, a query). Each has a table, and a third one combines the two.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/script/expression.h"

namespace kavo::script {

// What is known about a place. Several may hold for one variable.
enum class Use : std::uint8_t {
  kNone = 0,
  kPage = 1,       // goes into a page
  kShown = 2,      // shown as it is: a message box, a caption
  kInternal = 4,   // read by programs
  kLikely = 8,     // its name says that people read it
  kUnlikely = 16,  // its name says that they do not
  kFilled = 32,    // fills a place in a text or in a tag
  kAsked = 64,     // compared or searched: says nothing about what else a variable may hold
  kNamed = 128,    // the name of something: programs read a single word, people read several
};
constexpr Use operator|(Use a, Use b) { return static_cast<Use>(static_cast<int>(a) | static_cast<int>(b)); }
constexpr Use operator&(Use a, Use b) { return static_cast<Use>(static_cast<int>(a) & static_cast<int>(b)); }
constexpr bool has(Use uses, Use use) { return (static_cast<int>(uses) & static_cast<int>(use)) != 0; }

enum class Effect : std::uint8_t {
  kUse,     // the row's use decides
  kPasses,  // returns its argument: the place of the call decides
  kInto,    // goes into the object before the dot
};

struct DestinationRow {
  PlaceKind kind;
  std::string_view names;  // separated by blanks, small letters; compared without case
  int argument;            // number of the call's argument; kAny for all
  Effect effect;
  Use use;
  std::string_view reason;  // for people: "a message box"
};
inline constexpr int kAny = -1;

// Names of functions that the user has added, separated by blanks: those whose arguments are texts, and those whose
// arguments never are.
struct ScriptNames {
  std::string texts;
  std::string never;
};

class DestinationRules {
 public:
  explicit DestinationRules(const ScriptNames& names = {});
  // The row for a place, null when there is none.
  const DestinationRow* find(const Place& place, Language language) const;

 private:
  const std::vector<const DestinationRow*>* rows_of(const std::string& name) const;

  std::unordered_map<std::string, std::vector<const DestinationRow*>> rows_;  // of the user's names
  std::vector<DestinationRow> added_;
  ScriptNames names_;
};

// A literal without its quotes.
std::string_view unquoted(std::string_view literal);

// What the name of a variable or of an entry says.
Use use_by_name(std::string_view name);
// What the name of a function that has no row says about its arguments.
Use use_by_function(std::string_view name);

enum class Look : std::uint8_t {
  kEmpty,        // no letter
  kMachine,      // a name, a path, a query, code
  kDotted,       // words with dots between: a name, or an abbreviated caption
  kConstant,     // a word that programs use as well: "null"
  kSmall,        // one word in small letters
  kWord,         // one word
  kSmallPhrase,  // two words in small letters
  kPhrase,       // words
};
// `text` in UTF-8, with kOperandMark for each operand. The reason is set for kMachine.
struct Looks {
  Look look = Look::kEmpty;
  std::string_view reason;
  bool is_sentence = false;  // of a phrase: a capital at the beginning, a full stop at the end
  bool is_telling = false;   // of a phrase: so many words that its place can only take texts
  bool is_query = false;     // of kMachine
};
inline constexpr char kOperandMark = '\x1A';
Looks look_at(std::string_view text);

enum class Verdict : std::uint8_t { kNone, kDoubt, kText };
struct Decision {
  Verdict verdict = Verdict::kNone;
  std::string_view reason;
};
// `in_markup` says that the text is between tags of its literal, or in an attribute that people see.
Decision decide(Use use, const Looks& looks, bool in_markup);

}  // namespace kavo::script
