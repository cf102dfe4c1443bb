// Groups the tokens of a resource script into statements and says which resource each belongs to.
//
// Resources are recognised by their keywords, BEGIN and END (or braces) and what follows them, not by lines. The
// branches of a preprocessor condition are alternatives: after #else and #elif the parser is again in the state that it
// had at #if, so a block that each branch opens counts once. The conditions themselves are not evaluated.
//
// The bytes of all statements, in order, are the script. Reading takes linear time, no recursion, and bounded memory:
// one statement and a stack of conditions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/rc/rc_languages.h"
#include "formats/rc/rc_tokens.h"

namespace kavo::rc {

// The case of a keyword's letters does not matter. `keyword` is in capitals.
bool is_keyword(std::string_view word, std::string_view keyword);

enum class RcType : std::uint8_t { kStrings, kDialog, kMenu, kVersion, kOther };

// The language that a LANGUAGE statement sets.
struct RcLanguage {
  bool is_stated = false;        // false before the first statement
  std::optional<LanguageId> id;  // nothing for unknown values
  bool operator==(const RcLanguage&) const = default;
};

struct RcResource {
  RcType type = RcType::kOther;
  std::string type_name;     // in capitals: "DIALOGEX"
  std::string name;          // "IDD_ABOUT", "101"; "" for a string table
  std::uint32_t number = 0;  // from 1, in the order of the script
  RcLanguage language;       // its own language, or that of its block
};

struct RcStatement {
  enum Kind : std::uint8_t {
    kPlain,     // outside of resources: blanks, comments, preprocessor lines, what is not understood
    kCodePage,  // #pragma code_page, outside of resources or between its statements
    kLanguage,  // LANGUAGE for all that follows
    kHeader,    // a resource from its name to its BEGIN or its file name
    kBegin,     // BEGIN or {
    kEnd,       // END or }, of the resource when `depth` is 1
    kString,    // of a string table
    kControl,   // of a dialog
    kMenuItem,  // MENUITEM or POPUP
    kValue,     // VALUE or BLOCK
    kData,      // what resources of other types hold, and data of controls
  };
  struct Item {
    RcTokenKind kind;
    std::size_t begin;  // in `bytes`
    std::size_t end;
  };

  Kind kind = kPlain;
  std::string bytes;
  std::vector<Item> items;
  std::shared_ptr<const RcResource> resource;  // null outside
  RcLanguage language;                         // of the resource or, outside, of the block, this statement included
  unsigned code_page = 0;                      // declared for it and for what follows; 0 for none
  std::uint32_t depth = 0;                     // of blocks around it

  std::string_view text(const Item& item) const {
    return std::string_view(bytes).substr(item.begin, item.end - item.begin);
  }
  // The place of the first item from `from` on that is not a blank, a comment or a preprocessor line; the number of
  // items when there is none.
  std::size_t significant(std::size_t from) const;
  bool is_word(std::size_t item, std::string_view keyword) const;
};

class RcParser {
 public:
  using Taker = std::function<void(const RcStatement&)>;
  explicit RcParser(Taker take) : take_(std::move(take)) {}

  void take(const RcToken& token);
  // Call it after the last token.
  void finish() { flush(); }
  // The code page that #pragma code_page declares for the next token; 0 for none or the default.
  unsigned code_page() const { return context_.code_page; }

 private:
  struct Context {
    std::shared_ptr<RcResource> resource;
    bool is_header = false;
    std::uint32_t depth = 0;
    RcLanguage language;
    unsigned code_page = 0;
    bool operator==(const Context&) const = default;
  };

  void directive(const RcToken& token);
  void outside(const RcToken& token);
  void begin_resource(const RcToken& type);
  void header(const RcToken& token);
  bool begins_other_resource(const RcToken& token) const;
  bool is_file_name(const RcToken& token);
  void close_header();
  void body(const RcToken& token);
  bool begins_statement(const RcToken& token) const;
  bool begins_string(const RcToken& token) const;
  bool is_like_first_name(std::string_view name) const;
  RcStatement::Kind kind_in_body() const;
  void append(const RcToken& token);
  void flush();
  void emit(RcStatement::Kind kind);
  void cut_at(std::size_t item);

  Taker take_;
  Context context_;
  std::vector<Context> conditions_;
  std::size_t unsaved_conditions_ = 0;  // deeper than the stack
  RcStatement statement_;
  std::size_t significant_count_ = 0;  // of items of the statement
  std::size_t last_significant_ = 0;
  std::size_t awaited_values_ = 0;  // of an optional statement in a header
  bool has_literal_ = false;
  bool is_line_start_ = false;     // a line began after the last literal or word
  std::size_t open_brackets_ = 0;  // of the statement
  std::uint32_t resource_count_ = 0;
};

}  // namespace kavo::rc
