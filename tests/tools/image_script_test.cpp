// Expected bytes are written by hand; the digest is sha256sum's of "abc".
#include "tools/image_script.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"
#include "tools/commands.h"

namespace tova_fw_builder {
namespace {

// What one script leaves behind. Each deployed file holds its name. The log
// ends with the text of the error, if any.
struct Result {
  std::string image;
  std::string log;
};

Result run(const std::string& text, const std::string& output = "") {
  TempDir dir;
  for (const std::string name : {"abc", "bin", "pt", "m", "size", "sha"}) {
    dir.write("in/" + name, name);
  }
  std::istringstream script(text);
  const std::string out = output.empty() ? dir.file("out") : output;
  CapturedLog log;
  const std::string error =
      message_of([&] { run_image_script(script, dir.file("in/"), out); });
  return {output.empty() ? read_file(out) : "",
          log.text() + (error == "no exception" ? "" : error)};
}

constexpr char kDigestOfAbc[] =
    "ba 78 16 bf 8f 01 cf ea 41 41 40 de 5d ae 22 23 \n"
    "b0 03 61 a3 96 17 7a 9c b4 10 ff 61 f2 00 15 ad \n";

TEST(BuildImage, StatementsAndTheirLog) {
  const std::string digest = kDigestOfAbc;
  const std::tuple<const char*, std::string, std::string> kCases[] = {
      {"\n \n#bin abc\n# bin abc\nBIN abc\nbinabc\n", "", ""},
      {"bin abc", "61 62 63", "Appending abc size = 3\n"},
      {"dd 1 0x2000000f", "01 00 00 00 0f 00 00 20",
       "Appending dd 0x1\nAppending dd 0x2000000f\n"},
      {"dw 12345 \n", "45 23", "Appending dw 0x12345\n"},
      {"db 1ff\tFE\r\n", "ff fe", "Appending db 0x1ff\nAppending db 0xfe\n"},
      {"size abc", "03 00 00 00", "Appending size of abc = 3\n"},
      {"sha abc", digest, "Appending hash of abc = sha256\n" + digest + "\n"},
      {"offset 4\ndb 2\noffset 1\ndb 3\noffset 1", "00 03 00 00 02",
       "Appending padding size = 4\nAppending db 0x2\nAppending db 0x3\n"},
      {"dw 101 101\noffset 0\noffset 2\noffset 2\noffset 3", "00 00 00 01",
       "Appending dw 0x101\nAppending dw 0x101\nAppending padding size = 2\n"
       "Appending padding size = 1\n"},
      {"offset 0x3\noffset x9\noffset\ndb 7", "07 00 00",
       "Appending padding size = 3\nAppending db 0x7\n"},
  };
  for (const auto& [script, image, log] : kCases) {
    const Result result = run(script);
    EXPECT_EQ(bytes_of(image), result.image) << script;
    EXPECT_EQ(log, result.log);
  }
}

// A failed read drops one word and what it has consumed. The current word goes
// through the tests that are left of its line, each of which is made once.
TEST(BuildImage, NumbersAndCurrentWords) {
  const std::pair<const char*, std::string> kCases[] = {
      {"db ", ""},
      {"db 1x 2", "01 02"},
      {"db 10 zz 20", "10 20"},
      {"db 0xzz 2", "02"},
      {"db 0x 2 3", "03"},
      {"db - 2 3", "03"},
      {"db 100000000 2 3", "03"},
      {"db ffffffff -1 +5", "ff ff 05"},
      {"bin abc db 7 zz", "61 62 63 07"},
      {"bin abc offset 5", "61 62 63 00 00"},
      {"bin abc bin abc", "61 62 63"},
      {"bin abc size", "61 62 63 04 00 00 00"},  // no operand: the word stays
      {"size sha abc", "03 00 00 00 " + std::string(kDigestOfAbc)},
  };
  for (const auto& [script, image] : kCases) {
    EXPECT_EQ(bytes_of(image), run(script).image) << script;
  }
  EXPECT_EQ('\1', run("bin m\npt").image[1]);  // its name marks it
}

TEST(BuildImage, PartitionTable) {
  const Result result =
      run("pt\noffset 44\nbin abc m\nbin abc\nbin abc m\nbin abc M\n");
  EXPECT_EQ(bytes_of("02 00 00 00 44 00 00 00 4a 00 00 00") +
                std::string(56, '\0') + "abcabcabcabc",
            result.image);
  // The later place counts, and the table may end the file.
  EXPECT_EQ("abc" + std::string(68, '\0'), run("pt\nbin abc\npt").image);

  std::string script = "pt\n";
  for (int i = 0; i < 17; ++i) script += "bin abc m\n";
  const Result full = run(script);
  EXPECT_TRUE(full.log.ends_with(
      "Appending abc size = 3\nToo many partition table entries"));
  EXPECT_EQ(48u, full.image.size());  // neither the file nor the table
}

// Behind a step back the image is an input like any other: what it holds at
// that line is appended, also where the pieces of the copy overlap.
TEST(BuildImage, TakesItselfAsInput) {
  const TempDir dir;
  std::string bytes(200000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>(i * i >> 7);
  }
  dir.write("in", bytes);
  const CapturedLog log;
  build_image(dir.write("script", "bin in\noffset 1000\nbin out\ndb 7\n"),
              dir.path() + "/", dir.file("out"));
  EXPECT_TRUE(bytes.substr(0, 0x1000) + bytes + '\7' ==
              read_file(dir.file("out")));
}

// A file is one message for the hash, of whose length 32 bits count, as a
// signed number.
TEST(BuildImage, HashOfHugeFiles) {
  const TempDir dir;
  const std::string script =
      dir.write("script", "sha " + dir.write("in", "abc"));
  const auto outcome = [&](std::uintmax_t length) {
    std::filesystem::resize_file(dir.file("in"), length);
    const CapturedLog log;
    const std::string error =
        message_of([&] { build_image(script, "", dir.file("out")); });
    return log.text() + error;
  };
  const std::string refused =
      "Building Image\nZelError zelsSHA256Update failed 0xfffffff1 (-15)";
  EXPECT_EQ(refused, outcome(0x80000000));
  EXPECT_NE(outcome((1ull << 32) + 3).find(kDigestOfAbc), std::string::npos);
}

// A failed output swallows everything but padding, which can't go unnoticed.
TEST(BuildImage, Failures) {
  const std::string refused = "Offset out of range: ";
  EXPECT_EQ(refused + "18446744073709551615",
            run("offset ffffffffffffffff").log);
  EXPECT_EQ("Appending padding size = 9223372036854775807\n" + refused +
                "9223372036854775807",
            run("offset 7fffffffffffffff").log);
  EXPECT_EQ("Appending padding size = 16\n" + refused + "16",
            run("offset 10", "/dev/full").log);
  EXPECT_EQ("Appending abc size = 3\n",
            run("pt\nbin abc m\noffset 10", "/").log);
  // A device has no end to seek to; this must not write for ever.
  EXPECT_EQ(run("db 1\noffset 10", "/dev/null").log.find(refused),
            std::string::npos);
  const Result missing = run("db 41\nsize x");
  EXPECT_TRUE(missing.log.ends_with("/in/x")) << missing.log;
  EXPECT_EQ("A", missing.image);

  CapturedLog log(3);
  message_of([] { build_image("none", "pre", "out"); });
  EXPECT_EQ(
      "Building Image\nIMG DSCR file: none\nDEPLOY directory: pre\n"
      "IMG file: out\n",
      log.text());
}

}  // namespace
}  // namespace tova_fw_builder
