// CreateTranslation over files in memory and with a suite that records its calls.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>

#include "common/cRegistry.h"
#include "driver/driver_fixture.h"
#include "driver/recording_suite.h"

namespace kavo::test {

// Keeps the order of all writes: "RTFFontMapFile=C:\WORK\KAVO.FMP".
class RecordingRegistry : public FakeRegistry {
 public:
  std::vector<std::u16string> reads;
  std::vector<std::u16string> writes;

  std::optional<RegistryData> read(Hive hive, std::u16string_view path, std::u16string_view name) override {
    reads.emplace_back(name);
    return FakeRegistry::read(hive, path, name);
  }
  void write(Hive hive, std::u16string_view path, std::u16string_view name, const RegistryData& data) override {
    FakeRegistry::write(hive, path, name, data);
    writes.push_back(std::u16string(name) + u"=" + text_of(value(path, name)));
  }
  cRegistry::Variant value(std::u16string_view path, std::u16string_view name) {
    cRegistry value;
    value.SectionKey(path);
    value.ValueKey(name);
    const auto seen = reads.size();
    const cRegistry::Variant found = value.Value();
    reads.resize(seen);
    return found;
  }
  void set_number(std::u16string_view path, std::u16string_view name, std::int32_t number) {
    cRegistry value;
    value.SectionKey(path);
    value.ValueKey(name);
    value.ValueType(static_cast<std::uint32_t>(RegistryType::kNumber));
    value.SetValue(number);
    writes.clear();
  }

 private:
  static std::u16string text_of(const cRegistry::Variant& value) {
    if (const auto* number = std::get_if<std::int32_t>(&value)) return as_text(*number);
    const auto* text = std::get_if<std::u16string>(&value);
    return text == nullptr ? u"?" : *text;
  }
};

inline constexpr std::u16string_view kEditorKey = u"Software\\MOR\\MOR Edit\\Settings";
inline constexpr std::u16string_view kFilterKey = u"Software\\MOR\\KAVO";

// A MIF document with one index marker, and a side file with the translation of one text.
inline std::string manual(const std::string& text) {
  return "<MIFFile 7.00>\r\n<Marker \r\n <MTypeName `Index'>\r\n <MText `" + text + "'>\r\n>\r\n";
}
inline std::string side(const std::string& tag, const std::string& text) {
  return "<MIFFile 7.00>\r\n<KAVOSeg 0>\r\n<TextFlow \r\n <Para \r\n  <KAVOTag `" + tag +
         "'>\r\n  <ParaLine \r\n   <String `" + text + "'>\r\n  >\r\n >\r\n>\r\n";
}

class TranslationFixture : public DriverFixture {
 protected:
  // The user's setting of the markers whose texts are translated.
  static void select_index_markers() {
    cRegistry markers;
    markers.SectionKey(u"Software\\VB and VBA Program Settings\\MIF Utilities\\Settings");
    markers.ValueKey(u"Markers");
    markers.SetValue(std::u16string(u"Index\t"));
  }
  TranslationFixture() {
    ports().registry = &settings;
    suite.install(automation);
    object.emplace();
    object->observe({{}, [this](const Message& message) { messages.push_back(message.text); }});
  }
  ~TranslationFixture() override { object.reset(); }

  // The name of a file in the folder of all documents.
  static std::u16string in(std::u16string_view name) { return u"C:\\WORK\\" + std::u16string(name); }
  void put(std::u16string_view name, std::string_view bytes = "source") { files.put(in(name), bytes); }

  using Files = std::map<std::u16string, std::string, LessIgnoringCase>;
  Files all_files() const {
    Files all;
    for (const std::u16string& path : files.all_files()) all[path] = files.get(path);
    return all;
  }

  struct Call {
    std::u16string target;  // in and out
    std::int32_t preview = 0;
    std::int32_t highlight = 0;
  };
  std::int32_t create(std::u16string_view tud, Call& call) {
    std::u16string name = in(tud);
    const std::int32_t preview = call.preview, highlight = call.highlight;
    const std::int32_t result = object->CreateTranslation(name, call.target, call.preview, call.highlight);
    EXPECT_EQ(name, in(tud));
    EXPECT_EQ(call.preview, preview) << "only the target is written back";
    EXPECT_EQ(call.highlight, highlight);
    return result;
  }
  std::int32_t create(std::u16string_view tud) {
    Call call;
    return create(tud, call);
  }
  std::size_t count_calls(std::u16string_view member) const {
    std::size_t count = 0;
    for (const std::u16string& call : suite.calls) count += call.starts_with(member) ? 1 : 0;
    return count;
  }

  RecordingRegistry settings;
  RecordingSuite suite;
  std::optional<K19FPWObj> object;
  std::vector<std::u16string> messages;
};

}  // namespace kavo::test
