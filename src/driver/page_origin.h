// Where the bytes of a prepared page come from in the page that its author has. Places are 0-based, in bytes.
#pragma once

#include <algorithm>
#include <cstdint>

#include "common/copy_trail.h"

namespace kavo {

struct PageOrigin {
  CopyTrail protected_page;  // the page without its scripts, of the source
  CopyTrail script;          // the script file, of the source
  CopyTrail repair;          // the prepared page, of the protected one

  std::uint64_t of_protected_page(std::uint64_t place) const { return protected_page.input_of(place); }
  std::uint64_t of_script(std::uint64_t place) const { return script.input_of(place); }
  std::uint64_t of_page(std::uint64_t place) const { return of_protected_page(repair.input_of(place)); }
  // The prepared page with its scripts put back: it differs from the source by the repairs alone.
  std::uint64_t of_restored_page(std::uint64_t place) const {
    std::uint64_t origin = place;
    for (const CopyTrail::Run& run : repair.runs()) {
      const std::uint64_t begin = of_protected_page(run.input);
      const std::uint64_t growth = run.output - run.input;  // negative when a repair took more than it gave: it wraps
      if (place < begin + growth) return std::min(origin, begin);
      origin = place - growth;
    }
    return origin;
  }
};

}  // namespace kavo
