// The checksum of a file, which shows whether documents belong together. It is stored in bilingual documents and
// skeletons, so the checksum of a given file must never change.
#pragma once

#include <cstdint>
#include <string_view>

namespace kavo {

// FNV-1a over all bytes. Throws `failure` when the file cannot be read.
std::uint64_t checksum_of_file(std::u16string_view path);

}  // namespace kavo
