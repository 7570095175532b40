#include "inspect/addon_name.h"

#include <gtest/gtest.h>

#include "layout/records/addon_file.h"

namespace tova_fw_builder {
namespace {

TEST(AddonName, ItsNameTellsTheUuid) {
  const std::string uuid = "5a3c0004-0000-4000-8000-00000000000f";
  EXPECT_EQ("_" + uuid + ".bin", addon_file_suffix(uuid));
  EXPECT_EQ(uuid, uuid_of_addon_file("out/fw_" + uuid + ".bin"));
  EXPECT_EQ(uuid, uuid_of_addon_file("_" + uuid + ".bin"));
  EXPECT_EQ(uuid,
            uuid_of_addon_file("FW_5A3C0004-0000-4000-8000-00000000000F.BIN"));
  for (const std::string name : {"", ".bin", "fw.bin", "fw-%.bin", "fw_%.img",
                                 "fw_%.bin.old", "%.bin", "fw_0%.bin"}) {
    const std::size_t mark = name.find('%');
    std::string path = name;
    if (mark != name.npos) path.replace(mark, 1, uuid);
    EXPECT_EQ("", uuid_of_addon_file(path)) << path;
  }
}

}  // namespace
}  // namespace tova_fw_builder
