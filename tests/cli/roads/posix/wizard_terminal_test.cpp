// The wizard in a real terminal: a person types at its questions, watches the bar and presses Ctrl+C.
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

// The command on a terminal of its own, 80 columns wide.
class Terminal {
 public:
  Terminal(std::vector<std::string> arguments, const TempFolder& working_folder) {
    arguments.insert(arguments.begin(), KAVO_PROGRAM);
    std::vector<char*> argv;
    for (std::string& word : arguments) argv.push_back(word.data());
    argv.push_back(nullptr);
    const std::string folder = path_to_host(working_folder.path());
    const winsize size{24, 80, 0, 0};
    child_ = ::forkpty(&descriptor_, nullptr, nullptr, &size);
    if (child_ != 0) return;
    if (::chdir(folder.c_str()) == 0) ::execv(KAVO_PROGRAM, argv.data());
    ::_exit(99);
  }
  ~Terminal() { ::close(descriptor_); }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  void type(std::string_view text) const {
    EXPECT_EQ(::write(descriptor_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  // Waits until this is on the screen, after what was waited for before.
  void wait_for(std::string_view text) {
    while (shown_.find(text, seen_) == std::string::npos)
      if (!read_on()) return void(ADD_FAILURE() << '"' << text << "\" does not come; after it had come:\n" << shown_);
    seen_ = shown_.find(text, seen_) + text.size();
  }
  // Confirms the form, having looked at it for longer than it takes to draw a bar at once.
  void confirm() const {
    std::this_thread::sleep_for(std::chrono::milliseconds(550));
    type(":ok\n");
  }
  // Waits for the end; the exit code. A command that says nothing for long is ended.
  int end() {
    while (read_on()) {
    }
    if (!is_closed_) ::kill(child_, SIGKILL);
    int status = 0;
    ::waitpid(child_, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  }
  const std::string& shown() const { return shown_; }

 private:
  // False at the end, or when nothing comes for long.
  bool read_on() {
    constexpr int kLongest = 20000;  // milliseconds
    pollfd waiting{descriptor_, POLLIN, 0};
    if (::poll(&waiting, 1, kLongest) <= 0) return false;
    std::array<char, 4096> block;
    const ssize_t count = ::read(descriptor_, block.data(), block.size());
    is_closed_ = count <= 0;
    if (is_closed_) return false;
    shown_.append(block.data(), static_cast<std::size_t>(count));
    return true;
  }

  pid_t child_ = -1;
  int descriptor_ = -1;
  std::string shown_;
  std::size_t seen_ = 0;
  bool is_closed_ = false;  // by the end of the command
};

constexpr char kControlC[] = "\x03";

// A page that keeps the run busy for a while.
std::string long_page() {
  std::string page = "<html><body>\r\n";
  for (int i = 0; i < 150'000; ++i) page += "<p>Paragraph " + std::to_string(i) + " of <b>many</b></p>\r\n";
  return page + "</body></html>\r\n";
}

TEST(WizardTerminal, APersonAnswersAndWatchesTheBar) {
  const TempFolder folder;
  folder.write(u"page.htm", long_page());
  Terminal terminal({"wizard"}, folder);
  terminal.wait_for("== Start translation ==");
  terminal.wait_for("[f]ile you wish to translate []: ");
  terminal.type("page.htm\n");
  terminal.wait_for("[B]rowse? (y/N): ");
  terminal.confirm();
  terminal.wait_for(" % Preparing page.htm");
  terminal.wait_for(" % Converting page_htm.htm");
  terminal.wait_for(path_to_host(folder.path(u"page_htm_htm_FR.tud")) + "\r\n");
  EXPECT_EQ(terminal.end(), 0) << terminal.shown();
}

TEST(WizardTerminal, ControlCAtAQuestionInterrupts) {
  const TempFolder folder;
  folder.write(u"note.txt", "Hello\r\n");
  Terminal terminal({"wizard", "note.txt"}, folder);
  terminal.wait_for("/note.txt]: ");
  terminal.type(kControlC);
  terminal.wait_for("kavo: interrupted");
  EXPECT_EQ(terminal.end(), 130) << terminal.shown();
  EXPECT_EQ(folder.entry_count(), 1u);
}

TEST(WizardTerminal, ControlCInTheRunInterruptsAndLeavesNothingHalfWritten) {
  for (const char* const step : {" % Preparing page.htm", " % Converting page_htm.htm"}) {
    SCOPED_TRACE(step);
    const TempFolder folder;
    const std::string page = long_page();
    folder.write(u"page.htm", page);
    Terminal terminal({"wizard", "page.htm"}, folder);
    terminal.wait_for("/page.htm]: ");
    terminal.confirm();
    terminal.wait_for(step);
    terminal.type(kControlC);
    terminal.wait_for("kavo: interrupted");
    EXPECT_EQ(terminal.end(), 130) << terminal.shown();
    EXPECT_EQ(folder.read(u"page.htm"), page);
    EXPECT_FALSE(folder.exists(u"page_htm_htm_FR.tud"));
    EXPECT_FALSE(folder.exists(u"page_htm_htm_FR.tud.skl"));
  }
}

TEST(WizardTerminal, AFailureSaysWhatWhereAndWhatToDo) {
  const TempFolder folder;
  folder.write(u"letter.rtf", "a document");
  Terminal terminal({"wizard", "letter.rtf"}, folder);
  terminal.wait_for("/letter.rtf]: ");
  terminal.type(":ok\n");
  terminal.wait_for("No bilingual document could be made of this file: " + path_to_host(folder.path(u"letter.rtf")));
  terminal.wait_for("This is not an RTF document");
  terminal.wait_for("Please make sure that it is whole");
  EXPECT_EQ(terminal.end(), 1) << terminal.shown();
}

}  // namespace
}  // namespace kavo::test
