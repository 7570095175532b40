#include "tools/package_descriptor/package_descriptor.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// The descriptor without its first line, which changes with the build.
std::string descriptor_of(const FwOutMap& map) {
  TempDir dir;
  std::filesystem::current_path(dir.path());
  write_package_descriptor(map, "./fw", 0x20261121, 10);
  const std::string text = read_file("fw.pkg");
  EXPECT_TRUE(text.starts_with("# TOVA FW Image Builder ver "));
  return text.substr(text.find('\n') + 1);
}

TEST(PackageDescriptor, ListsLeadingBaseModulesAndAddonFiles) {
  FwOutMap map;
  EXPECT_EQ(
      "\nver 0.0.0.0\nbld 20261121\nmft a\nflg 0x0\nsku 0x0\n\ncfg { }\n\n"
      "bin ./fw.bin ''\n",
      descriptor_of(map));
  map.version = {1, 2, 3, 4};
  map.fw_img_flags = 0x10;
  map.feature_mask = 0xff;
  for (const std::uint32_t kind : {0u, 0u, 2u, 1u, 0u}) {
    auto module = std::make_unique<FwOutMap::Module>();
    module->name = std::string(1, static_cast<char>('A' + map.modules.size()));
    module->uuid = Uuid(std::array<std::uint8_t, 16>{});
    module->display_name = "Name " + module->name;
    module->version = {10, 0, 0, 1};
    module->module_kind = kind;
    map.modules.push_back(std::move(module));
  }
  EXPECT_EQ(
      "\nver 1.2.3.4\nbld 20261121\nmft a\nflg 0x10\nsku 0xff\n\n"
      "cfg { A B }\n\nbin ./fw.bin 'Name A'\n"
      "bin ./fw_00000000-0000-0000-0000-000000000000.bin 'Name D' ver. "
      "10.0.0.1\n",
      descriptor_of(map));
}

}  // namespace
}  // namespace tova_fw_builder
