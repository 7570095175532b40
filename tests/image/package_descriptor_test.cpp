#include "tools/package_descriptor.h"

#include <gtest/gtest.h>

#include <regex>

#include "image/small_image.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// The descriptor without its first line, which changes with the build.
std::string descriptor_of(const FwOutMap& map, std::uint32_t generation) {
  TempDir dir;
  CapturedLog log;
  std::filesystem::current_path(dir.path());
  const auto image = make_image(small_image(generation));
  write_package_descriptor(map, "./fw", *image->create_manifest(false, 0));
  const std::string text = read_file("fw.pkg");
  static const std::regex first(
      "# TOVA FW Image Builder ver [A-Z][a-z]{2} [ 123]\\d 2\\d{3} "
      "[0-2]\\d:[0-5]\\d:[0-6]\\d\n");
  std::smatch match;
  EXPECT_TRUE(std::regex_search(text, match, first,
                                std::regex_constants::match_continuous))
      << text;
  return match.suffix();
}

TEST(PackageDescriptor, ListsLeadingBaseModulesAndAddonFiles) {
  const auto map = small_image(kKelp18);
  map->modules[2]->module_kind = 0;  // behind the addon: not listed
  EXPECT_EQ(
      "\nver 1.2.3.4\nbld 0\nmft 4\nflg 0x10\nsku 0xff\n\ncfg { BASEMODULE }\n"
      "\nbin ./fw.bin 'Base module '\n"
      "bin ./fw_03020100-0504-0706-0809-0a0b0c0d0e0f.bin 'Add on' ver. "
      "10.0.0.1\n",
      descriptor_of(*map, kKelp18));
  EXPECT_EQ(
      "\nver 0.0.0.0\nbld 0\nmft 6\nflg 0x0\nsku 0x0\n\ncfg { }\n\n"
      "bin ./fw.bin ''\n",
      descriptor_of(FwOutMap(), kKelp15));
}

}  // namespace
}  // namespace tova_fw_builder
