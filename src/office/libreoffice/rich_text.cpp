#include "office/libreoffice/rich_text.h"

#include <algorithm>
#include <com/sun/star/beans/PropertyState.hpp>
#include <com/sun/star/beans/XMultiPropertySet.hpp>
#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/beans/XPropertyState.hpp>
#include <com/sun/star/container/NoSuchElementException.hpp>
#include <com/sun/star/container/XEnumerationAccess.hpp>
#include <com/sun/star/lang/XMultiServiceFactory.hpp>
#include <com/sun/star/lang/XServiceInfo.hpp>
#include <com/sun/star/text/ControlCharacter.hpp>
#include <com/sun/star/text/XTextContent.hpp>
#include <com/sun/star/text/XTextCursor.hpp>
#include <com/sun/star/text/XTextField.hpp>
#include <limits>
#include <optional>
#include <set>
#include <span>

#include "office/libreoffice/cut_translation.h"
#include "office/libreoffice/uno_text.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

namespace uno = com::sun::star::uno;
namespace text = com::sun::star::text;
using com::sun::star::beans::PropertyState_DIRECT_VALUE;
using com::sun::star::beans::XPropertySet;
using com::sun::star::beans::XPropertyState;
using com::sun::star::container::XEnumerationAccess;
using uno::Any;
using uno::Reference;
using uno::Sequence;
using uno::UNO_QUERY;
using uno::UNO_QUERY_THROW;

// The properties that make two runs look different. Others, such as the language, differ from word to word in real
// documents. They would cut texts into pieces that nobody can translate.
constexpr const char* kFormatting[] = {"CharColor",    "CharContoured", "CharEmphasis",  "CharEscapement",
                                       "CharFontName", "CharHeight",    "CharPosture",   "CharRelief",
                                       "CharShadowed", "CharStrikeout", "CharUnderline", "CharUnderlineColor",
                                       "CharWeight"};  // sorted, as XMultiPropertySet wants names
using Formatting = std::vector<Any>;

struct Part {
  TextRun run;
  Reference<XPropertySet> field;  // of a link
  Formatting formatting;
};

using Names = Sequence<rtl::OUString>;

// A text, with all ranges of it that were asked for. LibreOffice destroys a range that nobody holds in another thread
// than the one that lists ranges of the same text, and crashes when the latter meets a half-destroyed one. So they are
// let go with the whole text.
class WholeText {
 public:
  explicit WholeText(const Reference<text::XText>& text) : text_(text) {}
  text::XText* operator->() const { return text_.get(); }
  template <class Range>
  Reference<Range> keep(const Reference<Range>& range) {
    ranges_.push_back(range);
    return range;
  }

 private:
  Reference<text::XText> text_;
  std::vector<Reference<uno::XInterface>> ranges_;
};

// Asks for all at once, because each call goes to another process.
Formatting values_of(const Reference<uno::XInterface>& properties, const Names& names) {
  const Sequence<Any> values =
      Reference<com::sun::star::beans::XMultiPropertySet>(properties, UNO_QUERY_THROW)->getPropertyValues(names);
  return Formatting(values.begin(), values.end());
}

Names names_of(std::span<const char* const> all) {
  Names names(static_cast<sal_Int32>(all.size()));
  std::ranges::transform(all, names.getArray(), rtl::OUString::createFromAscii);
  return names;
}

// The end of a paragraph, which looks like what comes before it.
Part end_of(const Reference<uno::XInterface>& paragraph) {
  static const Names names = names_of(kFormatting);
  return {{TextRun::Kind::kText, u"\n"}, {}, values_of(paragraph, names)};
}

Part part_of(const Reference<text::XTextRange>& portion) {
  static const Names names = [] {
    std::vector<const char*> all(std::begin(kFormatting), std::end(kFormatting));
    all.insert(all.end(), {"TextField", "TextPortionType"});
    return names_of(all);
  }();
  Part part;
  part.formatting = values_of(portion, names);
  rtl::OUString type;
  part.formatting.back() >>= type;
  part.formatting.pop_back();
  Reference<text::XTextField> field;
  part.formatting.back() >>= field;
  part.formatting.pop_back();
  part.run.text = from_uno(portion->getString());
  if (type != "TextField") return part;
  const Reference<com::sun::star::lang::XServiceInfo> services(field, UNO_QUERY);
  const bool is_link = services.is() && (services->supportsService("com.sun.star.text.textfield.URL") ||
                                         services->supportsService("com.sun.star.text.TextField.URL"));
  if (is_link) {
    part.run.kind = TextRun::Kind::kLink;
    part.field.set(field, UNO_QUERY_THROW);
  } else {
    part.run = {TextRun::Kind::kField, u""};
  }
  return part;
}

// Appends a part; if it looks the same as the part before, appends its text to that.
void append(std::vector<Part>& parts, Part part) {
  if (part.run.kind == TextRun::Kind::kText && part.run.text.empty()) return;
  const auto is_text = [](const Part& p) { return p.run.kind == TextRun::Kind::kText; };
  const bool is_same =
      !parts.empty() && is_text(part) && is_text(parts.back()) && part.formatting == parts.back().formatting;
  if (is_same)
    parts.back().run.text += part.run.text;
  else
    parts.push_back(std::move(part));
}

// The end is known by its exception: hasMoreElements() would be a call for each range.
std::vector<Reference<text::XTextRange>> ranges_in(WholeText& whole, const Reference<uno::XInterface>& part) {
  std::vector<Reference<text::XTextRange>> ranges;
  const Reference<XEnumerationAccess> access(part, UNO_QUERY);
  if (!access.is()) return ranges;
  const auto all = access->createEnumeration();
  try {
    for (;;) ranges.push_back(whole.keep(Reference<text::XTextRange>(all->nextElement(), UNO_QUERY_THROW)));
  } catch (const com::sun::star::container::NoSuchElementException&) {
    return ranges;
  }
}

void append_paragraph(std::vector<Part>& parts, WholeText& whole, const Reference<text::XTextRange>& paragraph) {
  for (const auto& portion : ranges_in(whole, paragraph)) append(parts, part_of(portion));
}

std::vector<TextRun> runs_of(const std::vector<Part>& parts) {
  std::vector<TextRun> runs;
  runs.reserve(parts.size());
  for (const Part& part : parts) runs.push_back(part.run);
  return runs;
}

// A cursor over [begin, end), in UTF-16 units from `start`.
Reference<text::XTextCursor> cursor_over(WholeText& whole, const Reference<text::XTextRange>& start, std::size_t begin,
                                         std::size_t end) {
  const Reference<text::XTextCursor> cursor = whole.keep(whole->createTextCursorByRange(start));
  const auto go = [&](std::size_t count, bool expand) {
    constexpr std::size_t most = std::numeric_limits<sal_Int16>::max();
    for (; count > 0; count -= std::min(count, most))
      if (!cursor->goRight(static_cast<sal_Int16>(std::min(count, most)), expand)) return;
  };
  go(begin, false);
  go(end - begin, true);
  return cursor;
}

// Replaces what the cursor covers. Afterwards the cursor is empty and after the new text.
void write_text(WholeText& whole, const Reference<text::XTextCursor>& cursor, std::u16string_view content,
                LineBreaks line_breaks) {
  if (line_breaks == LineBreaks::kParagraphs || content.find(u'\n') == std::u16string_view::npos) {
    cursor->setString(to_uno(content));
    cursor->collapseToEnd();
    return;
  }
  // A "\n" in a string would begin a paragraph.
  const Reference<text::XTextRange> range(cursor, UNO_QUERY_THROW);
  bool is_first = true;
  while (true) {
    const std::size_t end = std::min(content.find(u'\n'), content.size());
    if (is_first)
      cursor->setString(to_uno(content.substr(0, end)));
    else
      whole->insertString(range, to_uno(content.substr(0, end)), false);
    is_first = false;
    cursor->collapseToEnd();
    if (end == content.size()) return;
    whole->insertControlCharacter(range, text::ControlCharacter::LINE_BREAK, false);
    cursor->collapseToEnd();
    content.remove_prefix(end + 1);
  }
}

// Replaces one run among others. The new text takes the place of all but the first character of the old one, which then
// goes. If it replaced the old text at once, it would take the formatting of the run before.
void write_run(WholeText& whole, const Reference<text::XTextRange>& start, std::size_t begin, std::size_t end,
               std::u16string_view content, LineBreaks line_breaks) {
  write_text(whole, cursor_over(whole, start, begin + 1, end), content, line_breaks);
  cursor_over(whole, start, begin, begin + 1)->setString(rtl::OUString());
}

// The formatting of runs: the values of all character properties that at least one of them sets itself.
class RunFormats {
 public:
  RunFormats(WholeText& whole, const Reference<text::XTextRange>& start, const TranslatedText& translation) {
    std::vector<Reference<text::XTextCursor>> cursors;
    std::size_t begin = 0;
    for (const TranslatedText::Run& run : translation.runs) {
      cursors.push_back(run.length == 0 ? nullptr : cursor_over(whole, start, begin, begin + 1));
      begin += run.length;
    }
    const std::vector<rtl::OUString> set = names_set_by(cursors);
    names_ = Names(set.data(), static_cast<sal_Int32>(set.size()));
    for (const auto& cursor : cursors) values_.push_back(cursor.is() ? values_of(cursor, names_) : Formatting());
  }

  void apply(std::size_t run, const Reference<text::XTextCursor>& cursor) const {
    const Formatting& values = values_[run];
    if (values.empty()) return;
    Reference<com::sun::star::beans::XMultiPropertySet>(cursor, UNO_QUERY_THROW)
        ->setPropertyValues(names_, Sequence<Any>(values.data(), static_cast<sal_Int32>(values.size())));
  }

 private:
  // The character properties that a run sets itself, sorted.
  static std::vector<rtl::OUString> names_set_by(const std::vector<Reference<text::XTextCursor>>& cursors) {
    std::vector<rtl::OUString> known;
    std::set<rtl::OUString> names;
    for (const auto& cursor : cursors) {
      const Reference<XPropertyState> states(cursor, UNO_QUERY);
      if (!states.is()) continue;
      if (known.empty()) known = character_properties(cursor);
      const auto found = states->getPropertyStates(Names(known.data(), static_cast<sal_Int32>(known.size())));
      for (std::size_t i = 0; i < known.size(); ++i)
        if (found[static_cast<sal_Int32>(i)] == PropertyState_DIRECT_VALUE) names.insert(known[i]);
    }
    return {names.begin(), names.end()};
  }

  static std::vector<rtl::OUString> character_properties(const Reference<text::XTextCursor>& cursor) {
    std::vector<rtl::OUString> names;
    for (const auto& known : Reference<XPropertySet>(cursor, UNO_QUERY_THROW)->getPropertySetInfo()->getProperties())
      if (known.Name.startsWith("Char") && (known.Attributes & kReadOnly) == 0 && known.Name != "CharStyleName")
        names.push_back(known.Name);
    return names;
  }

  static constexpr sal_Int16 kReadOnly = 16;  // com.sun.star.beans.PropertyAttribute.READONLY
  Names names_;
  std::vector<Formatting> values_;  // of each run, empty for an empty one
};

// Replaces a link with one that has another text. Changing the link itself has no effect, because LibreOffice hands out
// a copy.
void write_link(OfficeDocument& document, WholeText& whole, const Reference<text::XTextCursor>& cursor,
                const Reference<XPropertySet>& link, std::u16string_view content) {
  const Reference<com::sun::star::lang::XMultiServiceFactory> factory(document.model(), UNO_QUERY_THROW);
  const Reference<text::XTextContent> field(factory->createInstance("com.sun.star.text.TextField.URL"),
                                            UNO_QUERY_THROW);
  const Reference<XPropertySet> properties(field, UNO_QUERY_THROW);
  for (const char* name : {"URL", "TargetFrame", "Format"}) {
    const rtl::OUString property = rtl::OUString::createFromAscii(name);
    if (link->getPropertySetInfo()->hasPropertyByName(property) &&
        properties->getPropertySetInfo()->hasPropertyByName(property))
      properties->setPropertyValue(property, link->getPropertyValue(property));
  }
  properties->setPropertyValue("Representation", Any(to_uno(content)));
  whole->insertTextContent(Reference<text::XTextRange>(cursor, UNO_QUERY_THROW), field, true);
}

// Replaces a text that begins at `start` with its translation. Links and fields stay where they are, between stretches
// of text. The stretches are written from the last to the first, so that positions before them stay valid.
class TranslationWriter {
 public:
  // All must outlive the object.
  TranslationWriter(OfficeDocument& document, WholeText& whole, const Reference<text::XTextRange>& start,
                    LineBreaks line_breaks, const TranslatedText& translation)
      : document_(document),
        whole_(whole),
        start_(start),
        line_breaks_(line_breaks),
        runs_(translation.runs),
        translation_(translation) {}

  void write(const std::vector<Part>& parts, std::string_view place, const CutTranslation& cut) {
    // A run that is replaced together with the end of its paragraph takes the formatting of the next one.
    const bool keeps_paragraphs =
        line_breaks_ == LineBreaks::kInParagraph || runs_.size() == 1 ||
        std::ranges::none_of(parts, [](const Part& part) { return part.run.text.find(u'\n') != std::u16string::npos; });
    std::vector<const Part*> fixed_parts;
    for (const Part& part : parts)
      if (part.run.kind != TextRun::Kind::kText) fixed_parts.push_back(&part);
    if (fixed_parts.size() != cut.fixed.size()) refuse_fixed_runs(place);
    const auto in_place = [&](const Stretch& stretch) {
      return keeps_paragraphs && std::ranges::equal(stretch.runs, stretch.pieces, {}, {}, &TextPiece::run);
    };
    // They must be read before anything is written.
    if (runs_.size() > 1 && (!cut.fixed.empty() || !std::ranges::all_of(cut.stretches, in_place)))
      formats_.emplace(whole_, start_, translation_);
    for (std::size_t s = cut.stretches.size(); s-- > 0;) {
      const Stretch& stretch = cut.stretches[s];
      if (in_place(stretch))
        write_each_run(stretch);
      else
        write_as_one(stretch);
      if (s > 0) write_fixed(cut.fixed[s - 1], *fixed_parts[s - 1], cut.fixed_texts[s - 1], stretch.begin - 1);
    }
  }

 private:
  // Each run keeps its formatting when it gets another text in its place.
  void write_each_run(const Stretch& stretch) {
    std::size_t end = stretch.end;
    for (auto piece = stretch.pieces.rbegin(); piece != stretch.pieces.rend(); ++piece) {
      const std::size_t begin = end - runs_[piece->run].length;
      if (runs_.size() == 1)
        write_text(whole_, cursor_over(whole_, start_, begin, end), piece->text, line_breaks_);
      else
        write_run(whole_, start_, begin, end, piece->text, line_breaks_);
      end = begin;
    }
  }

  void write_as_one(const Stretch& stretch) {
    std::u16string content;
    for (const TextPiece& piece : stretch.pieces) content += piece.text;
    write_text(whole_, cursor_over(whole_, start_, stretch.begin, stretch.end), content, line_breaks_);
    std::size_t at = stretch.begin;
    for (const TextPiece& piece : stretch.pieces) {
      apply_format(piece.run, at, at + piece.text.size());
      at += piece.text.size();
    }
  }

  // A link shows the translation of its text; a field shows what it computes.
  void write_fixed(std::size_t run, const Part& part, const std::u16string& text, std::size_t at) {
    if (runs_[run].kind != TextRun::Kind::kLink || part.run.text == text) return;
    write_link(document_, whole_, cursor_over(whole_, start_, at, at + 1), part.field, text);
    apply_format(run, at, at + 1);
  }

  void apply_format(std::size_t run, std::size_t begin, std::size_t end) {
    if (formats_ && end != begin) formats_->apply(run, cursor_over(whole_, start_, begin, end));
  }

  OfficeDocument& document_;
  WholeText& whole_;
  const Reference<text::XTextRange>& start_;
  const LineBreaks line_breaks_;
  const std::vector<TranslatedText::Run>& runs_;
  const TranslatedText& translation_;
  std::optional<RunFormats> formats_;  // when a run may move
};

void write_translation(OfficeDocument& document, WholeText& whole, const Reference<text::XTextRange>& start,
                       const std::vector<Part>& parts, LineBreaks line_breaks, std::string_view place,
                       const TranslatedText& translation) {
  TranslationWriter(document, whole, start, line_breaks, translation)
      .write(parts, place, cut_at_fixed_runs(translation, place));
}

void visit_parts(OfficeDocument& document, WholeText& whole, const Reference<text::XTextRange>& start,
                 const std::vector<Part>& parts, LineBreaks line_breaks, std::string_view place, TextVisitor& visitor) {
  const std::vector<TextRun> runs = runs_of(parts);
  if (is_blank(runs)) return;
  if (const TranslatedText* translation = visitor.visit(place, runs))
    write_translation(document, whole, start, parts, line_breaks, place, *translation);
}

}  // namespace

void visit_text(OfficeDocument& document, const Reference<text::XText>& text, LineBreaks line_breaks,
                std::string_view place, TextVisitor& visitor) {
  document.listener().step();
  WholeText whole(text);
  const TextRun all{TextRun::Kind::kText, from_uno(whole->getString())};
  if (is_blank({&all, 1})) return;
  if (const auto answer = line_breaks == LineBreaks::kParagraphs ? visitor.answer(place, all.text) : std::nullopt) {
    if (*answer)
      write_translation(document, whole, whole.keep(whole->getStart()), {{all, {}, {}}}, line_breaks, place, **answer);
    return;
  }
  const auto paragraphs = ranges_in(whole, text);
  if (line_breaks == LineBreaks::kParagraphs) {
    std::vector<Part> parts;
    for (const auto& paragraph : paragraphs) {
      if (&paragraph != &paragraphs.front()) {
        // The end of a paragraph has the formatting of what comes before it.
        if (parts.empty() || parts.back().run.kind != TextRun::Kind::kText)
          append(parts, end_of(paragraph));
        else
          parts.back().run.text += u'\n';
      }
      append_paragraph(parts, whole, paragraph);
    }
    visit_parts(document, whole, whole.keep(whole->getStart()), parts, line_breaks, place, visitor);
    return;
  }
  for (std::size_t i = 0; i < paragraphs.size(); ++i) {
    std::vector<Part> parts;
    append_paragraph(parts, whole, paragraphs[i]);
    visit_parts(document, whole, whole.keep(paragraphs[i]->getStart()), parts, line_breaks,
                std::string(place) + "/paragraph:" + std::to_string(i + 1), visitor);
  }
}

std::u16string plain_text(const TranslatedText& translation) {
  std::u16string all;
  for (const TextPiece& piece : translation.pieces) all += piece.text;
  return all;
}

std::optional<std::u16string> visit_plain(std::u16string_view content, std::string_view place, TextVisitor& visitor) {
  const TextRun run{TextRun::Kind::kText, std::u16string(content)};
  if (is_blank({&run, 1})) return std::nullopt;
  const TranslatedText* translation = visitor.visit(place, {&run, 1});
  if (!translation) return std::nullopt;
  return plain_text(*translation);
}

}  // namespace kavo
