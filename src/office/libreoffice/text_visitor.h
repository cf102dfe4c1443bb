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
  // One text at its place ("slide:1/shape:2/paragraph:1"). Returns null to leave it as it is, or the translation that
  // replaces it, valid until the next visit.
  virtual const TranslatedText* visit(std::string_view place, std::span<const TextRun> runs) = 0;
  // A formula at its place, which is never changed.
  virtual void visit_formula(std::string_view, std::u16string_view) {}
  // How many texts at a place were not shown because the options leave them out.
  virtual void left_out(std::string_view, std::size_t) {}
};

}  // namespace kavo
