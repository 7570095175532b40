#include "layout/build_core.h"

#include <gtest/gtest.h>

#include <sstream>

#include "layout/content_writer.h"
#include "layout/passes.h"
#include "layout/rom_build.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(BuildCore, SizesAreLimited) {
  const std::string kAllowing =
      "Warning: allowing 18446744073709551615b data section!\n\n";
  const struct {
    const char* definition;
    const char* section;
    std::string fault;
    std::string log;
  } kCases[] = {
      {"", ".data 99", "no exception", kAllowing},
      {"max_data 10\n", ".data 10", "no exception",
       "Warning: allowing 16b data section!\n\n"},
      {"max_data 0\n", ".data 1a", ".data size 1a > max_allowed_size 0", ""},
      {"", ".guard 1", ".guard size 1 > max_allowed_size 0", kAllowing},
      {"max_data f\n", "a.guard 10", "a.guard size 10 > max_allowed_size f",
       "Warning: allowing 15b data section!\n\n"},
      {"max_data 0\n", "guard 10", "no exception", ""},
  };
  for (const auto& item : kCases) {
    const std::string section = item.section;
    const RomBuild result =
        build_rom(item.definition, section + " 0 0 0 2**0 l");
    EXPECT_EQ(item.fault, result.fault) << section;
    std::string log = item.log;
    if (item.fault == "no exception") {  // sizes are checked first
      log += "Warning: Unreferenced loadable section " +
             section.substr(0, section.find(' ')) + "\n";
    }
    EXPECT_EQ(log, result.log) << section;
  }
}

TEST(BuildCore, AllInputsMeet) {
  const TempDir dir;
  const std::string definition =
      dir.write("fw.def",
                "binary_ver 1.8\nmodule BASE\naffinity_mask SEVEN\n"
                "group text\nsection ep room < public_keys_storage\n");
  dir.write("keys", "");
  dir.write("consts.h", "#define SEVEN 7\n");
  dir.write("fw.map",
            "Idx\n0 room 8 1000 1000 0 2**2\nCONTENTS, CODE\n"
            "1 public_keys_storage 8 1000 1000 0 2**2\nCODE\n");
  dir.write("fw.lst", dir.write("fw.elf", "ABCDEFGH") + "\n" +
                          dir.file("fw.map") + "\n" + dir.write("nm", "") +
                          "\n");
  const CapturedLog log;
  const auto map = build_out_map({.elf_list_path = dir.file("fw.lst"),
                                  .key_list_path = dir.file("keys"),
                                  .default_dir = dir.path(),
                                  .image_def_path = definition,
                                  .module_config_path = dir.file("consts.h")});
  EXPECT_EQ(7u, map->modules.at(0)->affinity_mask);
  std::ostringstream out;
  write_module_contents(*map, out, "");
  EXPECT_EQ(std::string(4096, '\0'), out.str());  // the store: no keys
  EXPECT_NE(std::string::npos,
            log.text().find("Duplicated non-loadable section found: public"));
  EXPECT_EQ("binary_parts: " + definition + "\n" + definition + ": \n\n",
            read_file(dir.file("fw.d")));
}

TEST(DependencyFile, NameAndRules) {
  const TempDir dir;
  for (const char* name : {"fw.lst", "fw"}) {
    write_dependency_file(dir.file(name), {"a\\b", "c"});
    EXPECT_EQ("binary_parts: a/b\na/b: \n\nbinary_parts: c\nc: \n\n",
              read_file(dir.file("fw.d")));
    std::filesystem::remove(dir.file("fw.d"));
  }
  write_dependency_file(dir.file(".lst"), {});
  EXPECT_TRUE(std::filesystem::exists(dir.file(".lst.d")));
  write_dependency_file("/nowhere/fw.lst", {"a"});
}

}  // namespace
}  // namespace tova_fw_builder
