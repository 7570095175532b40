#include "lint/statement_forms.h"

#include <gtest/gtest.h>

#include "definitions/image_block.h"

namespace tova_fw_builder {
namespace {

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
