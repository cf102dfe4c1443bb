#include "suite/filters/script/script_extraction.h"

#include <algorithm>

#include "formats/html/marker_reader.h"
#include "formats/script/page_scripts.h"
#include "platform/trimmed.h"
#include "suite/filters/script/script_place.h"

namespace kavo::script {
namespace {

// An operand of a text may contain a text, whose operand may contain a text, and so on. Deeper texts are not offered,
// so no byte is in more segments than this.
constexpr std::size_t kMostDepth = 4;

// How much of a code a translator gets to see.
constexpr std::size_t kMostShown = 200;  // bytes

// A line begins after each CR LF, LF or CR.
template <class Action>
void each_line_end(std::string_view text, Action&& action) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool is_pair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
    if (ends_line(text[at]) && !is_pair) action(at + 1);
  }
}

// The number of the placeholder before a block, 0 when there is none.
std::uint64_t number_in(std::string_view gap) {
  const std::size_t marker = gap.rfind(html::placeholder::kMarker);
  return marker == std::string_view::npos ? 0 : html::placeholder_number(gap.substr(marker));
}

// "<%= value %>", "<?php echo value ?>"
bool writes_value(std::string_view text, std::span<const Piece> pieces) {
  const Piece& first = pieces.front();
  if (first.kind == PieceKind::kValue) return true;
  const std::string_view code = trimmed(text.substr(first.begin, first.end - first.begin), " \t\r\n");
  return first.language == Language::kPhp && (code.starts_with("echo ") || code.starts_with("print "));
}

}  // namespace

ScriptExtraction::ScriptExtraction(ScriptBlocks& blocks, Language server, const TextCoding& coding,
                                   const ConversionSettings& settings, ExtractionSink& sink)
    : blocks_(blocks),
      text_(blocks.text()),
      coding_(coding),
      offer_(settings.scripts.offer),
      sink_(sink),
      author_(settings),
      tags_(settings, coding),
      rules_({settings.scripts.texts, settings.scripts.never}),
      finder_(text_, coding, rules_),
      builder_(coding),
      page_language_(server) {}

// No block's data is kept from one walk to the next, since a page may have a million blocks.
template <class Action>
void ScriptExtraction::each_block(Action&& action) {
  PageScripts scripts(page_language_);
  std::vector<Piece> pieces;
  ScriptBlocks::Walk walk(blocks_);
  for (Block block; walk.next(block);) {
    pieces.clear();
    scripts.add_block(text_, block.begin, block.end, pieces);
    action(block, std::span<const Piece>(pieces));
  }
}

void ScriptExtraction::run(ProgressEvent& progress) {
  std::vector<Unit> units;
  ScriptBlocks::Gaps gaps(blocks_);
  if (offer_ != Offer::kNone) {
    each_block([&](const Block&, std::span<const Piece> pieces) { finder_.follow(pieces); });
    finder_.turn();
    progress.report(50);
  }
  each_block([&](const Block& block, std::span<const Piece> pieces) {
    const std::string_view gap = gaps.before(block);
    sink_.skeleton(gap);
    units.clear();
    if (offer_ != Offer::kNone && !pieces.empty()) finder_.units(pieces, units);
    if (!units.empty() && writes_value(text_, pieces) && tags_.holds(number_in(gap)))
      std::erase_if(units, [](const Unit& unit) { return !unit.has_markup; });
    enter_block(gap, block);
    emit(units);
    skeleton_up_to(block.end);
  });
  for (std::string_view rest = gaps.rest(); !rest.empty(); rest = gaps.rest()) sink_.skeleton(rest);
  progress.report(100);
}

void ScriptExtraction::enter_block(std::string_view gap, const Block& block) {
  // Counts the lines between the last block and this one, including the last line of that block.
  if (!lines_.empty()) line_ += static_cast<std::int64_t>(lines_.size()) - 1;
  each_line_end(gap, [&](std::size_t) { ++line_; });
  const std::string_view text = text_.substr(block.begin, block.end - block.begin);
  lines_.assign(1, block.begin);
  each_line_end(text, [&](std::size_t place) { lines_.push_back(block.begin + place); });
  author_line_ = author_.line_of(text);
}

// The units are in the order of their beginnings, so an outer unit comes before those inside it. An outer segment must
// be written after those inside it.
void ScriptExtraction::emit(const std::vector<Unit>& units) {
  for (const Unit& unit : units) {
    while (!open_.empty() && unit.begin >= open_.back().unit->end) finish_unit();
    if (open_.size() >= kMostDepth || unit.begin < written_) continue;
    // Only operands contain other texts.
    const auto holds = [&](const UnitPart& part) {
      return part.is_code && part.begin < unit.begin && unit.end < part.end;
    };
    if (!open_.empty() && std::none_of(open_.back().unit->parts.begin(), open_.back().unit->parts.end(), holds))
      continue;
    open_.push_back({&unit, {}});
  }
  while (!open_.empty()) finish_unit();
}

void ScriptExtraction::finish_unit() {
  const Open last = std::move(open_.back());
  open_.pop_back();
  const Segment& segment = segment_of(*last.unit, last.nested);
  if (!open_.empty()) {
    open_.back().nested.push_back({last.unit->begin, last.unit->end, sink_.nested_segment(segment)});
    return;
  }
  skeleton_up_to(last.unit->begin);
  sink_.segment(segment);
  written_ = last.unit->end;
}

void ScriptExtraction::skeleton_up_to(std::size_t place) {
  if (place > written_) sink_.skeleton(text_.substr(written_, place - written_));
  written_ = std::max(written_, place);
}

const Segment& ScriptExtraction::segment_of(const Unit& unit, const std::vector<Nested>& nested) {
  const auto behind = std::ranges::upper_bound(lines_, unit.begin);
  const std::int64_t line = behind - lines_.begin() - 1;  // of the block
  builder_.start(line_ + line, static_cast<std::int64_t>(unit.begin - *(behind - 1)) + 1);
  if (author_line_ != 0) builder_.author_line(author_line_ + line);
  builder_.element(unit.element);
  for (const UnitPart& part : unit.parts) {
    if (!part.is_code) {
      builder_.add_text(part.text, text_.substr(part.begin, part.end - part.begin));
      continue;
    }
    add_code(part, nested);
  }
  builder_.context(context_of(place_of_unit(unit)));
  const bool is_doubtful = unit.verdict == Verdict::kDoubt;
  builder_.locked(is_doubtful && offer_ != Offer::kAll);
  if (unit.language == Language::kUnknown) ++unknown_;
  if (is_doubtful) builder_.note(doubt_of(unit));
  return builder_.finish();
}

void ScriptExtraction::add_code(const UnitPart& part, const std::vector<Nested>& nested) {
  const std::string_view bytes = text_.substr(part.begin, part.end - part.begin);
  std::string shown = part.text;
  if (shown.empty()) coding_.decode_run(bytes.substr(0, kMostShown), shown);
  const CodeKind kind = part.kind == 'o'   ? CodeKind::kOpen
                        : part.kind == 'c' ? CodeKind::kClose
                                           : CodeKind::kStandalone;
  const std::string_view type = part.type.empty() ? "x-script" : part.type;
  builder_.begin_code(kind, type, shown, part.is_operand || part.type == "x-placeholder");
  std::size_t at = part.begin;
  for (const Nested& inner : nested) {
    if (inner.begin < at || inner.end > part.end) continue;
    builder_.code_bytes(text_.substr(at, inner.begin - at));
    builder_.nested(inner.number, text_.substr(inner.begin, inner.end - inner.begin));
    at = inner.end;
  }
  builder_.code_bytes(text_.substr(at, part.end - at));
  builder_.end_code();
}

}  // namespace kavo::script
