// Port: sees the texts of a document. The walks over presentations and workbooks show it every text.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "office/libreoffice/office_xml.h"

namespace kavo {

class TextVisitor {
 public:
  virtual ~TextVisitor() = default;
  // What people call a place (a sheet, a shape) whose texts come next; not for places without a name.
  virtual void enter(std::string_view, std::u16string_view) {}
  // True when style() is to be called.
  virtual bool wants_styles() const { return false; }
  // The style of the cell whose text comes next; not for cells in the usual style.
  virtual void style(std::u16string_view) {}
  // One text at its place ("slide:1/shape:2/paragraph:1"). Returns null to leave it as it is, or the translation that
  // replaces it, valid until the next visit.
  virtual const TranslatedText* visit(std::string_view place, std::span<const TextRun> runs) = 0;
  // What visit() would return, when the characters of a text alone tell it: the text has neither links nor fields.
  // Nothing when visit() must see the runs. Reading them takes many calls.
  virtual std::optional<const TranslatedText*> answer(std::string_view, std::u16string_view) { return std::nullopt; }
  // A formula at its place, which is never changed.
  virtual void visit_formula(std::string_view, std::u16string_view) {}
  // How many texts at a place were not shown because the options leave them out.
  virtual void left_out(std::string_view, std::size_t) {}
};

}  // namespace kavo
