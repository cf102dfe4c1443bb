// Runs clsASP2HTML on texts, through files in memory.
#pragma once

#include <string>
#include <string_view>

#include "asp2html_twin.h"
#include "common/block_reader.h"
#include "html/scripts/clsASP2HTML.h"
#include "platform/ports.h"
#include "support/fake_clock.h"
#include "support/fake_desktop.h"
#include "support/memory_files.h"

namespace kavo::test {

// Ports for one run: nothing outside is read or changed.
struct MemoryRun {
  MemoryRun() {
    ports().files = &files;
    ports().desktop = &desktop;
    ports().clock = &clock;
  }
  PortsScope scope;
  MemoryFiles files;
  FakeDesktop desktop;
  FakeClock clock;
};

// A failed call gives its messages in the place of the page.
inline std::string failure_text(const clsASP2HTML& converter) {
  std::string text = "FAILED";
  for (const Message& message : converter.ErrorList()) text += "; " + path_to_host(message.text);
  return text;
}

inline Protected protect(std::string_view page, std::size_t block_size = 4096) {
  MemoryRun run;
  const BlockSizeScope blocks(block_size);
  run.files.put(u"C:\\WORK\\page.asp", page);
  clsASP2HTML converter;
  converter.ASPFile(u"C:\\WORK\\page.asp");
  if (converter.ASP2HTML() != 0) return {failure_text(converter), ""};
  return {run.files.get(u"C:\\WORK\\page_asp.htm"), run.files.get(u"C:\\WORK\\page_asp.scr")};
}

inline std::string restore(std::string_view html, std::string_view script, std::size_t block_size = 4096) {
  MemoryRun run;
  const BlockSizeScope blocks(block_size);
  run.files.put(u"C:\\WORK\\page_asp.htm", html);
  run.files.put(u"C:\\WORK\\page_asp.scr", script);
  clsASP2HTML converter;
  converter.HTMFile(u"C:\\WORK\\page_asp.htm");
  if (converter.HTML2ASP() != 0) return failure_text(converter);
  return run.files.get(u"C:\\WORK\\page.asp");
}

inline std::string round_trip(std::string_view page, std::size_t block_size = 4096) {
  const Protected result = protect(page, block_size);
  return restore(result.page, result.script, block_size);
}

}  // namespace kavo::test
