#include "suite/filters/rc/rc_extraction.h"

#include <algorithm>

#include "suite/document/word_characters.h"

namespace kavo::rc {
namespace {

// The zero characters at the end of a literal, as written. Old resource editors put them after every value.
std::string_view tail_of(std::string_view literal) {
  std::string_view text = literal.substr(0, literal.size() - 1);
  while (text.ends_with("\\0") && !text.ends_with("\\\\0")) text.remove_suffix(2);
  return literal.substr(text.size(), literal.size() - 1 - text.size());
}

bool has_letter(std::string_view utf8) {
  while (!utf8.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(utf8), 1);
    const char32_t c = utf8_code_point(utf8.substr(0, length));
    if (is_letter_or_digit(c) && !is_word_digit(c)) return true;
    utf8.remove_prefix(length);
  }
  return false;
}

// "DIALOGEX/PUSHBUTTON", "MENU/POPUP", "STRINGTABLE".
std::string element_of(const RcStatement& statement, const RcText& text) {
  std::string path = statement.resource ? statement.resource->type_name : std::string();
  // A caption's statement is the whole header of its dialog, so it does not name the caption.
  if (text.kind == RcText::kCaption) return path + "/CAPTION";
  if (text.kind == RcText::kString || statement.items.front().kind == RcTokenKind::kLiteral) return path;
  (path += '/') += statement.text(statement.items.front());
  return path;
}

}  // namespace

void RcExtraction::run(ProgressEvent& progress) {
  column_ = 1 + static_cast<std::int64_t>(script_.mark().size());
  script_.read([this](const RcStatement& statement) { take(statement); }, &progress);
  sink_.skeleton(script_.odd_byte());
}

void RcExtraction::take(const RcStatement& statement) {
  const bool is_new = statement.resource && statement.resource->number != last_resource_;
  if (is_new) begin_resource(statement);
  if (!statement.resource && statement.kind != RcStatement::kPlain)
    is_translated_ = survey_.is_chosen(statement.language);
  if (statement.resource && replaced_ && statement.language.id &&
      with_usual_region(*statement.language.id) == *replaced_)
    return computed(kRemoved, 0, statement.bytes);
  switch (statement.kind) {
    case RcStatement::kLanguage:
      return language(statement);
    case RcStatement::kCodePage:
      return code_page(statement);
    case RcStatement::kHeader:
      return header(statement);
    default:
      return texts(statement);
  }
}

void RcExtraction::language(const RcStatement& statement) {
  is_translated_ = survey_.is_chosen(statement.language);
  has_language_ = has_language_ || is_translated_;
  if (is_translated_) return language_values(statement, statement.significant(0));
  items(statement, 0, statement.items.size());
}

// Writes the whole statement. The two values after the keyword are a computed place.
void RcExtraction::language_values(const RcStatement& statement, std::size_t keyword) {
  const std::size_t first = statement.significant(keyword + 1);
  const std::size_t last = statement.significant(statement.significant(first + 1) + 1);
  items(statement, 0, first);
  computed(kLanguageValues, 0,
           std::string_view(statement.bytes)
               .substr(statement.items[first].begin, statement.items[last].end - statement.items[first].begin));
  items(statement, last + 1, statement.items.size());
}

void RcExtraction::code_page(const RcStatement& statement) {
  const std::string_view bytes = statement.bytes;
  const std::size_t begin = bytes.find('(') + 1;
  const std::size_t end = std::min(bytes.find(')', begin), bytes.size());
  // A script in UTF-8 stays in UTF-8.
  if (!is_translated_ || statement.code_page == kUtf8CodePage) {
    is_foreign_page_ = false;
    has_code_page_ = is_translated_;
    return skeleton(bytes);
  }
  skeleton(bytes.substr(0, begin));
  computed(kCodePageNumber, 0, bytes.substr(begin, end - begin));
  skeleton(bytes.substr(end));
  has_code_page_ = true;
}

// Writes what the translation must declare, or take back, before a resource.
void RcExtraction::begin_resource(const RcStatement& statement) {
  last_resource_ = statement.resource->number;
  is_translated_ = survey_.is_chosen(statement.language);
  const bool is_recoded = !script_.is_marked() && script_.code_page(statement.code_page) != kUtf8CodePage;
  if (is_translated_) {
    if (!statement.language.is_stated && !has_language_) computed(kNewLanguage, 0, {});
    if (!statement.language.is_stated) has_language_ = true;
    if (is_recoded && (!has_code_page_ || is_foreign_page_)) computed(kNewCodePage, column_ == 1 ? 0 : 1, {});
    has_code_page_ = true;
    is_foreign_page_ = false;
  } else if (has_code_page_ && !is_foreign_page_) {
    if (is_recoded) computed(kOldCodePage, statement.code_page, {});
    is_foreign_page_ = true;
  }
}

void RcExtraction::header(const RcStatement& statement) {
  if (!is_translated_) return items(statement, 0, statement.items.size());
  std::size_t done = 0;
  const auto all = texts_of(statement);
  auto text = all.begin();
  const auto up_to = [&](std::size_t item) {
    items(statement, done, item);
    done = item;
  };
  for (std::size_t item = 0; item < statement.items.size(); ++item) {
    if (item < done) continue;
    while (text != all.end() && text->run.first < item) ++text;
    if (text != all.end() && text->run.first == item) {
      up_to(item);
      if (!segment(statement, *text)) items(statement, item, text->run.last + 1);
      done = text->run.last + 1;
    } else if (statement.resource->type == RcType::kDialog && statement.is_word(item, "FONT")) {
      // The font's name comes after the size and, usually, a comma.
      std::size_t literal = statement.significant(statement.significant(item + 1) + 1);
      if (literal < statement.items.size() && statement.text(statement.items[literal]) == ",")
        literal = statement.significant(literal + 1);
      const auto name = literals_at(statement, literal);
      if (!name) continue;
      std::size_t end = name->last + 1;
      // Weight, italics and character set follow, each after a comma.
      for (std::size_t comma = statement.significant(end);
           comma < statement.items.size() && statement.text(statement.items[comma]) == ",";
           comma = statement.significant(end))
        end = std::min(statement.significant(comma + 1) + 1, statement.items.size());
      up_to(item);
      computed(kFont, script_.code_page(statement.code_page),
               std::string_view(statement.bytes)
                   .substr(statement.items[item].begin, statement.items[end - 1].end - statement.items[item].begin));
      done = end;
    } else if (item != 0 && statement.is_word(item, "LANGUAGE")) {
      const std::size_t first = statement.significant(item + 1);
      const std::size_t last = statement.significant(statement.significant(first + 1) + 1);
      if (last >= statement.items.size()) continue;
      up_to(first);
      computed(kLanguageValues, 0,
               std::string_view(statement.bytes)
                   .substr(statement.items[first].begin, statement.items[last].end - statement.items[first].begin));
      done = last + 1;
    }
  }
  up_to(statement.items.size());
}

void RcExtraction::texts(const RcStatement& statement) {
  std::size_t done = 0;
  if (is_translated_)
    for (const RcText& text : texts_of(statement)) {
      items(statement, done, text.run.first);
      if (!segment(statement, text)) items(statement, text.run.first, text.run.last + 1);
      done = text.run.last + 1;
    }
  items(statement, done, statement.items.size());
}

RcExtraction::Builder& RcExtraction::builder(unsigned code_page) {
  return builders_.try_emplace(code_page, script_.coding(code_page)).first->second;
}

// False for a text that nobody reads. Nothing is written then.
bool RcExtraction::segment(const RcStatement& statement, const RcText& text) {
  const auto is_literal = [](const RcStatement::Item& item) { return item.kind == RcTokenKind::kLiteral; };
  const RcStatement::Item* const items = statement.items.data();
  const RcStatement::Item& first = *std::find_if(items + text.run.first, items + text.run.last, is_literal);
  const RcStatement::Item& last = items[text.run.last];
  RcTextPlace place;
  place.is_wide = statement.text(first).front() != '"';
  place.is_glued = is_word_end_;
  place.begins_with_macro = !is_literal(items[text.run.first]);
  place.ends_with_macro = !is_literal(last);
  place.code_page = script_.code_page(statement.code_page);
  place.dialog = text.kind == RcText::kControl && text.has_access_key ? statement.resource->number : 0;
  if (!place.ends_with_macro) place.tail = tail_of(statement.text(last));
  builder_ = &builder(place.code_page);
  SegmentBuilder& segment = builder_->segment;
  segment.start(line_, column_);
  plain_.clear();
  std::string name;
  builder_->coding.decode_run(script_.original(text.name), name);
  segment.name(name);
  if (text.kind == RcText::kControl || text.kind == RcText::kMenuItem) {
    std::string note = statement.resource->type_name + " ";
    builder_->coding.decode_run(script_.original(statement.resource->name), note);
    segment.note(note);
  }
  segment.element(element_of(statement, text));
  segment.locked(text.is_fixed);
  if (!run(statement, text.run, place.tail)) return false;
  if (text.has_access_key) place.key = access_key_of(plain_);
  segment.context(to_context(place));
  sink_.segment(segment.finish());
  advance(std::string_view(statement.bytes)
              .substr(statement.items[text.run.first].begin,
                      statement.items[text.run.last].end - statement.items[text.run.first].begin));
  return true;
}

// False when nobody reads it. Beside a macro, digits and signs alone are no text: "1." VERSION.
bool RcExtraction::run(const RcStatement& statement, const RcTextRun& run, std::string_view tail) {
  SegmentBuilder& segment = builder_->segment;
  bool has_macro = false;
  for (std::size_t item = run.first; item <= run.last; ++item) {
    const RcStatement::Item& one = statement.items[item];
    if (one.kind == RcTokenKind::kLiteral) {
      literal(statement, statement.text(one), item == run.last ? tail : std::string_view());
    } else if (const auto end = macro_end(statement, item)) {
      const std::string_view macro =
          std::string_view(statement.bytes).substr(one.begin, statement.items[*end].end - one.begin);
      segment.add_code(CodeKind::kStandalone, kMacroType, macro, script_.original(macro));
      has_macro = true;
      item = *end;
    } else {
      segment.add_hidden(script_.original(statement.text(one)));
    }
  }
  return segment.has_text() && (!has_macro || has_letter(plain_));
}

void RcExtraction::literal(const RcStatement& statement, std::string_view bytes, std::string_view tail) {
  // A number in "..." is a byte of the declared code page. A script in Unicode declares none.
  const unsigned numbers = statement.code_page != 0 ? statement.code_page : script_.code_page(0);
  const bool has_numbers = numbers != kUtf8CodePage && numbers != kUtf16LittleEndian && numbers != kUtf16BigEndian;
  RcLiteralReader reader(builder_->coding, has_numbers ? &script_.coding(numbers) : nullptr);
  reader.start(bytes.substr(0, bytes.size() - 1 - tail.size()));
  RcPiece one;
  while (reader.next(one)) piece(one);
  builder_->segment.add_hidden(script_.original(bytes.substr(bytes.size() - 1 - tail.size())));
}

// Characters that XML does not allow stand in the middle of a text, too. Invalid bytes have no form here.
void RcExtraction::add_plain(std::string_view bytes) {
  builder_->coding.decode(bytes, plain_, [](std::string_view) {});
}

void RcExtraction::piece(const RcPiece& piece) {
  SegmentBuilder& segment = builder_->segment;
  const std::string_view bytes = script_.original(piece.bytes);
  switch (piece.kind) {
    case RcPiece::kHidden:
      return segment.add_hidden(bytes);
    case RcPiece::kText:
      add_plain(bytes);
      return segment.add_text(bytes);
    case RcPiece::kCharacter:
      plain_ += piece.text;
      return segment.add_text(piece.text, bytes);
    case RcPiece::kLineBreak:
      return segment.add_code(CodeKind::kStandalone, "lb", piece.bytes.front() == '\\' ? piece.bytes : "\\n", bytes);
    case RcPiece::kTab:
      return segment.add_code(CodeKind::kStandalone, "x-tab", "\\t", bytes);
    case RcPiece::kMarker:
      return segment.add_code(CodeKind::kStandalone, kMarkerType, piece.bytes, bytes);
    case RcPiece::kOther:
      return segment.add_code(CodeKind::kStandalone, "x-escape", piece.bytes, bytes);
  }
}

// Bytes that are not ASCII are converted when the translation declares another code page.
void RcExtraction::items(const RcStatement& statement, std::size_t from, std::size_t to) {
  if (from >= to) return;
  const auto bytes_between = [&](std::size_t begin, std::size_t end) {
    return std::string_view(statement.bytes).substr(begin, end - begin);
  };
  std::size_t begin = statement.items[from].begin;
  if (is_translated_ && !script_.is_marked() && !is_ascii(statement.bytes)) {
    const unsigned code_page = script_.code_page(statement.code_page);
    for (std::size_t item = from; item < to; ++item) {
      const RcStatement::Item& one = statement.items[item];
      const bool is_literal = one.kind == RcTokenKind::kLiteral;
      if ((!is_literal && one.kind != RcTokenKind::kComment) || is_ascii(statement.text(one))) continue;
      skeleton(bytes_between(begin, one.begin));
      computed(is_literal ? kLiteral : kComment, code_page, statement.text(one));
      begin = one.end;
    }
  }
  skeleton(bytes_between(begin, statement.items[to - 1].end));
}

void RcExtraction::skeleton(std::string_view bytes) {
  if (bytes.empty()) return;
  sink_.skeleton(script_.original(bytes));
  advance(bytes);
}

void RcExtraction::computed(ComputedKind kind, unsigned code_page, std::string_view bytes) {
  sink_.computed(computed_kind(kind, code_page), script_.original(bytes));
  advance(bytes);
}

void RcExtraction::advance(std::string_view bytes) {
  if (!bytes.empty()) is_word_end_ = std::string_view(" \t\r\n,(){}|\"/").find(bytes.back()) == std::string_view::npos;
  const std::size_t last = bytes.rfind('\n');
  if (last == std::string_view::npos) {
    column_ += static_cast<std::int64_t>(script_.original_size(bytes));
    return;
  }
  line_ += std::ranges::count(bytes, '\n');
  column_ = 1 + static_cast<std::int64_t>(script_.original_size(bytes.substr(last + 1)));
}

}  // namespace kavo::rc
