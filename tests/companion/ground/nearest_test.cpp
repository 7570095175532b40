#include "companion/ground/nearest.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>

namespace tova_fw_builder {
namespace {

std::string_view nearest(std::string_view word,
                         std::span<const std::string_view> names) {
  Nearest found(word);
  for (const std::string_view name : names) found.offer(name);
  return found.name();
}

TEST(Nearest, CountsLettersAndSwaps) {
  struct {
    const char* a;
    const char* b;
    std::size_t limit;
    std::size_t distance;
  } cases[] = {{"", "", 3, 0},
               {"abc", "abc", 3, 0},
               {"abc", "", 3, 3},
               {"abc", "abd", 3, 1},
               {"setcion", "section", 3, 1},
               {"abc", "cba", 3, 2},
               {"abcdef", "ghijkl", 3, 4},
               {"a", "abcdef", 3, 4},
               {"kitten", "sitting", 3, 3}};
  for (const auto& [a, b, limit, distance] : cases) {
    EXPECT_EQ(distance, edit_distance(a, b, limit)) << a << ' ' << b;
    EXPECT_EQ(distance, edit_distance(b, a, limit)) << b << ' ' << a;
  }
}

TEST(Nearest, FewestStepsToAWord) {
  const std::string_view words[] = {"show", "diff", "check",  "map",
                                    "key",  "key2", "attach", "--json"};
  const struct {
    const char* word;
    const char* nearest;
  } cases[] = {
      {"shw", "show"},        // a letter is missing
      {"sshow", "show"},      // one too many
      {"chekc", "check"},     // two are swapped, which is one step
      {"attch", "attach"},    //
      {"atatchh", "attach"},  // two steps for six letters
      {"atatchhhh", ""},      // four for nine
      {"sxxx", ""},           // three for four
      {"kex", "key"},         // the first of two alike
      {"map", ""},            // itself is no mistake
      {"mpa", "map"},         //
      {"Map", "map"},         //
      {"ATTACH", "attach"},   // capitals are one step, however many
      {"", ""},               //
      {"--jsn", "--json"},    //
      {"-json", "--json"},    //
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.nearest, nearest(c.word, words)) << c.word;
  }
  EXPECT_EQ("", nearest(std::string(1'000'000, 'a'), words));
  EXPECT_EQ("", nearest("show", {}));
}

}  // namespace
}  // namespace tova_fw_builder
