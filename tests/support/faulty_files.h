// A file system whose operations fail on purpose, to prove that no document is lost whatever goes wrong.
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kavo::test {

// Wraps any file system and counts its operations: open, info, find, identity, remove, rename, link, flush, folders
// made and removed, set_read_only, and on open files read, write, seek, size and close.
class FaultyFiles : public FileSystem {
 public:
  enum class Counted {
    kAll,
    kMutating,  // open for writing, write, close of a written file, remove, rename, link, flush, folders, set_read_only
  };

  struct Fault {
    std::size_t operation = 1;  // 1-based number of the operation that fails
    FailureNumber number = FailureNumber::kDiskFull;
    Counted counted = Counted::kAll;
    // Every counted operation after it fails too, as on a full or removed disk; removing a file still works, as it
    // does there.
    bool lasting = false;
    // With `lasting`: as in a program that is killed, nothing works any more.
    bool kills = false;
    // A failing write writes this many bytes first.
    std::size_t partial_bytes = 0;
  };

  explicit FaultyFiles(FileSystem& inner) : inner_(inner) {}

  // Starts counting anew.
  void set_fault(const Fault& fault);
  void clear_fault();
  bool fault_happened() const { return fault_happened_; }
  std::size_t operation_count() const { return operations_; }
  // What a power cut does: files that were written and not flushed since are empty. Their names stay.
  void lose_unflushed();

  std::unique_ptr<File> open(std::u16string_view path, Access access) override;
  std::optional<FileInfo> info(std::u16string_view path) override;
  std::optional<FileIdentity> identity(std::u16string_view path) override;
  std::vector<std::u16string> find(std::u16string_view pattern) override;
  void make_folder(std::u16string_view path) override;
  void remove_folder(std::u16string_view path) override;
  void link_file(std::u16string_view path, std::u16string_view second_name) override;
  void flush(const std::vector<std::u16string>& paths) override;
  void remove_file(std::u16string_view path) override;
  void rename_file(std::u16string_view from, std::u16string_view to) override;
  void set_read_only(std::u16string_view path, bool read_only) override;
  std::unique_ptr<FileLock> lock(std::u16string_view path) override { return inner_.lock(path); }
  std::u16string link_target(std::u16string_view path) override { return inner_.link_target(path); }
  void take_permissions(std::u16string_view path, std::u16string_view model, Permissions which) override {
    inner_.take_permissions(path, model, which);
  }
  std::u16string temporary_folder() override { return inner_.temporary_folder(); }
  std::u16string absolute(std::u16string_view path) override { return inner_.absolute(path); }

 private:
  friend class FaultyFile;
  enum class Kind { kReading, kMutating, kRemoving };
  // True when this operation is to fail.
  bool fails(Kind kind);
  void step(Kind kind);  // throws when it is
  [[noreturn]] void raise() const;

  FileSystem& inner_;
  std::optional<Fault> fault_;
  std::set<std::u16string, LessIgnoringCase> unflushed_;  // absolute
  std::size_t operations_ = 0;
  bool fault_happened_ = false;
};

// Calls `run(fault_number)` with a fault at the 1st, 2nd, 3rd ... operation until a run meets no fault any more; the
// fault is cleared before `check(fault_number)` looks at what is left. Returns how many faults there were. `run` must
// put the files back to the start itself.
template <typename Run, typename Check>
std::size_t for_each_fault(FaultyFiles& files, FaultyFiles::Fault fault, Run run, Check check) {
  for (std::size_t number = 1;; ++number) {
    fault.operation = number;
    files.set_fault(fault);
    run(number);
    const bool happened = files.fault_happened();
    files.clear_fault();
    if (!happened) return number - 1;
    check(number);
  }
}

}  // namespace kavo::test
