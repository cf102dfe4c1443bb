// The filter run: makes bilingual documents of the files that a preparation produced, with or without the wizard's
// dialog.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "driver/produced_file.h"
#include "driver/run_observer.h"

namespace kavo {

struct RunLanguages {
  std::u16string source;  // the suite's codes: "EN-US", "FR"
  std::u16string target;
  std::int32_t source_code_page = 0;  // 0: the suite's default
  std::int32_t target_code_page = 0;
  std::u16string filter_options{};  // for the filters: "name=value" on each line
  bool replaces_objects = false;    // of an RTF document: replace the object file even if it holds something else
  bool keeps_form = false;  // of an Office document: keep the file that its filter reads beside it, with its objects
};

struct FilterRun {
  std::int32_t result = 0;  // 0 done, 200 + i when file i could not be converted
  std::u16string reason;    // of a failure, for people
};

// Converts each produced file with the filter of its type and puts the name of the bilingual document into the file's
// record. Stops at the first file that fails; the documents of those before it stay. An existing document and skeleton
// of the same names are moved away first, and are back when the file fails. Needs the thread's filter catalogue, that
// is, a living K19FPWObj. Throws `interruption` when the user interrupts.
//
// If the suite can store them, the documents carry a common mark and the name and checksum of `author_document`, from
// which the files were prepared ("" when it is unknown). So a set that mixes two preparations can be recognised.
FilterRun convert_produced_files(std::span<ProducedFile> files, const RunLanguages& languages,
                                 std::u16string_view author_document = {}, const RunObserver& observer = {});

// True when the text holds two double quotes, or else two single ones.
bool ContainsQuotedText(std::u16string_view text);

// Marks the segments of a script file's bilingual document that hold no quoted text as needing no translation (status
// 1, match 100). Throws `failure` when the document cannot be opened or written.
void LockScriptSegments(std::u16string_view tud);

}  // namespace kavo
