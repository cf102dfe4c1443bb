// What building a target has in common with checking a translation beforehand.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "suite/document/skeleton.h"
#include "suite/document/tud_format.h"
#include "suite/filters/filter.h"

namespace kavo {

// The settings for a document's filter, without colours. `target_code_page` 0 stands for the document's own.
RebuildSettings rebuild_settings(const SkeletonHeader& skeleton, std::string source_language,
                                 std::string target_language, unsigned target_code_page);

// Throws `failure` 5 that names the place for a translation whose codes are not those of its place in the skeleton: one
// that it does not have, or a required one that is missing or doubled.
void refuse_codes(const Hole& hole, std::string_view translation);

// The translations (coded text by segment number) that building the target would refuse, each with the reason: a wrong
// code, or a character that neither the target's code page nor the format can express. Throws `failure` for a skeleton
// that cannot be read.
std::map<std::uint32_t, std::string> refused_translations(std::u16string_view skeleton, const TudHeader& document,
                                                          const std::map<std::uint32_t, std::string>& translations);

}  // namespace kavo
