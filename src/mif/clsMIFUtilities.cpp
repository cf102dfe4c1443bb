#include "mif/clsMIFUtilities.h"

#include <string>

#include "common/clsCommon.h"
#include "common/clsGetTempFileName.h"
#include "common/document_names.h"
#include "common/path_parts.h"
#include "mif/frmMIFOptions.h"
#include "mif/mif_messages.h"
#include "platform/ports.h"
#include "resources/string_table.h"

namespace kavo {

clsMIFUtilities::clsMIFUtilities()
    : loaded_(load_mif_settings()),
      markers_(loaded_.markers),
      split_options_(loaded_.split),
      process_objects_(loaded_.objects) {}

clsMIFUtilities::~clsMIFUtilities() {
  if (!save_options_) return;
  try {
    store_mif_settings({split_options_, process_objects_, markers_}, loaded_);
  } catch (const std::exception&) {
    // A destructor cannot report it.
  }
}

void clsMIFUtilities::DisplayOptions() {
  frmMIFOptions form;
  form.SplitOptions(split_options_);
  form.ProcessObjects(process_objects_);
  form.Markers(markers_);
  form.show();
  if (form.Cancelled()) return;
  split_options_ = form.SplitOptions();
  process_objects_ = form.ProcessObjects();
  markers_ = form.Markers();
}

void clsMIFUtilities::StartBatch() {
  index_.clear();
  xrefs_.clear();
  variables_.clear();
  index_full_told_ = xrefs_full_told_ = variables_full_told_ = false;
  header_.clear();
  codings_.clear();
  index_coding_ = xrefs_coding_ = variables_coding_ = std::nullopt;
  sources_.clear();
  index_file_.clear();
  xref_file_.clear();
  variable_file_.clear();
  has_data_ = extracted_ = side_files_loaded_ = false;
  counts_ = {};
  ClearErrors();
}

MifCounts clsMIFUtilities::counts() const {
  MifCounts counts = counts_;
  counts.index_rows = static_cast<std::int64_t>(index_.size());
  counts.xref_rows = static_cast<std::int64_t>(xrefs_.size());
  counts.variable_rows = static_cast<std::int64_t>(variables_.size());
  return counts;
}

// Without a folder the names of the side files begin with the whole name of the document, so that they differ from
// those of other documents of the current folder.
void clsMIFUtilities::DefaultSideFileNames() {
  const std::u16string folder = folder_of(mif_file_);
  const std::u16string prefix = folder.empty() ? mif_file_ + u"_" : folder;
  if (index_file_.empty()) index_file_ = mif_side_file(prefix, kMifSides[0]);
  if (xref_file_.empty()) xref_file_ = mif_side_file(prefix, kMifSides[1]);
  if (variable_file_.empty()) variable_file_ = mif_side_file(prefix, kMifSides[2]);
}

bool clsMIFUtilities::mif_file_exists() {
  if (mif_file_.empty()) {
    add_message(text::kNoMifFile);
    return false;
  }
  try {
    if (ports().files->info(mif_file_)) return true;
    add_message(text::kMifFileNotFound, mif_file_);
  } catch (const failure& reason) {
    add_message(text::kCannotReadMifFile, described(mif_file_, reason));
  }
  return false;
}

void clsMIFUtilities::add_message(TextRow name, std::u16string_view detail) {
  Message message{std::u16string(name.text), name.number};
  if (!detail.empty()) (message.text += u": ") += detail;
  errors_.push_back(std::move(message));
}

// The random name is not reserved. Creating the file exclusively shows whether it is free. nullptr, with a message,
// when no file can be made.
std::unique_ptr<PendingFile> clsMIFUtilities::create_temporary_file() {
  constexpr int attempts = 100;
  clsGetTempFileName names;
  for (int attempt = 1;; ++attempt) {
    const std::u16string name = names.Filename();
    try {
      return std::make_unique<PendingFile>(mif_file_, name);
    } catch (const failure& reason) {
      if (reason.is(FailureNumber::kFileAlreadyExists) && attempt < attempts) continue;
      add_message(text::kNoTemporaryFile, described(name, reason));
      return nullptr;
    }
  }
}

// Puts the complete output in the place of MIFFile. On failure the MIF file stays as it was, the output stays under its
// temporary name, and a message gives that name.
bool clsMIFUtilities::replace_mif_file(PendingFile& output, std::u16string_view failure_text) {
  output.finish();
  if (clsCommon().MoveFile(output.temporary_path(), mif_file_, &errors_)) return true;
  errors_.push_back({std::u16string(failure_text)});
  errors_.push_back({u"The new text is kept in " + output.temporary_path()});
  return false;
}

}  // namespace kavo
