#include "ui/terminal/terminal_desktop.h"

#include "common/path_parts.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {

std::u16string path_from_terminal(std::string_view line) { return ports().files->absolute(path_from_host(line)); }

std::optional<std::u16string> TerminalDesktop::ask_file(const FileQuestion& question) {
  const std::u16string kind = question.filter.substr(0, question.filter.find(u'|'));
  for (;;) {
    output_ << (question.to_save ? "New file" : "File");
    if (!kind.empty()) output_ << " (" << to_utf8(kind) << ")";
    if (!question.folder.empty()) output_ << ", last time in " << path_to_host(question.folder);
    output_ << ", empty line to cancel: " << std::flush;
    const std::optional<std::string> answer = input_.line();
    if (!answer || answer->empty()) return std::nullopt;
    std::u16string path = path_from_terminal(*answer);
    if (!question.extension.empty() && extension_of(path).empty()) path += u"." + question.extension;
    const auto info = ports().files->info(path);
    const bool is_file = info && !info->is_folder;
    if (!question.to_save) {
      if (is_file) return path;
      output_ << path_to_host(path) << ": there is no such file\n";
      continue;
    }
    if (!info) return path;
    if (is_file) {
      output_ << path_to_host(path) << " exists. Replace it? (y/N): " << std::flush;
      const std::optional<std::string> replace = input_.line();
      if (!replace) return std::nullopt;
      if (*replace == "y" || *replace == "Y") return path;
    } else {
      output_ << path_to_host(path) << " is a folder; name a file in it\n";
    }
  }
}

}  // namespace kavo
