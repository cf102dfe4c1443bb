#include "suite/memory/unit_alignment.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace kavo {
namespace {

constexpr std::uint32_t kNothing = 0;  // the number of "" and of a missing neighbour

// Gives texts small numbers, equal texts the same.
class Numbers {
 public:
  Numbers() { numbers_.emplace("", kNothing); }
  std::uint32_t of(std::string_view text) {
    return numbers_.try_emplace(text, static_cast<std::uint32_t>(numbers_.size())).first->second;
  }

 private:
  std::unordered_map<std::string_view, std::uint32_t> numbers_;
};

struct Unit {
  std::uint32_t text = kNothing;
  std::uint32_t name = kNothing;
  std::uint32_t element = kNothing;
  std::uint32_t leaf = kNothing;
  std::uint32_t before = kNothing;
  std::uint32_t behind = kNothing;
  std::uint32_t gap = 0;
  std::uint32_t partner = kNoUnit;
};

std::string_view last_step(std::string_view element) { return element.substr(element.rfind('/') + 1); }

class Alignment {
 public:
  Alignment(std::span<const PlacedText> old_units, std::span<const PlacedText> new_units) {
    const auto has_element = [](const PlacedText& unit) { return !unit.element.empty(); };
    const bool knows_elements = std::ranges::any_of(old_units, has_element);
    fill(old_, old_units, knows_elements);
    fill(new_, new_units, knows_elements);
  }

  std::vector<std::uint32_t> run() {
    pair(
        [](const Unit& unit) {
          return Key{unit.name, unit.text};
        },
        [](const Unit& unit) { return unit.name != kNothing; }, [](const Unit& unit) { return unit.name != kNothing; });
    pair([](const Unit& unit) { return Key{unit.text, unit.element, unit.before, unit.behind}; });
    pair([](const Unit& unit) { return Key{unit.text, unit.leaf, unit.before, unit.behind}; });
    pair([](const Unit& unit) { return Key{unit.text, unit.element, unit.before}; });
    pair([](const Unit& unit) { return Key{unit.text, unit.element, unit.behind}; });
    number_gaps();
    pair([](const Unit& unit) { return Key{unit.text, unit.element, unit.gap}; });
    // An editor may have dropped the element of an old text.
    pair(
        [](const Unit& unit) {
          return Key{unit.text, unit.gap};
        },
        [](const Unit& unit) { return unit.element == kNothing; }, [](const Unit&) { return true; });
    std::vector<std::uint32_t> partners;
    partners.reserve(new_.size());
    for (const Unit& unit : new_) partners.push_back(unit.partner);
    return partners;
  }

 private:
  using Key = std::array<std::uint32_t, 4>;
  struct Keyed {
    Key key;
    std::uint32_t index;
    auto operator<=>(const Keyed&) const = default;
  };

  void fill(std::vector<Unit>& units, std::span<const PlacedText> given, bool knows_elements) {
    units.resize(given.size());
    for (std::size_t i = 0; i < given.size(); ++i) {
      units[i].text = texts_.of(given[i].text);
      units[i].name = words_.of(given[i].name);
      if (!knows_elements) continue;
      units[i].element = words_.of(given[i].element);
      units[i].leaf = words_.of(last_step(given[i].element));
    }
    for (std::size_t i = 1; i < units.size(); ++i) {
      units[i].before = units[i - 1].text;
      units[i - 1].behind = units[i].text;
    }
  }

  // Pairs units that have no partner yet and have equal keys, in order.
  template <class KeyOf, class AcceptOld, class AcceptNew>
  void pair(const KeyOf& key_of, const AcceptOld& accept_old, const AcceptNew& accept_new) {
    const auto keyed = [&](const std::vector<Unit>& units, const auto& accept) {
      std::vector<Keyed> list;
      for (std::uint32_t i = 0; i < units.size(); ++i)
        if (units[i].partner == kNoUnit && accept(units[i])) list.push_back({key_of(units[i]), i});
      std::sort(list.begin(), list.end());
      return list;
    };
    const std::vector<Keyed> news = keyed(new_, accept_new);
    if (news.empty()) return;
    const std::vector<Keyed> olds = keyed(old_, accept_old);
    for (auto a = olds.begin(), b = news.begin(); a != olds.end() && b != news.end();) {
      if (a->key < b->key) {
        ++a;
      } else if (b->key < a->key) {
        ++b;
      } else {
        old_[a->index].partner = b->index;
        new_[b->index].partner = a->index;
        ++a, ++b;
      }
    }
  }
  template <class KeyOf>
  void pair(const KeyOf& key_of) {
    const auto all = [](const Unit&) { return true; };
    pair(key_of, all, all);
  }

  // The largest possible set of pairs that are in the same order on both sides cuts both documents into gaps.
  void number_gaps() {
    std::vector<std::uint32_t> last;  // of the best sequence of each length: the new unit that it ends with
    std::vector<std::uint32_t> previous(new_.size(), kNoUnit);
    for (std::uint32_t i = 0; i < new_.size(); ++i) {
      if (new_[i].partner == kNoUnit) continue;
      const auto place = std::lower_bound(last.begin(), last.end(), new_[i].partner,
                                          [&](std::uint32_t a, std::uint32_t old) { return new_[a].partner < old; });
      if (place != last.begin()) previous[i] = *(place - 1);
      if (place == last.end())
        last.push_back(i);
      else
        *place = i;
    }
    std::vector<std::uint32_t> anchors(last.size());
    for (std::uint32_t i = last.empty() ? kNoUnit : last.back(), at = static_cast<std::uint32_t>(last.size());
         i != kNoUnit; i = previous[i])
      anchors[--at] = i;
    const auto number = [&](std::vector<Unit>& units, const auto& place_of) {
      std::uint32_t gap = 0;
      for (std::uint32_t i = 0; i < units.size(); ++i) {
        while (gap < anchors.size() && place_of(anchors[gap]) <= i) ++gap;
        units[i].gap = gap;
      }
    };
    number(new_, [](std::uint32_t anchor) { return anchor; });
    number(old_, [&](std::uint32_t anchor) { return new_[anchor].partner; });
  }

  Numbers texts_;
  Numbers words_;
  std::vector<Unit> old_;
  std::vector<Unit> new_;
};

}  // namespace

std::vector<std::uint32_t> aligned_units(std::span<const PlacedText> old_units, std::span<const PlacedText> new_units) {
  return Alignment(old_units, new_units).run();
}

}  // namespace kavo
