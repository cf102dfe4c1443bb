#include "cli/progress_bar.h"

#include <cstdio>

#include "platform/console.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr double kPatience = 0.5;  // seconds
constexpr int kBarWidth = 30;

bool is_wanted(ProgressBar::Mode mode) {
  return mode == ProgressBar::Mode::kBar || (mode == ProgressBar::Mode::kAuto && error_output_is_terminal());
}

}  // namespace

ProgressBar::ProgressBar(Mode mode, std::size_t file_count)
    : wanted_(is_wanted(mode)), file_count_(file_count), started_(ports().clock->seconds()) {}

void ProgressBar::next_file(std::string name) {
  name_ = std::move(name);
  ++file_number_;
}

void ProgressBar::rename(std::string name) {
  if (name == name_) return;
  name_ = std::move(name);
  drawn_percent_ = -1;
}

void ProgressBar::report(std::int16_t percent) {
  if (!wanted_ || file_number_ == 0) return;
  const int whole = static_cast<int>(((file_number_ - 1) * 100 + static_cast<std::size_t>(percent)) / file_count_);
  if (whole == drawn_percent_ || ports().clock->seconds() - started_ < kPatience) return;
  draw(whole);
}

void ProgressBar::draw(int percent) {
  std::string line = "[";
  line.append(static_cast<std::size_t>(percent * kBarWidth / 100), '#');
  line.resize(kBarWidth + 1, '.');
  line += "] " + std::to_string(percent) + " % ";
  // The name is cut between characters, so that the line does not wrap.
  std::u16string name = to_utf16(name_);
  const std::size_t columns = static_cast<std::size_t>(error_output_width());
  const std::size_t room = columns > line.size() + 1 ? columns - line.size() - 1 : 0;
  if (name.size() > room) name = name.substr(name.size() - room);
  const std::size_t width = line.size() + name.size();
  line += to_utf8(name);
  if (width < drawn_width_) line.append(drawn_width_ - width, ' ');
  std::fprintf(stderr, "\r%s", line.c_str());
  std::fflush(stderr);
  drawn_percent_ = percent;
  drawn_width_ = width;
}

void ProgressBar::hide() {
  if (drawn_width_ == 0) return;
  std::fprintf(stderr, "\r%s\r", std::string(drawn_width_, ' ').c_str());
  std::fflush(stderr);
  drawn_width_ = 0;
  drawn_percent_ = -1;
}

}  // namespace kavo
