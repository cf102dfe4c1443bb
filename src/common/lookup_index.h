// Finds the places of a key in a file that is read forward: the next one from the current place, or else the first one
// from the beginning.
//
// A sorted list rather than a map: it is built once, an entry takes no more memory than its key and place, and a key
// may have many places.
#pragma once

#include <algorithm>
#include <compare>
#include <vector>

namespace kavo {

template <class Key, class Place>
class LookupIndex {
 public:
  void add(const Key& key, const Place& place) { entries_.push_back({key, place}); }
  // After the last add(), before the first find().
  void sort() { std::sort(entries_.begin(), entries_.end()); }

  // Calls accept(place) for each place of the key from `here` on, then for each before it, until one is accepted. False
  // when none is. If keys are hashes, `accept` must distinguish different texts with the same hash.
  template <class Accept>
  bool find(const Key& key, const Place& here, Accept&& accept) const {
    const auto first = std::ranges::lower_bound(entries_, key, {}, &Entry::key);
    const auto next = std::lower_bound(first, entries_.end(), Entry{key, here});
    for (auto entry = next; entry != entries_.end() && entry->key == key; ++entry)
      if (accept(entry->place)) return true;
    return std::any_of(first, next, [&](const Entry& entry) { return accept(entry.place); });
  }

 private:
  struct Entry {
    Key key;
    Place place;
    auto operator<=>(const Entry&) const = default;
  };
  std::vector<Entry> entries_;
};

}  // namespace kavo
