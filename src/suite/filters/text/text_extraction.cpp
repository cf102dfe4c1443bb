#include "suite/filters/text/text_extraction.h"

#include <algorithm>

#include "formats/text/columns.h"
#include "suite/filters/text/line_joint.h"
#include "suite/filters/text/wrapping.h"

namespace kavo {
namespace {

// How much is read to see whether lines are filled.
constexpr std::uint64_t kSurveyed = 1024 * 1024;  // bytes

// A text as UTF-8, with a substitute for invalid bytes: it is measured, not shown.
std::string decoded(std::string_view bytes, const TextCoding& coding) {
  std::string text;
  while (!bytes.empty()) {
    bytes.remove_prefix(coding.decode_run(bytes, text));
    if (bytes.empty()) break;
    std::string ignored;
    bool is_valid = false;
    bytes.remove_prefix(coding.decode_one(bytes, ignored, is_valid));
    text += 'x';
  }
  return text;
}

LineLook look_at(std::string_view line, const UnitScan& scan, const TextCoding& coding) {
  const std::size_t begin = scan.leading_blanks(line);
  const std::size_t end = scan.end_of_text(line, begin);
  return look_of(decoded(line.substr(0, begin), coding), decoded(line.substr(begin, end - begin), coding));
}

}  // namespace

Paragraphs find_paragraphs(BlockReader& document, const TextCoding& coding, ProgressEvent& progress) {
  const std::uint64_t begin = document.position();
  ParagraphLines::Ends all;
  ParagraphLines paragraph;
  const auto finish = [&] {
    const ParagraphLines::Ends ends = paragraph.telling_ends();
    all.count += ends.count;
    all.filled += ends.filled;
    paragraph.clear();
  };
  TextLines lines(document, coding, progress);
  const UnitScan& scan = lines.scan();
  for (TextLines::Line line; document.position() - begin < kSurveyed && lines.next(line);) {
    if (!line.is_whole || scan.leading_blanks(line.text) == line.text.size()) {
      finish();
      continue;
    }
    const LineLook look = look_at(line.text, scan, coding);
    if (!paragraph.goes_on_with(look)) finish();
    paragraph.add(look);
  }
  finish();
  document.seek(begin);
  return all.filled != 0 && 5 * all.filled >= 3 * all.count ? Paragraphs::kFilled : Paragraphs::kLines;
}

void TextExtraction::run(ProgressEvent& progress) {
  TextLines lines(document_, coding_, progress);
  for (TextLines::Line line; lines.next(line);) take(line);
  flush();
  progress.report(100);
}

void TextExtraction::take(const TextLines::Line& line) {
  Place place;
  place.text = scan_.leading_blanks(line.text);
  place.text_end = scan_.end_of_text(line.text, place.text);
  place.line_end = line.text.size();
  place.end = place.line_end + line.end.size();
  const bool is_blank = place.text == place.text_end;
  LineLook look;
  bool goes_on = false;
  if (paragraphs_ != Paragraphs::kLines && line.is_whole && !is_blank) {
    look = look_at(line.text, scan_, coding_);
    if (paragraphs_ == Paragraphs::kBlank) look.is_fixed = false;
    goes_on = looks_.goes_on_with(look) && bytes_.size() + place.end <= TextLines::kLongestLine;
  }
  if (!goes_on) flush();
  const std::size_t shift = bytes_.size();
  for (std::size_t* const at : {&place.begin, &place.text, &place.text_end, &place.line_end, &place.end}) *at += shift;
  bytes_ += line.text;
  bytes_ += line.end;
  places_.push_back(place);
  looks_.add(look);
  if (goes_on || (paragraphs_ != Paragraphs::kLines && line.is_whole && !is_blank)) return;
  flush();
  // The rest of a cut line belongs to the same paragraph.
  if (line.is_whole) return;
  --line_;
  column_ += static_cast<std::int64_t>(line.text.size());
}

void TextExtraction::flush() {
  if (places_.empty()) return;
  const std::int64_t column = column_;
  const bool is_paragraph = places_.size() > 1 && (paragraphs_ == Paragraphs::kBlank || looks_.is_filled());
  if (is_paragraph) {
    write_paragraph();
    line_ += static_cast<std::int64_t>(places_.size());
  } else {
    for (std::size_t i = 0; i < places_.size(); ++i) {
      write_line(places_[i], looks_[i].is_fixed ? 0 : bullet_bytes(i));
      ++line_;
      column_ = 1;
    }
  }
  column_ = places_.back().line_end == places_.back().end ? column : 1;
  bytes_.clear();
  places_.clear();
  looks_.clear();
}

void TextExtraction::write_line(const Place& place, std::size_t bullet) {
  const std::size_t begin = place.text + bullet;
  builder_.start(line_, column_ + static_cast<std::int64_t>(begin - place.begin));
  builder_.element(bullet != 0 ? "list entry" : "line");
  builder_.add_text(piece(begin, place.text_end));
  if (!builder_.has_text()) {
    sink_.skeleton(piece(place.begin, place.end));
    return;
  }
  sink_.skeleton(piece(place.begin, begin));
  sink_.segment(builder_.finish());
  sink_.skeleton(piece(place.text_end, place.end));
}

void TextExtraction::write_paragraph() {
  const Place& first = places_.front();
  const Place& last = places_.back();
  const std::size_t begin = first.text + bullet_bytes(0);
  builder_.start(line_, column_ + static_cast<std::int64_t>(begin));
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (i != 0) write_joint(i);
    write_text(piece(i == 0 ? begin : places_[i].text, places_[i].text_end));
  }
  if (!builder_.has_text()) {
    sink_.skeleton(bytes_);
    return;
  }
  const std::string between = separator();
  ParagraphShape shape;
  shape.width = looks_.width();
  shape.column = columns_of(decoded(piece(0, begin), coding_));
  shape.separator = between;
  builder_.context(to_context(shape));
  builder_.element(looks_[0].bullet != 0 ? "list entry" : "paragraph");
  sink_.skeleton(piece(0, begin));
  sink_.segment(builder_.finish());
  sink_.skeleton(piece(last.text_end, last.end));
}

// Runs of blanks become one blank: in justified lines their number means nothing.
void TextExtraction::write_text(std::string_view text) {
  const std::size_t unit = scan_.width();
  while (!text.empty()) {
    std::size_t blank = 0;
    while (blank < text.size() && !scan_.is_blank(text, blank)) blank += unit;
    blank = std::min(blank, text.size());
    builder_.add_text(text.substr(0, blank));
    text.remove_prefix(blank);
    const std::size_t blanks = scan_.leading_blanks(text);
    if (blanks != 0) builder_.add_text(" ", text.substr(0, blanks));
    text.remove_prefix(blanks);
  }
}

// Writes the bytes between the texts of two lines.
void TextExtraction::write_joint(std::size_t line) {
  const std::string_view bytes = piece(places_[line - 1].text_end, places_[line].text);
  const LineLook& before = looks_[line - 1];
  if (joins_without_blank(before.before_last, before.last, looks_[line].first))
    builder_.add_hidden(bytes);
  else
    builder_.add_text(" ", bytes);
}

// The end of the first line, without the blanks before it, and the indentation of the second.
std::string TextExtraction::separator() const {
  return decoded(piece(places_[0].line_end, places_[0].end), coding_) +
         decoded(piece(places_[1].begin, places_[1].text), coding_);
}

// Bytes of a line's bullet.
std::size_t TextExtraction::bullet_bytes(std::size_t line) const {
  if (looks_[line].bullet == 0) return 0;
  const Place& place = places_[line];
  const std::string bullet = decoded(piece(place.text, place.text_end), coding_).substr(0, looks_[line].bullet);
  std::string bytes;
  coding_.encode(bullet, bytes, [](std::string_view, std::string&) {});
  return bytes.size();
}

}  // namespace kavo
