#include "support/faulty_files.h"

#include <algorithm>

namespace kavo::test {

class FaultyFile final : public File {
 public:
  FaultyFile(FaultyFiles& owner, std::unique_ptr<File> inner, bool writing)
      : owner_(owner), inner_(std::move(inner)), kind_(writing ? Kind::kMutating : Kind::kReading) {}

  std::size_t read(std::span<char> buffer) override {
    owner_.step(Kind::kReading);
    return inner_->read(buffer);
  }

  void write(std::string_view bytes) override {
    if (owner_.fails(Kind::kMutating)) {
      inner_->write(bytes.substr(0, std::min(bytes.size(), owner_.fault_->partial_bytes)));
      owner_.raise();
    }
    inner_->write(bytes);
  }

  void seek(std::uint64_t position) override {
    owner_.step(Kind::kReading);
    inner_->seek(position);
  }

  std::uint64_t size() override {
    owner_.step(Kind::kReading);
    return inner_->size();
  }

  void close() override {
    const bool fails = owner_.fails(kind_);
    inner_->close();  // the system lets go of the file even when it reports a failure
    if (fails) owner_.raise();
  }

 private:
  using Kind = FaultyFiles::Kind;
  FaultyFiles& owner_;
  std::unique_ptr<File> inner_;
  Kind kind_;
};

void FaultyFiles::set_fault(const Fault& fault) {
  fault_ = fault;
  operations_ = 0;
  fault_happened_ = false;
}

void FaultyFiles::clear_fault() { fault_.reset(); }

void FaultyFiles::lose_unflushed() {
  for (const std::u16string& path : unflushed_) inner_.open(path, Access::kCreate)->close();
}

bool FaultyFiles::fails(Kind kind) {
  if (!fault_ || (fault_->counted == Counted::kMutating && kind == Kind::kReading)) return false;
  ++operations_;
  const bool later = operations_ > fault_->operation && fault_->lasting && (fault_->kills || kind != Kind::kRemoving);
  if (operations_ != fault_->operation && !later) return false;
  fault_happened_ = true;
  return true;
}

void FaultyFiles::raise() const { throw failure(fault_->number, u"A fault that the test asked for"); }

void FaultyFiles::step(Kind kind) {
  if (fails(kind)) raise();
}

std::unique_ptr<File> FaultyFiles::open(std::u16string_view path, Access access) {
  const bool writing = access != Access::kRead;
  step(writing ? Kind::kMutating : Kind::kReading);
  auto file = std::make_unique<FaultyFile>(*this, inner_.open(path, access), writing);
  if (writing) unflushed_.insert(inner_.absolute(path));
  return file;
}

std::optional<FileInfo> FaultyFiles::info(std::u16string_view path) {
  step(Kind::kReading);
  return inner_.info(path);
}

std::optional<FileIdentity> FaultyFiles::identity(std::u16string_view path) {
  step(Kind::kReading);
  return inner_.identity(path);
}

std::vector<std::u16string> FaultyFiles::find(std::u16string_view pattern) {
  step(Kind::kReading);
  return inner_.find(pattern);
}

void FaultyFiles::make_folder(std::u16string_view path) {
  step(Kind::kMutating);
  inner_.make_folder(path);
}

void FaultyFiles::remove_folder(std::u16string_view path) {
  step(Kind::kRemoving);
  inner_.remove_folder(path);
}

void FaultyFiles::link_file(std::u16string_view path, std::u16string_view second_name) {
  step(Kind::kMutating);
  inner_.link_file(path, second_name);
}

void FaultyFiles::flush(const std::vector<std::u16string>& paths) {
  for (const std::u16string& path : paths) {
    step(Kind::kMutating);
    inner_.flush({path});
    unflushed_.erase(inner_.absolute(path));
  }
}

void FaultyFiles::remove_file(std::u16string_view path) {
  step(Kind::kRemoving);
  inner_.remove_file(path);
  unflushed_.erase(inner_.absolute(path));
}

void FaultyFiles::rename_file(std::u16string_view from, std::u16string_view to) {
  step(Kind::kMutating);
  inner_.rename_file(from, to);
  unflushed_.erase(inner_.absolute(to));
  if (unflushed_.erase(inner_.absolute(from)) != 0) unflushed_.insert(inner_.absolute(to));
}

void FaultyFiles::set_read_only(std::u16string_view path, bool read_only) {
  step(Kind::kMutating);
  inner_.set_read_only(path, read_only);
}

}  // namespace kavo::test
