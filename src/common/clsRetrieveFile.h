// A text file line by line, without loading it whole. Lines keep their terminators, so that a caller who writes them
// out again reproduces the line breaks to the byte.
//
// GetLineFromFile hands out text, converted chunk by chunk from the ANSI code page. The converters, which must never
// convert a document on its way through, take the same bytes through blocks().
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "common/block_reader.h"

namespace kavo {

class clsRetrieveFile {
 public:
  const std::u16string& Filename() const { return file_name_; }
  void Filename(std::u16string_view value) { file_name_ = value; }

  // False when the name is empty or no such file exists (a hidden one counts as missing); a file that was open before
  // stays open. Also false when the file cannot be opened; the one that was open before is then closed.
  bool OpenFile();
  // Text that was read but not handed out yet stays available to GetLineFromFile.
  void CloseFile();
  // The next line with its terminator (CR LF, LF CR, CR or LF); false with an empty line at the end of the file. A
  // pair that a chunk cuts in two is deliberately handed out as two lines: written out again they are the same bytes.
  // Throws `failure` when the file cannot be read, and 91 when no file is open and the text of the last one, which was
  // not read to its end, is used up.
  bool GetLineFromFile(std::u16string& line);

  std::int16_t Progress() const { return progress_; }       // percent of the file read
  std::int32_t LineNumber() const { return line_number_; }  // lines handed out that had a terminator
  std::int32_t ChunkSize() const { return chunk_size_; }    // bytes converted at a time, 4096 at first
  void ChunkSize(std::int32_t value);                       // throws `failure` 5 for less than 1
  // 1-based byte position of the next chunk. Throws `failure` 6 past 2,147,483,647: the property is 32 bits wide for
  // its hosts, the reader itself is not.
  std::int32_t Position() const;
  void Position(std::int32_t value);

  // The same file as bytes, from the current position. Do not mix it with GetLineFromFile. Throws `failure` 91 when no
  // file is open.
  BlockReader& blocks();

 private:
  bool read_chunk();
  void forget_pending();

  std::u16string file_name_;
  std::optional<BlockReader> reader_;
  std::u16string pending_;
  std::size_t pending_begin_ = 0;  // where the part of pending_ begins that was not handed out yet
  std::size_t searched_ = 0;       // no line ends before this: a long line is searched once, not once for each chunk
  bool is_read_to_end_ = false;    // about the file that was closed last
  std::int16_t progress_ = 0;
  std::int32_t line_number_ = 0;
  std::int32_t chunk_size_ = 4096;
};

}  // namespace kavo
