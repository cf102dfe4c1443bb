// Finds bytes fast, so that scanners can skip the plain runs of a document.
//
// Each works on [p, end) and returns `end` when nothing is found. x86-64 always has SSE2, so that is the only vector
// form; `simple` has the plain versions, which other processors use and the tests compare with.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kavo {

namespace simple {

// First byte that is one of kBytes.
template <char... kBytes>
const char* find_any(const char* p, const char* end) noexcept {
  while (p != end && !((*p == kBytes) || ...)) ++p;
  return p;
}

// First place where `first` is followed by one of kSeconds; a `first` that is the very last byte does not count.
template <char kFirst, char... kSeconds>
const char* find_pair(const char* p, const char* end) noexcept {
  for (; end - p >= 2; ++p)
    if (*p == kFirst && ((p[1] == kSeconds) || ...)) return p;
  return end;
}

}  // namespace simple

#if defined(__SSE2__)

template <char... kBytes>
const char* find_any(const char* p, const char* end) noexcept {
  const auto matches = [](const char* at) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    __m128i hit = _mm_setzero_si128();
    ((hit = _mm_or_si128(hit, _mm_cmpeq_epi8(block, _mm_set1_epi8(kBytes)))), ...);
    return hit;
  };
  // Markup is dense, so most matches are in the first block.
  if (end - p >= 16) {
    const int mask = _mm_movemask_epi8(matches(p));
    if (mask != 0) return p + __builtin_ctz(static_cast<unsigned>(mask));
    p += 16;
  }
  // Then four blocks a turn: one test for the common case that none of them holds a match.
  while (end - p >= 64) {
    const __m128i a = matches(p), b = matches(p + 16), c = matches(p + 32), d = matches(p + 48);
    if (_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d))) != 0) {
      const unsigned low =
          static_cast<unsigned>(_mm_movemask_epi8(a)) | (static_cast<unsigned>(_mm_movemask_epi8(b)) << 16);
      if (low != 0) return p + __builtin_ctz(low);
      const unsigned high =
          static_cast<unsigned>(_mm_movemask_epi8(c)) | (static_cast<unsigned>(_mm_movemask_epi8(d)) << 16);
      return p + 32 + __builtin_ctz(high);
    }
    p += 64;
  }
  while (end - p >= 16) {
    const int mask = _mm_movemask_epi8(matches(p));
    if (mask != 0) return p + __builtin_ctz(static_cast<unsigned>(mask));
    p += 16;
  }
  return simple::find_any<kBytes...>(p, end);
}

template <char kFirst, char... kSeconds>
const char* find_pair(const char* p, const char* end) noexcept {
  const auto matches = [](const char* at) {
    const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 1));
    __m128i hit = _mm_setzero_si128();
    ((hit = _mm_or_si128(hit, _mm_cmpeq_epi8(second, _mm_set1_epi8(kSeconds)))), ...);
    return _mm_movemask_epi8(_mm_and_si128(hit, _mm_cmpeq_epi8(first, _mm_set1_epi8(kFirst))));
  };
  if (end - p < 17) return simple::find_pair<kFirst, kSeconds...>(p, end);
  for (; end - p >= 17; p += 16) {
    const int mask = matches(p);
    if (mask != 0) return p + __builtin_ctz(static_cast<unsigned>(mask));
  }
  // The rest is read as one block that begins with bytes already seen, which hold no match.
  const int mask = matches(end - 17);
  return mask != 0 ? end - 17 + __builtin_ctz(static_cast<unsigned>(mask)) : end;
}

#else

using simple::find_any;
using simple::find_pair;

#endif

// First occurrence of a text; `needle` must not be empty. Linear for the needles of our formats, whose first two
// bytes do not repeat.
inline const char* find_text(const char* p, const char* end, std::string_view needle) noexcept {
  const auto length = static_cast<std::ptrdiff_t>(needle.size());
  while (end - p >= length) {
    const auto* hit =
        static_cast<const char*>(std::memchr(p, needle[0], static_cast<std::size_t>(end - p - length + 1)));
    if (hit == nullptr) return end;
    // Comparing the last byte first avoids the call for most texts that only begin alike.
    if (hit[length - 1] == needle.back() && std::memcmp(hit, needle.data(), needle.size()) == 0) return hit;
    p = hit + 1;
  }
  return end;
}

// ASCII letters without case; `lower` must be lower case. True when [p, end) begins with it.
inline bool begins_with_ignoring_case(const char* p, const char* end, std::string_view lower) noexcept {
  if (static_cast<std::size_t>(end - p) < lower.size()) return false;
  for (std::size_t i = 0; i < lower.size(); ++i) {
    const char c = p[i];
    if ((c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c) != lower[i]) return false;
  }
  return true;
}

}  // namespace kavo
