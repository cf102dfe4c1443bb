// kavo mif ...: takes hidden texts and embedded objects out of MIF files and puts them back.
//
// Extraction and merging treat all files of a command line as one batch. --markers and --split apply to this run and
// are not stored; `kavo settings` changes the stored options.
#include "cli/mif_options.h"
#include "cli/verb.h"
#include "common/document_names.h"
#include "common/file_type.h"
#include "mif/clsMIFUtilities.h"
#include "platform/files.h"

namespace kavo {
namespace {

// The converter of one run and the messages that it added since the last file.
class MifVerb : public Verb {
 protected:
  clsMIFUtilities& begin(const std::u16string& file, const ProgressEvent::Handler& progress) {
    utilities_->MIFFile(file);
    utilities_->Progress(progress);
    return *utilities_;
  }
  void make_utilities() {
    utilities_.emplace();
    utilities_->options_are_temporary();
  }
  Outcome outcome_of(std::int32_t result) {
    Outcome outcome;
    outcome.result = result;
    if (result != 0) outcome.ending = Outcome::kFailed;
    const MessageList& all = utilities_->ErrorList();
    outcome.messages.assign(all.begin() + static_cast<std::ptrdiff_t>(messages_told_), all.end());
    messages_told_ = all.size();
    return outcome;
  }

  std::optional<clsMIFUtilities> utilities_;
  std::size_t messages_told_ = 0;
};

// All files are one batch, with options for this run.
class BatchVerb : public MifVerb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--markers", markers_, "Marker types for this run: names separated by commas")->type_name("NAMES");
    app.add_option("--split", split_, "Where to split index texts, for this run")
        ->type_name("WHERE")
        ->transform(
            CLI::CheckedTransformer(split_option_names(), CLI::ignore_case).description("{none,semicolon,both}"));
    app.add_option("--side-files", folder_, "Folder of the side files (default: that of the first FILE)")
        ->type_name("FOLDER");
  }
  void start() override {
    make_utilities();
    utilities_->StartBatch();
    if (markers_) utilities_->Markers(marker_list_of(*markers_));
    if (split_) utilities_->SplitOptions(*split_);
    if (folder_.empty()) return;
    std::u16string folder = path_from_host(folder_);
    if (!folder.ends_with(u'\\')) folder += u'\\';
    utilities_->IndexFile(mif_side_file(folder, kMifSides[0]));
    utilities_->XrefFile(mif_side_file(folder, kMifSides[1]));
    utilities_->VarFile(mif_side_file(folder, kMifSides[2]));
  }

 private:
  std::optional<std::string> markers_;
  std::optional<std::int16_t> split_;
  std::string folder_;
};

class Extract final : public BatchVerb {
 public:
  std::u16string workplace(const std::u16string& file) const override {
    return file.empty() && any_extracted_ ? utilities_->IndexFile() : u"";
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    const std::int16_t added = begin(file, progress).Extract();
    Outcome outcome = outcome_of(utilities_->extracted() ? 0 : 1);
    if (utilities_->extracted()) {
      outcome.details["rows_added"] = added;
      any_extracted_ = true;
    }
    return outcome;
  }
  std::optional<Outcome> finish() override {
    if (!any_extracted_) return std::nullopt;
    Outcome outcome = outcome_of(utilities_->EndBatch());
    for (const std::u16string& side : {utilities_->IndexFile(), utilities_->XrefFile(), utilities_->VarFile()})
      if (outcome.result == 0) outcome.produced.push_back({side, kMifDocument});
    const MifCounts counts = utilities_->counts();
    outcome.details["index_rows"] = counts.index_rows;
    outcome.details["xref_rows"] = counts.xref_rows;
    outcome.details["variable_rows"] = counts.variable_rows;
    return outcome;
  }

 private:
  bool any_extracted_ = false;
};

class Merge final : public BatchVerb {
 public:
  std::u16string workplace(const std::u16string& file) const override { return file; }
  void start() override {
    BatchVerb::start();
    utilities_->require_side_files();
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    const MifCounts before = utilities_->counts();
    Outcome outcome = outcome_of(begin(file, progress).Merge());
    const MifCounts after = utilities_->counts();
    outcome.details["replaced"] = after.replaced - before.replaced;
    outcome.details["not_found"] = after.not_found - before.not_found;
    if (outcome.result == 0) outcome.produced = {{file, kMifDocument}};
    return outcome;
  }
};

// The verbs for objects take each file by itself.
class ObjectsVerb : public MifVerb {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("--objects", object_file_, "The object file (default: named after FILE, as manual.obj)")
        ->type_name("FILE");
  }
  void check_usage(std::size_t file_count) override {
    if (!object_file_.empty() && file_count > 1) throw CLI::ValidationError("--objects", "goes with one FILE only");
  }
  void start() override { make_utilities(); }

 protected:
  clsMIFUtilities& begin_file(const std::u16string& file, const ProgressEvent::Handler& progress) {
    utilities_->StartBatch();  // clears counts and messages
    messages_told_ = 0;
    utilities_->ObjFile(path_from_host(object_file_));
    return begin(file, progress);
  }

 private:
  std::string object_file_;
};

class RemoveObjects final : public ObjectsVerb {
 public:
  std::u16string workplace(const std::u16string& file) const override { return file; }
  void add_options(CLI::App& app) override {
    ObjectsVerb::add_options(app);
    app.add_flag("--overwrite", overwrite_, "Replace an object file that was not made from this document");
  }
  void start() override {
    ObjectsVerb::start();
    if (overwrite_) utilities_->overwrite_object_file();
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    Outcome outcome = outcome_of(begin_file(file, progress).RemoveObjects());
    outcome.details["objects"] = utilities_->counts().objects_removed;
    if (outcome.result == 0) outcome.produced = {{file, kMifDocument}, {utilities_->ObjFile(), kPlainText}};
    return outcome;
  }

 private:
  bool overwrite_ = false;
};

class InsertObjects final : public ObjectsVerb {
 public:
  std::u16string workplace(const std::u16string& file) const override { return file; }
  void start() override {
    ObjectsVerb::start();
    utilities_->keep_placeholders();
  }
  Outcome run(const std::u16string& file, const ProgressEvent::Handler& progress) override {
    Outcome outcome = outcome_of(begin_file(file, progress).InsertObjects());
    outcome.details["objects"] = utilities_->counts().objects_inserted;
    outcome.details["missing"] = utilities_->counts().objects_missing;
    if (outcome.result == 0) outcome.produced = {{file, kMifDocument}};
    return outcome;
  }
};

constexpr VerbEntry kVerbs[] = {
    {"mif", "extract", "Collect the hidden texts of all given MIF files in three side files",
     "kavo mif extract --split semicolon ch1.mif ch2.mif ch3.mif", make_verb<Extract>},
    {"mif", "merge", "Put the translated side files back into MIF files", "kavo mif merge ch1.mif ch2.mif ch3.mif",
     make_verb<Merge>},
    {"mif", "remove-objects", "Move embedded objects of MIF files into object files",
     "kavo mif remove-objects manual.mif", make_verb<RemoveObjects>},
    {"mif", "insert-objects", "Put embedded objects back into MIF files", "kavo mif insert-objects manual.mif",
     make_verb<InsertObjects>},
};

}  // namespace

std::span<const VerbEntry> mif_verbs() { return kVerbs; }

}  // namespace kavo
