// to-sign, attach and key: the sample key of the tests, with a signature that
// the builder makes.
#include <sys/stat.h>

#include "companion/ground/byte_text.h"
#include "inspect/byte_source.h"
#include "outside_keys/outside_key.h"
#include "run_tool.h"
#include "signing/commands.h"
#include "signing/manifest_sample.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// By Python's hashlib: the digest over bytes 0 to 127 and 644 to 703 of the
// sample manifest, without and with the debug mark; the files of an independent
// signer; the hash of the key.
constexpr char kReleaseDigest[] =
    "7a5436d23ed46e78b101c93a80051a4f2c1f5dfee43c3ee03656eaa284a37143";
constexpr char kDebugDigest[] =
    "d206869d40b44e3d4d264eb9bddca0e99aa4d73a4e1906034b05eb0bb4168035";
constexpr char kReleaseFile[] =
    "11f1a951ac318423389fe4918652282e56300ab2ddafdb86180ac9c25b778b27";
constexpr char kDebugFile[] =
    "89a30d27010ba6cfacd77e47c508b1804945ee0be2689cce2dfcefa89eb70fb5";
constexpr char kKeyHash[] =
    "637b4105784bd7c016d47e45eb21552b9321f22bf4baf57bf2dfd5910ea26bbb";
constexpr char kDigestInfo[] =  // RFC 8017, 9.2
    "3031300d060960864801650304020105000420";

std::string file_hash(const std::string& path) {
  const auto digest = sha256_of(ByteSource::open(path));
  return hexadecimal(digest);
}

class Signing : public testing::Test {
 protected:
  Signing() {
    std::filesystem::current_path(dir_.path());
    dir_.write("man", unsigned_manifest());
    dir_.write("pair", sample_pair_file());
    dir_.write("public", sample_public_file());
    dir_.write("release.sig", signature("release"));
    dir_.write("debug.sig", signature("debug"));
  }

  // As signers give it: the most significant byte first.
  static std::string signature(const std::string& kind) {
    sign_command(kind, "pair", "man", kind);
    const std::string bytes = read_file(kind).substr(388, 256);
    return {bytes.rbegin(), bytes.rend()};
  }

  Outcome attach(const std::string& kind, const std::string& file,
                 const std::string& key = "public") {
    dir_.write("out", "old");
    return run_tool({"attach", "man", "--" + kind, "--key", key, "--signature",
                     file, "-o", "out"});
  }

  TempDir dir_;
};

TEST_F(Signing, ToSignWritesEachForm) {
  const struct {
    std::vector<std::string> words;
    std::string out;
  } cases[] = {
      {{"--release", "--as", "digest", "--hex"},
       std::string(kReleaseDigest) + '\n'},
      {{"--debug", "--as", "digest", "--hex"},
       std::string(kDebugDigest) + '\n'},
      {{"--release", "--as", "digest-info", "--hex"},
       std::string(kDigestInfo) + kReleaseDigest + '\n'},
      {{"--release", "--as", "digest", "--base64"},
       base64(*from_hexadecimal(kReleaseDigest)) + '\n'},
      {{"--release"},
       unsigned_manifest().substr(0, 128) + unsigned_manifest().substr(644)},
  };
  for (const auto& c : cases) {
    std::vector<std::string> words = {"to-sign", "man"};
    words.insert(words.end(), c.words.begin(), c.words.end());
    const Outcome run = run_tool(words);
    EXPECT_EQ(0, run.status) << run.err;
    EXPECT_EQ(c.out, run.out);
    words.insert(words.end(), {"-o", "out"});
    EXPECT_EQ("", run_tool(words).out);
    EXPECT_EQ(c.out, read_file("out"));
  }
}

TEST_F(Signing, AttachMakesTheFileOfSign) {
  const std::string raw = read_file("release.sig");
  const std::vector<std::uint8_t> bytes(raw.begin(), raw.end());
  dir_.write("release.hex", hexadecimal(bytes) + "\n");
  dir_.write("release.base64", base64(bytes).insert(100, "\r\n"));
  std::string colons;
  for (const auto byte : bytes) colons += hexadecimal({&byte, 1}) + ':';
  dir_.write("release.colons", "    " + colons.insert(45, "\n    "));
  std::string url = base64(bytes);
  std::ranges::replace(url, '+', '-');
  std::ranges::replace(url, '/', '_');
  dir_.write("release.url", url.substr(0, url.find('=')));
  for (const char* form : {"sig", "hex", "base64", "colons", "url"}) {
    EXPECT_EQ(0, attach("release", std::string("release.") + form).status);
    EXPECT_EQ(kReleaseFile, file_hash("out")) << form;
  }
  EXPECT_EQ(0, attach("debug", "debug.sig", "pair").status);
  EXPECT_EQ(kDebugFile, file_hash("out"));
  // A debug mark that is there stays, with a word about it.
  const std::string marked = dir_.write("man", read_file("debug"));
  const Outcome run = attach("release", "debug.sig");
  EXPECT_EQ(0, run.status);
  EXPECT_NE(std::string::npos, run.err.find("has the debug mark already"));
  EXPECT_EQ(kDebugFile, file_hash("out"));
}

TEST_F(Signing, AttachRefusesWithAReason) {
  const std::string good = read_file("release.sig");
  const std::string other = bytes_of(kSampleSignature);
  const struct {
    std::string signature;
    const char* kind;
    const char* reason;
  } cases[] = {
      {std::string(good.rbegin(), good.rend()), "release",
       "stand in the wrong order"},
      {good, "debug", "it is this manifest's, but for --release"},
      {read_file("debug.sig"), "release", "but for --debug"},
      {std::string(256, '\xff'), "release", "it isn't below the modulus"},
      {other, "release", "but of something else than this manifest"},
      {std::string(255, '\0') + "\2", "release", "it is not by this key"},
      {good.substr(1), "release", "this has 255"},
      {good + good, "release", "this has 512"},
      {"", "release", "this has 0"},
      {"z!", "release", "this has 2"},
      // 256 bytes are the signature, even if they could be digits.
      {std::string(256, '0'), "release", "it is not by this key"},
      {std::string(5000, '0'), "release", "this has more"},
  };
  for (const auto& c : cases) {
    dir_.write("signature", c.signature);
    const Outcome run = attach(c.kind, "signature");
    EXPECT_EQ(2, run.status);
    EXPECT_EQ(0u, run.err.find("tova_fw: signature: ")) << run.err;
    EXPECT_NE(std::string::npos, run.err.find(c.reason)) << run.err;
    EXPECT_EQ("old", read_file("out")) << c.reason;
  }
}

// Each input of each command, by its name, a link and a hard link.
TEST_F(Signing, OutputsAreNoInputs) {
  dir_.write("pass", "x");
  dir_.write("sig", read_file("release.sig"));
  const struct {
    std::vector<std::string> words;
    std::vector<std::string> inputs;
  } commands[] = {
      {{"to-sign", "man", "--release"}, {"man"}},
      {{"attach", "man", "--release", "--key", "public", "--signature", "sig",
        "--passphrase-file", "pass"},
       {"man", "public", "sig", "pass"}},
      {{"key", "import", "pair", "--passphrase-file", "pass"},
       {"pair", "pass"}},
      {{"key", "export", "pair", "--public"}, {"pair"}},
  };
  for (const auto& command : commands) {
    if (command.words[0] == "key" && !outside_keys_are_known()) continue;
    for (const std::string& input : command.inputs) {
      const std::string before = read_file(input);
      std::filesystem::create_symlink(input, "link");
      std::filesystem::create_hard_link(input, "hard");
      for (const std::string& output :
           {input, "./" + input, std::string("link"), std::string("hard")}) {
        auto words = command.words;
        words.insert(words.end(), {"-o", output});
        const Outcome run = run_tool(words);
        EXPECT_EQ(2, run.status) << words[0] << output;
        EXPECT_EQ("tova_fw: " + output + ": is an input of this command" +
                      (output == input ? "" : ", " + input) +
                      ": name another output\n",
                  run.err);
        EXPECT_TRUE(before == read_file(input)) << words[0] << output;
      }
      std::filesystem::remove("link");
      std::filesystem::remove("hard");
    }
  }
}

TEST_F(Signing, DashIsTheStandardOutput) {
  const std::string message = run_tool({"to-sign", "man", "--release"}).out;
  EXPECT_EQ(message, run_tool({"to-sign", "man", "--release", "-o", "-"}).out);
  const Outcome attached =
      run_tool({"attach", "man", "--release", "--key", "public", "--signature",
                "release.sig", "-o", "-"});
  EXPECT_TRUE(read_file("release") == attached.out);
  EXPECT_FALSE(std::filesystem::exists("-"));
  if (!outside_keys_are_known()) return;
  EXPECT_EQ(sample_public_file(),
            run_tool({"key", "import", "public", "--public", "-o", "-"}).out);
  EXPECT_FALSE(std::filesystem::exists("-"));
}

// What a signature wouldn't cover as `sign` makes it. The words are those at
// 0, 4 and 24: kind, header_len and size.
TEST_F(Signing, ManifestsThatAreRefused) {
  const std::string whole = unsigned_manifest();
  const auto with = [&](std::size_t offset, char byte) {
    std::string bytes = whole;
    bytes.at(offset) = byte;
    return bytes;
  };
  const struct {
    std::string manifest;
    const char* reason;
  } cases[] = {
      {whole.substr(0, 643), "it is too short"},
      {with(0, 4), "this is no manifest of generation 1.5"},
      {with(4, '\xA0'), "its header_len is 160, not 161"},
      {with(24, 100), "its size of 400 bytes is none"},
      {with(25, '\x10'), "its size of 17088 bytes is none"},
      {with(24, '\xB1'), "it is cut off: 704 of 708 bytes"},
      {whole + std::string("\0\1", 2), "stands more than zeros"},
  };
  for (const auto& c : cases) {
    dir_.write("man", c.manifest);
    for (const Outcome& run : {run_tool({"to-sign", "man", "--release"}),
                               attach("release", "release.sig")}) {
      EXPECT_EQ(2, run.status);
      EXPECT_NE(std::string::npos, run.err.find(c.reason)) << run.err;
      EXPECT_EQ("", run.out);
    }
  }
  dir_.write("man", whole + std::string(5, '\0'));
  EXPECT_EQ(0, attach("release", "release.sig").status);
  EXPECT_EQ(kReleaseFile, file_hash("out"));
}

TEST_F(Signing, KeysAreShown) {
  EXPECT_EQ(std::string("public: public key\n  bits      2048\n"
                        "  exponent  65537\n  hash      ") +
                kKeyHash + "\n  halves    the public one alone\n",
            run_tool({"key", "show", "public"}).out);
  // Halves of different keys: the private modulus is another.
  std::string n = bytes_of(kSampleModulus);
  std::string other = n;
  other[255] ^= 4;
  dir_.write("mixed", pair_key_file(std::string("\1\0\1", 3), n, other,
                                    bytes_of(kSamplePrivateExponent)));
  const Outcome mixed = run_tool({"key", "show", "--json", "mixed", "pair"});
  EXPECT_EQ(1, mixed.status);
  const Json files = mixed.json()["files"];
  EXPECT_EQ(false, files[0]["halves_match"]);
  EXPECT_EQ("its public and its private half don't belong together",
            files[0]["problems"][0]["text"]);
  EXPECT_EQ(true, files[1]["halves_match"]);
  EXPECT_EQ(kKeyHash, files[1]["public_key_hash"]);
  EXPECT_EQ(kSampleModulus, files[1]["modulus"]);
  EXPECT_EQ(false, files[1]["sample_key"]);
  EXPECT_EQ(std::string::npos, mixed.out.find("SECRET"));
  EXPECT_NE(std::string::npos,
            run_tool({"key", "show", "mixed"}).out.find("DON'T"));
  // An exponent that anyone can sign with.
  dir_.write("one", public_key_file("\1", n));
  const Outcome one = run_tool({"key", "show", "one"});
  EXPECT_EQ(1, one.status);
  EXPECT_NE(std::string::npos,
            one.out.find("No manifest can be signed with it: its exponent is "
                         "1;"));
}

}  // namespace
}  // namespace tova_fw_builder
