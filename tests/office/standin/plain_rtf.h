// The little RTF that the stand-in writes, and the paragraphs of RTF that others made of it (RTF 1.9). It shares no
// code with the filter, so that neither hides a mistake of the other.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavo::test {

// A paragraph for each text, UTF-8; "picture 0102" becomes a picture with these bytes.
std::string rtf_of(const std::vector<std::string>& texts);
std::vector<std::string> texts_of_rtf(std::string_view rtf);

}  // namespace kavo::test
