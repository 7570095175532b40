#include "image/build_command.h"

#include <gtest/gtest.h>

#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// The outputs are opened before anything is read, and stay where a definition
// fails. Names are glued to the directory.
TEST(BuildCommand, FailureLeavesEmptyOutputs) {
  TempDir dir;
  std::filesystem::current_path(dir.path());
  const std::string outputs[] = {"out-fw.bin", "out-man", "out-man.ext"};
  for (const std::string& name : outputs) dir.write(name, "old");
  dir.write("modules.h", "");
  CapturedLog log(3);
  EXPECT_NE("no exception", message_of([&] {
              build_command({0xAB,
                             0xCD,
                             0,
                             {1, 2, 3, 4},
                             4096,
                             "dir",
                             "no.def",
                             "modules.h",
                             "keys",
                             "out-",
                             "elfs",
                             "man",
                             "fw"});
            }));
  EXPECT_TRUE(log.text().starts_with(
      "Building FW Image image_flags ab feature_mask cd version 1.2.3.4\n"
      "CSS headers size                : 0x1000\n"
      "IMAGE DEF default dir           : dir\n"
      "IMAGE DEF path                  : no.def\n"
      "MODCFG file path                : modules.h\n"
      "OUT directory                   : out-\n"
      "ELF_LIST file path              : out-elfs\n"
      "KEY_LIST file path              : keys\n"
      "MANIFEST file path              : out-man\n"
      "MANIFEST ext file path          : out-man.ext\n"
      "BIN file path                   : out-fw\n\n"))
      << log.text();
  for (const std::string& name : outputs) {
    EXPECT_EQ(0u, std::filesystem::file_size(name)) << name;
  }
}

}  // namespace
}  // namespace tova_fw_builder
