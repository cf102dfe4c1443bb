// The string table: message and caption texts by number. A dialog or a service whose numbers name other texts in the
// common section has a section of its own.
#pragma once

#include <cstdint>
#include <string_view>

namespace kavo {

enum class StringSection { kCommon, kMoveFile, kExcelOptions, kHTMLValidate };

// Throws std::out_of_range when the section has no such number: a missing text is a defect of the build.
std::u16string_view string_resource(std::int32_t number, StringSection section = StringSection::kCommon);

}  // namespace kavo
