// The OpenTag file (".otf"): the translated segments of one document on their way from the bilingual document to the
// filter that builds the target. It is a record file. docs/suite-interface.md describes the format.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/pending_file.h"
#include "suite/document/record_file.h"
#include "suite/document/translation_status.h"

namespace kavo {

struct OpenTagHeader {
  std::uint64_t checksum = 0;  // of the source document
  unsigned target_code_page = 0;
  std::string source_language;  // the suite's codes
  std::string target_language;
  std::optional<SegmentColours> colours;
};

class OpenTagWriter {
 public:
  // Throws `failure`, as do all operations; without commit() no file is left.
  OpenTagWriter(std::u16string_view path, const OpenTagHeader& header);
  // Call it in ascending order of numbers. `text` is coded text. The text of an unchanged segment counts only if it
  // must be written in another code page.
  void segment(std::uint32_t number, TranslationStatus status, bool is_unchanged, std::string_view text);
  void commit();

 private:
  PendingFile file_;
  std::string record_;
  std::uint64_t count_ = 0;
};

struct OpenTagSegment {
  std::uint32_t number = 0;
  TranslationStatus status = TranslationStatus::kUntranslated;
  bool is_unchanged = false;
  std::string_view text;  // valid until the next one
};

class OpenTagReader {
 public:
  // Throws `failure` 5 for a file that is not an OpenTag file, is damaged or was cut, as next() does.
  explicit OpenTagReader(std::u16string_view path);
  const OpenTagHeader& header() const { return header_; }
  bool next(OpenTagSegment& segment);

 private:
  RecordReader reader_;
  OpenTagHeader header_;
  std::uint64_t count_ = 0;
};

}  // namespace kavo
