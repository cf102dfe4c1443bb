#include "suite/document/record_file.h"

#include <algorithm>
#include <charconv>

#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// A letter and at most nine numbers of 20 digits; a longer line does not belong to a record.
constexpr std::size_t kLongestLine = 200;

}  // namespace

void append_record_line(std::string& out, char kind, std::initializer_list<std::uint64_t> numbers) {
  out += kind;
  for (const std::uint64_t number : numbers) {
    char digits[20];
    out += ' ';
    out.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
  }
  out += '\n';
}

RecordReader::RecordReader(std::u16string_view path, std::initializer_list<std::string_view> titles,
                           std::u16string_view what)
    : path_(path), what_(what), reader_(path) {
  const auto found = std::ranges::find(titles, line());
  if (found == titles.end()) throw_damaged();
  title_ = *found;
}

void RecordReader::throw_damaged() const {
  throw failure(FailureNumber::kInvalidCall, formatted(u"{} is not {}, or is damaged", path_to_host(path_), what_));
}

std::string_view RecordReader::line() {
  reader_.consume(used_);
  used_ = 0;
  std::size_t searched = 0;
  for (;;) {
    const std::string_view window = reader_.window();
    const std::size_t end = window.substr(0, kLongestLine).find('\n', searched);
    if (end != std::string_view::npos) {
      used_ = end + 1;
      return window.substr(0, end);
    }
    searched = window.size();
    if (searched >= kLongestLine || !reader_.more()) throw_damaged();
  }
}

void RecordReader::next() {
  const std::string_view text = line();
  if (text.empty()) throw_damaged();
  kind_ = text.front();
  numbers_ = text.substr(1);
  number_at_ = 0;
}

std::uint64_t RecordReader::number(std::uint64_t limit) {
  std::uint64_t value = 0;
  const char* const begin = numbers_.data() + number_at_;
  const char* const end = numbers_.data() + numbers_.size();
  if (end - begin < 2 || *begin != ' ') throw_damaged();
  const auto [stop, error] = std::from_chars(begin + 1, end, value);
  if (error != std::errc() || value > limit) throw_damaged();
  number_at_ = static_cast<std::size_t>(stop - numbers_.data());
  return value;
}

std::string_view RecordReader::bytes(std::uint64_t length) {
  reader_.consume(used_);
  used_ = 0;
  // This is checked first, because a damaged length must not fill the memory.
  if (length > reader_.size() - reader_.position()) throw_damaged();
  const auto size = static_cast<std::size_t>(length);
  while (reader_.window().size() < size)
    if (!reader_.more()) throw_damaged();
  used_ = size;
  return reader_.window().substr(0, size);
}

}  // namespace kavo
