// What stands around a text of a page and helps to translate it: the elements it stands in, the "id" of the one that
// holds nothing else, the author's comment before it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/html/elements.h"
#include "suite/document/segment.h"

namespace kavo::html {

class TextSurroundings {
 public:
  // In the order of the page: tags of elements that end a text, with the value of "id" in UTF-8 ("" for none) ...
  void start(const Element& element, std::string_view id);
  void end(const Element& element);
  // ... comments, whole, in UTF-8 ...
  void comment(std::string_view bytes);
  // ... and texts. A text that the end of its element ends may have its "id". Call it before start() or end() of the
  // tag that ends the text.
  std::string_view name_of_text(const Element* ends_at) const;
  // Tells a segment its path and the comment, which is told once.
  void tell(SegmentBuilder& builder);
  // A segment of the paragraph was written.
  void wrote_text() { holds_one_text_ = false; }

 private:
  std::string path() const;  // "table/tr/td"

  std::vector<std::string_view> open_;  // names of elements, of the table
  std::string id_;                      // of the element that was opened last and holds no other one
  bool holds_one_text_ = false;
  std::string comment_;
  int tags_since_comment_ = 0;
};

// Without characters that XML lacks: "?" stands for each.
std::string for_xml(std::string text);

}  // namespace kavo::html
