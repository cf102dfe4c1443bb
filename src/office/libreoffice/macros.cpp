#include "office/libreoffice/macros.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "common/document_names.h"
#include "formats/office/office_xml.h"
#include "office/libreoffice/office_xml.h"
#include "office/libreoffice/presentation_texts.h"
#include "office/libreoffice/workbook_texts.h"
#include "platform/case_fold.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

class Export final : public TextVisitor {
 public:
  Export(const OfficeDocument& document, std::string_view kind, const ExcelOptions* options)
      : writer_(xml_name_of(document.path()), kind, options) {}
  // A name is written only when a text at that place follows.
  void enter(std::string_view place, std::u16string_view name) override {
    while (!names_.empty() && !office::is_within(place, names_.back().place)) names_.pop_back();
    names_.push_back({std::string(place), std::u16string(name), false});
  }
  const TranslatedText* visit(std::string_view place, std::span<const TextRun> runs) override {
    write_names(place);
    writer_.add_text(place, runs, std::exchange(style_, {}));
    return nullptr;
  }
  bool wants_styles() const override { return true; }
  void style(std::u16string_view name) override { style_ = name; }
  void visit_formula(std::string_view place, std::u16string_view formula) override {
    write_names(place);
    writer_.add_formula(place, formula);
  }
  void left_out(std::string_view place, std::size_t count) override {
    write_names(place);
    writer_.add_left_out(place, count);
  }
  void commit() { writer_.commit(); }

 private:
  struct Name {
    std::string place;
    std::u16string text;
    bool is_written = false;
  };
  void write_names(std::string_view place) {
    for (Name& name : names_) {
      if (name.is_written || !office::is_within(place, name.place)) continue;
      writer_.add_name(name.place, name.text);
      name.is_written = true;
    }
  }

  std::vector<Name> names_;  // of the place that was entered last and the places around it
  std::u16string style_;     // of the next text
  OfficeXmlWriter writer_;
};

// Finds the translation of each text by its place, and refuses a text that is no longer the one that was exported.
class Import final : public TextVisitor {
 public:
  Import(const OfficeDocument& document, std::string_view kind)
      : xml_name_(xml_name_of(document.path())), xml_(read_office_xml(xml_name_)) {
    if (xml_.kind != kind) throw office_failure(xml_name_ + u": this is not the XML of a " + to_utf16(kind));
  }
  const ExcelOptions& options() const { return xml_.options; }

  const TranslatedText* visit(std::string_view place, std::span<const TextRun> runs) override {
    const auto found = xml_.texts.find(place);
    if (found == xml_.texts.end() || found->second.check != check_of(joined_text(runs))) throw_changed(place);
    seen_.insert(found->first);
    return is_unchanged(found->second, runs) ? nullptr : &found->second;
  }

  std::optional<const TranslatedText*> answer(std::string_view place, std::u16string_view text) override {
    const auto is_text = [](const TranslatedText::Run& run) { return run.kind == TextRun::Kind::kText; };
    const auto found = xml_.texts.find(place);
    if (found == xml_.texts.end() || found->second.check != check_of(text) ||
        !std::ranges::all_of(found->second.runs, is_text))
      return std::nullopt;
    const TextRun run{TextRun::Kind::kText, std::u16string(text)};
    return visit(place, {&run, 1});
  }

  // Throws for a translation whose text the document no longer contains.
  void check_complete() const {
    for (const auto& [place, text] : xml_.texts)
      if (!seen_.contains(place)) throw_changed(place);
  }

 private:
  [[noreturn]] static void throw_changed(std::string_view place) {
    throw office_failure(u"The document has changed since its texts were exported, at " + to_utf16(place) +
                         u"; export it again");
  }

  // The document may be cut into other runs by now, so the texts of the exported runs are compared.
  static bool is_unchanged(const TranslatedText& translation, std::span<const TextRun> runs) {
    std::size_t next = 0, at = 0;
    const std::u16string text = joined_text(runs);
    for (const TextPiece& piece : translation.pieces) {
      if (piece.run != next++) return false;
      const bool is_field = translation.runs[piece.run].kind == TextRun::Kind::kField;
      const std::u16string_view expected = is_field ? std::u16string_view(u"\uFFFC") : std::u16string_view(piece.text);
      if (std::u16string_view(text).substr(std::min(at, text.size()), expected.size()) != expected) return false;
      at += expected.size();
    }
    return next == translation.runs.size() && at == text.size();
  }

  std::u16string xml_name_;
  TranslatedOfficeXml xml_;
  std::set<std::string, std::less<>> seen_;
};

void export_presentation(OfficeDocument& document) {
  Export texts(document, "presentation", nullptr);
  visit_presentation(document, texts);
  texts.commit();
}

void import_presentation(OfficeDocument& document) {
  Import texts(document, "presentation");
  visit_presentation(document, texts);
  texts.check_complete();
}

void export_workbook(OfficeDocument& document) {
  const ExcelOptions options = load_excel_options();
  Export texts(document, "workbook", &options);
  visit_workbook(document, options, texts);
  texts.commit();
}

void import_workbook(OfficeDocument& document) {
  Import texts(document, "workbook");
  visit_workbook(document, texts.options(), texts);
  texts.check_complete();
}

constexpr OfficeMacro kMacros[] = {
    {OfficeKind::kPresentation, u"KAVO.PPT!ExportPresentation", false, export_presentation},
    {OfficeKind::kPresentation, u"KAVO.PPT!ImportPresentation", true, import_presentation},
    {OfficeKind::kWorkbook, u"KAVO.XLS!ExportWorkbook", false, export_workbook},
    {OfficeKind::kWorkbook, u"KAVO.XLS!ImportWorkbook", true, import_workbook},
};

}  // namespace

const OfficeMacro* find_office_macro(OfficeKind kind, std::u16string_view name) {
  for (const OfficeMacro& macro : kMacros)
    if (macro.kind == kind && equal_ignoring_case(macro.name, name)) return &macro;
  return nullptr;
}

}  // namespace kavo
