#include "companion/ground/trouble.h"

#include <gtest/gtest.h>

#include <array>

#include "companion/ground/input_file.h"
#include "companion/ground/json.h"
#include "companion/ground/naming.h"
#include "companion/ground/status.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// What report_trouble prints.
std::string printed(std::string_view file, std::string_view text) {
  testing::internal::CaptureStderr();
  report_trouble(file, text);
  return testing::internal::GetCapturedStderr();
}

TEST(Trouble, IsALineThatSteersNothing) {
  EXPECT_EQ("tova_fw: a b: text\n", printed("a b", "text"));
  EXPECT_EQ("tova_fw: text\n", printed("", "text"));
  EXPECT_EQ("tova_fw: a\\x1b[2J: b\\x0ac\\x9b\n",
            printed("a\x1b[2J", "b\nc\x9b"));
}

TEST(Trouble, KeepsItsFileOnTheWay) {
  const auto fail = [] { throw std::runtime_error("text"); };
  const struct {
    std::function<void()> action;
    const char* file;
    const char* text;
    const char* what;
  } cases[] = {
      {fail, "", "text", "text"},
      {[&] { naming("f", fail); }, "f", "text", "f: text"},
      {[&] { naming("outer", [&] { naming("f", fail); }); }, "f", "text",
       "f: text"},
      {[&] { naming("", fail); }, "''", "text", "'': text"},
  };
  for (const auto& c : cases) {
    try {
      c.action();
      ADD_FAILURE() << c.what;
    } catch (const std::exception& error) {
      EXPECT_STREQ(c.what, error.what());
      EXPECT_EQ(c.file, trouble_of(error).file);
      EXPECT_EQ(c.text, trouble_of(error).text);
    }
  }
  EXPECT_EQ(7, naming("f", [] { return 7; }));
}

TEST(Troubles, AreToldTwice) {
  testing::internal::CaptureStderr();
  Troubles troubles;
  EXPECT_FALSE(troubles.any());
  troubles.add(Trouble{"", "none"});
  troubles.add("", "an empty name");
  troubles.add("a\xff", "text");
  EXPECT_TRUE(troubles.any());
  EXPECT_EQ(
      "tova_fw: none\ntova_fw: '': an empty name\ntova_fw: a\\xff: text\n",
      testing::internal::GetCapturedStderr());
  // What isn't UTF-8 is replaced, so that the document stays one.
  EXPECT_EQ(R"([
  {
    "file": "",
    "text": "none"
  },
  {
    "file": "''",
    "text": "an empty name"
  },
  {
    "file": "a)"
            "\xEF\xBF\xBD"
            R"(",
    "text": "text"
  }
]
)",
            json_text(troubles_json(troubles)));
}

TEST(Trouble, NoBytesOfKeysAreQuoted) {
  EXPECT_EQ("Key type not recognized",
            without_key_bytes("Key type not recognized :\r\n-----BEGIN EC"));
  EXPECT_EQ("Not recognized key type",
            without_key_bytes("Not recognized key type : (8:x? file path : "));
  EXPECT_EQ("Failed to open file: Key type",
            without_key_bytes("Failed to open file: Key type"));
}

TEST(InputFile, ReadsTheHeadOrSaysWhyNot) {
  const TempDir dir;
  std::array<std::uint8_t, 4> head{};
  EXPECT_EQ(4u, read_head(dir.write("long", "abcdef"), head));
  EXPECT_EQ('d', head[3]);
  EXPECT_EQ(2u, read_head(dir.write("short", "xy"), head));
  EXPECT_EQ('y', head[1]);
  EXPECT_EQ('d', head[3]);
  EXPECT_EQ(0u, read_head("/dev/null", head));
  const struct {
    std::string path;
    const char* reason;
  } cases[] = {
      {dir.file("none"), "No such file or directory"},
      {dir.path(), "Is a directory"},
      {dir.file("short") + "/x", "Not a directory"},
      {"", "No such file or directory"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(std::string("cannot be read: ") + c.reason,
              message_of([&] { read_head(c.path, head); }));
  }
}

TEST(Status, TheWorseOneCounts) {
  EXPECT_EQ(Status::kTrouble, worse_of(Status::kTrouble, Status::kNo));
  EXPECT_EQ(Status::kNo, worse_of(Status::kYes, Status::kNo));
  EXPECT_EQ(1, static_cast<int>(Status::kNo));
}

}  // namespace
}  // namespace tova_fw_builder
