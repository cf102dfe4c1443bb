// Updates all bilingual documents of a source that is prepared again, and keeps what was translated.
//
// The documents are prepared as if there had been none, and then filled from the old ones. So a document is the same
// whether its source was prepared once or ten times, and whatever the reason for preparing it again was (a new source,
// other options, a new version of this program).
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/messages.h"
#include "driver/produced_file.h"
#include "platform/case_fold.h"
#include "suite/memory/document_update.h"

namespace kavo {

// The old documents of one source by their paths.
using OldDocuments = std::map<std::u16string, OldDocument, LessIgnoringCase>;

// This file beside the documents keeps the translations of texts that no document of the folder holds any more.
inline constexpr std::u16string_view kRemovedTexts = u"removed.tmx";

// The translations that the folders of a run held when it began. They are read when they are first asked for, so a run
// without changes does not read them.
class TranslatedFolders final : public KnownTexts {
 public:
  // Languages as the suite writes them; folders with their "\". Documents with other languages are not read.
  TranslatedFolders(std::u16string source_language, std::u16string target_language,
                    std::vector<std::u16string> folders);

  const std::u16string& source_language() const { return source_language_; }
  const std::u16string& target_language() const { return target_language_; }

  // Documents to use instead of the files with the same names, which have already been replaced. Not owned; null for
  // none.
  void current(const OldDocuments* documents) { current_ = documents; }

  // Throw `failure` for a memory that cannot be read. A document that cannot be read is left out, with a message.
  TextMemory& documents() override;
  TextMemory& removed() override;
  // True when there is no translation at all.
  bool is_empty() { return documents().size() == 0 && removed().size() == 0; }

  // Adds translations that are not there yet to the folder's removed.tmx. Throws `failure` for a file that cannot be
  // read or written; the file then stays as it was.
  void keep_removed(const std::u16string& folder, std::vector<TmxUnit> units);

  void add_message(std::u16string text) { messages_.push_back({std::move(text)}); }
  // Takes the messages since the last call.
  MessageList take_messages() { return std::exchange(messages_, {}); }

 private:
  void add_document(const std::u16string& path);

  std::u16string source_language_;
  std::u16string target_language_;
  std::vector<std::u16string> folders_;
  std::vector<std::u16string> names_;  // of the documents in them, when the run began
  const OldDocuments* current_ = nullptr;
  std::unique_ptr<TextMemory> documents_;
  std::unique_ptr<TextMemory> removed_;
  std::set<std::pair<std::string, std::string>> removed_now_;  // by this run
  MessageList messages_;
};

// The result of updating the documents of one source.
struct SetUpdateReport {
  UpdateCounts counts;
  bool is_update = false;  // there was a document, or a translation was found
};

class SetUpdate {
 public:
  // Before the preparation of `document`: reads its bilingual documents. Throws `failure` 58 for a file of such a name
  // that is another document or is damaged; with `replaces_others` such a file is left out, a damaged one with a
  // message. Throws `failure` with the system's number for a file that the system does not let it read.
  SetUpdate(TranslatedFolders& known, const std::u16string& document, bool replaces_others);
  ~SetUpdate() { known_.current(nullptr); }
  SetUpdate(const SetUpdate&) = delete;
  SetUpdate& operator=(const SetUpdate&) = delete;

  bool has_documents() const { return !old_.empty(); }

  // Call it after the preparation. True when every document of the set says the same as before, so that the new ones
  // can be dropped. It is all or none, because the new documents are untranslated.
  bool is_unchanged(std::span<const ProducedFile> produced) const;
  // The report on an unchanged set.
  SetUpdateReport kept() const;
  // Fills the documents of the produced files, and keeps the translations of texts that no longer exist. Throws
  // `failure`.
  SetUpdateReport apply(std::span<const ProducedFile> produced);

 private:
  using Sums = std::vector<std::optional<std::uint64_t>>;
  Sums sums() const;

  TranslatedFolders& known_;
  OldDocuments old_;
  std::vector<std::u16string> made_files_;  // by the preparation beside the document, and the document itself
  Sums sums_before_;                        // empty when there is nothing to compare with
};

}  // namespace kavo
