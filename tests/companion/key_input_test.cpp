#include "companion/key_input.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(KeyInput, PassphraseIsTheFirstLine) {
  const TempDir dir;
  const struct {
    const char* file;
    const char* passphrase;
  } cases[] = {{"one", "one"},      {"one\n", "one"}, {"one\ntwo\n", "one"},
               {"\none", ""},       {"", ""},         {" one \n", " one "},
               {"one\r\n", "one\r"}};
  for (const auto& c : cases) {
    const auto found = passphrase_in(dir.write("passphrase", c.file));
    ASSERT_TRUE(found);
    EXPECT_EQ(c.passphrase,
              std::string(found->data(), found->data() + found->size()));
  }
  EXPECT_FALSE(passphrase_in(""));
}

}  // namespace
}  // namespace tova_fw_builder
