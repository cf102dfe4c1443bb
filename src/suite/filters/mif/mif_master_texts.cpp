#include "suite/filters/mif/mif_master_texts.h"

#include <algorithm>

namespace kavo::mif {
namespace {

// Texts beyond this are offered every time. Master pages hold few texts, and a damaged document must not fill the
// memory.
constexpr std::size_t kMostBytes = 256 * 1024;

constexpr std::string_view kUnique = "<Unique";

// The first number of an object from `from` on, with its statement; "" for none.
std::string_view next_unique(std::string_view bytes, std::size_t from) {
  const std::size_t begin = bytes.find(kUnique, from);
  if (begin == std::string_view::npos) return {};
  const std::size_t end = bytes.find('>', begin);
  return end == std::string_view::npos ? std::string_view() : bytes.substr(begin, end + 1 - begin);
}

std::vector<std::string_view> uniques_of(std::string_view bytes) {
  std::vector<std::string_view> found;
  std::size_t from = 0;
  for (std::string_view unique; !(unique = next_unique(bytes, from)).empty();) {
    found.push_back(unique);
    from = static_cast<std::size_t>(unique.data() - bytes.data()) + unique.size();
  }
  return found;
}

// Appends bytes with something else in place of each number of an object.
template <class Replacement>
void append_with_uniques(std::string_view bytes, Replacement&& replacement, std::string& result) {
  std::size_t at = 0;
  for (const std::string_view unique : uniques_of(bytes)) {
    const std::size_t place = static_cast<std::size_t>(unique.data() - bytes.data());
    result += bytes.substr(at, place - at);
    result += replacement(unique);
    at = place + unique.size();
  }
  result += bytes.substr(at);
}

}  // namespace

MifMasterTexts::Entry MifMasterTexts::take(const Segment& segment, std::string_view font) {
  // A statement that says where the text of a frame begins differs from place to place.
  if (segment.original.find("<TextRectID") != std::string::npos) return {};
  std::string key = segment.text;
  for (const InlineCode& code : segment.codes)
    append_with_uniques(
        std::string_view(segment.original).substr(code.begin, code.end - code.begin),
        [](std::string_view) { return kUnique; }, key);
  key += font;
  const auto number = static_cast<std::uint32_t>(numbers_.size());
  if (const auto found = numbers_.find(key); found != numbers_.end()) return {found->second, false, true};
  if (size_ + key.size() > kMostBytes) return {};
  size_ += key.size();
  numbers_.emplace(std::move(key), number);
  return {number, true, false};
}

void MifMasterTranslations::begin(std::string_view original) { texts_.push_back({std::string(original), {}}); }

void MifMasterTranslations::append_again(std::uint32_t number, std::string_view original, std::string& bytes) const {
  if (number >= texts_.size() || !texts_[number].written) {
    bytes += original;
    return;
  }
  const std::vector<std::string_view> theirs = uniques_of(texts_[number].original);
  const std::vector<std::string_view> own = uniques_of(original);
  append_with_uniques(
      *texts_[number].written,
      [&](std::string_view unique) {
        const auto place = static_cast<std::size_t>(std::ranges::find(theirs, unique) - theirs.begin());
        return place < own.size() ? own[place] : unique;
      },
      bytes);
}

}  // namespace kavo::mif
