#include "common/commit_together.h"

#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

// One file on its way to its final name; undone unless kept.
class Step {
 public:
  explicit Step(PendingFile& file) : file_(file) {}
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;
  ~Step() { undo(); }

  void finish() {
    file_.finish();
    finished_ = true;
  }
  void place_keeping_the_old() {
    const auto old = ports().files->info(file_.final_path());
    if (old && !old->is_folder) {
      const std::u16string aside = name_aside(file_.final_path());
      replace_file(file_.final_path(), aside);
      aside_ = aside;
    }
    place();
  }
  void place() {
    replace_file(file_.temporary_path(), file_.final_path());
    finished_ = false;
    placed_ = true;
  }
  void keep() {
    finished_ = placed_ = false;
    if (const std::u16string aside = std::exchange(aside_, {}); !aside.empty()) remove(aside);
  }

 private:
  static void remove(const std::u16string& path) noexcept {
    try {
      FileSystem& files = *ports().files;
      if (const auto entry = files.info(path); entry && entry->is_read_only) files.set_read_only(path, false);
      files.remove_file(path);
    } catch (const failure&) {
      // What cannot be removed is left behind; the failure being handled matters more.
    }
  }
  void undo() noexcept {
    if (finished_) remove(file_.temporary_path());
    if (placed_ && aside_.empty()) remove(file_.final_path());
    if (aside_.empty()) return;
    try {
      replace_file(aside_, file_.final_path());
    } catch (const failure&) {
      // The old file stays whole under its set-aside name.
    }
  }

  PendingFile& file_;
  std::u16string aside_;  // where the old file is, "" when it was not moved
  bool finished_ = false;
  bool placed_ = false;
};

}  // namespace

void commit_together(std::initializer_list<PendingFile*> files) {
  std::vector<std::unique_ptr<Step>> steps;
  for (PendingFile* file : files) {
    steps.push_back(std::make_unique<Step>(*file));
    steps.back()->finish();
  }
  for (std::size_t i = 0; i + 1 < steps.size(); ++i) steps[i]->place_keeping_the_old();
  if (!steps.empty()) steps.back()->place();
  for (auto& step : steps) step->keep();
}

}  // namespace kavo
