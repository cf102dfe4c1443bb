// MIF files in memory, and the batch calls in the order in which a host makes them.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/block_reader.h"
#include "mif/clsMIFUtilities.h"
#include "support/ports_fixture.h"

namespace kavo::test {

inline constexpr std::u16string_view kFolder = u"C:\\book\\";

// Name and text of one row of a side file.
using Entry = std::pair<std::string, std::string>;
using Entries = std::vector<Entry>;

inline std::string marker(std::string_view text, std::string_view type = "Index") {
  return "<Marker \n <MType 2>\n <MTypeName `" + std::string(type) + "'>\n <MText `" + std::string(text) +
         "'>\n> # end of Marker\n";
}

inline std::string number_format(std::string_view tag, std::string_view format) {
  return "<Pgf \n <PgfTag `" + std::string(tag) + "'>\n <PgfNumFormat `" + std::string(format) + "'>\n> # end of Pgf\n";
}

// The rows of a side file, read in the simplest way: tag and text stand on lines of their own.
inline Entries rows_of(std::string_view side_file) {
  constexpr std::string_view tag = "<KAVOTag `", text = "<String `", close = "'>\r\n";
  Entries rows;
  for (std::size_t at = 0; (at = side_file.find(tag, at)) != std::string_view::npos;) {
    at += tag.size();
    const std::size_t tag_end = side_file.find(close, at);
    const std::size_t begin = side_file.find(text, tag_end) + text.size();
    const std::size_t end = side_file.find(close, begin);
    rows.emplace_back(side_file.substr(at, tag_end - at), side_file.substr(begin, end - begin));
    at = end;
  }
  return rows;
}

class MifTest : public PortsFixture {
 protected:
  static std::u16string in_folder(std::u16string_view name) { return std::u16string(kFolder).append(name); }
  void put(std::u16string_view name, std::string_view bytes) { files.put(in_folder(name), bytes); }
  std::string get(std::u16string_view name) const { return files.get(in_folder(name)); }
  bool has(std::u16string_view name) const { return files.has(in_folder(name)); }

  // Extracts the files as one batch; the sum of what Extract returned.
  int extract(std::initializer_list<std::u16string_view> names) {
    utilities.StartBatch();
    int added = 0;
    for (const std::u16string_view name : names) {
      utilities.MIFFile(in_folder(name));
      added += utilities.Extract();
    }
    EXPECT_EQ(utilities.EndBatch(), 0);
    return added;
  }
  int extract(std::string_view document) {
    put(u"m.mif", document);
    return extract({u"m.mif"});
  }

  Entries index_rows() const { return rows_of(get(u"KAVO_ix.mif")); }
  Entries xref_rows() const { return rows_of(get(u"KAVO_xr.mif")); }
  Entries variable_rows() const { return rows_of(get(u"KAVO_va.mif")); }
  // The pieces of the index side file after extracting this document.
  std::vector<std::string> index_pieces(std::string_view document) {
    extract(document);
    std::vector<std::string> pieces;
    for (const Entry& row : index_rows()) pieces.push_back(row.first);
    return pieces;
  }

  int merge(std::initializer_list<std::u16string_view> names) {
    utilities.StartBatch();
    int failures = 0;
    for (const std::u16string_view name : names) {
      utilities.MIFFile(in_folder(name));
      failures += utilities.Merge();
    }
    return failures;
  }
  // What Merge makes of the document with the side files that lie in the folder.
  std::string merged(std::string_view document) {
    put(u"m.mif", document);
    EXPECT_EQ(merge({u"m.mif"}), 0) << message_numbers().size() << " messages";
    return get(u"m.mif");
  }

  std::vector<std::int32_t> message_numbers() const {
    std::vector<std::int32_t> numbers;
    for (const Message& message : utilities.ErrorList()) numbers.push_back(message.number);
    return numbers;
  }

  clsMIFUtilities utilities;
};

}  // namespace kavo::test
