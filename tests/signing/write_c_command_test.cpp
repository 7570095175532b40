#include <gtest/gtest.h>

#include "signing/commands.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(WriteC, BytesOfTheFileUnderTheOneLabel) {
  TempDir dir;
  const std::string out = dir.write("out", "old");
  EXPECT_EQ("Failed to open file: none",
            message_of([&] { write_c_command("none", out); }));
  EXPECT_EQ("old", read_file(out));
  write_c_command(dir.write("in", ""), out);
  EXPECT_EQ("unsigned char rawData[0] = { \n};\n", read_file(out));
  write_c_command(dir.write("in", std::string(262144 + 8192, '\n')), out);
  const std::string text = read_file(out);  // no seam between pieces shows
  EXPECT_EQ(std::string::npos, text.find("0x0a, \n"));
  EXPECT_TRUE(text.ends_with(" 0x0a, 0x0a\n};\n"));
}

}  // namespace
}  // namespace tova_fw_builder
