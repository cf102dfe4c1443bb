// What must hold for any bytes at all: no operation loses or damages a document, untouched side files change nothing,
// objects return. Shared by the fuzzer and the test that replays its seeds.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "formats/text/euc_japanese.h"
#include "mif/clsMIFUtilities.h"
#include "mif/objects_twin.h"
#include "mif/statement_twin.h"
#include "platform/ports.h"
#include "support/fake_registry.h"
#include "support/memory_files.h"

namespace kavo::test {

// The first byte chooses split option, code page and block size; the bytes after it are a document and, each after a
// byte 0x1E, the index, cross-reference and variable side files and the object file that a tool gave back.
class MifProperty {
 public:
  explicit MifProperty(std::string_view input) {
    ports().files = &files_;
    ports().registry = &registry_;
    const auto choice = static_cast<unsigned>(input.empty() ? 0 : static_cast<unsigned char>(input[0]));
    split_option_ = static_cast<std::int16_t>(choice % 3);
    if (choice / 3 % 2 != 0) {
      code_page_ = make_code_page("932");
      ports().code_page = code_page_.get();
    }
    constexpr std::size_t blocks[] = {1, 2, 3, 7, 64, 4096};
    blocks_ = std::make_unique<BlockSizeScope>(blocks[choice / 6 % std::size(blocks)]);
    std::string_view rest = input.substr(std::min<std::size_t>(1, input.size()));
    for (std::string* part : {&document_, &sides_[0], &sides_[1], &sides_[2], &objects_}) {
      const std::size_t end = std::min(rest.find('\x1E'), rest.size());
      *part = rest.substr(0, end);
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }

  // "" when everything holds, else what does not.
  std::string broken() {
    for (const auto check : {&MifProperty::broken_identity, &MifProperty::broken_merge, &MifProperty::broken_removal,
                             &MifProperty::broken_insertion}) {
      for (const std::u16string& path : files_.all_files()) files_.remove_file(path);
      files_.put(kMif, document_);
      const std::string result = (this->*check)();
      if (!result.empty()) return result;
    }
    return {};
  }

 private:
  static constexpr std::u16string_view kMif = u"C:\\m.mif";
  static constexpr std::u16string_view kSides[] = {u"C:\\KAVO_ix.mif", u"C:\\KAVO_xr.mif", u"C:\\KAVO_va.mif"};
  static constexpr std::u16string_view kObjects = u"C:\\m.obj";

  static void start(clsMIFUtilities& utilities) {
    utilities.StartBatch();
    utilities.MIFFile(kMif);
  }

  static std::string with_short_tabs(std::string value) {
    for (std::size_t at = 0; (at = value.find("\\x09 ", at)) != std::string::npos;) value.replace(at, 5, "\\t");
    return value;
  }

  // Side files distinguish their entries only by the text of the tag, so "a : b" with "c" and "a" with "b : c" are one
  // entry for them; and a header statement may itself hold what a side file's reader looks for.
  bool is_ambiguous() const {
    for (const std::u16string_view side : kSides) {
      const std::string bytes = files_.get(side);
      constexpr std::string_view flow = "\r\n<TextFlow \r\n";
      const std::size_t header_end = bytes.find(flow);
      const std::string header = bytes.substr(0, header_end);
      if (header.find("<Para") != std::string::npos || header.find("<KAVOSeg") != header.rfind("<KAVOSeg")) return true;
      std::string_view rest = std::string_view(bytes).substr(header_end + flow.size());
      std::map<std::string_view, std::string_view> texts;
      const auto skip = [&](std::string_view expected) {
        if (!rest.starts_with(expected)) return false;
        rest.remove_prefix(expected.size());
        return true;
      };
      const auto value = [&] {
        const std::string_view found = rest.substr(0, rest.find('\''));
        rest.remove_prefix(found.size());
        return found;
      };
      while (skip(" <Para \r\n  <KAVOTag `")) {
        const std::string_view name = value();
        if (!skip("'>\r\n  <ParaLine \r\n   <String `")) return true;
        const std::string_view text = value();
        if (!skip("'>\r\n  >\r\n >\r\n")) return true;
        if (!texts.emplace(name, text).second && texts[name] != text) return true;
      }
      if (rest != ">\r\n") return true;
    }
    return false;
  }

  std::string broken_identity() {
    clsMIFUtilities utilities;
    utilities.SplitOptions(split_option_);
    start(utilities);
    utilities.Extract();
    if (!utilities.extracted() || utilities.EndBatch() != 0) return "extraction failed";
    if (files_.get(kMif) != document_) return "extraction changed the document";
    const bool ambiguous = is_ambiguous();
    start(utilities);
    if (utilities.Merge() != 0) return "merging untouched side files failed";
    if (!ambiguous && with_short_tabs(files_.get(kMif)) != with_short_tabs(document_))
      return "untouched side files changed the document";
    return left_over(4);
  }

  std::string broken_merge() {
    for (std::size_t i = 0; i < 3; ++i) files_.put(kSides[i], sides_[i]);
    clsMIFUtilities utilities;
    start(utilities);
    const bool failed = utilities.Merge() != 0;
    const auto does_not_fit = [](const Message& message) { return message.number == 3044; };
    if (failed != std::ranges::any_of(utilities.ErrorList(), does_not_fit)) return "merging failed";
    const mif::DocumentCoding coding = MifCoding::of(document_).document();
    std::unique_ptr<CodePage> code_page;
    if (coding.code_page == kEucJapanese)
      code_page = make_euc_japanese();
    else if (!coding.is_utf8)
      code_page = make_code_page(std::to_string(coding.code_page));
    StatementTwin twin(document_, {"<XRefFormats ", "<Marker ", "<VariableFormats ", "<Pgf "}, code_page.get());
    const std::vector<std::string> parts = twin.parts();
    const std::string merged = files_.get(kMif);
    std::size_t at = 0;
    for (std::size_t i = 0; i < parts.size(); i += 2) {
      const std::size_t found = merged.find(parts[i], at);
      if (found == std::string::npos || (i == 0 && found != 0)) return "merging lost text between statements";
      at = found + parts[i].size();
    }
    if (!merged.ends_with(parts.back())) return "merging lost the end of the document";
    return left_over(4);
  }

  std::string broken_removal() {
    clsMIFUtilities utilities;
    start(utilities);
    if (utilities.RemoveObjects() != 0) {
      if (files_.get(kMif) != document_) return "a refused removal changed the document";
      return left_over(1);
    }
    const bool removed = utilities.counts().objects_removed != 0;
    if (!removed && files_.get(kMif) != document_) return "removal of nothing changed the document";
    if (utilities.InsertObjects() != 0) return "insertion after removal failed";
    if (files_.get(kMif) != (removed ? with_crlf(document_) : document_)) return "objects did not return";
    return left_over(2);
  }

  std::string broken_insertion() {
    files_.put(kObjects, objects_);
    clsMIFUtilities utilities;
    start(utilities);
    if (utilities.InsertObjects() != 0) return "insertion failed";
    if (files_.get(kMif) != InsertionTwin(objects_).run(document_)) return "insertion is not what its twin does";
    return left_over(2);
  }

  std::string left_over(std::size_t expected) const {
    return files_.all_files().size() == expected ? "" : "there are files left over";
  }

  PortsScope scope_;
  MemoryFiles files_;
  FakeRegistry registry_;
  std::unique_ptr<CodePage> code_page_;
  std::unique_ptr<BlockSizeScope> blocks_;
  std::int16_t split_option_ = 0;
  std::string document_, objects_;
  std::string sides_[3];
};

inline std::string broken_mif_property(std::string_view input) { return MifProperty(input).broken(); }

}  // namespace kavo::test
