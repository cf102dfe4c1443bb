// Cuts a page into the tokens of the HTML standard's tokenizer.
//
// This scanner and TokenScanner (tokens.h) read two languages. This one reads what a browser gets, so that the tree
// shows what is not closed: "<?" and "<!" end at the first ">", and a "<!--" in a script may hide its end tag.
// TokenScanner reads what the author wrote: server code is a token of its own, may be anywhere in a tag, and may
// contain ">" and quotes. The repair needs positions and the hash of a name, and no content of comments and scripts. A
// translation needs the bytes, in whole characters of the page's coding, and the places of attributes; for 53 MB of
// pages that takes 410 ms instead of 250 ms. What both must agree on is in elements.h, script_marker.h and ascii.h.
//
// Bytes are read through a BlockReader window. When a block cuts a token in two, the scan continues where it stopped,
// so every byte is looked at once. Before the window moves on, everything up to the current token is released to the
// listener, which writes it out. What can be long (comments, raw text, attribute values) is never held as a whole.
//
// Working on bytes is safe: in a double-byte code page a trail byte is 0x40 or more, so "<", ">", quotes, "=", "/", "!"
// and "-" are always what they look like. Only a letter of a tag name may be a trail byte; it keeps its case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "formats/html/tree.h"

namespace kavo {

class ScannerListener {
 public:
  // Everything before `position` is about to leave the window.
  virtual void release(std::uint64_t position) = 0;
  // A block was read.
  virtual void block_read() = 0;
  // "<%" or "<?" inside a start or end tag, in an attribute value that `quote` opened (0 when in none).
  virtual void server_code_in_tag(std::uint64_t position, char quote) = 0;
  // "<!--" outside a tag.
  virtual void comment(std::uint64_t position) = 0;
  // "<?" outside a tag.
  virtual void processing_instruction(std::uint64_t position) = 0;
  // In text that holds no tags (title, textarea): a "<" that begins no markup (`less`) or a ">" that ends none.
  virtual void stray_in_text(std::uint64_t position, bool less) = 0;

 protected:
  ~ScannerListener() = default;
};

enum class PageTokenKind : std::uint8_t {
  kText,          // a run without "<" and ">", or what a block left of one
  kStrayLess,     // "<" that begins no markup
  kStrayGreater,  // ">" outside markup
  kStartTag,
  kEndTag,
  kComment,  // also "<?...>", "<!...>", "</ ...>"; skipped to its end
  kDoctype,
  kCdata,  // the beginning of a CDATA section, skipped to its end
  kEnd,    // of the page
};

struct Token {
  PageTokenKind kind = PageTokenKind::kEnd;
  std::uint64_t begin = 0;  // bytes from the start of the page
  std::uint64_t end = 0;
  std::uint64_t name = 0;  // of a tag: the hash of its name, see tag_names.h
  Tag tag = Tag::kOther;
  bool self_closing = false;
  bool whole = true;  // of a tag: view() holds all of it
};

class HtmlScanner {
 public:
  // The longest part of a tag that is held. A longer tag is taken with the attributes up to here. Real tags are longer
  // only by one attribute's value (a data: address), which no rule looks at.
  static constexpr std::size_t kLongestTag = 64 * 1024;
  // The identifiers of a document type declaration lie within this size.
  static constexpr std::size_t kLongestDoctype = 4096;

  HtmlScanner(BlockReader& reader, ScannerListener& listener);

  // Reads the next token. The one before leaves the window when the room is needed.
  const Token& next(bool cdata_allowed);
  const Token& token() const { return token_; }  // the last one
  // After the start tag of a raw-text element: skips its content and reads its end tag, which becomes the token (kEnd
  // when the page ends first).
  const Token& skip_raw_text(Content content, std::uint64_t name);
  // True when the page ended inside a tag, a comment, a raw-text element that no end tag can close, or "</".
  bool ended_inside() const { return ended_inside_; }

  // Bytes of the page that are in the window, which reaches back at least to the beginning of the current token.
  std::string_view view(std::uint64_t begin, std::uint64_t end) const {
    return reader_.window().substr(static_cast<std::size_t>(begin - reader_.position()),
                                   static_cast<std::size_t>(end - begin));
  }
  // Brings [position, position + size) into the window and returns those bytes, fewer when the page ends first.
  std::string_view look_ahead(std::uint64_t position, std::size_t size);
  // Skips bytes of the window that do not belong to a token.
  void skip(std::size_t bytes) { p_ += bytes; }
  // Where the next token begins.
  std::uint64_t position() const { return p_; }

 private:
  enum class TagState : std::uint8_t {
    kName,
    kBeforeName,
    kAttributeName,
    kAfterName,
    kBeforeValue,
    kDouble,
    kSingle,
    kUnquoted,
    kAfterQuoted,
    kSlash
  };

  bool refill(std::uint64_t keep);
  // The byte at p_ + ahead; -1 at the end of the page. `keep`: where the window must go on beginning.
  int byte_at(std::size_t ahead, std::uint64_t keep) {
    const std::uint64_t left = reader_.bytes_read() - p_;
    if (ahead >= left) return byte_beyond(ahead, keep);
    const std::string_view window = reader_.window();
    return static_cast<unsigned char>(window[window.size() - static_cast<std::size_t>(left) + ahead]);
  }
  int byte_beyond(std::size_t ahead, std::uint64_t keep);  // the same, when the window must grow first
  const Token& markup(bool cdata_allowed);
  const Token& tag(PageTokenKind kind, std::size_t name_at);
  const Token& rest_of_tag();
  std::size_t read_tag();
  std::optional<std::size_t> quoted_placeholder(std::string_view bytes) const;
  void step(char c);
  const Token& finish(PageTokenKind kind);
  const Token& skip_rcdata(std::uint64_t name);
  void skip_comment();
  const char* pass(char last);
  void skip_past(char last);
  void skip_cdata();
  void read_doctype();
  bool at_end_tag(std::uint64_t name, std::uint64_t keep);
  bool at_name(std::size_t ahead, std::string_view lower, std::uint64_t keep);

  BlockReader& reader_;
  ScannerListener& listener_;
  Token token_;
  std::uint64_t p_ = 0;  // next byte to scan
  TagState state_ = TagState::kName;
  bool tag_goes_on_ = false;  // a long tag was handed out before its end was read
  bool ended_inside_ = false;
};

}  // namespace kavo
