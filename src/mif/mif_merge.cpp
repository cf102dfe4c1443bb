// Merge: puts the translations of the side files into one MIF file. Only quoted values change; everything else is
// copied byte for byte.
#include "common/byte_scan.h"
#include "mif/clsMIFUtilities.h"
#include "mif/mif_messages.h"
#include "mif/mif_values.h"
#include "mif/side_file.h"
#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

enum Opening : std::size_t { kXRefFormats, kMarker, kVariableFormats, kPgf };
constexpr std::string_view kOpenings[] = {"<XRefFormats ", "<Marker ", "<VariableFormats ", "<Pgf "};
constexpr StatementKeywords kKeywords{kOpenings, find_pair<'<', 'M', 'X', 'V', 'P'>};

// Translation tools may write the tab of a number format as \x09, which FrameMaker does not understand there.
void write_with_short_tabs(StatementScanner& scanner, std::string_view value) {
  constexpr std::string_view long_tab = "\\x09 ";
  std::size_t written = 0;
  for (std::size_t at = 0; (at = value.find(long_tab, at)) != std::string_view::npos;) {
    if (scanner.coding().is_trail_byte(value.data(), value.data() + at)) {
      ++at;
      continue;
    }
    scanner.WriteThrough(value.substr(written, at - written));
    scanner.WriteThrough("\\t");
    written = at += long_tab.size();
  }
  scanner.WriteThrough(value.substr(written));
}

// Writes the statement, replacing the second value of each pair by what `lookup` returns for the pair, unless that is
// empty.
template <class Lookup>
void merge_pairs(StatementScanner& scanner, std::string_view name_label, std::string_view text_label, Lookup lookup) {
  const std::string_view statement = scanner.statement();
  std::size_t written = 0;
  for_each_pair(statement, name_label, text_label, [&](const QuotedValue& name, const QuotedValue& text) {
    const std::string_view translation = lookup(name.of(statement), text.of(statement));
    if (translation.empty()) return;
    scanner.WriteThrough(statement.substr(written, text.begin - written));
    scanner.WriteThrough(translation);
    written = text.end;
  });
  scanner.WriteThrough(statement.substr(written));
}

}  // namespace

std::int16_t clsMIFUtilities::Merge() {
  if (!mif_file_exists()) return 1;
  const std::int16_t unreadable = load_side_files();
  if (requires_side_files_ && unreadable != 0) {
    side_files_loaded_ = false;  // the next Merge reads them again and fails for the same reason
    return unreadable;
  }
  const auto failures = merge_file();
  return failures ? static_cast<std::int16_t>(*failures + unreadable) : std::int16_t{1};
}

// Returns the number of failures, or nothing when the file could not be opened.
std::optional<std::int16_t> clsMIFUtilities::merge_file() {
  progress_.restart();
  std::unique_ptr<PendingFile> output;
  bool opened = false;
  try {
    {
      StatementScanner scanner(mif_file_, kKeywords, &progress_);
      opened = true;
      output = create_temporary_file();
      if (!output) return 1;
      scanner.output(*output);
      use_values(scanner.coding());
      MarkerTypes types(markers_, MarkerTypes::LetterCase::kExact);
      while (scanner.ReadNextStatement()) {
        switch (scanner.opening()) {
          case kXRefFormats:
            MergeXRefFormats(scanner);
            break;
          case kMarker:
            MergeMarker(scanner, types);
            break;
          case kVariableFormats:
            MergeVariableFormats(scanner);
            break;
          case kPgf:
            MergePgfNumFormat(scanner);
            break;
        }
      }
      report_passed_statement(scanner, mif_file_);
    }  // the file must be closed before it is replaced
    const bool replaced = replace_mif_file(*output, u"Failed to copy temporary file");
    return static_cast<std::int16_t>((replaced ? 0 : 1) + (misfits_.empty() ? 0 : 1));
  } catch (const failure& reason) {
    add_message(opened ? text::kCannotProcess : text::kCannotReadMifFile, described(mif_file_, reason));
    if (!opened) return std::nullopt;
    return 1;
  }
}

// Prepares the lookup of values from a document in this coding. `document` must outlive the merge.
void clsMIFUtilities::use_values(const MifCoding& document) {
  misfits_.clear();
  for (const SideFile* side : {&SideFile::kIndex, &SideFile::kXrefs, &SideFile::kVariables}) {
    const std::optional<MifCoding>& coding = this->*side->coding;
    (this->*side->values).emplace(coding ? *coding : document, document);  // a missing side file has no rows
  }
}

void clsMIFUtilities::MergeMarker(StatementScanner& scanner, MarkerTypes& types) {
  const std::string_view statement = scanner.statement();
  const auto type = find_value(statement, "<MTypeName `");
  const auto kind = type ? types.kind_of(type->of(statement), scanner.coding()) : MarkerTypes::Kind::kUnselected;
  const auto text = find_value(statement, "<MText `");
  if (kind == MarkerTypes::Kind::kUnselected || !text || is_blank(text->of(statement))) {
    scanner.WriteThrough(statement);
    return;
  }
  const std::string_view value = text->of(statement);
  scanner.WriteThrough(statement.substr(0, text->begin));
  if (kind == MarkerTypes::Kind::kIndex) {
    for_each_index_piece(value, split_options_, [&](std::string_view piece, std::string_view separator) {
      scanner.WriteThrough(LookupIndexEntry(piece));
      scanner.WriteThrough(separator);
    });
  } else {
    scanner.WriteThrough(LookupIndexEntry(value));
  }
  scanner.WriteThrough(statement.substr(text->end));
}

void clsMIFUtilities::MergeXRefFormats(StatementScanner& scanner) {
  merge_pairs(scanner, "<XRefName `", "<XRefDef `",
              [this](std::string_view name, std::string_view definition) { return LookupXRefEntry(name, definition); });
}

void clsMIFUtilities::MergeVariableFormats(StatementScanner& scanner) {
  merge_pairs(scanner, "<VariableName `", "<VariableDef `", [this](std::string_view name, std::string_view definition) {
    return LookupVariableEntry(name, definition);
  });
}

void clsMIFUtilities::MergePgfNumFormat(StatementScanner& scanner) {
  const std::string_view statement = scanner.statement();
  const auto format = find_value(statement, "<PgfNumFormat `");
  if (!format) {
    scanner.WriteThrough(statement);
    return;
  }
  const std::string_view value = format->of(statement);
  const std::string_view translation = LookupVariableEntry(number_format_tag(statement, *format), value);
  scanner.WriteThrough(statement.substr(0, format->begin));
  write_with_short_tabs(scanner, translation.empty() ? value : translation);
  scanner.WriteThrough(statement.substr(format->end));
}

std::string_view clsMIFUtilities::LookupIndexEntry(std::string_view piece) {
  key_ = index_values_->to_side_file(piece);
  const auto translation = index_.find(key_);
  ++(translation ? counts_.replaced : counts_.not_found);
  if (!translation || *translation == key_) return piece;
  return translated(SideFile::kIndex, *translation, piece, piece);
}

std::string_view clsMIFUtilities::LookupXRefEntry(std::string_view name, std::string_view definition) {
  return lookup_pair(SideFile::kXrefs, name, definition);
}

std::string_view clsMIFUtilities::LookupVariableEntry(std::string_view name, std::string_view definition) {
  return lookup_pair(SideFile::kVariables, name, definition);
}

// Returns an empty text when the translation is missing or empty; the value then stays as it is. Both a name and a
// definition may hold " : ", so two pairs may read the same; the first row then serves both.
std::string_view clsMIFUtilities::lookup_pair(const SideFile& side, std::string_view name,
                                              std::string_view definition) {
  ValueConversion& values = *(this->*side.values);
  (key_ = values.to_side_file(name)) += " : ";
  const std::string_view text = values.to_side_file(definition);
  key_ += text;
  const auto translation = (this->*side.table).find(key_);
  ++(translation ? counts_.replaced : counts_.not_found);
  if (!translation || translation->empty()) return {};
  return *translation == text ? definition : translated(side, *translation, name, definition);
}

// The translation in MIFFile's coding, or the untranslated text when that coding lacks a character of it.
std::string_view clsMIFUtilities::translated(const SideFile& side, std::string_view translation, std::string_view name,
                                             std::string_view untranslated) {
  ValueConversion& values = *(this->*side.values);
  const std::string_view text = values.to_document(translation);
  if (values.misfit().empty()) return text;
  const std::u16string place =
      formatted(u"{}, {} \"{}\": \"{}\"", mif_file_, side.entry, values.document().decode(name), values.misfit());
  if (misfits_.insert(place).second) add_message(text::kTranslationDoesNotFit, place);
  return untranslated;
}

}  // namespace kavo
