#include "outside_keys/key_text.h"

#include <gtest/gtest.h>

#include "outside_keys/key_halves.h"
#include "signing/keys/key_samples.h"

namespace tova_fw_builder {
namespace {

// Of all fields, those that signing leaves out, too.
TEST(KeyText, ReadAndWrittenAgain) {
  for (const std::string& e :
       {std::string("\x01\x02\x03"), std::string("\x05")}) {
    for (const bool pair : {false, true}) {
      const std::string n = counting(256, 1);
      const std::string file =
          pair ? pair_key_file(e, n, counting(256, 9), counting(256, 77))
               : public_key_file(e, n);
      const auto key = key_of_text(file + "behind");
      ASSERT_NE(nullptr, key);
      EXPECT_EQ(pair, has_private_part(*key));
      const SecretBuffer text = text_of_key(*key, !pair);
      EXPECT_EQ(file, std::string(text.data(), text.data() + text.size()));
      EXPECT_EQ(nullptr, key_of_text(" " + file));
      key->priv_d.fill(0);  // the modulus alone makes it a pair
      EXPECT_EQ(pair, has_private_part(*key));
    }
  }
}

}  // namespace
}  // namespace tova_fw_builder
