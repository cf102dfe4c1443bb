// Finds out which parts of a page belong to the same branch of its scripts' conditions and loops.
//
// An element that begins in one branch and would be closed in another one may never have been opened when the server
// gets there. The script file beside the page says what each placeholder stands for.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/html/marker_reader.h"
#include "formats/script/page_scripts.h"

namespace kavo {

class ScriptBranches {
 public:
  using Branch = std::uint32_t;

  // `server` is the language of the page's server blocks until it declares another one. Throws `failure` when the
  // script file cannot be read.
  ScriptBranches(std::u16string_view script_file, script::Language server)
      : scripts_(script_file, true), languages_(server) {}

  // Takes the placeholder at `position` of the page. Placeholders come in order; those in tags may be left out. When
  // the script file does not hold one, the rest of the page counts as one branch.
  void placeholder(std::string_view marker, std::uint64_t position);
  Branch current() const { return open_.back(); }
  // The branch at `position`. Every placeholder before it must have been handed in.
  Branch at(std::uint64_t position) const;

 private:
  struct Change {
    std::uint64_t position = 0;
    Branch branch = 0;
  };
  void pass(std::string_view block);

  html::MarkerReader scripts_;
  script::PageScripts languages_;
  std::vector<script::Piece> pieces_;
  std::string block_;
  bool has_begun_ = false;
  bool is_lost_ = false;
  std::uint64_t next_ = 0;  // the number of the block that follows in the file
  Branch last_ = 0;
  std::vector<Branch> open_{0};  // the innermost last
  std::vector<Change> changes_;
};

}  // namespace kavo
