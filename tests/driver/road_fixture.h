// The whole road on files in memory, with the reference suite: prepare, translate, rebuild.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "driver/driver_fixture.h"
#include "driver/filter_run.h"
#include "platform/unicode.h"
#include "suite/suite.h"

namespace kavo::test {

class RoadFixture : public DriverFixture {
 protected:
  RoadFixture() {
    for (const SuiteClass& known : suite_classes())
      automation.factories[std::u16string(known.programmatic_identifier)] = known.create;
    object.emplace();
    object->QuietMode(1);
    object->observe({{}, [this](const Message& message) { messages.push_back(to_utf8(message.text)); }});
  }
  ~RoadFixture() override { object.reset(); }

  static std::u16string in(std::u16string_view name) { return u"C:\\WORK\\" + std::u16string(name); }

  // The bilingual documents of a document, the main one first.
  std::vector<std::u16string> prepare(std::u16string_view name, std::string_view bytes,
                                      std::u16string target_language = u"FR") {
    files.put(in(name), bytes);
    EXPECT_EQ(pre_process(*object, in(name)), 0);
    std::vector<ProducedFile> produced(object->produced_files().begin(), object->produced_files().end());
    const FilterRun run = convert_produced_files(produced, {u"EN-US", std::move(target_language)});
    EXPECT_EQ(run.result, 0) << to_utf8(run.reason);
    std::vector<std::u16string> tuds;
    for (const ProducedFile& file : produced) tuds.push_back(file.tud_name);
    return tuds;
  }

  // Gives every segment that is not locked a translation, as a host does.
  using Translate = std::function<std::u16string(const std::u16string& source)>;
  void translate(const std::u16string& tud, const Translate& translation) {
    const ObjectRef document = automation.create(u"K19Suite.TUDDocument");
    Argument name[] = {by_value(tud)};
    ASSERT_EQ(as_number(document->invoke(u"Open", name)), 0) << to_utf8(tud);
    const std::int32_t count = as_number(document->get(u"SegmentCount"));
    for (std::int32_t number = 1; number <= count; ++number) {
      Argument segment[] = {by_value(number), by_reference(std::u16string()), by_reference(std::u16string()),
                            by_reference(std::int32_t{0}), by_reference(std::int32_t{0})};
      ASSERT_EQ(as_number(document->invoke(u"GetSegment", segment)), 0);
      if (as_number(segment[3].value) == 1) continue;
      Argument changed[] = {by_value(number), by_value(translation(as_text(segment[1].value))),
                            by_value(std::int32_t{2}), by_value(std::int32_t{0})};
      ASSERT_EQ(as_number(document->invoke(u"SetSegment", changed)), 0);
    }
    ASSERT_EQ(as_number(document->invoke(u"Close")), 0);
  }

  struct Rebuilt {
    std::int32_t result = 0;
    std::u16string target;
  };
  Rebuilt rebuild(std::u16string tud, std::int32_t preview = 0, std::int32_t highlight = 0) {
    Rebuilt rebuilt;
    rebuilt.result = object->CreateTranslation(tud, rebuilt.target, preview, highlight);
    return rebuilt;
  }

  using Files = std::map<std::u16string, std::string, LessIgnoringCase>;
  Files all_files() const {
    Files all;
    for (const std::u16string& path : files.all_files()) all[path] = files.get(path);
    return all;
  }

  std::optional<K19FPWObj> object;
  std::vector<std::string> messages;
};

}  // namespace kavo::test
