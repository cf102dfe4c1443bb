// A progress bar on standard error, for runs that take longer than half a second.
#pragma once

#include <cstdint>
#include <string>

namespace kavo {

class ProgressBar {
 public:
  enum class Mode { kAuto, kBar, kNone };  // kAuto: a bar when a person sees it

  ProgressBar(Mode mode, std::size_t file_count);
  ~ProgressBar() { hide(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  // The next file (its name as the user wrote it) begins at 0 percent.
  void next_file(std::string name);
  // Shows another text instead of the file's name.
  void rename(std::string name);
  // Percent of the current file; the bar shows the share of all files.
  void report(std::int16_t percent);
  // Clears the line, so that other text can be written; the next report() draws it again.
  void hide();

 private:
  void draw(int percent);

  bool wanted_;
  std::size_t file_count_;
  std::size_t file_number_ = 0;
  std::string name_;
  double started_;
  int drawn_percent_ = -1;
  std::size_t drawn_width_ = 0;
};

}  // namespace kavo
