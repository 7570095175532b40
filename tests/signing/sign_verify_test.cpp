#include <gtest/gtest.h>

#include "crypto/sha_hash.h"
#include "image/kelp15.h"
#include "signing/commands.h"
#include "signing/manifest_sample.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// All golden numbers of this file are from Python: hashlib, and pow() with the
// sample key.
constexpr char kReleaseHash[] =
    "43 71 a3 84 a2 ea 56 36 e0 3e 3c e4 fe 5d 1f 2c \n"
    "4f 1a 05 80 3a c9 01 b1 78 6e d4 3e d2 36 54 7a \n\n";
constexpr char kFrame[] =  // between the digest and the ones
    "20 04 00 05 01 02 04 03 65 01 48 86 60 09 06 0d \n30 31 30 00 ";
constexpr char kReleaseFile[] =
    "11f1a951ac318423389fe4918652282e56300ab2ddafdb86180ac9c25b778b27";
constexpr char kDebugFile[] =
    "89a30d27010ba6cfacd77e47c508b1804945ee0be2689cce2dfcefa89eb70fb5";
constexpr char kNoSuchKey[] =
    "ZelError zelsRSASetKey(N, D) failed 0xfffffff5 (-11)";
constexpr char kNoKeyInManifest[] =
    "ZelError zelsRSASetKey(N) failed 0xfffffff5 (-11)";
constexpr char kPadding[] = "Signature padding invalid";
constexpr char kHash[] = "Manifest hash invalid";
constexpr char kEncrypt[] = "ZelError zelsRSAEncrypt failed 0xfffffff5 (-11)";

std::string sha256_text(const std::string& bytes) {
  std::string digest(32, '\0');
  Sha256Hash hash(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                  bytes.size());
  hash.final(reinterpret_cast<std::uint8_t*>(digest.data()));
  return hex_of(digest);
}

class Signing : public ::testing::Test {
 protected:
  std::string sign(const std::string& type, const std::string& key,
                   const std::string& manifest) {
    return message_of([&] {
      sign_command(type, dir_.write("key", key), dir_.write("in", manifest),
                   dir_.file("out"));
    });
  }
  std::string signed_file() const { return read_file(dir_.file("out")); }

  // From memory: reading the file is left to the tests of whole runs.
  static std::string verify(const std::string& manifest) {
    return message_of([&] {
      const auto* bytes =
          reinterpret_cast<const std::uint8_t*>(manifest.data());
      verify_manifest(*read_kelp15_manifest({bytes, manifest.size()}));
    });
  }
  TempDir dir_;
  CapturedLog quiet_;
};

// The files of an independent signer; signed twice, with trailing bytes, and
// with a debug mark that a release signature keeps.
TEST_F(Signing, FilesOfAnIndependentSigner) {
  const std::string tail = unsigned_manifest() + "tail";
  ASSERT_EQ("no exception", sign("release", sample_pair_file(), tail));
  EXPECT_EQ(kReleaseFile, sha256_text(signed_file()));
  for (const char* type : {"debug", "release"}) {
    ASSERT_EQ("no exception", sign(type, sample_pair_file(), signed_file()));
    EXPECT_EQ(kDebugFile, sha256_text(signed_file()));
  }
}

TEST_F(Signing, FailuresLeaveTheOutputAlone) {
  dir_.write("out", "old");
  for (const char* type : {"Debug", "", "release "}) {
    EXPECT_EQ("Invalid sign type", sign(type, "", ""));
  }
  const std::string pair = sample_pair_file();
  EXPECT_EQ("Unrecognized module type", sign("debug", "no key", ""));
  EXPECT_EQ(kNoSuchKey,
            sign("debug", sample_public_file(), unsigned_manifest()));
  const std::string n = bytes_of(kSampleModulus);
  const std::string e("\1\0\1", 3);
  const std::string zero(256, '\0');
  const std::string one = zero.substr(1) + '\1';
  const struct {
    std::string n, d;
    const char* message;
  } cases[] = {
      {zero, one, kNoSuchKey},
      {n, zero, kNoSuchKey},
      {one, n, "ZelError zelsRSADecrypt failed 0xfffffff5 (-11)"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.message, sign("debug", pair_key_file(e, n, c.n, c.d),
                              unsigned_manifest()));
  }
  EXPECT_EQ("old", signed_file());
}

// Every byte of a signed manifest counts, and of the block that its signature
// encloses: modulo a number of all ones and with the exponent 1 a signature is
// that block itself.
TEST_F(Signing, NoByteCanBeChanged) {
  sign("release", sample_pair_file(), unsigned_manifest());
  const std::string good = signed_file();
  for (std::size_t i = 0; i < good.size(); ++i) {
    std::string bad = good;
    bad[i] ^= 0x40;
    const std::string message = verify(bad);
    if (i >= 128 && i < 644) {
      EXPECT_TRUE(message == kPadding || message == kEncrypt) << i << message;
    } else if ((i >= 4 && i < 8) || (i >= 24 && i < 28)) {  // the lengths
      EXPECT_NE("no exception", message) << i;
    } else {
      EXPECT_EQ(kHash, message) << i;
    }
  }
  std::string plain = good;
  plain.replace(128, 256, 256, '\xff').replace(384, 4, le32(1));
  EXPECT_EQ(kPadding, verify(plain));
  plain.replace(388, 256,
                bytes_of(kReleaseHash + std::string(kFrame)) +
                    std::string(202, '\xff') + std::string("\1\0", 2));
  EXPECT_EQ("no exception", verify(plain));
  for (std::size_t i = 0; i < 256; ++i) {
    std::string bad = plain;
    bad[388 + i] ^= 0x10;
    EXPECT_EQ(i < 32 ? kHash : kPadding, verify(bad)) << i;
  }
  EXPECT_EQ(kEncrypt, verify(plain.replace(388, 256, 256, '\xff')));
  EXPECT_EQ(kNoKeyInManifest, verify(unsigned_manifest()));
}

// A file of first word 4 stands for a manifest without key and signature.
TEST_F(Signing, ManifestWithoutSignature) {
  const std::string file("\4\0\0\0rest", 8);
  EXPECT_EQ("no exception", sign("debug", sample_pair_file(), file));
  EXPECT_EQ("", signed_file());
  EXPECT_EQ(kNoKeyInManifest,
            message_of([&] { verify_command(dir_.file("in")); }));
}

TEST_F(Signing, HashKeyTakesEitherForm) {
  for (const char* kind : {"pub", "pair", "Pub"}) {
    for (const std::string& key : {sample_pair_file(), sample_public_file()}) {
      EXPECT_EQ(
          kind == std::string("Pub") ? "Invalid key file type specified"
                                     : "no exception",
          message_of([&] { hash_key_command(kind, dir_.write("k", key)); }));
    }
  }
}

}  // namespace
}  // namespace tova_fw_builder
