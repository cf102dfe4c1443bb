// The filter run: what turns the files that a preparation produced into bilingual documents, with or without a dialog
// before it.
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
  std::int32_t source_code_page = 0;  // 0: what the suite takes as usual
  std::int32_t target_code_page = 0;
  std::u16string filter_options{};  // for the filters: "name=value" on each line
  bool replaces_objects = false;    // of an RTF document's object file that holds something else
};

struct FilterRun {
  std::int32_t result = 0;  // 0 done, 200 + i when file i could not be converted
  std::u16string reason;    // of a failure, for people
};

// Converts each produced file with the filter of its type and puts the bilingual document's name into the file's
// record. Stops at the first file that fails; the documents of those before it stay. An existing document and skeleton
// of the same names make way first and come back when the file fails. Needs the thread's filter catalogue, that is, a
// living K19FPWObj. Throws `interruption` when the user interrupts.
//
// The documents carry a common mark, and the name and checksum of `author_document`, of which the files were prepared
// ("" when that is not known), where the suite can keep them: so a set that is mixed from two preparations can be
// recognised.
FilterRun convert_produced_files(std::span<ProducedFile> files, const RunLanguages& languages,
                                 std::u16string_view author_document = {}, const RunObserver& observer = {});

// True when the text holds two double quotes, or else two single ones.
bool ContainsQuotedText(std::u16string_view text);

// Marks the segments of a script file's bilingual document that hold no quoted text as needing no translation: status
// 1, match 100. Throws `failure` when the document cannot be opened or written.
void LockScriptSegments(std::u16string_view tud);

}  // namespace kavo
