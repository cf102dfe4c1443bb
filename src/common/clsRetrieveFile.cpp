#include "common/clsRetrieveFile.h"

#include <algorithm>
#include <limits>

#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {

bool clsRetrieveFile::OpenFile() {
  if (file_name_.empty()) return false;
  try {
    const auto info = ports().files->info(file_name_);
    // A hidden file counts as missing, deliberately: hosts rely on it.
    if (!info || info->is_folder || info->is_hidden) return false;
    CloseFile();
    reader_.emplace(file_name_);
  } catch (const failure&) {
    return false;
  }
  line_number_ = 0;
  forget_pending();
  return true;
}

void clsRetrieveFile::CloseFile() {
  if (reader_) is_read_to_end_ = reader_->position() >= reader_->size();
  reader_.reset();
  progress_ = 0;
}

bool clsRetrieveFile::GetLineFromFile(std::u16string& line) {
  std::size_t end;
  while ((end = pending_.find_first_of(u"\r\n", searched_)) == std::u16string::npos) {
    searched_ = pending_.size();
    if (read_chunk()) continue;
    line.assign(pending_, pending_begin_);
    forget_pending();
    return !line.empty();
  }
  const bool is_pair = end + 1 < pending_.size() && (pending_[end + 1] == u'\r' || pending_[end + 1] == u'\n') &&
                       pending_[end + 1] != pending_[end];
  end += is_pair ? 2 : 1;
  line.assign(pending_, pending_begin_, end - pending_begin_);
  ++line_number_;
  pending_begin_ = searched_ = end;
  return true;
}

// Appends one chunk to the pending text; false at the end of the file.
bool clsRetrieveFile::read_chunk() {
  if (!reader_ && is_read_to_end_) return false;
  BlockReader& reader = blocks();
  const auto holds = [&](std::size_t count) {
    while (reader.window().size() < count && reader.more()) {
    }
    return reader.window().size() >= count;
  };
  auto size = static_cast<std::size_t>(chunk_size_);
  if (!holds(size)) size = reader.window().size();
  if (size == 0) return false;
  const CodePage& code_page = *ports().code_page;
  // By contract one more byte is read after any byte that can be a lead byte, even if it is a trail byte here.
  if (code_page.is_lead_byte(static_cast<unsigned char>(reader.window()[size - 1])) && holds(size + 1)) ++size;
  // Beyond that, no character of any code page may be cut in two.
  while (code_page.incomplete_tail(reader.window().substr(0, size)) != 0 && holds(size + 1)) ++size;

  pending_.erase(0, pending_begin_);
  searched_ -= pending_begin_;
  pending_begin_ = 0;
  pending_ += code_page.decode(reader.window().substr(0, size));
  reader.consume(size);
  progress_ = percent_of(reader.position(), reader.size());
  return true;
}

void clsRetrieveFile::forget_pending() {
  pending_.clear();
  pending_begin_ = searched_ = 0;
}

void clsRetrieveFile::ChunkSize(std::int32_t value) {
  if (value < 1) throw failure(FailureNumber::kInvalidCall, u"The chunk size must be at least 1");
  chunk_size_ = value;
}

std::int32_t clsRetrieveFile::Position() const {
  if (!reader_) throw failure(FailureNumber::kNoObject, u"No file is open");
  const std::uint64_t position = reader_->position() + 1;
  if (position > std::numeric_limits<std::int32_t>::max()) throw failure(FailureNumber::kOverflow, u"Overflow");
  return static_cast<std::int32_t>(position);
}

void clsRetrieveFile::Position(std::int32_t value) {
  BlockReader& reader = blocks();
  if (value < 1) throw failure(FailureNumber::kInvalidCall, u"A position in a file is at least 1");
  reader.seek(static_cast<std::uint64_t>(value) - 1);
  forget_pending();
}

BlockReader& clsRetrieveFile::blocks() {
  if (!reader_) throw failure(FailureNumber::kNoObject, u"No file is open");
  return *reader_;
}

}  // namespace kavo
