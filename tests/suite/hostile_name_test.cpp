// Names in documents from elsewhere: whatever a field says, no file outside the document's folder is touched.
#include <gtest/gtest.h>

#include <algorithm>

#include "formats/xml/xml_text.h"
#include "platform/unicode.h"
#include "suite/document/skeleton.h"
#include "suite/document/xliff_package.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

class HostileName : public SuiteTest {
 protected:
  // Every path that was opened to be written, or renamed to.
  void expect_only_own_folder() {
    for (const std::u16string& path : files.all_files())
      EXPECT_TRUE(path.starts_with(u"C:\\work\\") || path == kBait) << to_utf8(path);
    EXPECT_EQ(files.get(kBait), "bait");
  }
  static constexpr char16_t kBait[] = u"C:\\evil.txt";
};

constexpr std::string_view kHostile[] = {"x/../../evil",
                                         "..\\evil",
                                         "../evil.txt",
                                         "/evil.txt",
                                         "\\\\host\\share\\evil",
                                         "C:\\evil.txt",
                                         "C:evil.txt",
                                         "a.txt:stream",
                                         "..",
                                         ". . ",
                                         "NUL",
                                         "com1.txt",
                                         "a\nb",
                                         "%2E%2E%2Fevil",
                                         "..%5Cevil.txt",
                                         "a%00b",
                                         "C%3Aevil",
                                         "%0A",
                                         "..%2F..%2Fevil.txt"};

// True for a name that is plain when no escapes are resolved in the field.
bool is_plain_unresolved(std::string_view name) { return name.find('%') != name.npos; }

TEST_F(HostileName, InAnyFieldOfABilingualDocument) {
  const struct {
    const char* name;
    std::string before;  // the field with its value, "$" for the value
    std::string value;
    bool is_escaped;  // as a URI
  } fields[] = {
      {"original", "original=\"$\"", "a.txt", true},
      {"skeleton", "href=\"$\"", "a_txt_FR.tud.skl", true},
      {"author's document", ">author-document=$<", "a.txt", true},
      {"target language", ">target-language=$<", "FR", false},
      {"source language", ">source-language=$<", "EN-US", false},
      {"target language of the format", " target-language=\"$\"", "fr", false},
      {"source language of the format", " source-language=\"$\"", "en-US", false},
      {"extension", ">source-format=$<", "TXT", false},
      {"filter", ">filter=$<", "K19TXT", false},
      {"mark", ">mark=$<", "m1", false},
  };
  put(u"a.txt", "One\n");
  files.put(kBait, "bait");
  ConversionRequest request;
  request.document = request.author_document = in_folder(u"a.txt");
  request.tud = tud_name_of(request.document, u"FR");
  request.source_language = u"EN-US";
  request.target_language = u"FR";
  request.filter = u"K19TXT";
  request.mark = "m1";
  ProgressEvent progress;
  convert_document(request, progress);
  const std::string whole = files.get(request.tud);
  for (const auto& field : fields)
    for (const std::string_view hostile : kHostile) {
      if (!field.is_escaped && is_plain_unresolved(hostile)) continue;
      SCOPED_TRACE(std::string(field.name) + ": " + std::string(hostile));
      const auto filled = [&](std::string_view value) {
        std::string text = field.before;
        std::string escaped;
        append_xml_attribute(escaped, value);
        return text.replace(text.find('$'), 1, escaped);
      };
      std::string xml = whole;
      const std::string old = filled(field.value);
      ASSERT_NE(xml.find(old), std::string::npos) << xml;
      xml.replace(xml.find(old), old.size(), filled(hostile));
      files.put(request.tud, xml);
      EXPECT_NE(reason_of([&] { rebuild(request.tud); }).find(u"not a plain file name"), std::u16string::npos);
      expect_only_own_folder();
      EXPECT_FALSE(has(u"a_FR.txt"));
    }
}

// What a package unpacks is named after what its documents say.
TEST_F(HostileName, InAnyDocumentOfAPackage) {
  put(u"a.txt", "One\n");
  put(u"b.txt", "Two\n");
  files.put(kBait, "bait");
  const BilingualDocument first(convert(u"a.txt")), second(convert(u"b.txt"));
  const BilingualDocument* const documents[] = {&first, &second};
  const std::u16string package = in_folder(u"p.xlf");
  pack_documents(documents, package);
  const std::string whole = files.get(package);
  for (const std::u16string_view name : {u"sound", u"hostile", u"twice"}) files.add_folder(in_folder(name));
  ASSERT_EQ(unpack_documents(package, in_folder(u"sound")).size(), 2u);
  const std::size_t count = files.all_files().size();
  for (const std::string_view hostile : kHostile)
    for (const std::string_view field : {"original=\"$\"", ">target-language=$<"}) {
      if (is_plain_unresolved(hostile) && field.front() == '>') continue;
      SCOPED_TRACE(std::string(field) + std::string(hostile));
      const bool is_name = field.front() == 'o';
      const auto filled = [&](std::string_view value) {
        std::string text(field), escaped;
        append_xml_attribute(escaped, value);
        return text.replace(text.find('$'), 1, escaped);
      };
      std::string xml = whole;
      const std::string old = filled(is_name ? "b.txt" : "FR");
      ASSERT_NE(xml.rfind(old), std::string::npos);
      xml.replace(xml.rfind(old), old.size(), filled(hostile));
      files.put(package, xml);
      EXPECT_THROW(unpack_documents(package, in_folder(u"hostile")), failure);
      EXPECT_THROW(BilingualDocument{package}, failure);
      expect_only_own_folder();
      for (const std::u16string& path : files.all_files())
        if (path.starts_with(in_folder(u"hostile"))) files.remove_file(path);
      EXPECT_EQ(files.all_files().size(), count);
    }
  // Two documents of one name.
  std::string twice = whole;
  twice.replace(twice.rfind("original=\"b.txt\""), 16, "original=\"A.TXT\"");
  files.put(package, twice);
  EXPECT_NE(reason_of([&] { unpack_documents(package, in_folder(u"twice")); }).find(u"two documents"),
            std::u16string::npos);
}

TEST_F(HostileName, InAnyFieldOfASkeleton) {
  files.put(kBait, "bait");
  const std::u16string path = in_folder(u"a.skl");
  for (const std::string_view hostile : kHostile) {
    SCOPED_TRACE(std::string(hostile));
    {
      SkeletonWriter writer(path);
      writer.begin(u"K19TXT", 1, {}, {"m1", std::string(hostile), 2});
      writer.finish(0);
      writer.commit();
    }
    // A skeleton does not escape names: what looks escaped is plain.
    if (!is_plain_unresolved(hostile)) {
      EXPECT_THROW(SkeletonReader reader(path), failure);
    }
    {
      SkeletonWriter writer(path);
      writer.begin(to_utf16(hostile), 1, {}, {std::string(hostile), "", 0});
      writer.finish(0);
      writer.commit();
    }
    OpenTagHeader header;
    header.checksum = 1;
    OpenTagWriter(in_folder(u"a.otf"), header).commit();
    ProgressEvent progress;
    EXPECT_THROW(create_target({in_folder(u"b.txt"), in_folder(u"a.otf"), path, u"", u""}, progress), failure);
    expect_only_own_folder();
  }
}

}  // namespace
}  // namespace kavo::test
