// Extraction, merging, removal and insertion of objects on MIF files of 1, 10 and 50 MB on the system's files, and the
// cost of one entry in a small and in a full table.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "mif/clsMIFUtilities.h"
#include "mif_maker.h"
#include "platform/files.h"

namespace kavo::bench {
namespace {

// A document in a folder of its own.
class Document {
 public:
  explicit Document(std::string bytes)
      : folder_(std::filesystem::temp_directory_path() / "kavo-mif-bench"),
        file_(folder_ / "book.mif"),
        bytes_(std::move(bytes)) {
    std::filesystem::create_directories(folder_);
    utilities_.options_are_temporary();
    utilities_.SplitOptions(1);
    restore();
  }
  ~Document() { std::filesystem::remove_all(folder_); }

  void restore() { std::ofstream(file_, std::ios::binary) << bytes_; }
  bool extract() {
    start();
    utilities_.Extract();
    return utilities_.extracted() && utilities_.EndBatch() == 0;
  }
  bool merge() {
    start();
    return utilities_.Merge() == 0;
  }
  bool remove() {
    start();
    return utilities_.RemoveObjects() == 0;
  }
  bool insert() {
    start();
    return utilities_.InsertObjects() == 0;
  }
  std::int64_t size() const { return static_cast<std::int64_t>(bytes_.size()); }

 private:
  void start() {
    utilities_.StartBatch();
    utilities_.MIFFile(path_from_host(file_.string()));
  }

  std::filesystem::path folder_;
  std::filesystem::path file_;
  std::string bytes_;
  clsMIFUtilities utilities_;
};

Document manual(const benchmark::State& state) {
  return Document(MifMaker().make(static_cast<std::size_t>(state.range(0)) * 1'000'000));
}

void check(benchmark::State& state, bool done) {
  if (!done) state.SkipWithError("the operation failed");
}

void mif_extract(benchmark::State& state) {
  Document document = manual(state);
  for (auto _ : state) check(state, document.extract());
  state.SetBytesProcessed(state.iterations() * document.size());
}

void mif_merge(benchmark::State& state) {
  Document document = manual(state);
  check(state, document.extract());
  for (auto _ : state) check(state, document.merge());  // untouched side files: the document stays as it is
  state.SetBytesProcessed(state.iterations() * document.size());
}

void mif_remove_objects(benchmark::State& state) {
  Document document = manual(state);
  for (auto _ : state) {
    state.PauseTiming();
    document.restore();
    state.ResumeTiming();
    check(state, document.remove());
  }
  state.SetBytesProcessed(state.iterations() * document.size());
}

void mif_insert_objects(benchmark::State& state) {
  Document document = manual(state);
  for (auto _ : state) {
    state.PauseTiming();
    document.restore();
    check(state, document.remove());
    state.ResumeTiming();
    check(state, document.insert());
  }
  state.SetBytesProcessed(state.iterations() * document.size());
}

// Index markers with as many different texts as the argument says. The time shown is that of one entry.
void mif_entries(benchmark::State& state) {
  Document document(MifMaker().make_markers(static_cast<std::size_t>(state.range(0))));
  for (auto _ : state) check(state, document.extract());
  state.counters["per_entry"] = benchmark::Counter(
      static_cast<double>(state.range(0)), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void sizes(benchmark::internal::Benchmark* run) {
  run->ArgName("MB")->Arg(1)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond)->UseRealTime();
}
BENCHMARK(mif_extract)->Apply(sizes);
BENCHMARK(mif_merge)->Apply(sizes);
BENCHMARK(mif_remove_objects)->Apply(sizes);
BENCHMARK(mif_insert_objects)->Apply(sizes);
BENCHMARK(mif_entries)->ArgName("entries")->Arg(100)->Arg(1000)->Arg(32767)->UseRealTime();

}  // namespace
}  // namespace kavo::bench
