// Finds the parts of an XLIFF document in its bytes: its root, its file elements, their skeletons.
#pragma once

#include <string_view>
#include <vector>

#include "formats/xml/xml_reader.h"

namespace kavo {

struct XliffOutline {
  struct FilePart {
    XmlPlace start_tag;
    XmlPlace whole;
    XmlPlace
        skeleton_tag;   // start tag of the element that names or holds the skeleton; its length is 0 when there is none
    XmlPlace skeleton;  // the whole element
    bool has_skeleton_inside = false;
  };
  XmlCoding coding = XmlCoding::kUtf8;
  XmlPlace root_tag;
  std::vector<FilePart> files;
};

// Throws `failure` 5 as XmlReader::read() does, and for a document without a file element.
XliffOutline read_outline(std::u16string_view path);

}  // namespace kavo
