// A desktop without a screen. It returns what the test sets and records what it was asked for.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/desktop.h"

namespace kavo::test {

class FakeDesktop : public Desktop {
 public:
  struct MessageBox {
    std::u16string text;
    std::u16string caption;
    MessageIcon icon;
    bool operator==(const MessageBox&) const = default;
  };
  std::vector<MessageBox> message_boxes;
  std::vector<std::u16string> activated;
  std::vector<std::pair<std::uintptr_t, std::uint32_t>> posted;
  std::map<std::u16string, std::uintptr_t, std::less<>> windows;  // by class name
  std::optional<std::u16string> caption;
  std::vector<FileQuestion> file_questions;
  std::vector<std::optional<std::u16string>>
      file_answers;  // one for each question in order; when none is left, the dialog is cancelled
  std::size_t process_messages_calls = 0;
  // What happens while messages are processed: a host's event handler, a failure 18 ...
  std::function<void()> on_process_messages;

  void process_messages() override {
    ++process_messages_calls;
    if (on_process_messages) on_process_messages();
    throw_if_interrupted();
  }
  std::optional<std::u16string> foreground_caption() override { return caption; }
  void activate(std::u16string_view window_caption) override { activated.emplace_back(window_caption); }
  std::uintptr_t find_window(std::u16string_view class_name) override {
    const auto found = windows.find(class_name);
    return found == windows.end() ? 0 : found->second;
  }
  void post_message(std::uintptr_t window, std::uint32_t message) override { posted.emplace_back(window, message); }
  void message_box(std::u16string_view text, std::u16string_view box_caption, MessageIcon icon) override {
    message_boxes.push_back({std::u16string(text), std::u16string(box_caption), icon});
  }
  std::optional<std::u16string> ask_file(const FileQuestion& question) override {
    file_questions.push_back(question);
    if (file_answers.empty()) return std::nullopt;
    const std::optional<std::u16string> answer = file_answers.front();
    file_answers.erase(file_answers.begin());
    return answer;
  }
};

}  // namespace kavo::test
