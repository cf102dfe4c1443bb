// An XML document as a stream of events, with the byte place of each: what reads the bilingual documents.
//
// Nothing outside the document is ever fetched and no entity but the five of XML itself is ever expanded: a document
// that declares or uses another one is refused, so that neither a bomb nor a reference to another file does anything.
// Any coding that Expat knows, and the ANSI code pages of one byte.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "common/progress_event.h"

namespace kavo {

// Where a tag stands in the file, in bytes.
struct XmlPlace {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

// Attributes of a tag. Names in a namespace read "namespace local", others are the plain name.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}
  // The value, null when there is no such attribute.
  const char* find(std::string_view name) const;
  std::string_view text(std::string_view name) const;  // "" when there is none

 private:
  const char** pairs_;
};

class XmlHandler {
 public:
  virtual ~XmlHandler() = default;
  // `space` is the element's namespace, "" for none. The end of an empty element has the place of its own tag's end.
  virtual void start(std::string_view space, std::string_view name, const XmlAttributes& attributes,
                     XmlPlace place) = 0;
  virtual void end(std::string_view space, std::string_view name, XmlPlace place) = 0;
  // In pieces, UTF-8, line ends as XML normalises them.
  virtual void text(std::string_view text) = 0;
};

// What the bytes of a document are written in.
enum class XmlCoding {
  kUtf8,
  kUtf16Little,
  kUtf16Big,
  kAsciiBased,  // anything else; what is beyond ASCII can be written as character references
};

class XmlReader {
 public:
  // Opens the file; throws `failure`.
  explicit XmlReader(std::u16string_view path);
  ~XmlReader();
  XmlReader(const XmlReader&) = delete;
  XmlReader& operator=(const XmlReader&) = delete;

  // Reads the whole document, once. Throws `failure` 5 "<path>, line 3, column 7: ..." for one that is not well-formed,
  // cut short or refused, and what the handler throws.
  void read(XmlHandler& handler, ProgressEvent* progress = nullptr);
  // For a handler: throws `failure` 5 with the current place in front of the reason.
  [[noreturn]] void refuse(std::u16string_view reason) const;
  // Known from the first event on.
  XmlCoding coding() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace kavo
