// Files of records: a line with a letter and decimal numbers, then as many bytes as the line says.
//
// Skeletons and OpenTag files consist of records. A record can hold any bytes, a reader never searches for an end, and
// a file that was cut is noticed.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"

namespace kavo {

// "S 12 4 7" and a line feed.
void append_record_line(std::string& out, char kind, std::initializer_list<std::uint64_t> numbers);

class RecordReader {
 public:
  // Opens the file, whose first line must be one of the titles. Throws `failure` 5 "<path> is not WHAT, or is damaged"
  // for any file that is something else or was cut, with `what` ("a skeleton").
  RecordReader(std::u16string_view path, std::initializer_list<std::string_view> titles, std::u16string_view what);
  // The file's own title, one of those.
  std::string_view title() const { return title_; }

  // Reads the line of the next record. Bytes of the record before are no longer valid.
  void next();
  char kind() const { return kind_; }
  // The next number of the line, at most `limit`.
  std::uint64_t number(std::uint64_t limit = UINT64_MAX);
  std::uint32_t number32() { return static_cast<std::uint32_t>(number(UINT32_MAX)); }
  // The next bytes of the record, valid until the next call of any member but number().
  std::string_view bytes(std::uint64_t length);
  [[noreturn]] void throw_damaged() const;

  std::int16_t percent() const { return reader_.percent(); }

 private:
  std::string_view line();

  std::u16string path_;
  std::u16string what_;
  std::string_view title_;
  BlockReader reader_;
  std::size_t used_ = 0;  // how many bytes of the window were handed out last
  char kind_ = 0;
  std::string numbers_;
  std::size_t number_at_ = 0;
};

}  // namespace kavo
