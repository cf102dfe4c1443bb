// Extract: collects the hidden texts of one file into the tables.
#include <algorithm>

#include "common/byte_scan.h"
#include "mif/clsMIFUtilities.h"
#include "mif/mif_messages.h"
#include "mif/mif_values.h"
#include "platform/ports.h"

namespace kavo {
namespace {

// Whether the same bytes may mean different characters in two codings.
bool depends_on_coding(std::string_view value) {
  constexpr std::string_view kHighDigits = "89abcdefABCDEF";
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (static_cast<unsigned char>(value[i]) >= 0x80) return true;
    if (value[i] == '\\' && value.substr(i + 1, 1) == "x" && i + 2 < value.size() &&
        kHighDigits.find(value[i + 2]) != std::string_view::npos)
      return true;
  }
  return false;
}

enum Opening : std::size_t { kMifFile, kXRefFormats, kMarker, kVariableFormats, kPgf };
constexpr std::string_view kOpenings[] = {"<MIFFile ", "<XRefFormats ", "<Marker ", "<VariableFormats ", "<Pgf "};
constexpr StatementKeywords kKeywords{kOpenings, find_pair<'<', 'M', 'X', 'V', 'P'>};

}  // namespace

std::int16_t clsMIFUtilities::Extract() {
  extracted_ = false;
  if (!mif_file_exists()) return 1;
  std::int64_t added = 0;
  try {
    progress_.restart();
    StatementScanner scanner(mif_file_, kKeywords, &progress_);
    has_data_ = true;
    use_coding(scanner.coding());
    sources_.push_back(ports().files->absolute(mif_file_));
    DefaultSideFileNames();
    MarkerTypes types(markers_, MarkerTypes::LetterCase::kIgnored);
    while (scanner.ReadNextStatement()) {
      const std::string_view statement = scanner.statement();
      switch (scanner.opening()) {
        case kMifFile:
          header_ = statement;
          break;
        case kXRefFormats:
          added += CollectXRefFormats(statement);
          break;
        case kMarker:
          added += CollectMarker(statement, scanner.coding(), types);
          break;
        case kVariableFormats:
          added += CollectVariableFormats(statement);
          break;
        case kPgf:
          added += CollectPgfNumFormat(statement);
          break;
      }
    }
    report_passed_statement(scanner, mif_file_);
  } catch (const failure& reason) {
    add_message(text::kCannotReadMifFile, described(mif_file_, reason));
    return 1;
  }
  extracted_ = true;
  return static_cast<std::int16_t>(std::min<std::int64_t>(added, INT16_MAX));
}

// Sets the coding of the entries that are added from here on.
void clsMIFUtilities::use_coding(const MifCoding& coding) {
  const auto found = std::ranges::find_if(
      codings_, [&](const MifCoding& known) { return known.document().reads_as(coding.document()); });
  coding_ = static_cast<std::uint8_t>(found - codings_.begin());
  if (found == codings_.end()) codings_.push_back(coding);
}

// A user would expect the texts of such a statement in the side files, so their absence is reported.
void clsMIFUtilities::report_passed_statement(const StatementScanner& scanner, const std::u16string& path) {
  if (scanner.passed().count == 0) return;
  const std::string position = std::to_string(scanner.passed().first);
  add_message(text::kStatementLeftOut, path + u", byte " + std::u16string(position.begin(), position.end()));
}

std::int64_t clsMIFUtilities::CollectMarker(std::string_view statement, const MifCoding& coding, MarkerTypes& types) {
  const auto type = find_value(statement, "<MTypeName `");
  if (!type) return 0;
  switch (types.kind_of(type->of(statement), coding)) {
    case MarkerTypes::Kind::kUnselected:
      return 0;
    case MarkerTypes::Kind::kIndex:
      return SplitIndexText(statement);
    case MarkerTypes::Kind::kOther:
      break;
  }
  const auto text = find_value(statement, "<MText `");
  return text ? AddIndexEntry(text->of(statement), text->of(statement)) : 0;
}

std::int64_t clsMIFUtilities::SplitIndexText(std::string_view statement) {
  const auto text = find_value(statement, "<MText `");
  if (!text || is_blank(text->of(statement))) return 0;
  std::int64_t added = 0;
  for_each_index_piece(text->of(statement), split_options_,
                       [&](std::string_view piece, std::string_view) { added += AddIndexEntry(piece, piece); });
  return added;
}

std::int64_t clsMIFUtilities::CollectXRefFormats(std::string_view statement) {
  std::int64_t added = 0;
  for_each_pair(statement, "<XRefName `", "<XRefDef `", [&](const QuotedValue& name, const QuotedValue& text) {
    added += AddXRefEntry(name.of(statement), text.of(statement));
  });
  return added;
}

std::int64_t clsMIFUtilities::CollectVariableFormats(std::string_view statement) {
  std::int64_t added = 0;
  for_each_pair(statement, "<VariableName `", "<VariableDef `", [&](const QuotedValue& name, const QuotedValue& text) {
    added += AddVariableEntry(name.of(statement), text.of(statement));
  });
  return added;
}

std::int64_t clsMIFUtilities::CollectPgfNumFormat(std::string_view statement) {
  const auto format = find_value(statement, "<PgfNumFormat `");
  if (!format) return 0;
  return AddVariableEntry(number_format_tag(statement, *format), format->of(statement));
}

int clsMIFUtilities::AddIndexEntry(std::string_view piece, std::string_view text) {
  return add_entry(index_, index_full_told_, text::kIndexFull, piece, text);
}

int clsMIFUtilities::AddXRefEntry(std::string_view name, std::string_view definition) {
  return add_entry(xrefs_, xrefs_full_told_, text::kXrefsFull, name, definition);
}

int clsMIFUtilities::AddVariableEntry(std::string_view name, std::string_view definition) {
  return add_entry(variables_, variables_full_told_, text::kVariablesFull, name, definition);
}

int clsMIFUtilities::add_entry(EntryTable& table, bool& full_told, TextRow full_message, std::string_view name,
                               std::string_view text) {
  // An entry that reads the same in all codings counts as one, under coding 0.
  const bool is_of_coding = coding_ != 0 && (depends_on_coding(name) || depends_on_coding(text));
  const EntryTable::Added added = table.add(name, text, is_of_coding ? coding_ : std::uint8_t{0});
  if (added == EntryTable::Added::kFull && !full_told) {
    full_told = true;
    add_message(full_message);
  }
  return added == EntryTable::Added::kNew ? 1 : 0;
}

}  // namespace kavo
