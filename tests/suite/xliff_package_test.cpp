#include "suite/document/xliff_package.h"

#include <gtest/gtest.h>

#include "formats/text/text_coding.h"
#include "platform/unicode.h"
#include "suite/suite_fixture.h"
#include "support/faulty_files.h"

namespace kavo::test {
namespace {

class XliffPackage : public SuiteTest {
 protected:
  void pack(const std::vector<std::u16string>& tuds) {
    std::vector<std::unique_ptr<BilingualDocument>> opened;
    std::vector<const BilingualDocument*> documents;
    for (const std::u16string& tud : tuds) {
      opened.push_back(std::make_unique<BilingualDocument>(tud));
      documents.push_back(opened.back().get());
    }
    pack_documents(documents, in_folder(u"p.xlf"));
  }
  void edit(const std::u16string& tud, std::vector<std::pair<std::string, std::string>> changes) {
    std::string xml = files.get(tud);
    for (const auto& [old, now] : changes)
      for (std::size_t at = xml.find(old); at != std::string::npos; at = xml.find(old, at + now.size()))
        xml.replace(at, old.size(), now);
    files.put(tud, xml);
  }
};

TEST_F(XliffPackage, DocumentsComeOutAsTheyWentIn) {
  put(u"a.txt", "One\n");
  put(u"b.txt", "Two\n");
  put(u"c.txt", "Three\n");
  const std::vector<std::u16string> tuds{convert(u"a.txt"), convert(u"b.txt"), convert(u"c.txt")};
  // Editors give elements prefixes and namespaces of their own.
  edit(tuds[1], {{"<xliff ", "<x:xliff xmlns:m=\"urn:m\" xmlns:x=\"urn:oasis:names:tc:xliff:document:1.2\" "},
                 {" xmlns=\"urn:oasis:names:tc:xliff:document:1.2\"", ""},
                 {"</", "</x:"},
                 {"<file ", "<x:file m:a='1' "},
                 {"<header", "<x:header"},
                 {"<skl><external", "<x:skl><x:external"},
                 {"<tool", "<x:tool"},
                 {"<note", "<x:note"},
                 {"<context", "<x:context"},
                 {"<body", "<x:body"},
                 {"<trans-", "<x:trans-"},
                 {"<source", "<x:source"},
                 {"<target", "<x:target"}});
  EXPECT_FALSE(is_package(tuds[1]));
  for (const std::size_t size : {1, 7, 4096}) {
    const BlockSizeScope scope(size);
    pack(tuds);
    EXPECT_TRUE(is_package(in_folder(u"p.xlf")));
    const std::u16string folder = in_folder(u"out" + to_utf16(std::to_string(size)));
    files.add_folder(folder);
    const std::vector<std::u16string> unpacked = unpack_documents(in_folder(u"p.xlf"), folder);
    ASSERT_EQ(unpacked.size(), 3u);
    const char16_t* const names[] = {u"\\a_txt_FR.tud", u"\\b_txt_FR.tud", u"\\c_txt_FR.tud"};
    const char* const texts[] = {"One\n", "Two\n", "Three\n"};
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(unpacked[i], folder + names[i]);
      BilingualDocument document(unpacked[i]);
      EXPECT_EQ(document.size(), 1u);
      document.set_segment(0, document.segment(0).source, TranslationStatus::kApproved, 0);
      document.save();
      EXPECT_EQ(rebuild(unpacked[i]), texts[i]);
    }
  }
}

TEST_F(XliffPackage, PackingThatFailsAnywhereKeepsTheOldFile) {
  FaultyFiles faulty(files);
  ports().files = &faulty;
  put(u"a.txt", "One\n");
  put(u"b.txt", "Two\n");
  const std::vector<std::u16string> tuds{convert(u"a.txt"), convert(u"b.txt")};
  pack(tuds);
  const std::string whole = get(u"p.xlf");
  const std::size_t count = files.all_files().size();
  const std::size_t faults = for_each_fault(
      faulty, {},
      [&](std::size_t) {
        put(u"p.xlf", "old");
        try {
          pack(tuds);
        } catch (const failure&) {
        }
      },
      [&](std::size_t number) {
        EXPECT_TRUE(get(u"p.xlf") == "old" || get(u"p.xlf") == whole) << number;
        EXPECT_EQ(files.all_files().size(), count) << number;
      });
  EXPECT_GT(faults, 10u);
}

TEST_F(XliffPackage, SeveralDocumentsAreSeenWhereverABlockEndsAndInEveryCoding) {
  put(u"a.txt", "One file: <file \nTwo\n");
  put(u"b.txt", "Two\n");
  const std::u16string one = convert(u"a.txt"), other = convert(u"b.txt");
  pack({one, other});
  const std::string both = get(u"p.xlf");
  std::string prefixed = both;
  for (std::size_t at = prefixed.find("file "); at != std::string::npos; at = prefixed.find("file ", at + 7))
    if (prefixed[at - 1] == '<') prefixed.insert(at, "x:");
  for (std::size_t at = prefixed.find("</file>"); at != std::string::npos; at = prefixed.find("</file>", at + 7))
    prefixed.insert(at + 2, "x:");
  prefixed.insert(prefixed.find(" xmlns="), " xmlns:x=\"urn:oasis:names:tc:xliff:document:1.2\"");
  const auto wide = [](std::string text) {
    text.replace(text.find("UTF-8"), 5, "UTF-16");
    std::string bytes;
    TextCoding(kUtf16LittleEndian).encode(text, bytes, {});
    return "\xFF\xFE" + bytes;
  };
  const struct {
    const char* name;
    std::string bytes;
    bool expected;
  } cases[] = {{"one", files.get(one), false},
               {"two", both, true},
               {"prefixes", prefixed, true},
               {"one in UTF-16", wide(files.get(one)), false},
               {"two in UTF-16", wide(both), true}};
  for (const auto& c : cases) {
    files.put(in_folder(u"t.tud"), c.bytes);
    for (const std::size_t size : {1, 2, 3, 5, 4096}) {
      const BlockSizeScope scope(size);
      EXPECT_EQ(is_package(in_folder(u"t.tud")), c.expected) << c.name << ", blocks of " << size;
    }
  }
}

TEST_F(XliffPackage, OneDocumentIsAPackageUnlessItIsCalledABilingualDocument) {
  put(u"a.txt", "One\n");
  const std::u16string tud = convert(u"a.txt");
  pack({tud});
  EXPECT_TRUE(is_package(in_folder(u"p.xlf")));
  files.put(in_folder(u"p.tud"), get(u"p.xlf"));
  EXPECT_FALSE(is_package(in_folder(u"p.tud")));
  EXPECT_FALSE(is_package(tud));
  EXPECT_FALSE(is_package(in_folder(u"a.txt")));
  EXPECT_FALSE(is_package(in_folder(u"missing.xlf")));
}

TEST_F(XliffPackage, OneThatCannotBeReadIsNotTakenForADocument) {
  put(u"a.txt", "One\n");
  pack({convert(u"a.txt")});
  FaultyFiles faulty(files);
  ports().files = &faulty;
  FaultyFiles::Fault fault;
  fault.number = FailureNumber::kDeviceError;
  bool is_known = false;
  const std::size_t faults = for_each_fault(
      faulty, fault,
      [&](std::size_t) {
        is_known = false;
        try {
          is_known = is_package(in_folder(u"p.xlf"));
        } catch (const failure& reason) {
          is_known = reason.description().find(u"p.xlf cannot be read") != std::u16string::npos;
        }
      },
      [&](std::size_t operation) { EXPECT_TRUE(is_known) << operation; });
  EXPECT_GT(faults, 1u);
}

TEST_F(XliffPackage, DocumentsOfSeveralCodingsAreNotMixed) {
  put(u"a.txt", "One\n");
  put(u"b.txt", "Two\n");
  const std::u16string first = convert(u"a.txt"), second = convert(u"b.txt");
  edit(second, {{"encoding=\"UTF-8\"", "encoding=\"UTF-16\""}});
  std::string wide = "\xFF\xFE";
  TextCoding(kUtf16LittleEndian).encode(files.get(second), wide, [](std::string_view, std::string&) {});
  files.put(second, wide);
  EXPECT_NE(reason_of([&] { pack({first, second}); }).find(u"different codings"), std::u16string::npos);
  EXPECT_FALSE(has(u"p.xlf"));
  pack({second});
  files.add_folder(in_folder(u"out"));
  EXPECT_EQ(unpack_documents(in_folder(u"p.xlf"), in_folder(u"out")).size(), 1u);
  // A document without its skeleton, or with none inside, is no part of a package.
  files.remove_file(skeleton_name_of(first));
  EXPECT_THROW(pack({first}), failure);
  EXPECT_THROW(unpack_documents(first, in_folder(u"out")), failure);
}

}  // namespace
}  // namespace kavo::test
