// The skeleton of a document (".skl"): everything in it that is not translated, with a numbered hole for each segment.
//
// It is a record file. Each hole keeps the segment's own bytes, so an unchanged document is rebuilt to the byte,
// however oddly it is written. The last record holds a checksum of all bytes before it, because a damaged skeleton
// would give a wrong document that looks right. docs/suite-interface.md describes the format.
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
  // Call it first, with the filter's tag, the checksum of the source document, what the filter has found out about it,
  // and the set that it belongs to.
  void begin(std::u16string_view filter, std::uint64_t checksum, const DocumentFacts& facts, const SetMark& set = {});
  void bytes(std::string_view bytes);
  void computed(std::uint32_t kind, std::string_view original);
  void segment(std::uint32_t number, const Segment& segment, bool is_nested);
  // Call it last. The file has its name after commit().
  void finish(std::uint32_t segment_count);
  void commit() { file_.commit(); }

 private:
  void flush();
  void write(std::string_view bytes);

  PendingFile file_;
  std::uint64_t sum_ = kFnvSeed;  // over all bytes written
  std::string pending_;           // bytes for the next record, because filters hand over many small pieces
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
  std::uint32_t number = 0;  // the kind of a computed place; at the end, the number of segments
  std::string_view bytes;    // of the first two kinds, valid until the next record
  Hole hole;                 // of a segment
  std::vector<NestedPlace> nested;
};

class SkeletonReader {
 public:
  // Reads the whole file once and checks it. Throws `failure` 5 for a file that is not a skeleton, is damaged or was
  // cut; a skeleton of the first format has no checksum, so next() refuses what it can recognise as damaged.
  explicit SkeletonReader(std::u16string_view path);
  const SkeletonHeader& header() const { return header_; }
  // The end is also a record. Do not go past it.
  void next(SkeletonRecord& record);
  std::int16_t percent() const { return reader_.percent(); }

 private:
  void read_hole(SkeletonRecord& record);

  RecordReader reader_;
  SkeletonHeader header_;
};

}  // namespace kavo
