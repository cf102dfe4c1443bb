// What a run reports while it works: its progress in percent, and each message of the converters (what failed, what was
// repaired). This goes beyond the contract: a host sees only results, but the command shows progress and messages.
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "common/folder_run.h"
#include "common/messages.h"

namespace kavo {

struct RunObserver {
  // Each of the three may be empty.
  std::function<void(std::u16string_view file, int percent)> progress;
  std::function<void(const Message& message)> message;
  // Called when a prepared file goes to its filter, with the percentage of the whole run; a filter reports no progress
  // itself.
  std::function<void(std::u16string_view file, int percent)> converting = {};

  // Passes a message on. Names of scratch files in it become the names that the user knows.
  void tell(const Message& told) const {
    if (!message) return;
    Message known = told;
    known.text = FolderRun::without_scratch_folder(told.text);
    message(known);
  }
  void tell_all(std::span<const Message> told) const {
    for (const Message& each : told) tell(each);
  }
  // The message lists of the page converters begin with an entry that only names the run.
  void tell_all_after_heading(std::span<const Message> told) const {
    if (!told.empty()) tell_all(told.subspan(1));
  }
  // Takes the messages of a FolderRun. The observer must outlive that run.
  FolderRun::Report report() const {
    return [this](const std::u16string& text) { tell({text}); };
  }
  void tell_progress(std::u16string_view file, int percent) const {
    if (progress) progress(file, percent);
  }
  void tell_converting(std::u16string_view file, int percent) const {
    if (converting) converting(file, percent);
  }
};

}  // namespace kavo
