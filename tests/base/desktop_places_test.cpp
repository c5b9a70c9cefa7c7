// Who stands at which place while desktops come and go.

#include "base/desktop_places.h"

#include <gtest/gtest.h>

#include "base/json_text.h"

namespace tallowin {
namespace {

using IDs = DesktopPlaces::IDs;

TEST(DesktopPlaces, KeepWhoIsWhoWhateverComesAndGoes) {
  const auto counts = [](const std::vector<std::size_t>& seen) {
    return [seen](DesktopPlaces& places) {
      for (const auto count : seen) {
        places.countSeen(count);
      }
    };
  };
  const auto remove = [](std::size_t place) {
    return [place](DesktopPlaces& places) { places.assign(places.without(place)); };
  };
  const auto add = [](DesktopPlaces& places) { places.assign(places.withNew()); };
  const auto adopt = [](const IDs& saved) { return [saved](DesktopPlaces& places) { places.adopt(saved); }; };
  const auto restore = [](const IDs& saved) {
    return [saved](DesktopPlaces& places) { places.assign(places.withRemoved(saved)); };
  };
  const struct {
    const char* what;
    std::function<void(DesktopPlaces&)> happens;
    IDs ids;
    IDs parked = {};
  } story[] = {
      {"the first count", counts({4}), {1, 2, 3, 4}},
      {"the window manager restarts", counts({1, 4}), {1, 2, 3, 4}},
      {"the second one is removed", remove(1), {1, 3, 4}},
      {"the window manager restarts, in steps", counts({2, 1, 2, 3}), {1, 3, 4}},
      {"its configuration has four", counts({4}), {1, 3, 4, 5}},
      {"somebody takes two away", counts({2}), {1, 3}, {4, 5}},
      {"one is added", add, {1, 3, 6}, {4, 5}},
      {"somebody takes one away", counts({2}), {1, 3}, {6, 4, 5}},
      {"and adds four", counts({6}), {1, 3, 6, 4, 5, 7}},
      {"the last one is removed", remove(5), {1, 3, 6, 4, 5}},
      {"its id is not given again", add, {1, 3, 6, 4, 5, 8}},
      {"two that were removed come back", restore({1, 2, 3, 7}), {1, 2, 3, 7, 6, 4, 5, 8}},
      {"what is parked does not come back by restoring",
       [&](DesktopPlaces& places) {
         places.countSeen(3);
         restore({1, 2, 3, 7})(places);
       },
       {1, 2, 3},
       {7, 6, 4, 5, 8}},
      {"another machine's are taken over", adopt({9, 3}), {9, 3, 1}, {2, 7, 6, 4, 5, 8}},
      {"more than there are desktops", adopt({1, 2, 4, 3, 20}), {1, 2, 4}, {3, 20, 9, 7, 6, 5, 8}},
      {"new ones are above all", [&](DesktopPlaces& places) { add(places); }, {1, 2, 4, 21}, {3, 20, 9, 7, 6, 5, 8}},
  };
  DesktopPlaces places;
  for (const auto& [what, happens, ids, parked] : story) {
    happens(places);
    EXPECT_EQ(places.ids(), ids) << what;
    EXPECT_EQ(places.parked(), parked) << what;
    EXPECT_EQ(DesktopPlaces::fromJson(places.toJson()), places) << what;
    EXPECT_EQ(areOneToN(places.ids()), ids == (IDs{1, 2, 3}) || ids == (IDs{1, 2, 3, 4})) << what;
  }
}

TEST(DesktopPlaces, AreReadOnlyWhenTheyMakeSense) {
  for (const auto* const text :
       {"[]", R"({"ids": [1], "parked": []})", R"({"ids": [1, 1], "parked": [], "highest": 1})",
        R"({"ids": [1], "parked": [1], "highest": 1})", R"({"ids": [0], "parked": [], "highest": 1})",
        R"({"ids": ["1"], "parked": [], "highest": 1})", R"({"ids": [1], "parked": {}, "highest": 1})",
        R"({"ids": [1], "parked": [9223372036854775807], "highest": 1})",
        R"({"ids": [1], "parked": [], "highest": 9223372036854775807})"}) {
    EXPECT_EQ(DesktopPlaces::fromJson(*parseJSON(text)), std::nullopt) << text;
  }
  // A highest id that others are above of is no reason to give those again.
  auto places = *DesktopPlaces::fromJson(*parseJSON(R"({"ids": [5, 2], "parked": [7], "highest": 1})"));
  EXPECT_EQ(places.withNew(), (IDs{5, 2, 8}));
}

}  // namespace
}  // namespace tallowin
