// FrameMaker interchange files (MIF). Hidden texts go into side files that a translation tool can read, and come back
// translated. Embedded objects go into an object file and come back unchanged. The format: the MIF Reference, a public
// document.
//
// Call StartBatch, then Extract for each file, then EndBatch, which writes one index, one cross-reference and one
// variable side file for all of them. After translation call StartBatch, set the names of the side files if they are
// not the default ones, and call Merge for each file. Texts stay bytes: escapes and UTF-8 come out as they went in,
// whatever the system's code page is. Only when the files of a batch have several codings (versions before and from
// 8.0) are texts converted, to the coding of the side files and back to that of each file.
//
// A file is only ever replaced by a complete new one: a call that fails leaves the MIF file and the side files as they
// were. Every `failure` becomes an entry of the error list. An `interruption` by the user passes through after
// everything new has been removed.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "common/messages.h"
#include "common/pending_file.h"
#include "common/progress_event.h"
#include "mif/entry_table.h"
#include "mif/marker_types.h"
#include "mif/mif_settings.h"
#include "mif/statement_scanner.h"
#include "mif/value_conversion.h"
#include "resources/string_table.h"

namespace kavo {

// Counts since StartBatch, for reports.
struct MifCounts {
  std::int64_t index_rows = 0;
  std::int64_t xref_rows = 0;
  std::int64_t variable_rows = 0;
  std::int64_t replaced = 0;   // texts that Merge found in the side files
  std::int64_t not_found = 0;  // texts that it did not find there
  std::int64_t objects_removed = 0;
  std::int64_t objects_inserted = 0;
  std::int64_t objects_missing = 0;  // placeholders without an object in the object file
};

class clsMIFUtilities {
 public:
  // Loads the options from the user's settings. Throws `failure` when they cannot be read.
  clsMIFUtilities();
  // Saves the options unless they are temporary; a failure to save is ignored. An option that has not changed since it
  // was loaded is written only when none is stored, so that it does not overwrite what another program has stored
  // since.
  ~clsMIFUtilities();
  clsMIFUtilities(const clsMIFUtilities&) = delete;
  clsMIFUtilities& operator=(const clsMIFUtilities&) = delete;

  // Paths. Empty paths of side files and of the object file are derived from MIFFile when they are needed.
  const std::u16string& MIFFile() const { return mif_file_; }
  void MIFFile(std::u16string_view value) { mif_file_ = value; }
  const std::u16string& IndexFile() const { return index_file_; }
  void IndexFile(std::u16string_view value) { index_file_ = value; }
  const std::u16string& XrefFile() const { return xref_file_; }
  void XrefFile(std::u16string_view value) { xref_file_ = value; }
  const std::u16string& VarFile() const { return variable_file_; }
  void VarFile(std::u16string_view value) { variable_file_ = value; }
  const std::u16string& ObjFile() const { return object_file_; }
  void ObjFile(std::u16string_view value) { object_file_ = value; }

  // Options. Their values are not checked.
  const std::u16string& Markers() const { return markers_; }  // marker type names, each followed by one TAB
  void Markers(std::u16string_view value) { markers_ = value; }
  std::int16_t SplitOptions() const { return split_options_; }  // 0: no split, 1: at ";", 2: at ";" and ":"
  void SplitOptions(std::int16_t value) { split_options_ = value; }
  bool ProcessObjects() const { return process_objects_; }  // whether callers should remove embedded objects
  void ProcessObjects(bool value) { process_objects_ = value; }
  // Shows the options in a modal dialog and takes over what the user confirms. The user's settings change when this
  // object is destroyed.
  void DisplayOptions();
  // From here on RemoveObjects replaces ObjFile whatever it holds.
  void overwrite_object_file() { overwrites_object_file_ = true; }
  // From here on the options hold for this object alone: destruction does not save them.
  void options_are_temporary() { save_options_ = false; }

  // Begins a batch: clears tables, header line, side-file paths, counts and the error list.
  void StartBatch();
  // Collects the hidden texts of MIFFile. Returns the number of rows added, at most 32,767; or 1 with message 3026,
  // 3027 or 3028 when the file could not be used. A file may add exactly one row, so ask extracted() which it was.
  // Messages 3033 to 3035 (a table is full, reported once a batch) and 3042 (a statement was left out) are not failures
  // of the file.
  std::int16_t Extract();
  // True when the last Extract could use its file, whatever number of rows it added.
  bool extracted() const { return extracted_; }
  // Writes the side files, unless no file of the batch could be opened. Returns how many could not be written (3020 to
  // 3025, 3043). Keeps the tables: a second EndBatch writes the same.
  std::int16_t EndBatch();

  // Puts the translations of the side files into MIFFile; the first Merge of a batch loads them. Returns 0 when all
  // went well, 1 when MIFFile cannot be opened (3026, 3027, 3028), else the number of failures:
  // - one when MIFFile could not be processed or replaced (3031, 3041); it is then as it was
  // - one for each side file that could not be read (3036 to 3038); its texts stay as they are
  // - one when MIFFile cannot hold characters of some translations (3044 for each); these texts stay as they are.
  // Messages 3042 (a statement was left out) and 3045 (two entries of one tag; the first counts) are not failures. Sets
  // SplitOptions to the option that the index texts were extracted with, since the side file knows how its texts belong
  // together. That value is saved with the other options, deliberately.
  std::int16_t Merge();
  // From here on Merge leaves MIFFile as it is when any side file cannot be read.
  void require_side_files() { requires_side_files_ = true; }

  // Moves embedded objects into ObjFile and leaves numbered placeholders. Returns 0, or 1 with a message (3026 to 3028,
  // 3030 to 3032, 3039 to 3041) and everything as it was, with one exception: when MIFFile cannot be replaced at the
  // very end, ObjFile is the new one already. A file without objects is not touched. An old ObjFile with other content
  // is kept (3032), since the objects of another document would be lost.
  std::int16_t RemoveObjects();
  // Puts the objects back in the place of their placeholders. Returns 0, or 1 with a message (3026 to 3029, 3031, 3041)
  // and everything as it was. ObjFile stays.
  std::int16_t InsertObjects();
  // Decides about placeholders whose object ObjFile lacks, or holds without its end. From here on InsertObjects leaves
  // such placeholders, puts the other objects back, and returns 1 with message 3046 and the line of the first one.
  // Without this call it writes the closing line of an object there, without a message.
  void keep_placeholders() { keeps_placeholders_ = true; }

  const MessageList& ErrorList() const { return errors_; }
  void ClearErrors() { errors_.clear(); }
  // The handler of the Progress event, raised with the percentage of MIFFile read.
  void Progress(ProgressEvent::Handler handler) { progress_.handler(std::move(handler)); }
  MifCounts counts() const;

 private:
  struct SideFile;

  void DefaultSideFileNames();
  void default_object_file_name();
  bool mif_file_exists();
  void add_message(TextRow name, std::u16string_view detail = {});
  void report_passed_statement(const StatementScanner& scanner, const std::u16string& path);

  void use_coding(const MifCoding& coding);
  std::int64_t CollectMarker(std::string_view statement, const MifCoding& coding, MarkerTypes& types);
  std::int64_t SplitIndexText(std::string_view statement);
  std::int64_t CollectXRefFormats(std::string_view statement);
  std::int64_t CollectVariableFormats(std::string_view statement);
  std::int64_t CollectPgfNumFormat(std::string_view statement);
  int AddIndexEntry(std::string_view piece, std::string_view text);
  int AddXRefEntry(std::string_view name, std::string_view definition);
  int AddVariableEntry(std::string_view name, std::string_view definition);
  int add_entry(EntryTable& table, bool& full_told, TextRow full_message, std::string_view name, std::string_view text);

  // The beginning of the side files of a batch, and the coding that their rows are converted to, when they must be.
  struct SideFileHead {
    std::string lines;
    std::optional<MifCoding> coding;
  };
  SideFileHead side_file_head() const;
  bool write_side_file(const SideFile& side, const SideFileHead& head);
  EntryTable converted(const SideFile& side, const MifCoding& coding) const;
  bool is_source(std::u16string_view path) const;

  std::int16_t LoadIndexSideFile();
  std::int16_t LoadXRefSideFile();
  std::int16_t LoadVariableSideFile();
  std::int16_t load_side_file(const SideFile& side);
  std::int16_t load_side_files();
  std::optional<std::int16_t> merge_file();
  void use_values(const MifCoding& document);
  void MergeMarker(StatementScanner& scanner, MarkerTypes& types);
  void MergeXRefFormats(StatementScanner& scanner);
  void MergeVariableFormats(StatementScanner& scanner);
  void MergePgfNumFormat(StatementScanner& scanner);
  std::string_view LookupIndexEntry(std::string_view piece);
  std::string_view LookupXRefEntry(std::string_view name, std::string_view definition);
  std::string_view LookupVariableEntry(std::string_view name, std::string_view definition);
  std::string_view lookup_pair(const SideFile& side, std::string_view name, std::string_view definition);
  std::string_view translated(const SideFile& side, std::string_view translation, std::string_view name,
                              std::string_view untranslated);

  std::unique_ptr<PendingFile> create_temporary_file();
  bool replace_mif_file(PendingFile& output, std::u16string_view failure_text);

  std::u16string mif_file_, index_file_, xref_file_, variable_file_, object_file_;
  MifSettings loaded_;  // the user's settings when this object was created
  std::u16string markers_;
  std::int16_t split_options_;
  bool process_objects_;
  bool save_options_ = true;
  bool overwrites_object_file_ = false;
  bool keeps_placeholders_ = false;
  bool requires_side_files_ = false;

  EntryTable index_{EntryTable::Same::kName};
  EntryTable xrefs_{EntryTable::Same::kNameAndText};
  EntryTable variables_{EntryTable::Same::kNameAndText};
  bool index_full_told_ = false;
  bool xrefs_full_told_ = false;
  bool variables_full_told_ = false;
  std::string header_;              // the last MIFFile statement, byte for byte
  std::vector<MifCoding> codings_;  // codings of the files of the batch, each once
  std::uint8_t coding_ = 0;         // index of the current file's coding in codings_
  // The codings of the loaded side files, and the conversions of their values to MIFFile's coding.
  std::optional<MifCoding> index_coding_, xrefs_coding_, variables_coding_;
  std::optional<ValueConversion> index_values_, xrefs_values_, variables_values_;
  std::set<std::u16string> misfits_;  // reported translations that MIFFile cannot hold
  std::vector<std::u16string> sources_;
  bool has_data_ = false;
  bool extracted_ = false;
  bool side_files_loaded_ = false;
  std::string key_;  // key of the current lookup
  MifCounts counts_;

  MessageList errors_;
  ProgressEvent progress_;
};

}  // namespace kavo
