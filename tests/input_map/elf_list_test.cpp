#include "input_map/elf_list.h"

#include <gtest/gtest.h>

#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(ElfList, FirstWordOfEachLineCounts) {
  const TempDir dir;
  const std::string path = dir.write("list", "a.elf x\r\n \t b.map\n  \n");
  const CapturedLog log(3);
  const ElfList list = read_elf_list(path);
  ASSERT_EQ(1u, list.size());
  EXPECT_EQ("a.elf", list[0].elf);
  EXPECT_EQ("b.map", list[0].memmap);
  EXPECT_EQ("", list[0].nm);
  EXPECT_EQ(
      "Reading ELF list...\n"
      "+ ELF: a.elf x\r\n+ MAP:  \t b.map\n+ NM:   \n\n",
      log.text());
}

TEST(ElfList, EveryTripleMustBeWholeAndEndInALineFeed) {
  const TempDir dir;
  EXPECT_TRUE(read_elf_list(dir.write("empty", "")).empty());
  EXPECT_TRUE(read_elf_list("/dev/zero").empty());
  for (const char* text : {"a\nb\nc", "a\nb\n", "a", "a\nb\nc\n\n"}) {
    const std::string path = dir.write("list", text);
    EXPECT_EQ(
        "Invalid number of lines in ELF list. Must be list of pairs "
        "<elf, memmap, nm>",
        message_of([&] { read_elf_list(path); }))
        << text;
  }
}

}  // namespace
}  // namespace tova_fw_builder
