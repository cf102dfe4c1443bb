// The bilingual documents of one source document, and the files around them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// The documents that the way back of a bilingual document takes along, by its name: of a page that of its scripts, of a
// MIF document those of its side files. Throws `failure` 53 for one that is missing.
std::vector<std::u16string> companion_documents(const std::u16string& tud);

// The file that holds the objects of the source document, "" when there is none beside the document.
std::u16string object_file_beside(const std::u16string& tud);

// Throws `failure` 5 for a file to be written that is one of the files that belong to a bilingual document: itself, its
// source, its skeleton, its companions and theirs, or that is any other skeleton.
void refuse_file_of_set(const std::u16string& target, const std::u16string& tud);

}  // namespace kavo
