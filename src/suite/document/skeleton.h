// The skeleton of a document (".skl"): everything of it that is not translated, with a numbered hole for each segment.
//
// A record file. Each hole keeps the segment's own bytes, so that a document rebuilt unchanged is the document,
// whatever odd spelling it uses. The last record holds a checksum over all bytes before it: a damaged skeleton would
// give a wrong document that looks right. The format: docs/suite-interface.md.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/pending_file.h"
#include "platform/fnv_hash.h"
#include "suite/document/record_file.h"
#include "suite/document/set_mark.h"
#include "suite/filters/filter.h"

namespace kavo {

class SkeletonWriter {
 public:
  // Throws `failure`, as do all operations; without commit() no file is left.
  explicit SkeletonWriter(std::u16string_view path) : file_(path) {}
  // First: the filter's tag, the checksum of the source document, what the filter found out about it, the set that it
  // belongs to.
  void begin(std::u16string_view filter, std::uint64_t checksum, const DocumentFacts& facts, const SetMark& set = {});
  void bytes(std::string_view bytes);
  void computed(std::uint32_t kind, std::string_view original);
  void segment(std::uint32_t number, const Segment& segment, bool is_nested);
  // Last; the file stands under its name after commit().
  void finish(std::uint32_t segment_count);
  void commit() { file_.commit(); }

 private:
  void flush();
  void write(std::string_view bytes);

  PendingFile file_;
  std::uint64_t sum_ = kFnvSeed;  // over all bytes written
  std::string pending_;           // bytes that become one record: filters hand over many small pieces
  std::string record_;
};

// True for a file that begins as a skeleton does. Throws `failure` when it cannot be read.
bool is_skeleton(std::u16string_view path);

struct SkeletonHeader {
  std::u16string filter;
  std::uint64_t checksum = 0;
  DocumentFacts facts;
  SetMark set;
};

struct SkeletonRecord {
  enum class Kind { kBytes, kComputed, kSegment, kNestedSegment, kEnd };
  Kind kind = Kind::kEnd;
  std::uint32_t number = 0;  // of a computed place its kind, at the end the count of segments
  std::string_view bytes;    // of the first two kinds, valid until the next record
  Hole hole;                 // of a segment
  std::vector<NestedPlace> nested;
};

class SkeletonReader {
 public:
  // Reads the whole file once and checks it. Throws `failure` 5 for a file that is not a skeleton, is damaged or was
  // cut; in a skeleton of the first format, which has no checksum, next() finds what of this can be found.
  explicit SkeletonReader(std::u16string_view path);
  const SkeletonHeader& header() const { return header_; }
  // The end is a record too; do not go past it.
  void next(SkeletonRecord& record);
  std::int16_t percent() const { return reader_.percent(); }

 private:
  void read_hole(SkeletonRecord& record);

  RecordReader reader_;
  SkeletonHeader header_;
};

}  // namespace kavo
