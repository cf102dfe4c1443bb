// Script protection and restoring: server pages of 1, 10 and 50 MB on the system's files; restoring also with every
// tenth pair of placeholders swapped, as translation swaps words.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "html/scripts/clsASP2HTML.h"
#include "page_maker.h"
#include "platform/files.h"

namespace kavo::bench {
namespace {

// A page in the temporary folder with its protected page and script file.
class Page {
 public:
  explicit Page(std::size_t megabytes) : folder_(std::filesystem::temp_directory_path() / "kavo-html-bench") {
    std::filesystem::create_directories(folder_);
    const std::string text = PageMaker(PageKind::kServer).make(megabytes * 1'000'000);
    size_ = text.size();
    std::ofstream(folder_ / "page.asp", std::ios::binary) << text;
    converter_.ASPFile(path_from_host((folder_ / "page.asp").string()));
  }
  ~Page() { std::filesystem::remove_all(folder_); }

  bool protect() { return converter_.ASP2HTML() == 0; }
  bool restore() { return converter_.HTML2ASP() == 0; }
  std::int64_t size() const { return static_cast<std::int64_t>(size_); }

  // Swaps the numbers of every tenth placeholder of the protected page and the next one.
  void swap_placeholders() {
    const auto path = folder_ / "page_asp.htm";
    std::string text(std::filesystem::file_size(path), '\0');
    std::ifstream(path, std::ios::binary).read(text.data(), static_cast<std::streamsize>(text.size()));
    std::string swapped;
    std::size_t copied = 0, count = 0;
    const auto find = [&](std::size_t from) { return text.find("<!-- ASP2HTML ", from); };
    const auto end_of = [&](std::size_t at) { return text.find("-->", at) + 3; };
    for (std::size_t first = find(0), second; first != text.npos; first = find(second)) {
      second = find(first + 1);
      if (second == text.npos) break;
      if (++count % 10 != 0) continue;
      const auto first_end = end_of(first), second_end = end_of(second);
      swapped += text.substr(copied, first - copied) + text.substr(second, second_end - second) +
                 text.substr(first_end, second - first_end) + text.substr(first, first_end - first);
      copied = second = second_end;
    }
    std::ofstream(path, std::ios::binary) << swapped << text.substr(copied);
  }

 private:
  std::filesystem::path folder_;
  std::size_t size_ = 0;
  clsASP2HTML converter_;
};

void protect(benchmark::State& state) {
  Page page(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state)
    if (!page.protect()) state.SkipWithError("protecting failed");
  state.SetBytesProcessed(state.iterations() * page.size());
}

void restore(benchmark::State& state) {
  Page page(static_cast<std::size_t>(state.range(0)));
  if (!page.protect()) state.SkipWithError("protecting failed");
  if (state.range(1) != 0) page.swap_placeholders();
  for (auto _ : state)
    if (!page.restore()) state.SkipWithError("restoring failed");
  state.SetBytesProcessed(state.iterations() * page.size());
}

BENCHMARK(protect)->ArgName("MB")->Arg(1)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(restore)
    ->ArgNames({"MB", "swapped"})
    ->ArgsProduct({{1, 10, 50}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace kavo::bench
