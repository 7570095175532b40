#include <gtest/gtest.h>

#include <sstream>

#include "support/captured_log.h"
#include "support/temp_dir.h"
#include "tools/commands.h"

namespace tova_fw_builder {
namespace {

// The last line is too long for the buffer: its start counts, nothing behind.
TEST(AssembleImage, JoinsTheFilesOfBinLines) {
  TempDir dir;
  std::filesystem::current_path(dir.path());
  dir.write("one", "ONE");
  dir.write("two", std::string("\0\n2", 3));
  std::istringstream package(
      "# TOVA\n\nver 1.2\ncfg { bin }\nBIN one\n#bin one\n# bin one\n"
      "  \t bin two 'shown name' ver. 1\nbins one\nbin one\r\nbin two" +
      std::string(1024, ' ') + "\nbin one\n");
  CapturedLog log;
  std::ostringstream out;
  append_files(package, out);
  EXPECT_EQ(std::string("\0\n2ONE\0\n2", 9), out.str());
  EXPECT_EQ(
      "Appending two size = 3\nAppending one size = 3\n"
      "Appending two size = 3\n",
      log.text());
}

TEST(AssembleImage, Failures) {
  TempDir dir;
  std::filesystem::current_path(dir.path());
  dir.write("one", "1");
  CapturedLog log(3);
  const auto run = [&](const std::string& text, const std::string& out) {
    dir.write("p.pkg", text);
    return message_of([&] { assemble_image("p.pkg", out); });
  };
  EXPECT_EQ("Failed to open file: ", run("bin one\nbin\nbin one\n", "out"));
  EXPECT_EQ("1", read_file("out"));
  EXPECT_EQ(
      "Assemblying full image\nPKG file: p.pkg\nBIN file: out\n"
      "Appending one size = 1\n",
      log.text());
  EXPECT_EQ("no exception", run("bin one", "no/such/folder"));
  EXPECT_TRUE(log.text().ends_with("Appending one size = 1\nFinished\n"));
  // The output among its own inputs: it is empty by then, and must not grow.
  EXPECT_EQ("no exception", run("bin out\nbin one", "out"));
  EXPECT_EQ("1", read_file("out"));
}

}  // namespace
}  // namespace tova_fw_builder
