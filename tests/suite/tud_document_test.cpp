#include "suite/components/tud_document.h"

#include <gtest/gtest.h>

#include "suite/document/base64.h"
#include "suite/document/skeleton.h"
#include "suite/document/xliff_package.h"
#include "suite/suite_fixture.h"
#include "support/faulty_files.h"

namespace kavo::test {
namespace {

using namespace std::string_literals;

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xliff version=\"1.2\" "
    "xmlns=\"urn:oasis:names:tc:xliff:document:1.2\">\n<file original=\"a.txt\" source-language=\"en-US\" "
    "target-language=\"fr\" datatype=\"plaintext\"><body>\n";
constexpr std::string_view kTail = "</body></file></xliff>\n";

std::string document_of(std::string_view units) { return std::string(kHead) + std::string(units) + std::string(kTail); }

class TudTest : public SuiteTest {
 protected:
  BilingualDocument open(std::string_view bytes) {
    put(u"a.tud", bytes);
    return BilingualDocument(in_folder(u"a.tud"));
  }
  BilingualDocument open_units(std::string_view units) { return open(document_of(units)); }
  void pack(const BilingualDocument& document, std::u16string_view name) {
    const BilingualDocument* const documents[] = {&document};
    pack_documents(documents, in_folder(name));
  }
};

TEST_F(TudTest, ANewDocumentIsWrittenLikeThis) {
  put(u"page one.txt",
      "One <two> & \"three\"\r\n  a\tb\r\n\xFF"
      "c\r\n");
  const std::u16string tud = convert(u"page one.txt");
  EXPECT_EQ(tud, in_folder(u"page one_txt_FR.tud"));
  const auto location = [](int line) {
    return "<context-group purpose=\"location\"><context context-type=\"sourcefile\">page one.txt</context>"
           "<context context-type=\"linenumber\">" +
           std::to_string(line) + "</context><context context-type=\"element\">line</context></context-group>";
  };
  EXPECT_EQ(files.get(tud),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<xliff version=\"1.2\" xmlns=\"urn:oasis:names:tc:xliff:document:1.2\">\n"
            "<file original=\"page one.txt\" source-language=\"en-US\" target-language=\"fr\" datatype=\"plaintext\" "
            "tool-id=\"K19Suite\">\n<header>\n"
            "<skl><external-file href=\"page%20one_txt_FR.tud.skl\"/></skl>\n"
            "<tool tool-id=\"K19Suite\" tool-name=\"KAVO reference suite\"/>\n"
            "<note from=\"K19Suite\">source-format=TXT</note>\n"
            "<note from=\"K19Suite\">filter=K19TXT</note>\n"
            "<note from=\"K19Suite\">source-language=EN-US</note>\n"
            "<note from=\"K19Suite\">target-language=FR</note>\n"
            "<note from=\"K19Suite\">source-code-page=65001</note>\n"
            "<note from=\"K19Suite\">target-code-page=65001</note>\n"
            "<note from=\"K19Suite\">checksum=" +
                std::to_string(BilingualDocument(tud).header().checksum) +
                "</note>\n</header>\n<body>\n"
                "<trans-unit id=\"1\" extradata=\"1:1\"><source>One &lt;two&gt; &amp; \"three\"</source>"
                "<target state=\"new\">One &lt;two&gt; &amp; \"three\"</target>" +
                location(1) +
                "</trans-unit>\n"
                "<trans-unit id=\"2\" xml:space=\"preserve\" extradata=\"2:3\"><source>a\tb</source>"
                "<target state=\"new\">a\tb</target>" +
                location(2) +
                "</trans-unit>\n"
                "<trans-unit id=\"3\" extradata=\"3:1\"><source><ph id=\"1\" ctype=\"x-byte\">[FF]</ph>c</source>"
                "<target state=\"new\"><ph id=\"1\" ctype=\"x-byte\">[FF]</ph>c</target>" +
                location(3) +
                "<note from=\"K19Suite\">{1} [FF]</note></trans-unit>\n"
                "</body>\n</file>\n</xliff>\n");
  const BilingualDocument document(tud);
  EXPECT_EQ(document.header().skeleton, "page one_txt_FR.tud.skl");
  EXPECT_EQ(document.target_name(), in_folder(u"page one_FR.txt"));
  EXPECT_EQ(document.segment(1).line, 2u);
  EXPECT_EQ(document.segment(1).column, 3u);
}

TEST_F(TudTest, OpensWhatOtherEditorsSave) {
  struct Case {
    const char* name;
    std::string_view unit;
    const char16_t* source;
    const char16_t* target;
    TranslationStatus status;
    int match = 0;
  };
  using enum TranslationStatus;
  const Case cases[] = {
      {"no target", "<trans-unit id='1'><source>a</source></trans-unit>", u"a", u"a", kUntranslated},
      {"empty target", "<trans-unit id='1'><source>a</source><target/></trans-unit>", u"a", u"a", kUntranslated},
      {"same target without a state", "<trans-unit id='1'><source>a</source><target>a</target></trans-unit>", u"a",
       u"a", kUntranslated},
      {"translated without a state", "<trans-unit id='1'><source>a</source><target>b</target></trans-unit>", u"a", u"b",
       kTranslated},
      {"translated with the state left new",
       "<trans-unit id='1'><source>a</source><target state='new'>b</target></trans-unit>", u"a", u"b", kTranslated},
      {"final and the same", "<trans-unit id='1'><source>a</source><target state='final'>a</target></trans-unit>", u"a",
       u"a", kTranslated},
      {"fuzzy", "<trans-unit id='1'><source>a</source><target state='needs-review-translation'>b</target></trans-unit>",
       u"a", u"b", kFuzzy},
      {"exact",
       "<trans-unit id='1'><source>a</source><target state='translated' "
       "state-qualifier='exact-match'>b</target></trans-unit>",
       u"a", u"b", kExact},
      {"approved", "<trans-unit approved='yes' id='1'><source>a</source><target>b</target></trans-unit>", u"a", u"b",
       kApproved},
      {"locked", "<trans-unit translate='no' id='1'><source>a</source></trans-unit>", u"a", u"a", kLocked},
      {"match value",
       "<trans-unit id='1'><source>a</source><target>b</target><alt-trans match-quality='85%'><source>x</source>"
       "<target>y</target></alt-trans></trans-unit>",
       u"a", u"b", kTranslated, 85},
      {"match value as a share",
       "<trans-unit id='1'><source>a</source><alt-trans match-quality='0.75'><target>y</target></alt-trans>"
       "</trans-unit>",
       u"a", u"a", kUntranslated, 75},
      {"notes, contexts and foreign elements",
       "<trans-unit id='1' x:y='1' xmlns:x='urn:x'><source>a<x:z>b</x:z></source><note>n</note><target>c</target>"
       "<context-group purpose='location'><context context-type='linenumber'>1</context></context-group>"
       "<x:q><source>q</source></x:q></trans-unit>",
       u"ab", u"c", kTranslated},
      {"inline codes of every kind",
       "<trans-unit id='1'><source><g id='1'>a</g><x id='2'/><ph id='3'>&lt;br&gt;</ph><bpt id='4'>[</bpt>b<ept "
       "id='4'>]</ept><it id='5' pos='open'>i</it><bx id='6' rid='9'/>c<ex id='7' rid='9'/><mrk mtype='seg'>d"
       "</mrk></source></trans-unit>",
       u"<1>a</1><2/><3/><4>b</4><5/><9>c</9>d", u"<1>a</1><2/><3/><4>b</4><5/><9>c</9>d", kUntranslated},
      {"segmented by the editor",
       "<trans-unit id='1'><source>a. b.</source><seg-source><mrk mid='1' mtype='seg'>a.</mrk> <mrk mid='2' "
       "mtype='seg'>b.</mrk></seg-source><target><mrk mid='1' mtype='seg'>A.</mrk> <mrk mid='2' "
       "mtype='seg'>B.</mrk></target></trans-unit>",
       u"a. b.", u"A. B.", kTranslated},
      {"in groups", "<group id='g'><group id='h'><trans-unit id='1'><source>a</source></trans-unit></group></group>",
       u"a", u"a", kUntranslated},
  };
  for (const Case& c : cases) {
    const BilingualDocument document = open_units(c.unit);
    ASSERT_EQ(document.size(), 1u) << c.name;
    const BilingualSegment segment = document.segment(0);
    EXPECT_EQ(to_host_text(segment.source), c.source) << c.name;
    EXPECT_EQ(to_host_text(segment.target), c.target) << c.name;
    EXPECT_EQ(segment.status, c.status) << c.name;
    EXPECT_EQ(segment.match, c.match) << c.name;
  }
}

TEST_F(TudTest, PrefixesAndMissingNamespacesAreRead) {
  EXPECT_EQ(open("<x:xliff xmlns:x='urn:oasis:names:tc:xliff:document:1.2' version='1.2'><x:file original='a'>"
                 "<x:body><x:trans-unit id='1'><x:source>a</x:source></x:trans-unit></x:body></x:file></x:xliff>")
                .size(),
            1u);
  EXPECT_EQ(open("<xliff><file><body><trans-unit id='1'><source>a</source></trans-unit></body></file></xliff>").size(),
            1u);
}

TEST_F(TudTest, OtherFilesThanBilingualDocumentsAreRefused) {
  const auto refusal = [&](std::string_view bytes) { return reason_of([&] { open(bytes); }); };
  EXPECT_NE(refusal("<html/>").find(u"not an XLIFF"), std::u16string::npos);
  EXPECT_NE(refusal("<xliff xmlns='urn:oasis:names:tc:xliff:document:2.0'/>").find(u"not an XLIFF 1"),
            std::u16string::npos);
  EXPECT_NE(refusal("<xliff/>").find(u"no file"), std::u16string::npos);
  EXPECT_NE(refusal("<xliff><file/><file/></xliff>").find(u"more than one"), std::u16string::npos);
  EXPECT_NE(refusal("plain text"), u"");
  EXPECT_NE(refusal(""), u"");
  EXPECT_NE(reason_of([&] { BilingualDocument(in_folder(u"missing.tud")); }), u"");
}

TEST_F(TudTest, ADocumentCutInHalfIsRefused) {
  put(u"a.txt", "One\nTwo\nThree\n");
  const std::string whole = files.get(convert(u"a.txt"));
  ASSERT_GT(whole.size(), 100u);
  for (std::size_t cut = 0; cut + 1 < whole.size(); cut += 7) {
    const std::u16string reason = reason_of([&] { open(whole.substr(0, cut)); });
    EXPECT_NE(reason, u"") << cut;
    EXPECT_NE(reason.find(u"a.tud"), std::u16string::npos) << cut;
  }
}

// A document and the same after changing its only unit's target to "T" with the given status and match.
struct RewriteCase {
  const char* name;
  std::string_view before;
  TranslationStatus status;
  int match;
  std::string_view after;
  const char16_t* target = u"T";
};

const RewriteCase kRewrites[] = {
    {"target in place, its own attributes kept",
     "<trans-unit  id='1' ><source>a</source>\n <target xml:lang='fr'\n state='new' >a</target ><note>n</note>"
     "</trans-unit>",
     TranslationStatus::kTranslated, 0,
     "<trans-unit  id='1' ><source>a</source>\n <target xml:lang='fr'\n state='translated' >T</target><note>n</note>"
     "</trans-unit>"},
    {"missing target", "<trans-unit id='1'><source>a</source><note>n</note></trans-unit>",
     TranslationStatus::kTranslated, 0,
     "<trans-unit id='1'><source>a</source><target state=\"translated\">T</target><note>n</note></trans-unit>"},
    {"empty target element", "<trans-unit id='1'><source>a</source><target/></trans-unit>", TranslationStatus::kFuzzy,
     0,
     "<trans-unit id='1'><source>a</source><target state=\"needs-review-translation\" "
     "state-qualifier=\"fuzzy-match\">T</target></trans-unit>"},
    {"a qualifier that no longer holds goes",
     "<trans-unit id='1'><source>a</source><target state='translated' state-qualifier='exact-match'>b</target>"
     "</trans-unit>",
     TranslationStatus::kTranslated, 0,
     "<trans-unit id='1'><source>a</source><target state='translated'>T</target></trans-unit>"},
    {"locked with a match", "<trans-unit id=\"1\"><source>a</source><target>b</target></trans-unit>",
     TranslationStatus::kLocked, 100,
     "<trans-unit id=\"1\" translate=\"no\"><source>a</source><target state=\"final\">T</target><alt-trans "
     "match-quality=\"100\" origin=\"K19Suite\"><target>T</target></alt-trans></trans-unit>"},
    {"unlocked", "<trans-unit translate='no' id='1'><source>a</source><target>b</target></trans-unit>",
     TranslationStatus::kApproved, 0,
     "<trans-unit translate='yes' id='1' approved=\"yes\"><source>a</source><target state=\"signed-off\">T</target>"
     "</trans-unit>"},
    {"an existing match changes its value",
     "<trans-unit id='1'><source>a</source><target>b</target><note>n</note><alt-trans x='1' match-quality='70' >"
     "<target>y</target></alt-trans></trans-unit>",
     TranslationStatus::kTranslated, 90,
     "<trans-unit id='1'><source>a</source><target state=\"translated\">T</target><note>n</note><alt-trans x='1' "
     "match-quality='90' ><target>y</target></alt-trans></trans-unit>"},
    {"codes as they stand in the source",
     "<trans-unit id='1'><source>a<g ctype=\"bold\" id='1'>b</g><ph id='2'>&lt;br/&gt;</ph></source></trans-unit>",
     TranslationStatus::kTranslated, 0,
     "<trans-unit id='1'><source>a<g ctype=\"bold\" id='1'>b</g><ph id='2'>&lt;br/&gt;</ph></source><target "
     "state=\"translated\"><ph id='2'>&lt;br/&gt;</ph><g ctype=\"bold\" id='1'>B &lt;&amp;&#13;</g></target>"
     "</trans-unit>",
     u"<2/><1>B <<&\r</1>"},
    {"a target behind the editor's segments",
     "<trans-unit id='1'><source>a</source><seg-source>a</seg-source></trans-unit>", TranslationStatus::kTranslated, 0,
     "<trans-unit id='1'><source>a</source><seg-source>a</seg-source><target state=\"translated\">T</target>"
     "</trans-unit>"},
};

TEST_F(TudTest, SavingChangesOnlyWhatChanged) {
  constexpr std::string_view kOther = "<trans-unit\tid='0'  ><!-- c --><source>o</source ></trans-unit>\r\n";
  for (const RewriteCase& c : kRewrites) {
    SCOPED_TRACE(c.name);
    BilingualDocument document =
        open(document_of(std::string(kOther) + std::string(c.before) + "\r\n" + std::string(kOther)));
    document.set_segment(1, from_host_text(c.target), c.status, static_cast<std::int16_t>(c.match));
    EXPECT_TRUE(document.is_changed());
    document.save();
    EXPECT_FALSE(document.is_changed());
    EXPECT_EQ(get(u"a.tud"), document_of(std::string(kOther) + std::string(c.after) + "\r\n" + std::string(kOther)));
    const BilingualDocument again(in_folder(u"a.tud"));
    EXPECT_EQ(again.segment(1).target, document.segment(1).target);
    EXPECT_EQ(again.segment(1).status, c.status);
    EXPECT_EQ(again.segment(1).match, c.match);
  }
}

TEST_F(TudTest, SavingKeepsPrefixAndCoding) {
  const std::string_view before =
      "<x:xliff xmlns:x='urn:oasis:names:tc:xliff:document:1.2'><x:file><x:body><x:trans-unit "
      "id='1'><x:source>a</x:source></x:trans-unit></x:body></x:file></x:xliff>";
  const std::string_view after =
      "<x:xliff xmlns:x='urn:oasis:names:tc:xliff:document:1.2'><x:file><x:body><x:trans-unit "
      "id='1'><x:source>a</x:source><x:target state=\"translated\">\xC3\xA9</x:target><x:"
      "alt-trans match-quality=\"5\" origin=\"K19Suite\"><x:target>\xC3\xA9</x:target></x:"
      "alt-trans></x:trans-unit></x:body></x:file></x:xliff>";
  const auto changed = [&](std::string_view bytes) {
    BilingualDocument document = open(bytes);
    document.set_segment(0, "\xC3\xA9", TranslationStatus::kTranslated, 5);
    document.save();
    return get(u"a.tud");
  };
  EXPECT_EQ(changed(before), after);
  EXPECT_EQ(changed("\xEF\xBB\xBF" + std::string(before)), "\xEF\xBB\xBF" + std::string(after));

  const std::string declaration = "<?xml version='1.0' encoding='ISO-8859-1'?><!-- \xE9 -->";
  std::string latin(after);
  for (std::size_t at; (at = latin.find("\xC3\xA9")) != std::string::npos;) latin.replace(at, 2, "&#233;");
  EXPECT_EQ(changed(declaration + std::string(before)), declaration + latin);

  for (const unsigned number : {kUtf16LittleEndian, kUtf16BigEndian}) {
    const TextCoding coding(number);
    const auto wide = [&](std::string_view text) {
      std::string bytes = number == kUtf16LittleEndian ? "\xFF\xFE" : "\xFE\xFF";
      coding.encode(text, bytes, [](std::string_view, std::string&) {});
      return bytes;
    };
    EXPECT_EQ(changed(wide(before)), wide(after));
  }
}

TEST_F(TudTest, AFileThatSomebodyElseChangedIsNotOverwritten) {
  BilingualDocument document = open_units("<trans-unit id='1'><source>a</source></trans-unit>");
  document.set_segment(0, "T", TranslationStatus::kTranslated, 0);
  const std::string other = document_of("<trans-unit id='2'><source>other</source></trans-unit>");
  put(u"a.tud", other);
  EXPECT_NE(reason_of([&] { document.save(); }).find(u"another program"), std::u16string::npos);
  EXPECT_EQ(get(u"a.tud"), other);
}

TEST_F(TudTest, WrongChangesAreRefused) {
  BilingualDocument document = open_units("<trans-unit id='1'><source>a<x id='1'/></source></trans-unit>");
  const auto refusal = [&](std::size_t index, std::string_view target, int match) {
    return reason_of(
        [&] { document.set_segment(index, target, TranslationStatus::kTranslated, static_cast<std::int16_t>(match)); });
  };
  EXPECT_NE(refusal(1, "x", 0), u"");
  EXPECT_NE(refusal(0, from_host_text(u"<2/>"), 0), u"");
  EXPECT_NE(refusal(0, from_host_text(u"<1/><1/>"), 0), u"");
  EXPECT_NE(refusal(0, "\x07", 0), u"");
  EXPECT_NE(refusal(0, "\xFF", 0), u"");
  EXPECT_NE(refusal(0, "x", 101), u"");
  EXPECT_NE(refusal(0, "x", -1), u"");
  EXPECT_FALSE(document.is_changed());
  EXPECT_EQ(refusal(0, "without the code", 0), u"");
}

TEST_F(TudTest, SavingThatFailsAnywhereLosesNothing) {
  FaultyFiles faulty(files);
  ports().files = &faulty;
  const std::string before = document_of("<trans-unit id='1'><source>a</source></trans-unit>");
  const std::size_t faults = for_each_fault(
      faulty, {},
      [&](std::size_t) {
        put(u"a.tud", before);
        try {
          BilingualDocument document(in_folder(u"a.tud"));
          document.set_segment(0, "T", TranslationStatus::kTranslated, 0);
          document.save();
        } catch (const failure&) {
        }
      },
      [&](std::size_t number) {
        const std::string after = get(u"a.tud");
        EXPECT_TRUE(after == before || after.find(">T<") != std::string::npos) << number;
        EXPECT_LE(files.all_files().size(), 1u) << number;
      });
  EXPECT_GT(faults, 5u);
}

TEST_F(TudTest, OpenTagFilesComeInTheOrderOfTheDocument) {
  BilingualDocument document = open_units(
      "<trans-unit id='2'><source>b</source><target>B</target></trans-unit><trans-unit "
      "id='1'><source>a</source></trans-unit>");
  document.save_open_tag(in_folder(u"a.otf"), SegmentColours{1, 2, 3, 0xFFFFFF});
  OpenTagReader reader(in_folder(u"a.otf"));
  EXPECT_EQ(reader.header().colours, (SegmentColours{1, 2, 3, 0xFFFFFF}));
  OpenTagSegment segment;
  ASSERT_TRUE(reader.next(segment));
  EXPECT_EQ(segment.number, 1u);
  EXPECT_TRUE(segment.is_unchanged);
  ASSERT_TRUE(reader.next(segment));
  EXPECT_EQ(segment.text, "B");
  EXPECT_FALSE(reader.next(segment));
  EXPECT_NE(reason_of([&] {
              open_units("<trans-unit id='x'><source>a</source></trans-unit>").save_open_tag(in_folder(u"b.otf"));
            }),
            u"");
}

TEST_F(TudTest, TheSkeletonBesideTheDocumentIsKept) {
  put(u"a.txt", "One\n");
  const std::u16string tud = convert(u"a.txt");
  const auto beside = BilingualDocument(tud).locate_skeleton();
  ASSERT_TRUE(beside);
  EXPECT_EQ(beside->path, skeleton_name_of(tud));
  EXPECT_TRUE(beside->keep);
  files.remove_file(beside->path);
  EXPECT_FALSE(BilingualDocument(tud).locate_skeleton());
}

// A skeleton for documents without a checksum.
std::string small_skeleton(MemoryFiles& files, const std::u16string& path, std::string_view bytes) {
  SkeletonWriter writer(path);
  writer.begin(u"K19TXT", 0, {});
  writer.bytes(bytes);
  writer.finish(0);
  writer.commit();
  return files.get(path);
}

TEST_F(TudTest, ASkeletonInsideTheDocumentIsUnpackedAndNotKept) {
  const std::string skeleton = small_skeleton(files, in_folder(u"x.skl"), "\xFF\x00\x01 and so on"s);
  std::string text;
  Base64Encoder encoder;
  encoder.encode(skeleton, text);
  encoder.finish(text);
  text.insert(5, "\n  ");
  put(u"a.tud", "<xliff><file><header><skl><internal-file form='base64'>" + text +
                    "</internal-file></skl></header><body/></file></xliff>");
  const auto inside = BilingualDocument(in_folder(u"a.tud")).locate_skeleton();
  ASSERT_TRUE(inside);
  EXPECT_FALSE(inside->keep);
  EXPECT_EQ(files.get(inside->path), skeleton);
}

TEST_F(TudTest, AnExportedDocumentCarriesItsSkeletonInside) {
  const std::string text = "One\r\n\xFF Two\n";
  put(u"a.txt", text);
  const std::u16string tud = convert(u"a.txt");
  const std::string skeleton = files.get(skeleton_name_of(tud));
  pack(BilingualDocument(tud), u"b_txt_FR.tud");
  files.remove_file(tud);
  files.remove_file(skeleton_name_of(tud));
  const BilingualDocument packed(in_folder(u"b_txt_FR.tud"));
  EXPECT_EQ(packed.size(), 2u);
  const auto inside = packed.locate_skeleton();
  ASSERT_TRUE(inside);
  EXPECT_FALSE(inside->keep);
  EXPECT_EQ(files.get(inside->path), skeleton);
  EXPECT_EQ(rebuild(packed.path()), text);
  // A document that has it inside is copied as it is.
  files.remove_file(inside->path);
  pack(packed, u"c.xlf");
  EXPECT_EQ(get(u"c.xlf"), files.get(packed.path()));
}

TEST_F(TudTest, ASkeletonGoesIntoDocumentsOfOtherEditors) {
  const std::string_view head = "<x:xliff xmlns:x='urn:oasis:names:tc:xliff:document:1.2'><x:file><x:header>";
  const std::string_view tail = "</x:header><x:body/></x:file></x:xliff>";
  std::string skeleton;
  Base64Encoder encoder;
  encoder.encode(small_skeleton(files, in_folder(u"a.skl"), "abc"), skeleton);
  encoder.finish(skeleton);
  const auto packed = [&](std::string_view bytes) {
    put(u"a.tud", bytes);
    pack(BilingualDocument(in_folder(u"a.tud")), u"b.xlf");
    return get(u"b.xlf");
  };
  const std::string before =
      std::string(head) + "<x:skl >\n<x:external-file href='a.skl'></x:external-file></x:skl>" + std::string(tail);
  const std::string after = std::string(head) + "<x:skl><x:internal-file form=\"base64\">" + skeleton +
                            "</x:internal-file></x:skl>" + std::string(tail);
  for (const std::size_t size : {1, 7, 4096}) {
    const BlockSizeScope scope(size);
    EXPECT_EQ(packed(before), after);
    for (const unsigned number : {kUtf16LittleEndian, kUtf16BigEndian}) {
      const auto wide = [&](std::string_view text) {
        std::string bytes = number == kUtf16LittleEndian ? "\xFF\xFE" : "\xFE\xFF";
        TextCoding(number).encode(text, bytes, [](std::string_view, std::string&) {});
        return bytes;
      };
      EXPECT_EQ(packed(wide(before)), wide(after));
    }
  }
}

TEST_F(TudTest, ADocumentWithoutASkeletonIsNotPacked) {
  put(u"b.xlf", "old");
  const BilingualDocument document = open_units("<trans-unit id='1'><source>a</source></trans-unit>");
  EXPECT_THROW(pack(document, u"b.xlf"), failure);
  put(u"a.tud.skl", "abc");
  EXPECT_THROW(pack(document, u"b.xlf"), failure);
  EXPECT_EQ(get(u"b.xlf"), "old");
}

class TudObject : public TudTest {
 protected:
  std::int32_t call(std::u16string_view member, std::vector<Argument> values) {
    arguments = std::move(values);
    return as_number(object.invoke(member, arguments));
  }
  static Argument text(std::u16string_view value) { return by_value(std::u16string(value)); }
  static Argument out_text() { return by_reference(std::u16string()); }
  static Argument out_number() { return by_reference(std::int32_t{-1}); }

  TUDDocument object;
  std::vector<Argument> arguments;
};

TEST_F(TudObject, WalksADocument) {
  put(u"a.txt", "One\nTwo\n");
  const std::u16string tud = convert(u"a.txt");
  EXPECT_EQ(call(u"Open", {text(tud)}), 0);
  EXPECT_EQ(call(u"GetMergeDetails", {out_text(), out_text(), out_text(), out_text()}), 0);
  EXPECT_EQ(as_text(arguments[0].value), u"TXT");
  EXPECT_EQ(as_text(arguments[1].value), in_folder(u"a_FR.txt"));
  EXPECT_EQ(as_text(arguments[2].value), u"a_txt_FR.tud.skl");
  EXPECT_EQ(as_text(arguments[3].value), u"K19TXT");
  EXPECT_EQ(as_number(object.get(u"SegmentCount")), 2);
  EXPECT_EQ(call(u"GetSegment", {by_value(2), out_text(), out_text(), out_number(), out_number()}), 0);
  EXPECT_EQ(as_text(arguments[1].value), u"Two");
  EXPECT_EQ(as_text(arguments[2].value), u"Two");
  EXPECT_EQ(as_number(arguments[3].value), 0);
  EXPECT_EQ(as_number(arguments[4].value), 0);
  EXPECT_EQ(call(u"SetSegment", {by_value(2), text(u"Deux"), by_value(2), by_value(80)}), 0);
  EXPECT_EQ(call(u"LocateSkeleton", {out_text(), by_reference(false)}), 0);
  EXPECT_EQ(as_text(arguments[0].value), skeleton_name_of(tud));
  EXPECT_TRUE(as_flag(arguments[1].value));
  EXPECT_EQ(call(u"SaveOpenTag", {text(in_folder(u"a.otf"))}), 0);
  EXPECT_EQ(
      call(u"SaveColouredOpenTag", {text(in_folder(u"b.otf")), by_value(1), by_value(2), by_value(3), by_value(4)}), 0);
  EXPECT_EQ(call(u"Close", {}), 0);
  EXPECT_EQ(BilingualDocument(tud).segment(1).target, "Deux");
  EXPECT_EQ(BilingualDocument(tud).segment(1).match, 80);
}

TEST_F(TudObject, FailuresAreAStatusAndAReason) {
  EXPECT_EQ(call(u"Open", {text(in_folder(u"missing.tud"))}), 1);
  EXPECT_NE(as_text(object.get(u"LastError")), u"");
  EXPECT_EQ(call(u"GetMergeDetails", {out_text(), out_text(), out_text(), out_text()}), 1);
  EXPECT_EQ(call(u"Close", {}), 1);
  EXPECT_THROW(object.get(u"SegmentCount"), failure);
  put(u"a.tud", document_of("<trans-unit id='1'><source>a</source></trans-unit>"));
  EXPECT_EQ(call(u"Open", {text(in_folder(u"a.tud"))}), 0);
  EXPECT_EQ(as_text(object.get(u"LastError")), u"");
  // A document from another program does not say which filter made it.
  EXPECT_EQ(call(u"GetMergeDetails", {out_text(), out_text(), out_text(), out_text()}), 1);
  EXPECT_EQ(call(u"LocateSkeleton", {out_text(), by_reference(false)}), 1);
  for (const std::int32_t number : {0, -1, 2})
    EXPECT_EQ(call(u"GetSegment", {by_value(number), out_text(), out_text(), out_number(), out_number()}), 1);
  EXPECT_EQ(call(u"SetSegment", {by_value(1), text(u"<9/>"), by_value(2), by_value(0)}), 1);
  EXPECT_EQ(call(u"SetSegment", {by_value(1), text(u"x"), by_value(6), by_value(0)}), 1);
  EXPECT_EQ(call(u"SetSegment", {by_value(1), text(u"x"), by_value(2), by_value(70000)}), 1);
}

}  // namespace
}  // namespace kavo::test
