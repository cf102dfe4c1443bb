// The side files: small MIF files of one text flow in which every table row is a paragraph. Its KAVOTag statement
// identifies the row, its String statement holds the text to translate.
#include <algorithm>
#include <charconv>
#include <optional>

#include "common/byte_scan.h"
#include "common/pending_file.h"
#include "common/same_file.h"
#include "mif/clsMIFUtilities.h"
#include "mif/mif_messages.h"
#include "mif/mif_values.h"
#include "mif/side_file.h"
#include "platform/formatted.h"
#include "platform/ports.h"

namespace kavo {

const clsMIFUtilities::SideFile clsMIFUtilities::SideFile::kIndex = {
    &clsMIFUtilities::index_file_,   &clsMIFUtilities::index_,
    &clsMIFUtilities::AddIndexEntry, true,
    text::kCannotWriteIndex,         text::kNoIndexName,
    text::kCannotReadIndex,          &clsMIFUtilities::index_coding_,
    &clsMIFUtilities::index_values_, u"index entry"};
const clsMIFUtilities::SideFile clsMIFUtilities::SideFile::kXrefs = {
    &clsMIFUtilities::xref_file_,    &clsMIFUtilities::xrefs_,
    &clsMIFUtilities::AddXRefEntry,  false,
    text::kCannotWriteXrefs,         text::kNoXrefName,
    text::kCannotReadXrefs,          &clsMIFUtilities::xrefs_coding_,
    &clsMIFUtilities::xrefs_values_, u"cross-reference format"};
const clsMIFUtilities::SideFile clsMIFUtilities::SideFile::kVariables = {
    &clsMIFUtilities::variable_file_,    &clsMIFUtilities::variables_,
    &clsMIFUtilities::AddVariableEntry,  false,
    text::kCannotWriteVariables,         text::kNoVariableName,
    text::kCannotReadVariables,          &clsMIFUtilities::variables_coding_,
    &clsMIFUtilities::variables_values_, u"variable or number format"};

std::int16_t clsMIFUtilities::EndBatch() {
  if (!has_data_) return 0;
  const SideFileHead head = side_file_head();
  std::int16_t failures = 0;
  for (const SideFile* side : {&SideFile::kIndex, &SideFile::kXrefs, &SideFile::kVariables})
    if (!write_side_file(*side, head)) ++failures;
  return failures;
}

// All rows get the coding of the last file's header; rows in other codings are converted. When that coding is older
// than 8.0 and a file declares its coding, the side files repeat the declaration.
clsMIFUtilities::SideFileHead clsMIFUtilities::side_file_head() const {
  SideFileHead head;
  head.lines = header_.empty() ? std::string("<MIFFile 5.50>") : header_;
  head.lines += "\r\n";
  const bool is_utf8 = MifCoding::of(head.lines).document().is_utf8;
  if (codings_.size() == 1 && codings_.front().document().is_utf8 == is_utf8) return head;
  std::string_view declared;
  for (const MifCoding& coding : codings_)
    if (!coding.document().declared.empty()) declared = coding.document().declared;
  if (!is_utf8 && !declared.empty()) head.lines += formatted("<MIFEncoding `{}'>\r\n", declared);
  head.coding = MifCoding::of(head.lines);
  return head;
}

// The rows of a table, converted to another coding. Rows that become equal count once.
EntryTable clsMIFUtilities::converted(const SideFile& side, const MifCoding& coding) const {
  std::vector<mif::StringConversion> conversions;
  conversions.reserve(codings_.size());
  for (const MifCoding& from : codings_) conversions.emplace_back(from.strings(), coding.strings());
  const EntryTable& table = this->*side.table;
  EntryTable rows = EntryTable(table.same());
  for (std::size_t row = 0; row < table.size(); ++row) {
    const std::uint8_t from = table.coding(row);
    if (codings_[from].document().reads_as(coding.document())) {
      rows.add(table.name(row), table.text(row));
      continue;
    }
    const std::string name = conversions[from].convert(table.name(row));
    rows.add(name, conversions[from].convert(table.text(row)));
  }
  return rows;
}

bool clsMIFUtilities::write_side_file(const SideFile& side, const SideFileHead& head) {
  const std::u16string& path = this->*side.path;
  if (path.empty()) {
    add_message(side.no_name);
    return false;
  }
  try {
    if (is_source(path)) {
      add_message(text::kSideFileIsSource, path);
      return false;
    }
    PendingFile file(path);
    if (!sources_.empty()) file.take_permissions_of(sources_.front());
    file.write(head.lines);
    if (side.is_index) {
      file.write("<KAVOSeg ");
      file.write(std::to_string(split_options_));
      file.write(">\r\n");
    }
    file.write("<TextFlow \r\n");
    std::optional<EntryTable> rows;
    if (head.coding) rows = converted(side, *head.coding);
    const EntryTable& table = rows ? *rows : this->*side.table;
    for (std::size_t row = 0; row < table.size(); ++row) {
      file.write(" <Para \r\n  <KAVOTag `");
      file.write(table.name(row));
      if (!side.is_index) {
        file.write(" : ");
        file.write(table.text(row));
      }
      file.write("'>\r\n  <ParaLine \r\n   <String `");
      file.write(table.text(row));
      file.write("'>\r\n  >\r\n >\r\n");
    }
    file.write(">\r\n");
    file.commit();
    return true;
  } catch (const failure& reason) {
    add_message(side.cannot_write, described(path, reason));
    return false;
  }
}

// A side file must never take the place of a document of its own batch.
bool clsMIFUtilities::is_source(std::u16string_view path) const {
  return std::ranges::any_of(sources_, [&](const std::u16string& source) { return is_same_file(source, path); });
}

namespace {

// A translation tool may wrap the statements differently, so any white space may follow the name.
constexpr std::string_view kOpenings[] = {"<KAVOSeg ", "<KAVOSeg\t", "<KAVOSeg\r", "<KAVOSeg\n",
                                          "<Para ",    "<Para\t",    "<Para\r",    "<Para\n"};
constexpr std::size_t kFirstPara = 4;
constexpr StatementKeywords kKeywords{kOpenings, find_pair<'<', 'K', 'P'>};
constexpr std::string_view kWhiteSpace = " \t\r\n";

// The value of the first statement with this name ("<" included) from `from` on.
std::optional<QuotedValue> find_wrapped_value(std::string_view paragraph, std::string_view name, std::size_t from) {
  for (std::size_t at = from; (at = paragraph.find(name, at)) != std::string_view::npos; at += name.size()) {
    const std::size_t value = paragraph.find_first_not_of(kWhiteSpace, at + name.size());
    if (value == std::string_view::npos) return std::nullopt;
    if (value == at + name.size() || paragraph[value] != '`') continue;
    const std::size_t quote = paragraph.find('\'', value);
    if (quote == std::string_view::npos) return std::nullopt;
    return QuotedValue{value + 1, quote};
  }
  return std::nullopt;
}

std::int16_t split_option_of(std::string_view statement) {
  const std::size_t digits = statement.find_first_not_of(kWhiteSpace, kOpenings[0].size() - 1);
  std::int16_t option = 0;
  if (digits != std::string_view::npos)
    std::from_chars(statement.data() + digits, statement.data() + statement.size(), option);
  return option;
}

}  // namespace

std::int16_t clsMIFUtilities::LoadIndexSideFile() { return load_side_file(SideFile::kIndex); }
std::int16_t clsMIFUtilities::LoadXRefSideFile() { return load_side_file(SideFile::kXrefs); }
std::int16_t clsMIFUtilities::LoadVariableSideFile() { return load_side_file(SideFile::kVariables); }

// Reads the side files, once a batch. Returns how many of them cannot be read.
std::int16_t clsMIFUtilities::load_side_files() {
  if (side_files_loaded_) return 0;
  DefaultSideFileNames();
  std::int16_t failures = 0;
  for (const auto load : {&clsMIFUtilities::LoadIndexSideFile, &clsMIFUtilities::LoadXRefSideFile,
                          &clsMIFUtilities::LoadVariableSideFile})
    failures = static_cast<std::int16_t>(failures + (this->*load)());
  side_files_loaded_ = true;
  return failures;
}

// Returns the number of failures: 0 or 1.
std::int16_t clsMIFUtilities::load_side_file(const SideFile& side) {
  const std::u16string& path = this->*side.path;
  try {
    StatementScanner scanner(path, kKeywords, nullptr);
    this->*side.coding = scanner.coding();
    bool doubles_told = false;
    coding_ = 0;
    while (scanner.ReadNextStatement()) {
      const std::string_view statement = scanner.statement();
      if (scanner.opening() < kFirstPara) {
        if (side.is_index) split_options_ = split_option_of(statement);
        continue;
      }
      const auto tag = find_wrapped_value(statement, "<KAVOTag", 0);
      if (!tag) continue;
      const auto text = find_wrapped_value(statement, "<String", tag->end);
      if (!text) continue;
      const auto first = (this->*side.table).find(tag->of(statement));
      if (!doubles_told && first && *first != text->of(statement)) {
        doubles_told = true;
        add_message(text::kTwoOfOneTag, formatted(u"{}, \"{}\"", path, scanner.coding().decode(tag->of(statement))));
      }
      (this->*side.add)(tag->of(statement), text->of(statement));
    }
    report_passed_statement(scanner, path);
    return 0;
  } catch (const failure& reason) {
    (this->*side.table).clear();  // no translation at all is better than some of them
    add_message(side.cannot_read, described(path, reason));
    return 1;
  }
}

}  // namespace kavo
