#include "suite/filters/html/text_surroundings.h"

#include <algorithm>
#include <iterator>

#include "formats/text/text_coding.h"
#include "suite/filters/text_patterns.h"

namespace kavo::html {
namespace {

// Deeper elements are not noted, and the search for an end tag does not go further, since a page may open thousands of
// elements and close others.
constexpr std::size_t kMostOpen = 256;
constexpr std::size_t kDeepestSearch = 64;
// How many elements a path shows, the nearest ones.
constexpr std::size_t kLongestPath = 4;
// A longer comment is a licence or commented-out markup.
constexpr std::size_t kLongestComment = 500;  // bytes

// A start tag that ends elements whose end tags may be missing, up to the element that they belong to.
struct ImpliedEnd {
  std::string_view name;
  std::string_view ends;  // names with a blank around each
  std::string_view within;
};
constexpr ImpliedEnd kImpliedEnds[] = {
    {"li", " li ", " ul ol menu dir "},
    {"dt", " dt dd ", " dl "},
    {"dd", " dt dd ", " dl "},
    {"td", " td th ", " tr table "},
    {"th", " td th ", " tr table "},
    {"tr", " tr ", " table "},
    {"tbody", " thead tbody tfoot ", " table "},
    {"thead", " thead tbody tfoot ", " table "},
    {"tfoot", " thead tbody tfoot ", " table "},
    {"option", " option ", " select optgroup "},
    {"optgroup", " optgroup option ", " select "},
};

bool is_among(std::string_view names, std::string_view name) {
  const std::size_t at = names.find(name);
  return at != std::string_view::npos && names[at - 1] == ' ' && names[at + name.size()] == ' ';
}

std::string_view without_space(std::string_view text) {
  while (!text.empty() && is_html_space(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_html_space(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

std::string for_xml(std::string text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = utf8_character_length(std::string_view(text).substr(at));
    if (length != 0 && is_xml_character(utf8_code_point(std::string_view(text).substr(at, length)))) {
      at += length;
      continue;
    }
    text[at++] = '?';
  }
  return text;
}

void TextSurroundings::start(const Element& element, std::string_view id) {
  if (!comment_.empty() && ++tags_since_comment_ > 1) comment_.clear();
  holds_one_text_ = false;
  if (element.is_void || element.name.empty()) return;
  id_ = for_xml(std::string(id.find('<') == std::string_view::npos ? without_space(id) : std::string_view()));
  holds_one_text_ = true;
  if (!open_.empty() && open_.back() == "p") open_.pop_back();
  for (const ImpliedEnd& row : kImpliedEnds) {
    if (row.name != element.name) continue;
    for (std::size_t back = 1; back <= std::min(open_.size(), kDeepestSearch); ++back) {
      const std::string_view name = open_[open_.size() - back];
      if (is_among(row.within, name)) break;
      if (!is_among(row.ends, name)) continue;
      open_.resize(open_.size() - back);
      break;
    }
  }
  if (open_.size() < kMostOpen) open_.push_back(element.name);
}

void TextSurroundings::end(const Element& element) {
  comment_.clear();
  holds_one_text_ = false;
  for (std::size_t back = 1; back <= std::min(open_.size(), kDeepestSearch); ++back)
    if (open_[open_.size() - back] == element.name) {
      open_.resize(open_.size() - back);
      return;
    }
}

// Keeps only prose: no commented-out markup, no condition, no command to a server or an editor.
void TextSurroundings::comment(std::string_view bytes) {
  comment_.clear();
  if (!bytes.starts_with("<!--") || !bytes.ends_with("-->") || bytes.size() < 7) return;
  const std::string_view text = without_space(bytes.substr(4, bytes.size() - 7));
  if (text.size() > kLongestComment || !has_letter(text)) return;
  if (text.find_first_of("<>{}") != std::string_view::npos) return;
  if (std::string_view("[#$/").find(text.front()) != std::string_view::npos) return;
  comment_ = for_xml(std::string(text));
  tags_since_comment_ = 0;
}

std::string_view TextSurroundings::name_of_text(const Element* ends_at) const {
  const bool is_its_end = ends_at && holds_one_text_ && !open_.empty() && open_.back() == ends_at->name;
  return is_its_end ? std::string_view(id_) : std::string_view();
}

void TextSurroundings::tell(SegmentBuilder& builder) {
  builder.element(path());
  builder.comment(comment_);
  comment_.clear();
}

std::string TextSurroundings::path() const {
  std::string path;
  std::size_t count = 0;
  for (auto name = open_.rbegin(); name != open_.rend() && count < kLongestPath; ++name) {
    if (*name == "html" || *name == "body") continue;
    path.insert(0, std::string(*name) + (path.empty() ? "" : "/"));
    ++count;
  }
  return path;
}

}  // namespace kavo::html
