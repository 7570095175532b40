#include "lint/nearest.h"

#include <gtest/gtest.h>

#include "definitions/image_block.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {
namespace {

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

TEST(Nearest, TakesTheFirstOfTheNearest) {
  const std::string_view names[] = {"text", "tent", "test", "rodata"};
  EXPECT_EQ("text", nearest("tet", names));
  EXPECT_EQ("test", nearest("teest", names));
  EXPECT_EQ("rodata", nearest("rodta", names));
  // Too far, or the word itself.
  EXPECT_EQ("", nearest("bss", names));
  EXPECT_EQ("tent", nearest("text", names));
  EXPECT_EQ("", nearest("", names));
  EXPECT_EQ("", nearest(std::string(1000, 't'), names));
}

// The forms are those that the readers know, statement by statement.
TEST(StatementForms, AreThoseOfTheReaders) {
  std::size_t count = 0;
  for (const BlockKind block : {BlockKind::kImage, BlockKind::kModule,
                                BlockKind::kGroup, BlockKind::kPin}) {
    for (const auto key : statement_keys(block)) {
      EXPECT_NE(nullptr, find_form(block, key)) << key;
      ++count;
    }
  }
  EXPECT_EQ(count, statement_forms().size());
}

}  // namespace
}  // namespace tova_fw_builder
