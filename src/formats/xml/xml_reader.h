// Reads an XML document as a stream of events, each with its place in bytes. Bilingual documents are read this way.
//
// It fetches nothing outside the document and expands only the five entities of XML itself. A document that declares or
// uses another entity is refused, so neither an entity bomb nor a reference to another file does harm. It reads all
// codings that Expat knows, and the ANSI code pages of one byte a character.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "common/progress_event.h"

namespace kavo {

// Where a tag is in the file, in bytes.
struct XmlPlace {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

// The attributes of a tag. A name in a namespace reads "namespace local", any other is the plain name.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}
  // The value; null when there is no such attribute.
  const char* find(std::string_view name) const;
  std::string_view text(std::string_view name) const;  // "" when there is none

 private:
  const char** pairs_;
};

class XmlHandler {
 public:
  virtual ~XmlHandler() = default;
  // `space` is the element's namespace, "" for none. The end of an empty element has an empty place,
  // at the end of its tag.
  virtual void start(std::string_view space, std::string_view name, const XmlAttributes& attributes,
                     XmlPlace place) = 0;
  virtual void end(std::string_view space, std::string_view name, XmlPlace place) = 0;
  // Called with pieces of text in UTF-8. Line ends are normalised by XML's rules.
  virtual void text(std::string_view text) = 0;
};

// How a document is coded, as far as that matters for writing into it.
enum class XmlCoding {
  kUtf8,
  kUtf16Little,
  kUtf16Big,
  kAsciiBased,  // anything else; character references can stand for what is beyond ASCII
};

class XmlReader {
 public:
  // Opens the file; throws `failure`.
  explicit XmlReader(std::u16string_view path);
  ~XmlReader();
  XmlReader(const XmlReader&) = delete;
  XmlReader& operator=(const XmlReader&) = delete;

  // Reads the whole document. Call it once. Throws `failure` 5 with "<path>, line 3, column 7: ..." when the document
  // is not well-formed, is cut short or is refused. Passes on what the handler throws.
  void read(XmlHandler& handler, ProgressEvent* progress = nullptr);
  // For a handler: throws `failure` 5 with the current place before the reason.
  [[noreturn]] void refuse(std::u16string_view reason) const;
  // Known once the first event has come.
  XmlCoding coding() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace kavo
