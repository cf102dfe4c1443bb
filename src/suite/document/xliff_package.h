// One XLIFF file that carries bilingual documents with their skeletons: a file to send away, and to rebuild from.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "suite/document/bilingual_document.h"

namespace kavo {

// Writes the documents, as their files stand, with their skeletons inside: a file element for each, in this order, in
// what surrounds that of the first. A file of the target's name is replaced. Throws `failure` (53 for a document
// without a skeleton, 5 for documents in different codings): the target is then as it was.
void pack_documents(std::span<const BilingualDocument* const> documents, std::u16string_view target);

// True for a file that is to be unpacked before anything else can be done with it: one with several file elements, or
// one that holds its skeleton and is not named as a bilingual document is. False for one that is missing or damaged: who
// opens it says why. Throws `failure`, naming the file, when the system does not let it read.
bool is_package(std::u16string_view path);

// Writes each document of a package into a folder (without "\" at its end), named after its source document and its
// target language, and returns the paths in the order of the package. Throws `failure` 5 for a document that read_tud()
// refuses, that has no skeleton inside, or that has the name of another one.
std::vector<std::u16string> unpack_documents(std::u16string_view path, std::u16string_view folder);

}  // namespace kavo
