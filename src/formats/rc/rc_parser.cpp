#include "formats/rc/rc_parser.h"

#include <algorithm>
#include <span>

namespace kavo::rc {
namespace {

// A longer statement is cut. No header and no entry is nearly so long.
constexpr std::size_t kLongestStatement = 256 * 1024;  // bytes
constexpr std::size_t kMostItems = 8192;
// Deeper conditions are only counted.
constexpr std::size_t kDeepestCondition = 200;

char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

std::string capitals(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), capital);
  return result;
}

bool is_one_of(std::string_view word, std::span<const std::string_view> keywords) {
  return std::ranges::any_of(keywords, [&](std::string_view k) { return is_keyword(word, k); });
}

struct TypeName {
  std::string_view name;
  RcType type;
  bool may_be_file;
};
constexpr TypeName kTypes[] = {
    {"STRINGTABLE", RcType::kStrings, false}, {"DIALOG", RcType::kDialog, false},
    {"DIALOGEX", RcType::kDialog, false},     {"MENU", RcType::kMenu, false},
    {"MENUEX", RcType::kMenu, false},         {"VERSIONINFO", RcType::kVersion, false},
    {"ACCELERATORS", RcType::kOther, false},  {"TOOLBAR", RcType::kOther, false},
    {"DLGINIT", RcType::kOther, false},       {"DESIGNINFO", RcType::kOther, false},
    {"TEXTINCLUDE", RcType::kOther, false},
};
const TypeName* find_type(std::string_view word) {
  const auto found = std::ranges::find_if(kTypes, [&](const TypeName& type) { return is_keyword(word, type.name); });
  return found == std::end(kTypes) ? nullptr : found;
}

// Resources that may begin although the header before them has no block yet, since a condition may contain several
// headers.
constexpr std::string_view kRestarts[] = {"STRINGTABLE", "DIALOG",  "DIALOGEX", "MENUEX",
                                          "VERSIONINFO", "TOOLBAR", "DLGINIT",  "ACCELERATORS"};
constexpr std::string_view kMemoryFlags[] = {"PRELOAD", "LOADONCALL", "FIXED",  "MOVEABLE", "DISCARDABLE",
                                             "PURE",    "IMPURE",     "SHARED", "NONSHARED"};
constexpr std::string_view kControls[] = {
    "LTEXT",      "RTEXT",    "CTEXT",       "PUSHBUTTON", "DEFPUSHBUTTON", "CHECKBOX",        "AUTOCHECKBOX", "STATE3",
    "AUTO3STATE", "PUSHBOX",  "RADIOBUTTON", "USERBUTTON", "GROUPBOX",      "AUTORADIOBUTTON", "CONTROL",      "ICON",
    "EDITTEXT",   "COMBOBOX", "LISTBOX",     "SCROLLBAR",  "BEDIT",         "HEDIT",           "IEDIT",
};
constexpr std::string_view kItems[] = {"MENUITEM", "POPUP"};
constexpr std::string_view kValues[] = {"VALUE", "BLOCK"};

bool is_begin(std::string_view word) { return word == "{" || is_keyword(word, "BEGIN"); }
bool is_end(std::string_view word) { return word == "}" || is_keyword(word, "END"); }

bool is_significant(RcTokenKind kind) {
  return kind == RcTokenKind::kWord || kind == RcTokenKind::kLiteral || kind == RcTokenKind::kMark;
}

// "if" of "# if X"; the rest after it.
std::string_view directive_name(std::string_view line, std::string_view& rest) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
  line.remove_prefix(1);
  while (!line.empty() && is_blank(line.front())) line.remove_prefix(1);
  std::size_t end = 0;
  while (end < line.size() && line[end] >= 'a' && line[end] <= 'z') ++end;
  rest = line.substr(end);
  return line.substr(0, end);
}

// The number in " code_page(1252)", 0 for the default; nothing for another pragma.
std::optional<unsigned> code_page_in(std::string_view pragma) {
  std::string_view rest = pragma;
  const auto skip_blanks = [&] {
    while (!rest.empty() && (rest.front() == ' ' || rest.front() == '\t')) rest.remove_prefix(1);
  };
  skip_blanks();
  constexpr std::string_view kName = "code_page";
  if (!rest.starts_with(kName)) return std::nullopt;
  rest.remove_prefix(kName.size());
  skip_blanks();
  if (!rest.starts_with('(')) return std::nullopt;
  rest.remove_prefix(1);
  skip_blanks();
  const std::size_t end = rest.find_first_of(") \t");
  return number_of(rest.substr(0, end)).value_or(0);
}

}  // namespace

bool is_keyword(std::string_view word, std::string_view keyword) {
  return std::ranges::equal(word, keyword, {}, capital);
}

std::size_t RcStatement::significant(std::size_t from) const {
  while (from < items.size() && !is_significant(items[from].kind)) ++from;
  return from;
}

bool RcStatement::is_word(std::size_t item, std::string_view keyword) const {
  return item < items.size() && items[item].kind == RcTokenKind::kWord && is_keyword(text(items[item]), keyword);
}

void RcParser::take(const RcToken& token) {
  if (token.kind == RcTokenKind::kDirective) return directive(token);
  if (!is_significant(token.kind)) {
    append(token);
    if (significant_count_ == 0) flush();
    return;
  }
  if (!context_.resource)
    outside(token);
  else if (context_.is_header)
    header(token);
  else
    body(token);
}

void RcParser::directive(const RcToken& token) {
  std::string_view rest;
  const std::string_view name = directive_name(token.bytes, rest);
  const bool is_branch = name == "else" || name == "elif" || name == "endif";
  if (is_branch && unsaved_conditions_ != 0) {
    if (name == "endif") --unsaved_conditions_;
  } else if (is_branch && !conditions_.empty()) {
    if (name == "endif") {
      conditions_.pop_back();
    } else if (conditions_.back() != context_) {
      flush();
      context_ = conditions_.back();
    }
  } else if (name == "if" || name == "ifdef" || name == "ifndef") {
    if (conditions_.size() < kDeepestCondition)
      conditions_.push_back(context_);
    else
      ++unsaved_conditions_;
  }
  const std::optional<unsigned> code_page = name == "pragma" ? code_page_in(rest) : std::nullopt;
  if (code_page) {
    flush();
    context_.code_page = *code_page;
  }
  append(token);
  if (code_page)
    emit(RcStatement::kCodePage);
  else if (significant_count_ == 0)
    flush();
}

void RcParser::outside(const RcToken& token) {
  const bool is_word = token.kind == RcTokenKind::kWord;
  if (significant_count_ == 0) {
    flush();
    append(token);
    if (is_word && is_keyword(token.bytes, "STRINGTABLE")) begin_resource(token);
    if (!is_word || is_begin(token.bytes) || is_end(token.bytes)) flush();
    return;
  }
  if (!statement_.is_word(statement_.significant(0), "LANGUAGE")) {
    append(token);
    if (token.kind == RcTokenKind::kMark || is_begin(token.bytes))
      flush();
    else
      begin_resource(token);
    return;
  }
  append(token);
  if (significant_count_ < 4) return;
  std::size_t item = statement_.significant(0);
  std::string_view words[4];
  for (std::string_view& word : words) {
    word = statement_.text(statement_.items[item]);
    item = statement_.significant(item + 1);
  }
  context_.language = {true, words[2] == "," ? language_of(words[1], words[3]) : std::nullopt};
  emit(RcStatement::kLanguage);
}

void RcParser::begin_resource(const RcToken& type) {
  auto resource = std::make_shared<RcResource>();
  resource->type_name = capitals(type.bytes);
  if (const TypeName* known = find_type(type.bytes)) resource->type = known->type;
  if (significant_count_ > 1) resource->name = statement_.text(statement_.items[statement_.significant(0)]);
  resource->number = ++resource_count_;
  resource->language = context_.language;
  context_.resource = std::move(resource);
  context_.is_header = true;
  context_.depth = 0;
  awaited_values_ = 0;
}

void RcParser::header(const RcToken& token) {
  const bool is_word = token.kind == RcTokenKind::kWord;
  if (token.bytes == "{" || (is_word && is_begin(token.bytes))) {
    close_header();
    context_.is_header = false;
    context_.depth = 1;
    append(token);
    emit(RcStatement::kBegin);
    return;
  }
  if (is_word && is_one_of(token.bytes, kRestarts) && begins_other_resource(token)) {
    if (!is_keyword(token.bytes, "STRINGTABLE"))
      cut_at(last_significant_);
    else
      close_header();
    append(token);
    begin_resource(token);
    return;
  }
  const bool is_end = is_file_name(token);
  append(token);
  if (!is_end) return;
  close_header();
  context_.resource.reset();
  context_.is_header = false;
}

bool RcParser::begins_other_resource(const RcToken& token) const {
  if (is_keyword(token.bytes, "STRINGTABLE")) return true;
  return significant_count_ > 2 && statement_.items[last_significant_].kind == RcTokenKind::kWord;
}

// True for the token that ends a resource which names a file.
bool RcParser::is_file_name(const RcToken& token) {
  if (find_type(context_.resource->type_name) || token.kind == RcTokenKind::kMark) return false;
  if (token.kind == RcTokenKind::kLiteral) return true;
  if (awaited_values_ != 0) {
    --awaited_values_;
    return false;
  }
  constexpr std::string_view kOneValue[] = {"CHARACTERISTICS", "VERSION"};
  if (is_one_of(token.bytes, kOneValue)) awaited_values_ = 1;
  if (is_keyword(token.bytes, "LANGUAGE")) awaited_values_ = 2;
  return awaited_values_ == 0 && !is_one_of(token.bytes, kMemoryFlags);
}

// A header may set its own language, before or after its texts.
void RcParser::close_header() {
  for (std::size_t item = statement_.significant(0); item < statement_.items.size();
       item = statement_.significant(item + 1)) {
    if (!statement_.is_word(item, "LANGUAGE")) continue;
    const std::size_t primary = statement_.significant(item + 1);
    const std::size_t comma = statement_.significant(primary + 1);
    const std::size_t sub = statement_.significant(comma + 1);
    if (sub >= statement_.items.size()) break;
    context_.resource->language = {
        true, language_of(statement_.text(statement_.items[primary]), statement_.text(statement_.items[sub]))};
  }
  flush();
}

void RcParser::body(const RcToken& token) {
  const bool is_word = token.kind == RcTokenKind::kWord || token.kind == RcTokenKind::kMark;
  if (is_word && is_begin(token.bytes)) {
    flush();
    append(token);
    emit(RcStatement::kBegin);
    ++context_.depth;
    return;
  }
  if (is_word && is_end(token.bytes)) {
    flush();
    append(token);
    emit(RcStatement::kEnd);
    if (--context_.depth == 0) context_.resource.reset();
    return;
  }
  if (begins_statement(token)) flush();
  append(token);
  has_literal_ = has_literal_ || token.kind == RcTokenKind::kLiteral;
}

bool RcParser::begins_statement(const RcToken& token) const {
  if (context_.resource->type == RcType::kOther || kind_in_body() == RcStatement::kData) return true;
  if (token.kind != RcTokenKind::kWord) return false;
  switch (context_.resource->type) {
    case RcType::kStrings:
      return begins_string(token);
    case RcType::kDialog:
      return is_one_of(token.bytes, kControls);
    case RcType::kMenu:
      return is_one_of(token.bytes, kItems);
    default:
      return is_one_of(token.bytes, kValues);
  }
}

// A name after a text on the same line is a macro, which stands for more of the text, unless it begins as the text's own
// name does: IDS_OPEN "Open" IDS_CLOSE "Close".
bool RcParser::begins_string(const RcToken& token) const {
  return has_literal_ && open_brackets_ == 0 &&
         (is_line_start_ || !is_macro_name(token.bytes) || is_like_first_name(token.bytes));
}

// True when the name and the statement's first word are equal up to their first "_".
bool RcParser::is_like_first_name(std::string_view name) const {
  const auto first = std::ranges::find(statement_.items, RcTokenKind::kWord, &RcStatement::Item::kind);
  if (first == statement_.items.end()) return false;
  const std::string_view own = statement_.text(*first);
  const std::size_t underscore = own.find('_');
  return underscore != std::string_view::npos && name.starts_with(own.substr(0, underscore + 1));
}

RcStatement::Kind RcParser::kind_in_body() const {
  switch (context_.resource->type) {
    case RcType::kStrings:
      return RcStatement::kString;
    case RcType::kDialog:
      return context_.depth == 1 ? RcStatement::kControl : RcStatement::kData;
    case RcType::kMenu:
      return RcStatement::kMenuItem;
    case RcType::kVersion:
      return RcStatement::kValue;
    default:
      return RcStatement::kData;
  }
}

void RcParser::append(const RcToken& token) {
  if (statement_.bytes.size() + token.bytes.size() > kLongestStatement || statement_.items.size() >= kMostItems)
    flush();
  if (is_significant(token.kind)) {
    ++significant_count_;
    last_significant_ = statement_.items.size();
    is_line_start_ = false;
    if (token.bytes == "(") ++open_brackets_;
    if (token.bytes == ")" && open_brackets_ != 0) --open_brackets_;
  } else {
    is_line_start_ = is_line_start_ || token.kind == RcTokenKind::kDirective || ends_line(token.kind, token.bytes);
  }
  const std::size_t begin = statement_.bytes.size();
  statement_.bytes += token.bytes;
  statement_.items.push_back({token.kind, begin, statement_.bytes.size()});
}

void RcParser::flush() {
  if (statement_.bytes.empty()) return;
  if (!context_.resource || significant_count_ == 0)
    emit(RcStatement::kPlain);
  else
    emit(context_.is_header ? RcStatement::kHeader : kind_in_body());
}

void RcParser::emit(RcStatement::Kind kind) {
  statement_.kind = kind;
  statement_.resource = context_.resource;
  statement_.language = context_.resource ? context_.resource->language : context_.language;
  statement_.code_page = context_.code_page;
  statement_.depth = context_.depth;
  take_(statement_);
  statement_.bytes.clear();
  statement_.items.clear();
  statement_.resource.reset();
  significant_count_ = 0;
  last_significant_ = 0;
  has_literal_ = false;
  open_brackets_ = 0;
}

// Hands out the statement up to an item. The next statement begins with that item.
void RcParser::cut_at(std::size_t item) {
  const std::size_t begin = statement_.items[item].begin;
  const std::string rest = statement_.bytes.substr(begin);
  std::vector<RcStatement::Item> items(statement_.items.begin() + static_cast<std::ptrdiff_t>(item),
                                       statement_.items.end());
  statement_.bytes.resize(begin);
  statement_.items.resize(item);
  close_header();
  for (const RcStatement::Item& one : items)
    append({one.kind, std::string_view(rest).substr(one.begin - begin, one.end - one.begin)});
}

}  // namespace kavo::rc
