#include "suite/filters/script/markup_texts.h"

#include <algorithm>
#include <iterator>

#include "formats/html/elements.h"
#include "suite/filters/script/script_rules.h"

namespace kavo::script {
namespace {

using html::equal_name;

constexpr std::string_view kReadAttributes[] = {"alt",   "title",   "placeholder", "aria-label", "aria-description",
                                                "label", "summary", "standby",     "data-title", "data-confirm"};
constexpr std::string_view kButtonTypes[] = {"submit", "button", "reset"};

template <std::size_t kCount>
bool holds(const std::string_view (&names)[kCount], std::string_view name) {
  return std::any_of(std::begin(names), std::end(names), [&](std::string_view row) { return equal_name(row, name); });
}

bool is_space(char c) { return html::is_html_space(c); }
bool is_tag_letter(char c) { return is_name_byte(c) || c == '-' || c == ':'; }

// Reads one joined text from left to right.
class Reading {
 public:
  Reading(const JoinedText& joined, bool is_page) : text_(joined.text), is_page_(is_page) {}

  std::vector<ReadText> run() {
    // "'>Expense ": the tag began in another literal.
    if (is_page_ && begins_in_tag()) {
      has_markup_ = true;
      tag_rest(0, {}, true);
      begin_text(at_);
    }
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (c == '<' && tag()) continue;
      if (c == kOperandMark) add_operand(current_.codes, at_);
      ++at_;
    }
    end_text(text_.size());
    for (ReadText& result : texts_) result.has_markup = has_markup_;
    return std::move(texts_);
  }

 private:
  struct Attribute {
    std::string_view name;
    std::size_t begin = 0;  // of the value
    std::size_t end = 0;
    char quote = 0;
  };

  // Adjacent operands become one code when no text of a literal is between them.
  static void add_operand(std::vector<TextCode>& codes, std::size_t place) {
    if (!codes.empty() && codes.back().end == place && codes.back().element.empty() && codes.back().type.empty())
      ++codes.back().end;
    else
      codes.push_back({place, place + 1, 's', {}, {}});
  }
  char at(std::size_t place) const { return place < text_.size() ? text_[place] : '\0'; }

  void begin_text(std::size_t begin) {
    current_ = ReadText();
    current_.begin = begin;
  }

  void end_text(std::size_t end) {
    current_.end = end;
    current_.in_markup = has_markup_;
    if (current_.end > current_.begin && skipped_.empty() && current_.codes.size() <= kMostCodes)
      texts_.push_back(current_);
    begin_text(end);
  }

  // The text before the first ">" is the rest of a tag if it has no "<" and looks like attributes.
  bool begins_in_tag() const {
    const std::size_t close = text_.find('>');
    const std::size_t first = text_.find('<');
    if (close != std::string_view::npos && first > close) {
      if (close == 0) return text_.size() == 1 || !is_space(at(1));
      const std::string_view before = text_.substr(0, close);
      return before.find_first_of("=\"'") != std::string_view::npos ||
             before.find_first_not_of(" /") == std::string_view::npos;
    }
    // '" alt="' is a quote, then the name of the next attribute.
    std::size_t place = 0;
    if (at(place) == '"' || at(place) == '\'') ++place;
    if (!is_space(at(place))) return false;
    while (is_space(at(place))) ++place;
    const std::size_t name = place;
    while (is_tag_letter(at(place))) ++place;
    return place > name && at(place) == '=' && (place < first);
  }

  // Called at "<". False when that does not begin a tag.
  bool tag() {
    const std::size_t begin = at_;
    if (text_.compare(begin, 4, "<!--") == 0) {
      const std::size_t end = text_.find("-->", begin + 4);
      at_ = end == std::string_view::npos ? text_.size() : end + 3;
      current_.codes.push_back({begin, at_, 's', "x-html-comment", {}});
      return true;
    }
    const bool is_end = at(begin + 1) == '/';
    const std::size_t name = begin + 1 + (is_end ? 1 : 0);
    if (!is_letter(at(name)) && at(name) != kOperandMark) return false;
    if (at(name) == kOperandMark && !is_page_) return false;
    std::size_t name_end = name + 1;
    while (is_tag_letter(at(name_end))) ++name_end;
    // "a <b" without a ">" is not a tag, except in a page, where the next literal may close it.
    if (!is_page_ && text_.find('>', name_end) == std::string_view::npos) return false;
    has_markup_ = true;
    const std::string_view word = text_.substr(name, name_end - name);
    const html::Element& element = html::find_element(word);
    const bool breaks = element.kind != html::ElementKind::kInline && element.kind != html::ElementKind::kForeign;
    const bool is_line_break = element.type == "lb";
    if (breaks) end_text(begin);
    const std::size_t texts = texts_.size();
    tag_rest(name_end, word, breaks);
    if (element.kind == html::ElementKind::kScript) {
      if (!is_end && skipped_.empty())
        skipped_ = word;
      else if (is_end && equal_name(skipped_, word))
        skipped_ = {};
    }
    if (breaks) {
      begin_text(at_);
      return true;
    }
    const char kind = is_line_break || element.is_void ? 's' : is_end ? 'c' : 'o';
    // A tag that contains a text ends the text around it, because a code of one text cannot contain another text.
    if (texts_.size() != texts) {
      ReadText before = current_;
      before.end = begin;
      before.in_markup = true;
      if (before.end > before.begin && skipped_.empty() && before.codes.size() <= kMostCodes)
        texts_.insert(texts_.begin() + static_cast<std::ptrdiff_t>(texts), before);
      begin_text(at_);
      return true;
    }
    current_.codes.push_back({begin, at_, kind, element.type, word});
    return true;
  }

  // Reads the attributes of a tag from `place` on. Afterwards at_ is after the tag, or at the end.
  void tag_rest(std::size_t place, std::string_view element, bool) {
    std::vector<Attribute> attributes;
    bool first = element.empty();
    while (place < text_.size() && text_[place] != '>') {
      if (first && (text_[place] == '"' || text_[place] == '\'')) {
        first = false;  // the quote closes a value that began in another literal
        ++place;
        continue;
      }
      if (!is_tag_letter(text_[place])) {
        ++place;
        continue;
      }
      first = false;
      Attribute attribute;
      const std::size_t name = place;
      while (is_tag_letter(at(place))) ++place;
      attribute.name = text_.substr(name, place - name);
      while (is_space(at(place))) ++place;
      if (at(place) != '=') continue;
      ++place;
      while (is_space(at(place))) ++place;
      const char quote = at(place);
      const bool is_quoted = quote == '"' || quote == '\'';
      if (is_quoted) ++place;
      attribute.begin = place;
      while (place < text_.size() &&
             (is_quoted ? text_[place] != quote : !is_space(text_[place]) && text_[place] != '>'))
        ++place;
      attribute.end = place;
      attribute.quote = is_quoted ? quote : '\0';
      if (is_quoted && place < text_.size()) ++place;
      attributes.push_back(attribute);
    }
    at_ = std::min(place + 1, text_.size());
    read_attributes(attributes, element);
  }

  void read_attributes(const std::vector<Attribute>& attributes, std::string_view element) {
    bool is_button = equal_name(element, "button");
    for (const Attribute& row : attributes)
      if (equal_name(row.name, "type") && holds(kButtonTypes, text_.substr(row.begin, row.end - row.begin)))
        is_button = true;
    for (const Attribute& row : attributes) {
      const bool is_read = holds(kReadAttributes, row.name) || (is_button && equal_name(row.name, "value"));
      if (!is_read || row.end == row.begin || !skipped_.empty()) continue;
      ReadText read;
      read.begin = row.begin;
      read.end = row.end;
      read.in_markup = true;
      read.attribute = row.name;
      read.quote = row.quote;
      for (std::size_t place = row.begin; place < row.end; ++place)
        if (text_[place] == kOperandMark) add_operand(read.codes, place);
      texts_.push_back(read);
    }
  }

  std::string_view text_;
  bool is_page_;
  bool has_markup_ = false;
  std::size_t at_ = 0;
  std::string_view skipped_;  // the element whose content is not text
  ReadText current_;
  std::vector<ReadText> texts_;
};

// Removes blanks, tags and operands at both ends, which a translator need not see.
void trim(ReadText& read, std::string_view text) {
  for (bool changed = true; changed;) {
    changed = false;
    while (read.begin < read.end && is_space(text[read.begin])) ++read.begin, changed = true;
    while (read.begin < read.end && is_space(text[read.end - 1])) --read.end, changed = true;
    if (!read.codes.empty() && read.codes.front().begin == read.begin) {
      const TextCode first = read.codes.front();
      const bool closes = std::any_of(read.codes.begin() + 1, read.codes.end(), [&](const TextCode& code) {
        return code.kind == 'c' && equal_name(code.element, first.element);
      });
      const TextCode& last = read.codes.back();
      const bool is_around =
          first.kind == 'o' && last.kind == 'c' && last.end == read.end && equal_name(first.element, last.element) &&
          std::count_if(read.codes.begin(), read.codes.end(),
                        [&](const TextCode& code) { return equal_name(code.element, first.element); }) == 2;
      if (is_around) {
        read.end = last.begin;
        read.codes.pop_back();
      }
      if (is_around || first.kind != 'o' || !closes) {
        read.begin = first.end;
        read.codes.erase(read.codes.begin());
        changed = true;
        continue;
      }
    }
    if (!read.codes.empty() && read.codes.back().end == read.end && read.end > read.begin) {
      const TextCode last = read.codes.back();
      const bool opens = std::any_of(read.codes.begin(), read.codes.end() - 1, [&](const TextCode& code) {
        return code.kind == 'o' && equal_name(code.element, last.element);
      });
      if (last.kind == 'c' && opens) continue;
      read.end = last.begin;
      read.codes.pop_back();
      changed = true;
    }
  }
}

// The name of the attribute whose value contains `place`, "" when there is none.
std::string_view attribute_at(std::string_view text, std::size_t tag, std::size_t place) {
  const std::size_t equals = text.substr(0, place).rfind('=');
  if (equals == std::string_view::npos || equals < tag) return {};
  std::size_t end = equals;
  while (end > tag && is_space(text[end - 1])) --end;
  std::size_t begin = end;
  while (begin > tag && is_tag_letter(text[begin - 1])) --begin;
  return text.substr(begin, end - begin);
}

}  // namespace

std::vector<std::size_t> operands_in_tags(const JoinedText& joined) {
  std::vector<std::size_t> places;
  const std::string_view text = joined.text;
  constexpr std::size_t kNoTag = std::string_view::npos;
  std::size_t tag = kNoTag;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '<' && at + 1 < text.size() && is_letter(text[at + 1])) {
      tag = at;
    } else if (text[at] == '>') {
      tag = kNoTag;
    } else if (text[at] == kOperandMark && tag != kNoTag) {
      const std::string_view name = attribute_at(text, tag, at);
      if (!holds(kReadAttributes, name) && !equal_name(name, "value")) places.push_back(at);
    }
  }
  return places;
}

std::vector<ReadText> read_texts(const JoinedText& joined, bool is_page) {
  std::vector<ReadText> texts = Reading(joined, is_page).run();
  for (ReadText& read : texts) trim(read, joined.text);
  std::erase_if(texts, [](const ReadText& read) { return read.begin >= read.end; });
  return texts;
}

}  // namespace kavo::script
