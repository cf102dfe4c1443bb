// Maps places of a prepared page to places of the author's page. Places count bytes from 0.
#pragma once

#include <algorithm>
#include <cstdint>

#include "common/copy_trail.h"

namespace kavo {

struct PageOrigin {
  CopyTrail protected_page;  // from the source to the page without its scripts
  CopyTrail script;          // from the source to the script file
  CopyTrail repair;          // from the page without its scripts to the prepared page

  std::uint64_t of_protected_page(std::uint64_t place) const { return protected_page.input_of(place); }
  std::uint64_t of_script(std::uint64_t place) const { return script.input_of(place); }
  std::uint64_t of_page(std::uint64_t place) const { return of_protected_page(repair.input_of(place)); }
  // For the prepared page with its scripts put back: it differs from the source by the repairs alone.
  std::uint64_t of_restored_page(std::uint64_t place) const {
    std::uint64_t origin = place;
    CopyTrail::Reader repairs(repair);
    for (CopyTrail::Run run; repairs.next(run);) {
      const std::uint64_t begin = of_protected_page(run.input);
      const std::uint64_t growth = run.output - run.input;  // negative, by wrapping, when a repair shortened the page
      if (place < begin + growth) return std::min(origin, begin);
      origin = place - growth;
    }
    return origin;
  }
};

}  // namespace kavo
