// The surroundings of a text that help to translate it: the elements around it, the "id" of an element that holds only
// this text, the author's comment before it.
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
  // ... and texts. A text that ends with its element may take the element's "id" as its name. Call it before start() or
  // end() of the tag that ends the text.
  std::string_view name_of_text(const Element* ends_at) const;
  // Adds the path to a segment, and a comment to the first segment after it.
  void tell(SegmentBuilder& builder);
  // Call it when a segment of the paragraph has been written.
  void wrote_text() { holds_one_text_ = false; }

 private:
  std::string path() const;  // "table/tr/td"

  std::vector<std::string_view> open_;  // names of elements, of the table
  std::string id_;                      // the "id" of the element that was opened last and contains no other one
  bool holds_one_text_ = false;
  std::string comment_;
  int tags_since_comment_ = 0;
};

// Replaces each character that XML cannot hold with "?".
std::string for_xml(std::string text);

}  // namespace kavo::html
