#include "companion/ground/nearest.h"

#include <gtest/gtest.h>

#include <vector>

namespace tova_fw_builder {
namespace {

TEST(Nearest, FewestStepsToAWord) {
  const std::vector<std::string> words = {"show", "diff", "check",  "map",
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
      {"atatchhh", ""},       // three
      {"shxx", ""},           // two for four
      {"kex", "key"},         // the first of two alike
      {"map", "map"},         //
      {"mpa", "map"},         //
      {"Map", "map"},         //
      {"", ""},               //
      {"--jsn", "--json"},    //
      {"-json", "--json"},    //
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.nearest, nearest_word(c.word, words)) << c.word;
  }
  EXPECT_EQ("", nearest_word(std::string(1'000'000, 'a'), words));
  EXPECT_EQ("", nearest_word("show", {}));
}

}  // namespace
}  // namespace tova_fw_builder
