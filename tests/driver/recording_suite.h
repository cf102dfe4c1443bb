// A translation suite that records what the driver asks of it and does, or fails to do, what a test says.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/folder_run.h"
#include "driver/fake_catalogue.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "support/fake_automation.h"

namespace kavo::test {

inline void write_file_in_ports(const std::u16string& path, std::string_view bytes) {
  const auto file = ports().files->open(path, Access::kCreate);
  file->write(bytes);
  file->close();
}

class RecordingSuite {
 public:
  // Scratch files go by the names that they are to have: "Open C:\WORK\a_txt_FR.tud", "CreateTarget
  // <target>|<OpenTag>|<skeleton>|<language>|<filter>" ...
  std::vector<std::u16string> calls;
  // The status that an operation of the document of that name answers; it may throw. None: 0.
  std::function<std::int32_t(std::u16string_view member, const std::u16string& tud)> status;
  // Called instead of creating a target; it may throw. If empty, the file is written.
  std::function<void(const std::u16string& target)> create;
  std::u16string created_from;  // the OpenTag file of the target being created
  // Bytes of the targets, by their name or, for one that is named by chance, by that of its OpenTag file; those of
  // others are "made".
  std::map<std::u16string, std::string, LessIgnoringCase> targets;

  // What a document tells.
  std::u16string source_format = u"TXT";
  std::u16string target_name = u"C:\\WORK\\told_FR.txt";
  std::u16string filter = u"K19TXT";
  std::u16string told_skeleton = u"told.skl";
  bool has_skeleton = true;
  bool keeps_skeleton = true;

  std::vector<std::pair<std::u16string, std::u16string>> languages{
      {u"English", u"EN-US"}, {u"French", u"FR"}, {u"English again", u"ENU"}};

  const std::string& bytes_of(const std::u16string& target) const {
    static const std::string made = "made";
    for (const std::u16string& name : {FolderRun::without_scratch_folder(target), created_from})
      if (const auto bytes = targets.find(name); bytes != targets.end()) return bytes->second;
    return made;
  }

  void install(FakeAutomation& automation) {
    automation.factories[u"K19Suite.FilterCatalogue"] = [this] { return catalogue(); };
    automation.factories[u"K19Suite.TUDDocument"] = [this] { return document(); };
    automation.factories[u"K19Suite.LanguageInformation"] = [this] { return language_information(); };
  }

 private:
  std::int32_t record(std::u16string_view member, const std::u16string& tud, std::u16string details) {
    calls.push_back(std::u16string(member) + (details.empty() ? u"" : u" ") +
                    FolderRun::without_scratch_folder(details));
    return status ? status(member, tud) : 0;
  }

  ObjectRef document() {
    auto tud = std::make_shared<std::u16string>();
    const auto save = [this, tud](std::u16string_view member, std::span<Argument> arguments) -> Value {
      std::u16string details = as_text(arguments[0].value);
      write_file_in_ports(details, "OpenTag");
      for (const Argument& colour : arguments.subspan(1)) details += u" " + as_text(colour.value);
      return record(member, *tud, details);
    };
    return std::make_shared<FakeObject>(std::vector<Member>{
        {u"Open", MemberKind::kMethod, 1, 1,
         [this, tud](std::span<Argument> arguments) -> Value {
           *tud = as_text(arguments[0].value);
           return record(u"Open", *tud, *tud);
         }},
        {u"GetMergeDetails", MemberKind::kMethod, 4, 4,
         [this, tud](std::span<Argument> arguments) -> Value {
           arguments[0].value = source_format;
           arguments[1].value = target_name;
           arguments[2].value = told_skeleton;
           arguments[3].value = filter;
           return record(u"GetMergeDetails", *tud, u"");
         }},
        {u"SaveOpenTag", MemberKind::kMethod, 1, 1,
         [save](std::span<Argument> arguments) { return save(u"SaveOpenTag", arguments); }},
        {u"SaveColouredOpenTag", MemberKind::kMethod, 5, 5,
         [save](std::span<Argument> arguments) { return save(u"SaveColouredOpenTag", arguments); }},
        {u"LocateSkeleton", MemberKind::kMethod, 2, 2,
         [this, tud](std::span<Argument> arguments) -> Value {
           const std::u16string skeleton = has_skeleton ? *tud + u".skl" : u"";
           if (has_skeleton && !ports().files->info(skeleton)) write_file_in_ports(skeleton, "skeleton");
           arguments[0].value = skeleton;
           arguments[1].value = keeps_skeleton;
           return record(u"LocateSkeleton", *tud, u"");
         }},
        {u"LastError", MemberKind::kPropertyGet, 0, 0,
         [](std::span<Argument>) -> Value { return std::u16string(u"the component's reason"); }},
    });
  }

  ObjectRef catalogue() {
    return std::make_shared<FakeObject>(std::vector<Member>{
        {u"Enumerate", MemberKind::kMethod, 5, 5, [](std::span<Argument>) -> Value { return std::int32_t{0}; }},
        {u"CreateTarget", MemberKind::kMethod, 5, 5,
         [this](std::span<Argument> arguments) -> Value {
           std::u16string details;
           for (const Argument& argument : arguments)
             details += (details.empty() ? u"" : u"|") + as_text(argument.value);
           const std::u16string target = as_text(arguments[0].value);
           record(u"CreateTarget", target, details);
           created_from = as_text(arguments[1].value);
           if (create)
             create(target);
           else
             write_file_in_ports(target, bytes_of(target));
           return Empty{};
         }},
    });
  }

  ObjectRef language_information() {
    return std::make_shared<FakeObject>(std::vector<Member>{
        {u"LanguageCount", MemberKind::kPropertyGet, 0, 0,
         [this](std::span<Argument>) -> Value { return static_cast<std::int32_t>(languages.size()); }},
        {u"FillLanguage", MemberKind::kMethod, 6, 6,
         [this](std::span<Argument> arguments) -> Value {
           const auto index = static_cast<std::size_t>(as_number(arguments[0].value));
           if (index >= languages.size()) return std::int32_t{1};
           arguments[2].value = languages[index].first;
           arguments[3].value = languages[index].second;
           arguments[4].value = std::int32_t{1252};
           arguments[5].value = std::int32_t{1033};
           return std::int32_t{0};
         }},
        {u"CodePageCount", MemberKind::kPropertyGet, 0, 0,
         [](std::span<Argument>) -> Value { return std::int32_t{0}; }},
    });
  }
};

}  // namespace kavo::test
