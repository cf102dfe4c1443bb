// Writes a page out with its repairs: the bytes of the page between them are copied.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

#include "common/copy_trail.h"
#include "common/pending_file.h"
#include "formats/html/scanner.h"

namespace kavo {

// Opens the file that replaces the page. It is asked for at the first repair, since most pages need none. It throws
// what is to end the repair.
using OpenRepairedPage = std::function<PendingFile&()>;

class RepairedPage {
 public:
  // Borrows the scanner and the trail, which may be null. Without `open` nothing is written and repairs are only
  // counted.
  RepairedPage(HtmlScanner& scanner, OpenRepairedPage open, CopyTrail* trail)
      : scanner_(scanner), open_(std::move(open)), trail_(trail) {}

  // Places are bytes of the page. What is copied or replaced must be in the scanner's window, and places come in order.
  // All three throw what `open` throws, and `failure` when the output cannot be written.
  void copy_until(std::uint64_t position);
  void insert(std::uint64_t position, std::string_view text);
  void replace(std::uint64_t begin, std::uint64_t end, std::string_view text);

  std::uint64_t repairs() const { return repairs_; }
  // Bytes that insert() put in.
  std::uint64_t inserted() const { return inserted_; }

 private:
  void write_repair(std::string_view text);
  void begin_output();

  HtmlScanner& scanner_;
  OpenRepairedPage open_;
  PendingFile* output_ = nullptr;  // once there is a repair
  CopyTrail* trail_;
  std::uint64_t copied_ = 0;  // bytes of the page in the output, once there is a repair
  std::uint64_t inserted_ = 0;
  std::uint64_t growth_ = 0;  // how far a place in the output is ahead of its place in the page
  std::uint64_t repairs_ = 0;
};

}  // namespace kavo
