#include <gtest/gtest.h>

#include "crypto/sha_hash.h"
#include "image/kelp15.h"
#include "signing/hash_key_command.h"
#include "signing/manifest_sample.h"
#include "signing/sign_command.h"
#include "signing/verify_command.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// All golden numbers of this file are from Python: hashlib, and pow() with the
// sample key.
constexpr char kKeyHash[] =
    "Public key hash: \n"
    "unsigned char pub_key_hash[32] = { \n"
    "0x63, 0x7b, 0x41, 0x05, 0x78, 0x4b, 0xd7, 0xc0,\n"
    "0x16, 0xd4, 0x7e, 0x45, 0xeb, 0x21, 0x55, 0x2b,\n"
    "0x93, 0x21, 0xf2, 0x2b, 0xf4, 0xba, 0xf5, 0x7b,\n"
    "0xf2, 0xdf, 0xd5, 0x91, 0x0e, 0xa2, 0x6b, 0xbb\n"
    "};\n\n";
constexpr char kReleaseHash[] =
    "43 71 a3 84 a2 ea 56 36 e0 3e 3c e4 fe 5d 1f 2c \n"
    "4f 1a 05 80 3a c9 01 b1 78 6e d4 3e d2 36 54 7a \n\n";
constexpr char kDebugHash[] =
    "35 80 16 b4 0b eb 05 4b 03 06 19 4e 3a d7 a4 9a \n"
    "e9 a0 dc bd b9 4e 26 4d 3d 4e b4 40 9d 86 06 d2 \n\n";
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
  std::string text;
  for (const char c : digest) {
    text += "0123456789abcdef"[c >> 4 & 15];
    text += "0123456789abcdef"[c & 15];
  }
  return text;
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
  // What a run logs, at the level given, with short names for the files.
  template <typename Action>
  std::string log_of(int level, const Action& action) {
    CapturedLog log(level);
    action();
    std::string text = log.text();
    const std::string folder = dir_.path() + "/";
    for (std::size_t at; (at = text.find(folder)) != text.npos;) {
      text.erase(at, folder.size());
    }
    return text;
  }

  TempDir dir_;
  CapturedLog quiet_;
};

TEST_F(Signing, WritesTheSameFileAsAnIndependentSigner) {
  const std::string head = "Reading manifest from: in\n";
  const std::string keys = "Reading keys from: key\n";
  const std::string tail =
      kKeyHash + std::string("Writing signed manifest to: out\n");
  const auto run = [this](const char* type) {
    return log_of(2, [&] {
      EXPECT_EQ("no exception",
                sign(type, sample_pair_file(), unsigned_manifest()));
    });
  };
  const std::string release = run("release");
  EXPECT_EQ(kReleaseFile, sha256_text(signed_file()));
  EXPECT_EQ(0u, release.find(head));
  EXPECT_NE(release.npos,
            release.find(keys + "Signing manifest\nManifest Hash\n" +
                         kReleaseHash + tail));

  const std::string debug = run("debug");
  EXPECT_EQ(kDebugFile, sha256_text(signed_file()));
  EXPECT_NE(debug.npos, debug.find(keys +
                                   "Debug manifest\nSigning manifest\nManifest "
                                   "Hash\n" +
                                   kDebugHash + tail));
}

// Signed twice, trailing bytes, and a debug mark that a release signature
// keeps.
TEST_F(Signing, SigningAgain) {
  ASSERT_EQ("no exception",
            sign("release", sample_pair_file(), unsigned_manifest() + "tail"));
  EXPECT_EQ(kReleaseFile, sha256_text(signed_file()));
  ASSERT_EQ("no exception", sign("debug", sample_pair_file(), signed_file()));
  EXPECT_EQ(kDebugFile, sha256_text(signed_file()));
  ASSERT_EQ("no exception", sign("release", sample_pair_file(), signed_file()));
  EXPECT_EQ(kDebugFile, sha256_text(signed_file()));
}

TEST_F(Signing, FailuresLeaveTheOutputAlone) {
  dir_.write("out", "old");
  for (const char* type : {"Debug", "", "release "}) {
    const std::string log =
        log_of(3, [&] { EXPECT_EQ("Invalid sign type", sign(type, "", "")); });
    EXPECT_EQ("", log);
  }
  const std::string pair = sample_pair_file();
  EXPECT_EQ("Unrecognized module type", sign("debug", "no key", ""));
  EXPECT_EQ(kNoSuchKey,
            sign("debug", sample_public_file(), unsigned_manifest()));
  const std::string n = big_endian_text(kSampleModulus);
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

// An even private modulus gives some signature, and it is refused.
TEST_F(Signing, EvenModulus) {
  const std::string n = big_endian_text(kSampleModulus);
  std::string even = n;
  even.back() = '\0';
  const std::string d = std::string(255, '\0') + '\3';
  ASSERT_EQ("no exception",
            sign("release", pair_key_file(std::string("\1\0\1", 3), n, even, d),
                 unsigned_manifest()));
  EXPECT_EQ(kPadding, verify(signed_file()));
  std::string file = signed_file();
  file[128] = '\0';
  EXPECT_EQ(kPadding, verify(file));
}

TEST_F(Signing, VerifiesAndSaysSo) {
  sign("release", sample_pair_file(), unsigned_manifest());
  const std::string log = log_of(2, [&] { verify_command(dir_.file("out")); });
  const std::string tail = std::string(
                               "Verifying manifest...\nSignature padding OK\n"
                               "Local Manifest Hash\n") +
                           kReleaseHash + "Manifest hash OK\n";
  EXPECT_EQ(0u, log.find("Reading manifest from: out\n"));
  ASSERT_LT(tail.size(), log.size());
  EXPECT_EQ(tail, log.substr(log.size() - tail.size()));
}

// Every byte of a signed manifest counts.
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
  std::string zero_signature = good;
  zero_signature.replace(388, 256, 256, '\0');
  EXPECT_EQ(kPadding, verify(zero_signature));
  std::string high_signature = good;
  high_signature.replace(388, 256, 256, '\xff');
  EXPECT_EQ(kEncrypt, verify(high_signature));
  EXPECT_EQ(kNoKeyInManifest, verify(unsigned_manifest()));
}

TEST_F(Signing, DetailedLogs) {
  const std::string log = log_of(
      3, [&] { sign("release", sample_pair_file(), unsigned_manifest()); });
  // The block begins with the digest, and its frame ends with 01 00.
  EXPECT_NE(log.npos,
            log.find(std::string("sig_to_sign\n") +
                     std::string(kReleaseHash).substr(0, 97) +
                     "\n20 04 00 05 01 02 04 03 65 01 48 86 60 09 06 0d \n"
                     "30 31 30 00 ff"));
  EXPECT_NE(log.npos, log.find("ff ff 01 00 \n\nsignature\n"));

  const std::string verified = log_of(3, [&] { verify(signed_file()); });
  std::size_t at = 0;
  for (const std::string& line :
       {std::string("Verifying manifest...\npubKey.modulus\n"),
        std::string("\n\npubKey.exponent\n01 00 01 00 \n\n") + kKeyHash +
            "signature\n",
        std::string("\n\nsig_encrypted\n") +
            std::string(kReleaseHash).substr(0, 97),
        std::string("01 00 \n\nSignature padding OK\n")}) {
    at = verified.find(line, at);
    EXPECT_NE(verified.npos, at) << line;
  }
}

// A file of first word 4 stands for a manifest without key and signature.
TEST_F(Signing, ManifestWithoutSignature) {
  const std::string file("\4\0\0\0rest", 8);
  const std::string log = log_of(3, [&] {
    EXPECT_EQ("no exception", sign("debug", sample_pair_file(), file));
  });
  EXPECT_NE(log.npos, log.find("\nsignature\n\nPublic key hash: \n"));
  EXPECT_EQ("", signed_file());

  const std::string verified = log_of(3, [&] {
    EXPECT_EQ(kNoKeyInManifest,
              message_of([&] { verify_command(dir_.file("in")); }));
  });
  EXPECT_NE(verified.npos, verified.find("Verifying manifest...\n"
                                         "pubKey.modulus\n\n"
                                         "pubKey.exponent\n\n\n"
                                         "Public key hash: \n"));
  EXPECT_NE(verified.npos, verified.find("0xe3, 0xb0, 0xc4, 0x42"));
}

TEST_F(Signing, HashKeyTakesEitherForm) {
  for (const char* kind : {"pub", "pair"}) {
    for (const std::string& key : {sample_pair_file(), sample_public_file()}) {
      const std::string path = dir_.write("key", key);
      EXPECT_EQ(std::string("Reading keys from: key\n") + kKeyHash,
                log_of(2, [&] { hash_key_command(kind, path); }));
    }
  }
  EXPECT_EQ("Invalid key file type specified",
            message_of([] { hash_key_command("Pub", "/none"); }));
}

}  // namespace
}  // namespace tova_fw_builder
