// Real documents for tests, where there are any. A test that needs them skips itself with a message when there is no
// corpus. A corpus that lacks them is a failure, so that a loop over them cannot pass without having looked at one.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavo::test {

// Why a test that needs real documents is skipped.
inline constexpr std::string_view kNoCorpus = "there are no real documents here: set KAVO_CORPUS to their folder";

// The folder that KAVO_CORPUS names (in the host's form), else the one beside the project; nothing when neither exists.
std::optional<std::u16string> corpus_folder();

// Full paths of the files in the corpus' sub-folder `kind` ("html", "mif" ...) that have one of the extensions
// (without ".", any case; none given: every file), sorted by name. Empty when there is no corpus. A corpus without such
// files fails the test.
std::vector<std::u16string> corpus_files(std::u16string_view kind,
                                         std::initializer_list<std::u16string_view> extensions);

std::string read_whole(std::u16string_view path);

}  // namespace kavo::test
