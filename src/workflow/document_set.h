// The bilingual documents of one source document, and the files around them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// The documents that are rebuilt together with a bilingual document, found by its name: for a page the document of its
// scripts, for a MIF document those of its side files. Throws `failure` 53 when one is missing.
std::vector<std::u16string> companion_documents(const std::u16string& tud);

// The file with the objects of the source document; "" when there is none beside the document.
std::u16string object_file_beside(const std::u16string& tud);

// Throws `failure` 5 when `target` must not be overwritten: when it is the bilingual document, its source, its
// skeleton, one of its companions or their files, or any other skeleton.
void refuse_file_of_set(const std::u16string& target, const std::u16string& tud);

}  // namespace kavo
