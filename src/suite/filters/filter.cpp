#include "suite/filters/filter.h"

#include <algorithm>
#include <charconv>

#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {

const Hole::Code* Hole::find(const CodedPart& reference) const {
  std::uint32_t id = 0;
  const char* const end = reference.text.data() + reference.text.size();
  if (std::from_chars(reference.text.data(), end, id).ptr != end) return nullptr;
  const std::vector<std::uint32_t>& places = by_id_[reference.kind == CodeKind::kClose];
  if (id >= places.size() || places[id] == 0) return nullptr;
  const Code& code = codes[places[id] - 1];
  return code.kind == reference.kind ? &code : nullptr;
}

std::string_view Hole::bytes_of(const CodedPart& reference) const {
  const Code* const code = find(reference);
  return code ? std::string_view(original).substr(code->begin, code->end - code->begin) : std::string_view();
}

void Hole::index_codes() {
  for (auto& places : by_id_) places.assign(codes.size() + 1, 0);
  for (std::size_t i = 0; i < codes.size(); ++i)
    if (codes[i].id <= codes.size())
      by_id_[codes[i].kind == CodeKind::kClose][codes[i].id] = static_cast<std::uint32_t>(i + 1);
}

std::u16string place_of(const Hole& hole) {
  return formatted(u"segment {} (line {}, column {})", hole.number, hole.line, hole.column);
}

void Filter::begin_rebuild(const RebuildSettings& settings) {
  settings_ = settings;
  source_coding_ = std::make_unique<TextCoding>(settings.facts.code_page);
  target_coding_ = std::make_unique<TextCoding>(settings.target_code_page);
}

void Filter::written(const WrittenPart&) {}

void Filter::end_rebuild() {}

void Filter::check(const Hole&, std::string_view) {}

bool Filter::is_recoded(const Hole& hole) const {
  return settings_.facts.code_page != settings_.target_code_page &&
         std::ranges::any_of(hole.original, [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
}

void Filter::write_segment(const Hole& hole, std::string_view translation, std::string& bytes) {
  CodedTextReader reader(translation);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code)
      bytes += hole.bytes_of(part);
    else
      write_text(hole, part.text, bytes);
  }
}

void Filter::write_text(const Hole& hole, std::string_view text, std::string& bytes) {
  target_coding_->encode(text, bytes, [&](std::string_view character, std::string&) {
    throw failure(FailureNumber::kInvalidCall, formatted(u"{}: code page {} has no character \"{}\"", place_of(hole),
                                                         target_coding_->number(), character));
  });
}

void Filter::highlight(const Hole&, std::string_view segment, std::uint32_t, std::string& bytes) { bytes += segment; }

void Filter::write_computed(std::uint32_t, std::string_view original, std::string& bytes) {
  if (settings_.facts.code_page == settings_.target_code_page)
    bytes += original;
  else
    recode(original, bytes);
}

void Filter::recode(std::string_view original, std::string& bytes) {
  const auto missing = [&](std::string_view character, std::string&) {
    throw failure(FailureNumber::kInvalidCall,
                  formatted(u"Code page {} has no character \"{}\", which the document holds outside its texts",
                            target_coding_->number(), character));
  };
  std::string text;
  source_coding_->decode(original, text, [&](std::string_view piece) {
    target_coding_->encode(text, bytes, missing);
    text.clear();
    bytes += piece;
  });
  target_coding_->encode(text, bytes, missing);
}

}  // namespace kavo
