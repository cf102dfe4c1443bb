// Real documents there and back.
#include <algorithm>
#include <iostream>
#include <regex>

#include "office/clsDOC2RTF.h"
#include "office/clsPPTUtil.h"
#include "office/clsXLSUtil.h"
#include "office/libreoffice/office_fixture.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "support/corpus.h"

namespace kavo::test {
namespace {

// Shapes that grow with their texts are as wide as these.
std::string without_sizes(const std::string& flat_xml) {
  return std::regex_replace(flat_xml, std::regex(" svg:(width|height|x|y)=\"[^\"]*\""), "");
}

class CorpusRoundTrip : public OfficeFixture {
 protected:
  // Copies of the corpus' documents that LibreOffice opens; the others must be refused quickly.
  std::vector<std::u16string> openable(std::u16string_view kind_name, OfficeKind kind) {
    std::vector<std::u16string> names;
    for (const std::u16string& path : corpus_files(kind_name, {kind_name})) {
      const std::u16string name = path.substr(path.rfind(u'\\') + 1);
      folder.write(name, read_file(path));
      try {
        OfficeDocument(office_listener(), kind, folder.path(name));
        names.push_back(name);
      } catch (const failure& reason) {
        std::cout << to_utf8(name) << ": " << reason.what() << '\n';
      }
    }
    EXPECT_FALSE(names.empty()) << "LibreOffice opens none of the corpus' documents";
    return names;
  }

  // One document through `to_xml` and `from_xml`, with every text changed and once with none.
  template <class Util>
  void go_round(const std::u16string& name, OfficeKind kind, std::int32_t (Util::*to_xml)(),
                std::int32_t (Util::*from_xml)(), void (Util::*set_name)(std::u16string_view),
                const std::u16string& (Util::*xml_file)() const) {
    SCOPED_TRACE(to_utf8(name));
    const std::u16string path = folder.path(name);
    Util util;
    (util.*set_name)(path);
    ASSERT_EQ((util.*to_xml)(), 0) << to_utf8(util.errors().first_description());
    const std::string xml = read_file((util.*xml_file)());
    const std::string exported = read_file(path);

    ASSERT_EQ((util.*from_xml)(), 0) << to_utf8(util.errors().first_description());
    const std::string unchanged = flat_xml_of(path, kind, Pictures::kKept);
    write_file(path, exported);
    open_and_save(path, kind);
    EXPECT_TRUE(unchanged == flat_xml_of(path, kind, Pictures::kKept))
        << "a translation that changes nothing changed the document";
    // Pictures that show an object's texts are redrawn with them.
    const std::string saved_only = flat_xml_of(path, kind);

    write_file(path, exported);
    const std::string translated = changed_segments(xml);
    write_file((util.*xml_file)(), translated);
    ASSERT_EQ((util.*from_xml)(), 0) << to_utf8(util.errors().first_description());
    const std::string changed = flat_xml_of(path, kind);
    (util.*set_name)(path);
    ASSERT_EQ((util.*to_xml)(), 0) << to_utf8(util.errors().first_description());
    std::vector<std::string> wanted = segments_of(translated), found = segments_of(read_file((util.*xml_file)()));
    EXPECT_EQ(found, wanted);
    texts_ += wanted.size();
    EXPECT_TRUE(without_change(without_sizes(changed)) == without_change(without_sizes(saved_only)))
        << "more than the texts changed";
    ++documents_;
  }

  std::size_t documents_ = 0;
  std::size_t texts_ = 0;
};

TEST_F(CorpusRoundTrip, EveryTextOfPresentationsChangesAndNothingElse) {
  if (!corpus_folder()) GTEST_SKIP() << kNoCorpus;
  for (const auto& name : openable(u"ppt", OfficeKind::kPresentation))
    go_round<clsPPTUtil>(name, OfficeKind::kPresentation, &clsPPTUtil::PPT2XML, &clsPPTUtil::XML2PPT,
                         &clsPPTUtil::PPTFile, &clsPPTUtil::XMLFile);
  std::cout << texts_ << " texts of " << documents_ << " presentations changed, and nothing else\n";
}

TEST_F(CorpusRoundTrip, EveryTextOfWorkbooksChangesAndNothingElse) {
  if (!corpus_folder()) GTEST_SKIP() << kNoCorpus;
  for (const auto& name : openable(u"xls", OfficeKind::kWorkbook))
    go_round<clsXLSUtil>(name, OfficeKind::kWorkbook, &clsXLSUtil::XLS2XML, &clsXLSUtil::XML2XLS, &clsXLSUtil::XLSFile,
                         &clsXLSUtil::XMLFile);
  std::cout << texts_ << " texts of " << documents_ << " workbooks changed, and nothing else\n";
}

// Moves the letters of the text of an RTF document by 13, as far as that is simple: not those of control words, escapes
// and groups without text of the document.
std::string changed_rtf(const std::string& rtf) {
  std::string changed = rtf;
  std::vector<bool> is_text{false};
  for (std::size_t i = 0; i < rtf.size(); ++i) {
    if (rtf[i] == '{') {
      static constexpr std::string_view other[] = {"\\*",    "\\fonttbl", "\\colortbl",   "\\stylesheet", "\\info",
                                                   "\\pict", "\\object",  "\\nonshppict", "\\listtext",   "\\pntext"};
      const std::string_view rest = std::string_view(rtf).substr(i + 1);
      const bool opens_other =
          std::ranges::any_of(other, [&](std::string_view word) { return rest.starts_with(word); });
      is_text.push_back((is_text.size() == 1 || is_text.back()) && !opens_other);
    } else if (rtf[i] == '}') {
      is_text.pop_back();
    } else if (rtf[i] == '\\') {
      if (rtf[i + 1] == '\'') {
        i += 3;
      } else if (std::isalpha(static_cast<unsigned char>(rtf[i + 1]))) {
        ++i;
        while (std::isalpha(static_cast<unsigned char>(rtf[i + 1]))) ++i;
        while (std::isdigit(static_cast<unsigned char>(rtf[i + 1])) || rtf[i + 1] == '-') ++i;
      } else {
        ++i;
      }
    } else if (is_text.back() && std::isalpha(static_cast<unsigned char>(rtf[i]))) {
      const char base = rtf[i] >= 'a' ? 'a' : 'A';
      changed[i] = static_cast<char>(base + (rtf[i] - base + 13) % 26);
    }
  }
  return changed;
}

TEST_F(CorpusRoundTrip, WordDocumentsGoToRtfHaveTheirTextsChangedAndComeBack) {
  if (!corpus_folder()) GTEST_SKIP() << kNoCorpus;
  for (const auto& name : openable(u"doc", OfficeKind::kText)) {
    SCOPED_TRACE(to_utf8(name));
    clsDOC2RTF converter;
    converter.DOCFile(folder.path(name));
    ASSERT_EQ(converter.DOC2RTF(), 0) << to_utf8(converter.errors().first_description());
    const std::string rtf = read_file(converter.RTFFile());
    ASSERT_EQ(converter.RTF2DOC(), 0) << to_utf8(converter.errors().first_description());
    const std::string same = flat_xml_of(folder.path(name), OfficeKind::kText);
    const std::string translated = changed_rtf(rtf);
    ASSERT_NE(translated, rtf);
    write_file(converter.RTFFile(), translated);
    ASSERT_EQ(converter.RTF2DOC(), 0) << to_utf8(converter.errors().first_description());
    const std::string changed = flat_xml_of(folder.path(name), OfficeKind::kText);
    EXPECT_NE(changed, same);
    EXPECT_TRUE(without_change(changed) == without_change(same)) << "more than the texts changed";
  }
}

}  // namespace
}  // namespace kavo::test
