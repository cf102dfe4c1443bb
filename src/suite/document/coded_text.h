// Coded text: the text of a segment in UTF-8 with references to its inline codes.
//
// A reference is one control byte for the kind, the code's id, and a closing control byte. XML has no character for
// these bytes, so no text that passes through a bilingual document can hold one by chance: a document's own control
// characters become inline codes too. One flat string keeps a segment in one piece of memory and makes comparing two
// texts, codes included, a comparison of bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

enum class CodeKind : char {
  kOpen = '\x01',        // begins a pair that ends in the same segment
  kClose = '\x02',       // ends it; carries the id of its opening code
  kStandalone = '\x03',  // anything else: an image, a placeholder, an opening whose end lies elsewhere
};

// A run of text or one reference. The views point into the coded text.
struct CodedPart {
  bool is_code = false;
  CodeKind kind = CodeKind::kStandalone;  // of a code
  std::string_view text;                  // the run, or the code's id
};

// Reads a coded text part by part; a run holds no code, an empty text has no part.
class CodedTextReader {
 public:
  explicit CodedTextReader(std::string_view coded) : rest_(coded) {}
  bool next(CodedPart& part);

 private:
  std::string_view rest_;
};

// `id` is one word without control characters: a number in what our filters extract, anything in the documents of
// others.
void append_code(std::string& coded, CodeKind kind, std::string_view id);
void append_code(std::string& coded, CodeKind kind, std::uint32_t id);

// The text without its codes.
std::string plain_text(std::string_view coded);

// What is wrong with the codes of a translation, as a text for people ("code 3 is missing", "code 2 is doubled"). ""
// when the codes form pairs and each code of `source` occurs once (or, if `may_miss` is set, not at all).
std::string code_problem(std::string_view source, std::string_view target, bool may_miss = false);

// Coded text as hosts and people see it: "<1>bold</1> and <2/>", with "<<" for "<". The reverse throws `failure` 5 for
// an invalid tag.
std::u16string to_host_text(std::string_view coded);
std::string from_host_text(std::u16string_view text);

}  // namespace kavo
