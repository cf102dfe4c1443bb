#include "common/lookup_index.h"

#include <gtest/gtest.h>

namespace kavo::test {
namespace {

using Places = std::vector<int>;

Places offered(const LookupIndex<int, int>& index, int key, int here, int accepted = -1) {
  Places places;
  const bool found = index.find(key, here, [&](int place) {
    places.push_back(place);
    return place == accepted;
  });
  EXPECT_EQ(found, accepted != -1);
  return places;
}

TEST(LookupIndex, OffersFromHereOnAndThenFromTheBeginningUntilOneIsAccepted) {
  LookupIndex<int, int> index;
  for (const int place : {40, 10, 30, 20}) index.add(7, place);
  index.add(6, 15);
  index.add(8, 5);
  index.sort();
  EXPECT_EQ(offered(index, 7, 25), (Places{30, 40, 10, 20}));
  EXPECT_EQ(offered(index, 7, 30), (Places{30, 40, 10, 20}));
  EXPECT_EQ(offered(index, 7, 0), (Places{10, 20, 30, 40}));
  EXPECT_EQ(offered(index, 7, 41), (Places{10, 20, 30, 40}));
  EXPECT_EQ(offered(index, 7, 25, 10), (Places{30, 40, 10}));
  EXPECT_EQ(offered(index, 6, 99, 15), Places{15});
  EXPECT_EQ(offered(index, 9, 0), Places{});
  EXPECT_EQ(offered(LookupIndex<int, int>(), 7, 0), Places{});
}

}  // namespace
}  // namespace kavo::test
