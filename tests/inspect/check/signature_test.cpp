// Who signed, and what a release asks for.
#include <gtest/gtest.h>

#include <sstream>

#include "image/kelp15.h"
#include "inspect/check/checked_sample.h"
#include "outside_keys/key_text.h"
#include "signing/commands.h"
#include "signing/manifest_sample.h"
#include "support/captured_log.h"

namespace tova_fw_builder {
namespace {

// The sample key of the tests, which isn't that of the sample.
class CheckSignature : public testing::Test {
 protected:
  static std::string signed_manifest(bool debug) {
    const CapturedLog quiet;
    const std::string man = image_sample("1.5").at("firmware.man");
    const auto manifest = read_kelp15_manifest(
        {reinterpret_cast<const std::uint8_t*>(man.data()), man.size()});
    if (debug) manifest->set_debug();
    sign_manifest(*manifest, *key_of_text(sample_pair_file()));
    std::ostringstream out;
    manifest->write_raw(out);
    return out.str();
  }
  static PublicKeyHash key_hash() {
    return digest_public_key(*key_of_text(sample_public_file()));
  }
};

TEST_F(CheckSignature, TrustAndRelease) {
  PublicKeyHash other = key_hash();
  other[31] ^= 1;
  const struct {
    std::vector<PublicKeyHash> trusted;
    bool release;
    bool debug;
    const char* failed;
  } cases[] = {
      {{}, false, true, ""},
      {{}, true, false, "module-hash "},
      {{}, true, true, "module-hash debug-signature "},
      {{key_hash()}, false, true, ""},
      {{other, key_hash()}, true, false, "module-hash "},
      {{other}, false, false, "key-trusted "},
  };
  for (const auto& c : cases) {
    CheckOptions options;
    options.trusted = c.trusted;
    options.release = c.release;
    const Checked checked =
        check({{"firmware.man", signed_manifest(c.debug)}}, options);
    EXPECT_EQ(c.failed, failed(checked));
    EXPECT_EQ(std::string("firmware 1.2.3.4  generation 1.5  12288 bytes  "
                          "signed ") +
                  (c.debug ? "debug" : "release") + " 637b4105\u2026",
              checked.summary);
  }
  // Nothing is signed.
  CheckOptions demand;
  demand.trusted = {key_hash()};
  EXPECT_EQ("key-trusted ", failed(check(image_sample("1.5"), demand)));
  EXPECT_EQ("key-trusted ", failed(check(image_sample("1.8"), demand)));
  demand.trusted.clear();
  demand.release = true;
  EXPECT_EQ("signature ", failed(check(image_sample("1.5"), demand)));
  EXPECT_EQ("", failed(check(image_sample("1.8"), demand)));
  EXPECT_EQ("", failed(check(image_sample("3.0"), demand)));
}

// A release gate doesn't pass on what wasn't hashed for want of a file.
TEST_F(CheckSignature, ReleaseAsksForAllContents) {
  const auto without = [](const char* generation,
                          const std::vector<std::string>& names,
                          bool joined = false) {
    ImageSample image = image_sample(generation);
    if (joined) image["joined"] = image["firmware.bin"] + image[kAddonFile];
    if (generation == std::string("1.5")) {
      image["firmware.man"] = signed_manifest(false);
    }
    for (const std::string& name : names) image.erase(name);
    CheckOptions options;
    options.release = true;
    return failed(check(image, options));
  };
  EXPECT_EQ("", without("1.5", {}));
  EXPECT_EQ("module-hash package ", without("1.5", {"firmware.bin"}));
  EXPECT_EQ("module-hash package ", without("1.5", {kAddonFile}));
  EXPECT_EQ("module-hash ", without("1.5", {"firmware.bin", kAddonFile}));
  // What a joined package has needn't be there once more.
  EXPECT_EQ("package ", without("1.5", {kAddonFile}, true));
  EXPECT_EQ("image-digest ", without("1.8", {"firmware.man"}));
  EXPECT_EQ("structure image-digest ", without("2.5", {"firmware.bin"}));
  EXPECT_EQ("structure ", without("3.0", {"firmware.bin"}));
  EXPECT_EQ("", without("3.0", {"firmware.man", "firmware.man.ext"}));
}

// Both lie in the usual output folder.
TEST_F(CheckSignature, SignedAndUnsignedTogether) {
  ImageSample image = image_sample("1.5");
  image["firmware.man.signed"] = signed_manifest(false);
  image["debug.man.signed"] = signed_manifest(true);
  EXPECT_EQ("", failed(check(image)));
  image["firmware.man.signed"][entries_offset("1.5") + 32] ^= 1;
  EXPECT_EQ("structure module-hash signature ", failed(check(image)));
}

TEST_F(CheckSignature, WhatTheSignatureCovers) {
  const struct {
    std::size_t offset;
    std::string bytes;
    const char* failed;
  } cases[] = {
      {21, "\x28", "structure signature key-trusted "},  // no date any more
      {20, "\x28", "signature key-trusted "},
      {128, "x", "signature key-trusted "},     // modulus
      {384, "\x03", "signature key-trusted "},  // exponent
      {500, "x", "signature key-trusted "},     // signature
      {700, "x", "signature key-trusted "},
      {4095, "x", "structure signature key-trusted "},
      // The exponent that verifies what anyone writes.
      {384, std::string("\1\0\0\0", 4), "signature key-trusted "},
      {4, "\xA0", "structure signed-part signature key-trusted "},
  };
  CheckOptions options;
  options.trusted = {key_hash()};
  for (const auto& c : cases) {
    std::string bytes = signed_manifest(false);
    bytes.replace(c.offset, c.bytes.size(), c.bytes);
    EXPECT_EQ(c.failed, failed(check({{"m", bytes}}, options))) << c.offset;
  }
  EXPECT_NE(std::string::npos,
            lines_of(check({{"m", signed_manifest(false)}}), "key-trusted")
                .find("not checked m: tell whom you trust: --trust 637b4105"));
}

}  // namespace
}  // namespace tova_fw_builder
