// A document of the stand-in: the texts of its paragraphs or cells. A file holds one on each line, in UTF-8. A text
// "picture 0102" is a picture with these bytes. It writes RTF and the XML of presentations and workbooks, and takes
// both back (docs/office-xml.md).
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kavo::test {

class StandInDocument {
 public:
  StandInDocument() = default;
  // Reads a file, RTF when it begins as that; one that cannot be read is empty.
  explicit StandInDocument(std::filesystem::path path);

  // "" for no document.
  const std::filesystem::path& path() const { return path_; }
  void save(const std::filesystem::path& path) const;
  void save_as_rtf(const std::filesystem::path& path) const;

  // What the macros do: "deck.ppt" gives "deck_ppt.xml" beside it. The import takes each text whose place the document
  // has; it changes the open document, not its file.
  void export_xml() const;
  void import_xml();

 private:
  std::filesystem::path xml_path() const;
  std::string place_of(std::size_t index) const;

  std::filesystem::path path_;
  std::vector<std::string> texts_;
};

}  // namespace kavo::test
