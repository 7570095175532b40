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

using std::string_literals::operator""s;

bool run(const std::string& command) {
  return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

// The number whose DER tag stands at `at`, in 256 bytes: its leading zero is
// left out, missing bytes are put in.
std::string number_at(const std::string& der, std::size_t at) {
  std::size_t length = 0;
  const auto end_of_length = at + 2 + (der[at + 1] & 0x7F);
  for (at += 2; at < end_of_length; ++at) {
    length = length << 8 | static_cast<std::uint8_t>(der[at]);
  }
  const std::string number = std::string(256, '\0') + der.substr(at, length);
  return number.substr(number.size() - 256);
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
    // Sequence, version, n with a leading zero, e, d.
    const std::string der = read_file(dir_.file("key.der"));
    const std::string n = number_at(der, 7);
    dir_.write("key", pair_key_file("\1\0\1"s, n, n, number_at(der, 273)));
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
