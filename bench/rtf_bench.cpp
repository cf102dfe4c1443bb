// Extraction and insertion of RTF objects: documents of 1, 10 and 50 MB on the system's files, mostly pictures (60
// percent of the bytes) and mostly text (5).
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "office/clsRTFUtil.h"
#include "platform/files.h"
#include "rtf_maker.h"

namespace kavo::bench {
namespace {

enum class Operation { kExtract, kInsert };

// A document in the temporary folder, in both of its states.
class Document {
 public:
  Document(std::size_t megabytes, unsigned picture_percent)
      : folder_(std::filesystem::temp_directory_path() / "kavo-rtf-bench"), file_(folder_ / "document.rtf") {
    std::filesystem::create_directories(folder_);
    whole_ = RtfMaker(picture_percent).make(megabytes * 1'000'000);
    util_.RTFFile(path_from_host(file_.string()));
  }
  ~Document() { std::filesystem::remove_all(folder_); }

  void restore() { std::ofstream(file_, std::ios::binary) << whole_; }
  bool run(Operation operation) {
    return (operation == Operation::kExtract ? util_.ExtractObjects() : util_.InsertObjects()) == 0;
  }
  std::size_t size() const { return whole_.size(); }

 private:
  std::filesystem::path folder_;
  std::filesystem::path file_;
  std::string whole_;
  clsRTFUtil util_;
};

void rtf(benchmark::State& state, Operation operation) {
  Document document(static_cast<std::size_t>(state.range(0)), static_cast<unsigned>(state.range(1)));
  for (auto _ : state) {
    state.PauseTiming();
    document.restore();
    const bool prepared = operation == Operation::kExtract || document.run(Operation::kExtract);
    state.ResumeTiming();
    if (!prepared || !document.run(operation)) state.SkipWithError("the operation failed");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.size()));
}

BENCHMARK_CAPTURE(rtf, extract, Operation::kExtract)
    ->ArgNames({"MB", "pictures"})
    ->ArgsProduct({{1, 10, 50}, {60, 5}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(rtf, insert, Operation::kInsert)
    ->ArgNames({"MB", "pictures"})
    ->ArgsProduct({{1, 10, 50}, {60, 5}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace kavo::bench
