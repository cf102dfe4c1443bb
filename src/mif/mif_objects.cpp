// RemoveObjects and InsertObjects. An embedded object consists of facets: the lines from one that begins with "=" to
// one that begins with "=EndInset". A facet that follows another without "=EndInset" between them belongs to the same
// object.
//
// All lines are written with CR LF, whatever they ended with, except a last line without a terminator. A file that has
// neither objects nor placeholders stays as it is. Text after "=EndInset" on its line goes into the object file and
// comes back with the object.
#include <string>

#include "common/document_names.h"
#include "common/object_file_guard.h"
#include "common/same_file.h"
#include "mif/clsMIFUtilities.h"
#include "mif/line_pieces.h"
#include "mif/mif_messages.h"
#include "mif/object_file.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

std::string placeholder_of(std::int32_t number) { return "<KAVOObj " + std::to_string(number) + ">"; }

bool begins_object(const LinePiece& piece) {
  return piece.begins && piece.text.starts_with('=') && !piece.text.starts_with(kObjectEnd);
}

void write_piece(PendingFile& file, const LinePiece& piece) {
  file.write(piece.text);
  if (!piece.terminator.empty()) file.write(kLineEnd);
}

// True when the removal has anything to do or to refuse.
bool holds_objects_or_placeholders(std::u16string_view path, ProgressEvent& progress) {
  LinePieces lines(path, &progress);
  for (LinePiece piece;;) {
    if (!lines.lines_before(find_special).empty()) continue;
    if (!lines.next(piece)) return false;
    if (begins_object(piece) || find_placeholder(piece.text)) return true;
  }
}

// The result of dividing a file into text and objects.
struct Division {
  std::int32_t objects = 0;
  TextRow refusal{};      // why the file must stay as it is
  std::int64_t line = 0;  // the line of the reason
};

Division divide(std::u16string_view path, ProgressEvent& progress, PendingFile& mif, PendingFile& objects) {
  LinePieces lines(path, &progress);
  Division result;
  std::int64_t line = 0;
  bool in_object = false;
  bool closing = false;  // in the last line of an object
  for (LinePiece piece;;) {
    if (const auto plain = lines.lines_before(find_special); !plain.empty()) {
      line += write_lines(in_object ? objects : mif, plain);
      continue;
    }
    if (!lines.next(piece)) break;
    if (piece.begins) ++line;
    // The placeholders are those of an earlier removal, and a second set would have the same numbers. A line of an
    // object that begins like a placeholder would end the object on its way back.
    if (find_placeholder(piece.text) || (in_object && piece.begins && piece.text.starts_with(kPlaceholderStart)))
      return {result.objects, text::kHoldsPlaceholders, line};
    if (!in_object && begins_object(piece)) {
      const std::string placeholder = placeholder_of(++result.objects);
      objects.write(placeholder);
      objects.write(kLineEnd);
      mif.write(placeholder);
      in_object = true;
      result.line = line;
    }
    if (!in_object) {
      write_piece(mif, piece);
      continue;
    }
    if (piece.begins) closing = piece.text.starts_with(kObjectEnd);
    objects.write(piece.text);
    if (!piece.ends) continue;
    objects.write(kLineEnd);
    if (!closing) continue;
    in_object = closing = false;
    if (!piece.terminator.empty()) mif.write(kLineEnd);
  }
  if (in_object) result.refusal = text::kEndsInObject;
  return result;
}

// Copies a file and puts its objects back, each on lines of its own.
class ObjectInserter {
 public:
  enum class Missing { kClosingLine, kPlaceholder };  // what to write for a missing object

  ObjectInserter(MifObjectFile& objects, Missing written, PendingFile& output)
      : objects_(objects), written_(written), output_(output) {}

  void run(LinePieces& lines) {
    for (LinePiece piece;;) {
      if (const auto plain = lines.lines_before(find_special); !plain.empty()) {
        line_ += write_lines(output_, plain);
        continue;
      }
      if (!lines.next(piece)) break;
      std::string_view rest = piece.text;
      if (piece.begins) ++line_;
      while (const auto placeholder = find_placeholder(rest)) {
        const std::string_view name = rest.substr(placeholder->begin, placeholder->end - placeholder->begin);
        const bool keeps = written_ == Missing::kPlaceholder;
        const bool is_there = objects_.find(name) && (!keeps || objects_.is_complete());
        if (!is_there) count_missing(name);
        if (!is_there && keeps) {
          write_text(rest.substr(0, placeholder->end));
        } else {
          write_text(rest.substr(0, placeholder->begin));
          write_object(is_there);
        }
        rest.remove_prefix(placeholder->end);
      }
      write_text(rest);
      if (!piece.ends) continue;
      if (!piece.terminator.empty()) output_.write(kLineEnd);
      last_ = Last::kNothing;
    }
  }

  std::int64_t inserted() const { return inserted_; }
  std::int64_t missing() const { return missing_; }
  const std::string& first_missing() const { return first_missing_; }
  std::int64_t first_missing_line() const { return first_missing_line_; }

 private:
  enum class Last { kNothing, kText, kObject };  // what was written last on the current line

  void write_text(std::string_view text) {
    if (text.empty()) return;
    if (last_ == Last::kObject) output_.write(kLineEnd);
    output_.write(text);
    last_ = Last::kText;
  }

  // Writes the object that was found. When it is missing, writes its closing line alone, so that the place stays
  // visible in the document; deliberately no error.
  void write_object(bool is_there) {
    if (last_ != Last::kNothing) output_.write(kLineEnd);
    if (is_there) {
      objects_.copy_object(output_);
      ++inserted_;
    } else {
      output_.write(kObjectEnd);
    }
    last_ = Last::kObject;
  }

  void count_missing(std::string_view placeholder) {
    if (missing_++ != 0) return;
    first_missing_ = placeholder;
    first_missing_line_ = line_;
  }

  MifObjectFile& objects_;
  Missing written_;
  PendingFile& output_;
  std::int64_t line_ = 0;
  std::string first_missing_;
  std::int64_t first_missing_line_ = 0;
  Last last_ = Last::kNothing;
  std::int64_t inserted_ = 0;
  std::int64_t missing_ = 0;
};

}  // namespace

void clsMIFUtilities::default_object_file_name() {
  if (object_file_.empty()) object_file_ = object_file_of(mif_file_);
}

std::int16_t clsMIFUtilities::RemoveObjects() {
  if (!mif_file_exists()) return 1;
  default_object_file_name();
  FileSystem& files = *ports().files;
  TextRow step = text::kCannotReadMifFile;  // the message for a failure of the current step
  try {
    if (is_same_file(object_file_, mif_file_)) {
      add_message(text::kCannotWriteObjects, object_file_);
      return 1;
    }
    progress_.restart();
    const bool has_objects = holds_objects_or_placeholders(mif_file_, progress_);
    step = text::kCannotWriteObjects;
    PendingFile objects(object_file_);
    std::unique_ptr<PendingFile> output;
    if (has_objects) {
      step = text::kCannotProcess;
      output = create_temporary_file();
      if (!output) return 1;
      const Division division = divide(mif_file_, progress_, *output, objects);
      if (division.refusal != TextRow{}) {
        add_message(division.refusal, mif_file_);
        errors_.back().line = division.line;
        return 1;
      }
      counts_.objects_removed += division.objects;
    }
    objects.write(kObjectsEnd);
    objects.write(kLineEnd);
    if (files.info(object_file_)) step = text::kCannotReplaceObjects;
    if (!overwrites_object_file_) refuse_to_lose_objects(objects);
    objects.commit();
    step = text::kCannotProcess;
    return !output || replace_mif_file(*output, u"Failed to move temporary file") ? 0 : 1;
  } catch (const failure& reason) {
    const bool is_object_file = step == text::kCannotWriteObjects || step == text::kCannotReplaceObjects;
    add_message(step, described(is_object_file ? object_file_ : mif_file_, reason));
    return 1;
  }
}

std::int16_t clsMIFUtilities::InsertObjects() {
  if (!mif_file_exists()) return 1;
  default_object_file_name();
  TextRow step = text::kCannotReadMifFile;
  try {
    progress_.restart();
    const bool has_placeholders = holds_object_placeholder(mif_file_, &progress_);
    step = text::kCannotReadObjects;
    MifObjectFile objects(object_file_);
    if (!has_placeholders) return 0;
    step = text::kCannotProcess;
    const auto output = create_temporary_file();
    if (!output) return 1;
    using Missing = ObjectInserter::Missing;
    ObjectInserter inserter(objects, keeps_placeholders_ ? Missing::kPlaceholder : Missing::kClosingLine, *output);
    {
      LinePieces lines(mif_file_, &progress_);
      inserter.run(lines);
    }  // the file must be closed before it is replaced
    counts_.objects_inserted += inserter.inserted();
    counts_.objects_missing += inserter.missing();
    const bool lacks_objects = keeps_placeholders_ && inserter.missing() != 0;
    if (lacks_objects) {
      add_message(text::kObjectsMissing, mif_file_ + u", " + to_utf16(inserter.first_missing()));
      errors_.back().line = inserter.first_missing_line();
    }
    return replace_mif_file(*output, u"Failed to move temporary file") && !lacks_objects ? 0 : 1;
  } catch (const failure& reason) {
    add_message(step, described(step == text::kCannotReadObjects ? object_file_ : mif_file_, reason));
    return 1;
  }
}

}  // namespace kavo
