#include "suite/document/rebuilding.h"

#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {

RebuildSettings rebuild_settings(const SkeletonHeader& skeleton, std::string source_language,
                                 std::string target_language, unsigned target_code_page) {
  RebuildSettings settings;
  settings.facts = skeleton.facts;
  settings.source_language = std::move(source_language);
  settings.target_language = std::move(target_language);
  const bool keeps = skeleton.facts.keeps_code_page || target_code_page == 0;
  settings.target_code_page = keeps ? skeleton.facts.code_page : target_code_page;
  return settings;
}

void refuse_codes(const Hole& hole, std::string_view translation) {
  const auto refuse = [&](const std::u16string& reason) {
    throw failure(FailureNumber::kInvalidCall, place_of(hole) + u": " + reason);
  };
  std::vector<std::uint32_t> seen(hole.codes.size());
  CodedTextReader reader(translation);
  for (CodedPart part; reader.next(part);) {
    if (!part.is_code) continue;
    const Hole::Code* const code = hole.find(part);
    if (!code) refuse(u"the text has no code " + to_utf16(part.text));
    ++seen[static_cast<std::size_t>(code - hole.codes.data())];
  }
  for (std::size_t i = 0; i < hole.codes.size(); ++i)
    if (hole.codes[i].required && seen[i] != 1)
      refuse(formatted(u"code {}{}", hole.codes[i].id, (seen[i] == 0 ? u" is missing" : u" is doubled")));
}

std::map<std::uint32_t, std::string> refused_translations(std::u16string_view skeleton, const TudHeader& document,
                                                          const std::map<std::uint32_t, std::string>& translations) {
  std::map<std::uint32_t, std::string> refused;
  SkeletonReader reader(skeleton);
  const std::unique_ptr<Filter> filter = find_filter(reader.header().filter).make();
  filter->begin_rebuild(
      rebuild_settings(reader.header(), document.source_language, document.target_language, document.target_code_page));
  std::string bytes;
  for (SkeletonRecord record;;) {
    reader.next(record);
    if (record.kind == SkeletonRecord::Kind::kEnd) return refused;
    if (record.kind != SkeletonRecord::Kind::kSegment && record.kind != SkeletonRecord::Kind::kNestedSegment) continue;
    const auto found = translations.find(record.number);
    if (found == translations.end()) continue;
    try {
      refuse_codes(record.hole, found->second);
      bytes.clear();
      filter->write_segment(record.hole, found->second, bytes);
    } catch (const failure& reason) {
      if (!reason.is(FailureNumber::kInvalidCall)) throw;
      const std::u16string place = place_of(record.hole) + u": ";
      const std::u16string& text = reason.description();
      refused[record.number] = to_utf8(text.starts_with(place) ? text.substr(place.size()) : text);
    }
  }
}

}  // namespace kavo
