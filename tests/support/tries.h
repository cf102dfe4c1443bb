// How often a property is tried. The native tests try everything. Under sanitizers and under Wine a try costs ten times
// as much and more, so a part of them must do there.
#pragma once

#include <cstddef>

namespace kavo::test {

#if defined(__SANITIZE_ADDRESS__) || defined(_WIN32)
inline constexpr bool kTriesAreExpensive = true;
#else
inline constexpr bool kTriesAreExpensive = false;
#endif

// Of tries with random input.
constexpr int tries(int all) { return kTriesAreExpensive ? all / 10 : all; }

// The step of tries at every place or with every bit: no multiple of eight, so that in time each bit has its turn.
inline constexpr std::size_t kStepOfTries = kTriesAreExpensive ? 7 : 1;

}  // namespace kavo::test
