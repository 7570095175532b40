#include "outside_keys/trusted_key.h"

#include <gtest/gtest.h>

#include "signing/manifest_sample.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

using std::string_literals::operator""s;

// What stands behind --trust. The hash of the sample key is from Python's
// hashlib.
TEST(TrustedKey, HashOrKeyOfAnyForm) {
  const std::string text =
      "637b4105784bd7c016d47e45eb21552b9321f22bf4baf57bf2dfd5910ea26bbb";
  const PublicKeyHash hash = trusted_key_hash(text);
  EXPECT_EQ(0x63, hash[0]);
  EXPECT_EQ(0xbb, hash[31]);
  std::string upper = text;
  upper.replace(0, 10, "637B410578");
  EXPECT_EQ(hash, trusted_key_hash(upper));

  TempDir dir;
  for (const auto& key : {sample_pair_file(), sample_public_file()}) {
    EXPECT_EQ(hash, trusted_key_hash(dir.write("key", key)));
  }
  EXPECT_EQ("this is neither a hash of 64 hexadecimal digits nor a file",
            message_of([&] { trusted_key_hash(text.substr(1)); }));
  EXPECT_EQ("this is neither a hash of 64 hexadecimal digits nor a file",
            message_of([&] { trusted_key_hash(text + "00"); }));
  // With the exponent 1 anyone signs; 3 00 01 would be read backwards.
  const std::string n = bytes_of(kSampleModulus);
  for (const std::string& e : {"\1"s, "\4"s, "\3\0\1"s}) {
    const std::string key = dir.write("key", public_key_file(e, n));
    EXPECT_EQ(
        0u, message_of([&] { trusted_key_hash(key); }).find("its exponent is"));
  }
}

}  // namespace
}  // namespace tova_fw_builder
