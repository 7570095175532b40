// OpenSSL as the judge of signatures: it shares nothing with this program.
#include <gtest/gtest.h>

#include <cstdlib>

#include "signing/manifest_sample.h"
#include "signing/sign_command.h"
#include "signing/verify_command.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

bool run(const std::string& command) {
  return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

// The integers of a private key in DER, as in PKCS#1: version, n, e, d...
std::vector<std::string> integers_of(const std::string& der) {
  std::vector<std::string> integers;
  for (std::size_t at = 4; at + 4 < der.size();) {
    std::size_t length = static_cast<std::uint8_t>(der[at + 1]);
    at += 2;
    if (length > 0x80) {
      std::size_t bytes = length & 0x7F;
      for (length = 0; bytes > 0; --bytes, ++at) {
        length = length << 8 | static_cast<std::uint8_t>(der[at]);
      }
    }
    integers.push_back(der.substr(at, length));
    at += length;
  }
  return integers;
}

std::string wide(std::string number) {
  if (number.size() > 256) number.erase(0, number.size() - 256);
  return std::string(256 - number.size(), '\0') + number;
}

std::string reversed(const std::string& text) {
  return {text.rbegin(), text.rend()};
}

class OpenSsl : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!run("openssl version")) GTEST_SKIP() << "openssl is not installed";
    const std::string pem = dir_.file("key.pem");
    ASSERT_TRUE(run("openssl genrsa -out " + pem + " 2048"));
    ASSERT_TRUE(run("openssl rsa -pubout -in " + pem + " -out " +
                    dir_.file("public.pem")));
    ASSERT_TRUE(run("openssl rsa -traditional -outform DER -in " + pem +
                    " -out " + dir_.file("key.der")));
    const auto integers = integers_of(read_file(dir_.file("key.der")));
    ASSERT_LE(4u, integers.size());
    const std::string n = wide(integers[1]);
    dir_.write("key", pair_key_file(integers[2], n, n, wide(integers[3])));
  }
  static std::string signed_parts(const std::string& manifest) {
    return manifest.substr(0, 128) + manifest.substr(644);
  }

  TempDir dir_;
  CapturedLog quiet_;
};

TEST_F(OpenSsl, VerifiesOurSignatureAndWeVerifyIts) {
  sign_command("debug", dir_.file("key"),
               dir_.write("manifest", unsigned_manifest()),
               dir_.file("signed"));
  std::string manifest = read_file(dir_.file("signed"));
  const std::string parts = dir_.write("parts", signed_parts(manifest));
  const std::string check = "openssl dgst -sha256 -verify " +
                            dir_.file("public.pem") + " -signature " +
                            dir_.file("signature") + " " + parts;
  dir_.write("signature", reversed(manifest.substr(388, 256)));
  EXPECT_TRUE(run(check));
  dir_.write("signature", manifest.substr(388, 256));
  EXPECT_FALSE(run(check));

  manifest.back() ^= 1;
  dir_.write("parts", signed_parts(manifest));
  ASSERT_TRUE(run("openssl dgst -sha256 -sign " + dir_.file("key.pem") +
                  " -out " + dir_.file("signature") + " " + parts));
  const std::string theirs = reversed(read_file(dir_.file("signature")));
  manifest.replace(388, 256, theirs);
  EXPECT_EQ("no exception", message_of([&] {
              verify_command(dir_.write("theirs", manifest));
            }));
}

}  // namespace
}  // namespace tova_fw_builder
