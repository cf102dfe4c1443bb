// Validation and repair: pages of 1, 10 and 50 MB on the system's files, well formed ones and broken ones.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "html/repair/clsHTMLValidate.h"
#include "page_maker.h"
#include "platform/files.h"

namespace kavo::bench {
namespace {

// Takes every seventh end tag of an element out of the page and puts a bracket into the text instead.
std::string broken(const std::string& page) {
  std::string result;
  std::size_t copied = 0, count = 0;
  for (std::size_t at = 0; (at = page.find("</", at)) != page.npos;) {
    const std::size_t end = page.find('>', at) + 1;
    if (++count % 7 == 0) {
      result.append(page, copied, at - copied).append(" > ");
      copied = end;
    }
    at = end;
  }
  return result.append(page, copied);
}

void validate(benchmark::State& state) {
  const auto folder = std::filesystem::temp_directory_path() / "kavo-validate-bench";
  std::filesystem::create_directories(folder);
  const auto path = folder / "page.htm";
  std::string page = PageMaker(PageKind::kPlain).make(static_cast<std::size_t>(state.range(0)) * 1'000'000);
  const bool is_broken = state.range(1) != 0;
  if (is_broken) page = broken(page);
  clsHTMLValidate validator;
  validator.Filename(path_from_host(path.string()));
  std::ofstream(path, std::ios::binary) << page;
  for (auto _ : state) {
    if (validator.HTMLValidate() != 0) state.SkipWithError("validation failed");
    if (!is_broken) continue;
    state.PauseTiming();
    std::ofstream(path, std::ios::binary) << page;
    state.ResumeTiming();
  }
  state.counters["repairs"] = static_cast<double>(validator.repairs());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(page.size()));
  std::filesystem::remove_all(folder);
}

BENCHMARK(validate)
    ->ArgNames({"MB", "broken"})
    ->ArgsProduct({{1, 10, 50}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime();

}  // namespace
}  // namespace kavo::bench
