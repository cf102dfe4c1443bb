#include "office/libreoffice/workbook_texts.h"

#include <algorithm>
#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/container/XNameAccess.hpp>
#include <com/sun/star/container/XNamed.hpp>
#include <com/sun/star/drawing/XDrawPage.hpp>
#include <com/sun/star/drawing/XDrawPageSupplier.hpp>
#include <com/sun/star/drawing/XShapeGroup.hpp>
#include <com/sun/star/drawing/XShapeGrouper.hpp>
#include <com/sun/star/sheet/CellFlags.hpp>
#include <com/sun/star/sheet/XCellRangeData.hpp>
#include <com/sun/star/sheet/XCellRangeFormula.hpp>
#include <com/sun/star/sheet/XCellRangesQuery.hpp>
#include <com/sun/star/sheet/XHeaderFooterContent.hpp>
#include <com/sun/star/sheet/XSheetAnnotation.hpp>
#include <com/sun/star/sheet/XSheetAnnotationShapeSupplier.hpp>
#include <com/sun/star/sheet/XSheetAnnotations.hpp>
#include <com/sun/star/sheet/XSheetAnnotationsSupplier.hpp>
#include <com/sun/star/sheet/XSheetCellRanges.hpp>
#include <com/sun/star/sheet/XSpreadsheet.hpp>
#include <com/sun/star/sheet/XSpreadsheetDocument.hpp>
#include <com/sun/star/sheet/XSpreadsheets.hpp>
#include <com/sun/star/style/XStyleFamiliesSupplier.hpp>
#include <com/sun/star/text/XText.hpp>
#include <map>
#include <set>
#include <vector>

#include "office/libreoffice/rich_text.h"
#include "office/libreoffice/shape_texts.h"
#include "office/libreoffice/uno_text.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

namespace sheet = com::sun::star::sheet;
using com::sun::star::beans::XPropertySet;
using com::sun::star::container::XIndexAccess;
using com::sun::star::container::XNameAccess;
using com::sun::star::container::XNamed;
using com::sun::star::table::CellRangeAddress;
using com::sun::star::text::XText;
using com::sun::star::uno::Any;
using com::sun::star::uno::Reference;
using com::sun::star::uno::Sequence;
using com::sun::star::uno::UNO_QUERY;
using com::sun::star::uno::UNO_QUERY_THROW;
namespace CellFlags = com::sun::star::sheet::CellFlags;

// A cell that holds a text or formula. `line` and `place_in_line` follow the order of the export.
struct TextCell {
  enum class Kind { kPlain, kFormatted, kFormula };
  sal_Int32 line;
  sal_Int32 place_in_line;
  sal_Int32 row;
  sal_Int32 column;
  Kind kind;
  std::u16string text;
};

class SheetWalk {
 public:
  SheetWalk(OfficeDocument& document, const ExcelOptions& options, TextVisitor& visitor, const Any& spreadsheet,
            std::string place)
      : document_(document),
        options_(options),
        visitor_(visitor),
        sheet_(spreadsheet, UNO_QUERY_THROW),
        place_(std::move(place)) {}

  bool is_hidden() const {
    bool is_visible = true;
    Reference<XPropertySet>(sheet_, UNO_QUERY_THROW)->getPropertyValue("IsVisible") >>= is_visible;
    return !is_visible;
  }

  void walk() {
    walk_cells();
    walk_comments();
    walk_shapes();
    walk_name();
  }

 private:
  using Ranges = Sequence<CellRangeAddress>;

  // What the walk may see of the sheet.
  Reference<sheet::XCellRangesQuery> visible() const {
    const Reference<sheet::XCellRangesQuery> all(sheet_, UNO_QUERY_THROW);
    return options_.hidden ? all : Reference<sheet::XCellRangesQuery>(all->queryVisibleCells(), UNO_QUERY_THROW);
  }

  Reference<com::sun::star::table::XCellRange> range_at(const CellRangeAddress& a) const {
    return sheet_->getCellRangeByPosition(a.StartColumn, a.StartRow, a.EndColumn, a.EndRow);
  }

  void walk_cells() {
    const auto seen = visible();
    const auto find = [&](sal_Int32 flags) {
      return seen->queryContentCells(static_cast<sal_Int16>(flags))->getRangeAddresses();
    };
    std::set<std::pair<sal_Int32, sal_Int32>> formatted;  // row, column
    for (const CellRangeAddress& range : find(CellFlags::FORMATTED))
      for (sal_Int32 row = range.StartRow; row <= range.EndRow; ++row)
        for (sal_Int32 column = range.StartColumn; column <= range.EndColumn; ++column) formatted.emplace(row, column);
    std::vector<TextCell> cells;
    for (const CellRangeAddress& range : find(CellFlags::STRING)) {
      const Reference<sheet::XCellRangeData> data(range_at(range), UNO_QUERY_THROW);
      collect(cells, range, data->getDataArray(), [&](sal_Int32 row, sal_Int32 column) {
        return formatted.contains({row, column}) ? TextCell::Kind::kFormatted : TextCell::Kind::kPlain;
      });
    }
    if (options_.formulas)
      for (const CellRangeAddress& range : find(CellFlags::FORMULA)) {
        const Reference<sheet::XCellRangeFormula> data(range_at(range), UNO_QUERY_THROW);
        collect(cells, range, data->getFormulaArray(), [](sal_Int32, sal_Int32) { return TextCell::Kind::kFormula; });
      }
    leave_out_behind_gaps(cells, find(CellFlags::VALUE | CellFlags::DATETIME | CellFlags::STRING | CellFlags::FORMULA));
    std::ranges::sort(cells, [](const TextCell& a, const TextCell& b) {
      return std::pair(a.line, a.place_in_line) < std::pair(b.line, b.place_in_line);
    });
    for (const TextCell& cell : cells) walk_cell(cell);
  }

  template <class Rows, class KindOf>
  void collect(std::vector<TextCell>& cells, const CellRangeAddress& range, const Rows& rows, KindOf&& kind_of) const {
    for (sal_Int32 r = 0; r < rows.getLength(); ++r)
      for (sal_Int32 c = 0; c < rows[r].getLength(); ++c) {
        const sal_Int32 row = range.StartRow + r, column = range.StartColumn + c;
        const bool by_rows = options_.order == 0;
        cells.push_back(
            {by_rows ? row : column, by_rows ? column : row, row, column, kind_of(row, column), text_of(rows[r][c])});
      }
  }
  static std::u16string text_of(const rtl::OUString& text) { return from_uno(text); }
  static std::u16string text_of(const Any& value) {
    rtl::OUString text;
    value >>= text;
    return from_uno(text);
  }

  // Takes out the cells behind more blank ones in succession than the tolerance allows.
  void leave_out_behind_gaps(std::vector<TextCell>& cells, const Ranges& filled) const {
    const bool by_rows = options_.order == 0;
    const sal_Int32 tolerance = as_number(options_.tolerance);
    std::map<sal_Int32, std::vector<std::pair<sal_Int32, sal_Int32>>> lines;  // the filled stretches of each
    for (const CellRangeAddress& range : filled) {
      const sal_Int32 last = by_rows ? range.EndRow : range.EndColumn;
      for (sal_Int32 line = by_rows ? range.StartRow : range.StartColumn; line <= last; ++line)
        lines[line].emplace_back(by_rows ? range.StartColumn : range.StartRow,
                                 by_rows ? range.EndColumn : range.EndRow);
    }
    std::map<sal_Int32, sal_Int32> ends;  // of a line: the first place that is left out
    for (auto& [line, stretches] : lines) {
      std::ranges::sort(stretches);
      sal_Int32 next = 0;
      for (const auto& [begin, end] : stretches) {
        if (begin - next > tolerance) {
          ends[line] = begin;
          break;
        }
        next = std::max(next, end + 1);
      }
    }
    const std::size_t all = cells.size();
    std::erase_if(cells, [&](const TextCell& cell) {
      const auto end = ends.find(cell.line);
      return end != ends.end() && cell.place_in_line >= end->second;
    });
    if (cells.size() != all) visitor_.left_out(place_, all - cells.size());
  }

  void walk_cell(const TextCell& cell) {
    const std::string place = place_ + "/cell:" + column_name(cell.column) + std::to_string(cell.row + 1);
    if (cell.kind == TextCell::Kind::kFormula) {
      visitor_.visit_formula(place, cell.text);
      return;
    }
    const auto text = [&] {
      return Reference<XText>(sheet_->getCellByPosition(cell.column, cell.row), UNO_QUERY_THROW);
    };
    if (cell.kind == TextCell::Kind::kFormatted) {
      visit_text(document_, text(), LineBreaks::kParagraphs, place, visitor_);
      return;
    }
    const TextRun run{TextRun::Kind::kText, cell.text};
    if (is_blank({&run, 1})) return;
    if (const TranslatedText* translation = visitor_.visit(place, {&run, 1})) {
      document_.listener().step();
      text()->setString(to_uno(plain_text(*translation)));
    }
  }

  void walk_comments() {
    const Reference<sheet::XSheetAnnotationsSupplier> supplier(sheet_, UNO_QUERY_THROW);
    const Reference<XIndexAccess> comments(supplier->getAnnotations(), UNO_QUERY_THROW);
    for (sal_Int32 i = 0; i < comments->getCount(); ++i) {
      const Reference<sheet::XSheetAnnotation> comment(comments->getByIndex(i), UNO_QUERY_THROW);
      const auto at = comment->getPosition();
      // The text of a comment is that of the shape that shows it.
      const Reference<sheet::XSheetAnnotationShapeSupplier> supplier_of_shape(comment, UNO_QUERY_THROW);
      const auto shape = supplier_of_shape->getAnnotationShape();
      comment_shapes_.push_back(shape);
      const Reference<XText> text(shape, UNO_QUERY);
      if (text.is())
        visit_text(document_, text, LineBreaks::kParagraphs,
                   place_ + "/cell:" + column_name(at.Column) + std::to_string(at.Row + 1) + "/comment", visitor_);
    }
  }

  void walk_shapes() {
    const Reference<com::sun::star::drawing::XDrawPageSupplier> supplier(sheet_, UNO_QUERY_THROW);
    const auto page = supplier->getDrawPage();
    if (options_.ungroup) ungroup(page);
    visit_shapes(document_, Reference<XIndexAccess>(page, UNO_QUERY_THROW), ShapeFilter::kAll, place_, visitor_,
                 comment_shapes_);
  }

  // Until no group is left: a group may hold others.
  void ungroup(const Reference<com::sun::star::drawing::XDrawPage>& page) const {
    const Reference<com::sun::star::drawing::XShapeGrouper> grouper(page, UNO_QUERY);
    if (!grouper.is()) return;
    for (bool found = true; found;) {
      found = false;
      for (sal_Int32 i = 0; i < page->getCount() && !found; ++i) {
        const Reference<com::sun::star::drawing::XShapeGroup> group(page->getByIndex(i), UNO_QUERY);
        if (!group.is()) continue;
        grouper->ungroup(group);
        found = true;
      }
    }
  }

  // Last of a sheet, so that a new name is in nobody's way.
  void walk_name() {
    const Reference<XNamed> named(sheet_, UNO_QUERY_THROW);
    const TextRun run{TextRun::Kind::kText, from_uno(named->getName())};
    const TranslatedText* translation = visitor_.visit(place_ + "/name", {&run, 1});
    if (!translation) return;
    const std::u16string name = plain_text(*translation);
    named->setName(to_uno(name));
    // A name that cannot be is passed over without a word.
    if (from_uno(named->getName()) != name)
      throw office_failure(to_utf16(place_) + u": \"" + name + u"\" cannot be the name of a sheet");
  }

  static sal_Int32 as_number(std::u16string_view digits) {
    sal_Int32 number = 0;
    for (const char16_t digit : digits.substr(0, 5))
      if (digit >= u'0' && digit <= u'9') number = number * 10 + (digit - u'0');
    return number;
  }

  OfficeDocument& document_;
  const ExcelOptions& options_;
  TextVisitor& visitor_;
  Reference<sheet::XSpreadsheet> sheet_;
  std::string place_;
  std::vector<Reference<com::sun::star::drawing::XShape>> comment_shapes_;
};

// The three parts of each header and footer of one page style.
void visit_headers(OfficeDocument& document, const Reference<XPropertySet>& style, const std::string& place,
                   TextVisitor& visitor) {
  struct Place {
    const char* property;
    const char* name;
  };
  for (const Place& p : {Place{"RightPageHeaderContent", "/header"}, Place{"RightPageFooterContent", "/footer"}}) {
    const rtl::OUString property = rtl::OUString::createFromAscii(p.property);
    Reference<sheet::XHeaderFooterContent> content;
    style->getPropertyValue(property) >>= content;
    if (!content.is()) continue;
    visit_text(document, content->getLeftText(), LineBreaks::kParagraphs, place + p.name + "/left", visitor);
    visit_text(document, content->getCenterText(), LineBreaks::kParagraphs, place + p.name + "/center", visitor);
    visit_text(document, content->getRightText(), LineBreaks::kParagraphs, place + p.name + "/right", visitor);
    // What was changed is a copy until it is put back.
    style->setPropertyValue(property, Any(content));
  }
}

}  // namespace

void visit_workbook(OfficeDocument& document, const ExcelOptions& options, TextVisitor& visitor) {
  document.listener().run([&] {
    const Reference<sheet::XSpreadsheetDocument> workbook(document.model(), UNO_QUERY_THROW);
    const Reference<XIndexAccess> sheets(workbook->getSheets(), UNO_QUERY_THROW);
    std::set<rtl::OUString> styles;
    for (sal_Int32 i = 0; i < sheets->getCount(); ++i) {
      SheetWalk walk(document, options, visitor, sheets->getByIndex(i), "sheet:" + std::to_string(i + 1));
      if (!options.hidden && walk.is_hidden()) continue;
      walk.walk();
    }
    const Reference<com::sun::star::style::XStyleFamiliesSupplier> families(document.model(), UNO_QUERY_THROW);
    Reference<XNameAccess> page_styles;
    families->getStyleFamilies()->getByName("PageStyles") >>= page_styles;
    for (sal_Int32 i = 0; i < sheets->getCount(); ++i) {
      rtl::OUString style;
      Reference<XPropertySet>(sheets->getByIndex(i), UNO_QUERY_THROW)->getPropertyValue("PageStyle") >>= style;
      if (styles.insert(style).second && page_styles->hasByName(style))
        visit_headers(document, Reference<XPropertySet>(page_styles->getByName(style), UNO_QUERY_THROW),
                      "sheet:" + std::to_string(i + 1), visitor);
    }
  });
}

}  // namespace kavo
