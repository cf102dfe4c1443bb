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
#include <com/sun/star/sheet/XUniqueCellFormatRangesSupplier.hpp>
#include <com/sun/star/style/XStyleFamiliesSupplier.hpp>
#include <com/sun/star/text/XText.hpp>
#include <map>
#include <set>
#include <vector>

#include "office/libreoffice/chart_texts.h"
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

// A cell with a text or formula. `line` and `place_in_line` give its place in the order of the export.
struct TextCell {
  enum class Kind { kPlain, kFormatted, kFormula };
  sal_Int32 line;
  sal_Int32 place_in_line;
  sal_Int32 row;
  sal_Int32 column;
  Kind kind;
  std::u16string text;
  std::u16string style = {};  // "" for the usual one
};

// LibreOffice's name of the usual style, and what it puts before Excel's own names.
constexpr std::u16string_view kUsualStyle = u"Default";
constexpr std::u16string_view kStyleOfExcel = u"Excel Built-in ";

class SheetWalk {
 public:
  SheetWalk(OfficeDocument& document, const ExcelOptions& options, TextVisitor& visitor,
            std::set<rtl::OUString>& seen_styles, const Any& spreadsheet, std::string place)
      : document_(document),
        options_(options),
        visitor_(visitor),
        seen_styles_(seen_styles),
        sheet_(spreadsheet, UNO_QUERY_THROW),
        place_(std::move(place)) {}

  bool is_hidden() const {
    bool is_visible = true;
    Reference<XPropertySet>(sheet_, UNO_QUERY_THROW)->getPropertyValue("IsVisible") >>= is_visible;
    return !is_visible;
  }

  void walk() {
    visitor_.enter(place_, from_uno(Reference<XNamed>(sheet_, UNO_QUERY_THROW)->getName()));
    walk_cells();
    walk_comments();
    walk_shapes();
    visit_charts(sheet_, place_, visitor_);
    walk_headers();
    walk_name();
  }

 private:
  using Ranges = Sequence<CellRangeAddress>;

  // The cells that the options allow the walk to see.
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
    const std::size_t left_out = leave_out_behind_gaps(cells);
    std::ranges::sort(cells, [](const TextCell& a, const TextCell& b) {
      return std::pair(a.line, a.place_in_line) < std::pair(b.line, b.place_in_line);
    });
    if (visitor_.wants_styles()) find_styles(cells);
    for (const TextCell& cell : cells) walk_cell(cell);
    if (left_out != 0) visitor_.left_out(place_, left_out);
  }

  template <class Rows, class KindOf>
  void collect(std::vector<TextCell>& cells, const CellRangeAddress& range, const Rows& rows, KindOf&& kind_of) const {
    for (sal_Int32 r = 0; r < rows.getLength(); ++r)
      for (sal_Int32 c = 0; c < rows[r].getLength(); ++c) {
        const sal_Int32 row = range.StartRow + r, column = range.StartColumn + c;
        const bool by_rows = options_.order != 1;
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

  // Removes the cells of a row that come after more successive blank cells than the tolerance allows. It works on rows
  // for both orders, so that the order does not decide which texts are exported. Returns how many texts it removed.
  std::size_t leave_out_behind_gaps(std::vector<TextCell>& cells) const {
    const sal_Int32 tolerance = as_number(options_.tolerance);
    const Reference<sheet::XCellRangesQuery> all(sheet_, UNO_QUERY_THROW);
    constexpr sal_Int32 filled = CellFlags::VALUE | CellFlags::DATETIME | CellFlags::STRING | CellFlags::FORMULA;
    std::map<sal_Int32, std::vector<std::pair<sal_Int32, sal_Int32>>> rows;  // the filled stretches of each
    for (const CellRangeAddress& range : all->queryContentCells(static_cast<sal_Int16>(filled))->getRangeAddresses())
      for (sal_Int32 row = range.StartRow; row <= range.EndRow; ++row)
        rows[row].emplace_back(range.StartColumn, range.EndColumn);
    std::map<sal_Int32, sal_Int32> ends;  // by row: the first column that is left out
    for (auto& [row, stretches] : rows) {
      std::ranges::sort(stretches);
      sal_Int32 next = 0;
      for (const auto& [begin, end] : stretches) {
        if (begin - next > tolerance) {
          ends[row] = begin;
          break;
        }
        next = std::max(next, end + 1);
      }
    }
    std::size_t texts = 0;
    std::erase_if(cells, [&](const TextCell& cell) {
      const auto end = ends.find(cell.row);
      if (end == ends.end() || cell.column < end->second) return false;
      const TextRun run{TextRun::Kind::kText, cell.text};
      if (cell.kind != TextCell::Kind::kFormula && !is_blank({&run, 1})) ++texts;
      return true;
    });
    return texts;
  }

  // Asks for each look of the sheet's cells, not for each cell.
  void find_styles(std::vector<TextCell>& cells) const {
    std::map<std::pair<sal_Int32, sal_Int32>, TextCell*> by_place;  // row, column
    sal_Int32 last_column = -1;
    for (TextCell& cell : cells) {
      by_place.emplace(std::pair(cell.row, cell.column), &cell);
      last_column = std::max(last_column, cell.column);
    }
    const Reference<sheet::XUniqueCellFormatRangesSupplier> supplier(sheet_, UNO_QUERY_THROW);
    const auto looks = supplier->getUniqueCellFormatRanges();
    for (sal_Int32 i = 0, count = by_place.empty() ? 0 : looks->getCount(); i < count; ++i) {
      const Reference<sheet::XSheetCellRanges> ranges(looks->getByIndex(i), UNO_QUERY_THROW);
      rtl::OUString name;
      Reference<XPropertySet>(ranges, UNO_QUERY_THROW)->getPropertyValue("CellStyle") >>= name;
      std::u16string style = from_uno(name);
      if (style == kUsualStyle) continue;
      if (style.starts_with(kStyleOfExcel)) style.erase(0, kStyleOfExcel.size());
      for (const CellRangeAddress& range : ranges->getRangeAddresses()) {
        if (range.StartColumn > last_column) continue;
        for (auto cell = by_place.lower_bound({range.StartRow, 0});
             cell != by_place.end() && cell->first.first <= range.EndRow; ++cell)
          if (cell->first.second >= range.StartColumn && cell->first.second <= range.EndColumn)
            cell->second->style = style;
      }
    }
  }

  void walk_cell(const TextCell& cell) {
    const std::string place = place_ + "/cell:" + column_name(cell.column) + std::to_string(cell.row + 1);
    if (cell.kind == TextCell::Kind::kFormula) {
      visitor_.visit_formula(place, cell.text);
      return;
    }
    if (!cell.style.empty()) visitor_.style(cell.style);
    const auto text = [&] {
      return Reference<XText>(sheet_->getCellByPosition(cell.column, cell.row), UNO_QUERY_THROW);
    };
    if (cell.kind == TextCell::Kind::kFormatted) {
      visit_text(document_, text(), LineBreaks::kParagraphs, place, visitor_);
      return;
    }
    if (const auto translation = visit_plain(cell.text, place, visitor_)) {
      document_.listener().step();
      text()->setString(to_uno(*translation));
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

  // Repeats until no group is left, because a group may contain others.
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

  // The three parts of each header and footer of the sheet's page style. They are shown with the first sheet that uses
  // the style.
  void walk_headers() {
    rtl::OUString name;
    Reference<XPropertySet>(sheet_, UNO_QUERY_THROW)->getPropertyValue("PageStyle") >>= name;
    if (!seen_styles_.insert(name).second) return;
    const Reference<com::sun::star::style::XStyleFamiliesSupplier> families(document_.model(), UNO_QUERY_THROW);
    Reference<XNameAccess> styles;
    families->getStyleFamilies()->getByName("PageStyles") >>= styles;
    if (!styles->hasByName(name)) return;
    const Reference<XPropertySet> style(styles->getByName(name), UNO_QUERY_THROW);
    struct Line {
      const char* property;
      const char* place;
    };
    for (const Line& line : {Line{"RightPageHeaderContent", "/header/"}, Line{"RightPageFooterContent", "/footer/"}}) {
      const rtl::OUString property = rtl::OUString::createFromAscii(line.property);
      Reference<sheet::XHeaderFooterContent> content;
      style->getPropertyValue(property) >>= content;
      if (!content.is()) continue;
      const std::string place = place_ + line.place;
      visit_text(document_, content->getLeftText(), LineBreaks::kParagraphs, place + "left", visitor_);
      visit_text(document_, content->getCenterText(), LineBreaks::kParagraphs, place + "center", visitor_);
      visit_text(document_, content->getRightText(), LineBreaks::kParagraphs, place + "right", visitor_);
      // `content` is a copy: changes count only when it is put back.
      style->setPropertyValue(property, Any(content));
    }
  }

  // This comes last, so that nothing else in the sheet sees the new name.
  void walk_name() {
    const Reference<XNamed> named(sheet_, UNO_QUERY_THROW);
    const auto name = visit_plain(from_uno(named->getName()), place_ + "/name", visitor_);
    if (!name) return;
    named->setName(to_uno(*name));
    // LibreOffice silently ignores an invalid name.
    if (from_uno(named->getName()) != *name)
      throw office_failure(to_utf16(place_) + u": \"" + *name + u"\" cannot be the name of a sheet");
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
  std::set<rtl::OUString>& seen_styles_;
  Reference<sheet::XSpreadsheet> sheet_;
  std::string place_;
  std::vector<Reference<com::sun::star::drawing::XShape>> comment_shapes_;
};

}  // namespace

void visit_workbook(OfficeDocument& document, const ExcelOptions& options, TextVisitor& visitor) {
  document.listener().run([&] {
    const Reference<sheet::XSpreadsheetDocument> workbook(document.model(), UNO_QUERY_THROW);
    const Reference<XIndexAccess> sheets(workbook->getSheets(), UNO_QUERY_THROW);
    std::set<rtl::OUString> seen_styles;
    for (sal_Int32 i = 0; i < sheets->getCount(); ++i) {
      SheetWalk walk(document, options, visitor, seen_styles, sheets->getByIndex(i), "sheet:" + std::to_string(i + 1));
      if (options.hidden || !walk.is_hidden()) walk.walk();
    }
  });
}

}  // namespace kavo
