// A package: one XLIFF file that contains bilingual documents with their skeletons, to be sent away and to be rebuilt
// from.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "suite/document/bilingual_document.h"

namespace kavo {

// Writes the documents as they are in their files, with their skeletons inside: one file element for each, in this
// order, inside the root of the first document. Replaces a file with the target's name. Throws `failure` (53 for a
// document without a skeleton, 5 for documents in different codings). The target is then as it was.
void pack_documents(std::span<const BilingualDocument* const> documents, std::u16string_view target);

// True for a file that must be unpacked before anything else: one with several file elements, or one that holds its
// skeleton and does not have the name of a bilingual document. False for one that is missing or damaged, which is
// reported when it is opened. Throws `failure`, naming the file, when the system does not let it read.
bool is_package(std::u16string_view path);

// Writes each document of a package into a folder (without "\" at its end), named after its source document and its
// target language, and returns the paths in the order of the package. Throws `failure` 5 for a document that read_tud()
// refuses, that has no skeleton inside, or that has the name of another one.
std::vector<std::u16string> unpack_documents(std::u16string_view path, std::u16string_view folder);

}  // namespace kavo
