#include "formats/xml/xml_reader.h"

#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "suite/suite_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

// All events as one text: "<space|name id=v@begin-end", "'text'", ">name@begin-end".
class Log final : public XmlHandler {
 public:
  void start(std::string_view space, std::string_view name, const XmlAttributes& attributes, XmlPlace place) override {
    flush();
    log += "<" + std::string(space) + "|" + std::string(name);
    if (const char* id = attributes.find("id")) log += std::string(" id=") + id;
    log += at(place);
  }
  void end(std::string_view, std::string_view name, XmlPlace place) override {
    flush();
    log += ">" + std::string(name) + at(place);
  }
  void text(std::string_view piece) override { pending_ += piece; }
  std::string log;

 private:
  void flush() {
    if (!pending_.empty()) log += "'" + pending_ + "'";
    pending_.clear();
  }
  static std::string at(XmlPlace place) { return "@" + std::to_string(place.begin) + "-" + std::to_string(place.end); }
  std::string pending_;
};

class XmlReaderTest : public SuiteTest {
 protected:
  std::string read(std::string_view bytes) {
    put(u"a.xml", bytes);
    return same_for_every_block_size(bytes.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      Log log;
      XmlReader(in_folder(u"a.xml")).read(log);
      return log.log;
    });
  }
  std::u16string refusal(std::string_view bytes) {
    put(u"a.xml", bytes);
    return reason_of([&] {
      Log log;
      XmlReader(in_folder(u"a.xml")).read(log);
    });
  }
};

TEST_F(XmlReaderTest, ReportsElementsTextAndPlaces) {
  EXPECT_EQ(read("<a><b id='1'/>x&amp;y</a>"), "<|a@0-3<|b id=1@3-14>b@14-14'x&y'>a@21-25");
  EXPECT_EQ(read("<p:a xmlns:p='u:r:n'><p:b/></p:a>"), "<u:r:n|a@0-21<u:r:n|b@21-27>b@27-27>a@27-33");
  EXPECT_EQ(read("<a>1\r\n2\r3</a>"), "<|a@0-3'1\n2\n3'>a@9-13");
  EXPECT_EQ(read("<a><![CDATA[<x>]]></a>"), "<|a@0-3'<x>'>a@18-22");
}

TEST_F(XmlReaderTest, ReadsEveryUsualCoding) {
  EXPECT_EQ(read("\xEF\xBB\xBF<a>\xC3\xA9</a>"), "<|a@3-6'\xC3\xA9'>a@8-12");
  EXPECT_EQ(read("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>"), "<|a@43-46'\xC3\xA9'>a@47-51");
  EXPECT_EQ(read("<?xml version='1.0' encoding='windows-1252'?><a>\x80</a>"), "<|a@45-48'\xE2\x82\xAC'>a@49-53");
  EXPECT_EQ(read("\xFF\xFE<\0a\0>\0\xE9\0<\0/\0a\0>\0"sv), "<|a@2-8'\xC3\xA9'>a@10-18");
  EXPECT_EQ(read("\xFE\xFF\0<\0a\0>\0\xE9\0<\0/\0a\0>"sv), "<|a@2-8'\xC3\xA9'>a@10-18");
}

TEST_F(XmlReaderTest, AnUnknownCodingIsRefused) {
  EXPECT_NE(refusal("<?xml version='1.0' encoding='shift_jis'?><a/>"), u"");
  EXPECT_NE(refusal("<?xml version='1.0' encoding='nonsense'?><a/>"), u"");
}

TEST_F(XmlReaderTest, BombsAreRefused) {
  const std::u16string reason = refusal("<!DOCTYPE a [<!ENTITY x 'y'><!ENTITY z '&x;&x;&x;&x;'>]>\n<a>&z;</a>");
  EXPECT_NE(reason.find(u"entities"), std::u16string::npos);
  EXPECT_NE(reason.find(u"line 1"), std::u16string::npos);
}

TEST_F(XmlReaderTest, NothingOutsideTheDocumentIsFetched) {
  put(u"secret.txt", "secret");
  EXPECT_NE(refusal("<!DOCTYPE a [<!ENTITY x SYSTEM 'secret.txt'>]><a>&x;</a>"), u"");
  EXPECT_NE(refusal("<!DOCTYPE a [<!ENTITY % x SYSTEM 'secret.txt'>%x;]><a/>"), u"");
  // A document type that is only named does no harm, an entity that it might declare is not read.
  EXPECT_EQ(read("<!DOCTYPE a SYSTEM 'secret.txt'><a/>"), "<|a@32-36>a@36-36");
  EXPECT_NE(refusal("<!DOCTYPE a SYSTEM 'secret.txt'><a>&x;</a>").find(u"\"x\""), std::u16string::npos);
}

TEST_F(XmlReaderTest, EveryCutDocumentIsRefused) {
  constexpr std::string_view document = "<?xml version='1.0'?><a><b id='1'>text &amp; more</b></a>";
  for (std::size_t cut = 0; cut < document.size(); ++cut) EXPECT_NE(refusal(document.substr(0, cut)), u"") << cut;
  EXPECT_NE(refusal("<a>\n<b>").find(u"too early"), std::u16string::npos);
  EXPECT_NE(refusal("<a>\n<b></a>").find(u"line 2, column"), std::u16string::npos);
}

TEST_F(XmlReaderTest, WhatTheHandlerThrowsComesThrough) {
  class Thrower final : public XmlHandler {
   public:
    void start(std::string_view, std::string_view, const XmlAttributes&, XmlPlace) override {}
    void end(std::string_view, std::string_view, XmlPlace) override {}
    void text(std::string_view) override { throw failure(FailureNumber::kInvalidCall, u"stop"); }
  } thrower;
  put(u"a.xml", "<a>x</a>");
  EXPECT_EQ(reason_of([&] { XmlReader(in_folder(u"a.xml")).read(thrower); }), u"stop");
}

TEST_F(XmlReaderTest, AnEndlessTagIsRefused) {
  put(u"a.xml", "<a b='" + std::string(20 * 1024 * 1024, 'x') + "'/>");
  const BlockSizeScope scope(1024 * 1024);
  const std::u16string reason = reason_of([&] {
    Log log;
    XmlReader(in_folder(u"a.xml")).read(log);
  });
  EXPECT_NE(reason.find(u"16 MB"), std::u16string::npos);
}

}  // namespace
}  // namespace kavo::test
