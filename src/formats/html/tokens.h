// Cuts a page into texts, tags, comments and server code. Markup follows the tokenizer of the HTML Standard, server
// code the rules of its server. scanner.h says why the repair of pages has a scanner of its own.
//
// A token is read in place, in the window of the input, and each byte once, wherever a block ends. The bytes of all
// tokens in order are the page. No markup is left out, however broken it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/html/page_input.h"
#include "formats/text/text_coding.h"

namespace kavo::html {

// A longer tag or comment is handed out in pieces that are not parsed. Only data in an attribute makes a tag so long,
// and a quote that is never closed must not fill the memory.
inline constexpr std::size_t kLongestToken = 256 * 1024;  // bytes

enum class TokenKind : std::uint8_t {
  kText,     // any piece of a text
  kRawText,  // any piece of what a script or a style sheet holds, whole characters
  kStartTag,
  kEndTag,
  kComment,     // also "<!...", "<?..." and "</..." that are not tags
  kServerCode,  // "<% %>", "<?php ?>", and the comment that stands for script taken out of the page
  kOverlong,    // a piece of a tag or other token that is too long or that the page's end cuts off
};

// An attribute; its places count from the start of its tag's bytes.
struct AttributeSpan {
  std::size_t name = 0;
  std::size_t name_end = 0;
  std::size_t value = 0;  // without quotes
  std::size_t value_end = 0;
  char quote = 0;  // '"', '\'', or 0 when there is no quote or no value
};

struct PageToken {
  TokenKind kind = TokenKind::kText;
  std::string_view bytes;
  std::string_view name;  // of a tag, as written
};

// The length of the server code that begins `bytes`. 0 when there is none, or when it does not end there.
std::size_t server_code_length(std::string_view bytes);

class TokenScanner {
 public:
  // Both must outlive the scanner. `coding` is the coding of the window's bytes.
  TokenScanner(PageInput& input, const TextCoding& coding) : input_(input), coding_(coding) {}

  // Reads the next token, which is valid until the next call. False at the end of the page.
  bool next(PageToken& token);
  // The attributes of the start tag that next() gave last.
  const std::vector<AttributeSpan>& attributes() const { return attributes_; }
  // After the start tag of an element that holds no tags: everything up to its end tag is text (`has_references`) or
  // raw text. `name` is in small letters, "" when it is the rest of the page.
  void enter_raw_text(std::string_view name, bool has_references);

 private:
  enum class TagState : std::uint8_t {
    kName,
    kBeforeName,
    kAttributeName,
    kAfterName,
    kBeforeValue,
    kQuoted,
    kUnquoted,
    kServerCode
  };
  enum class Rest : std::uint8_t { kNone, kTag, kEnclosed };  // of an overlong token

  bool has(std::size_t size);
  bool give(PageToken& token, TokenKind kind, std::size_t size);
  std::size_t condition_size();
  bool text(PageToken& token);
  bool raw_text(PageToken& token);
  bool at_raw_end();
  bool enclosed(PageToken& token, TokenKind kind, std::string_view closer, std::size_t from);
  bool tag(PageToken& token, TokenKind kind);
  bool tag_stops(PageToken& token);
  bool tag_end(PageToken& token, TokenKind kind);
  void step(char c);
  void quoted(char c);
  bool enter_server_code();
  bool leave_server_code();
  bool at_server_code_in_tag();
  bool skip_wrapped_placeholder();

  PageInput& input_;
  const TextCoding& coding_;
  std::vector<AttributeSpan> attributes_;
  std::size_t taken_ = 0;  // bytes of the last token, still in the window
  std::size_t at_ = 0;     // the place reached in the tag
  TagState state_ = TagState::kName;
  TagState outer_state_ = TagState::kName;  // around server code in a tag
  std::string_view closer_;                 // of server code in a tag or of an overlong token
  Rest rest_ = Rest::kNone;
  bool is_raw_ = false;
  bool raw_has_references_ = false;
  std::string raw_name_;
  std::size_t name_ = 0;  // where the tag's name begins and ends in its bytes
  std::size_t name_end_ = 0;
};

}  // namespace kavo::html
