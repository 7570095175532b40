#include "layout/build_core.h"

#include <gtest/gtest.h>

#include <sstream>

#include "layout/content_writer.h"
#include "layout/dependency_file.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

constexpr char kAllowing[] =
    "Warning: allowing 18446744073709551615b data section!\n\n";

// The inputs of a small ROM build.
class BuildCore : public testing::Test {
 protected:
  BuildCore() {
    dir_.write("fw.elf", "0123456789");
    dir_.write("fw.nm", "1000 T main\n");
    table(".text 4 1000 1000 2 2**2\n CONTENTS, ALLOC, LOAD, CODE");
    dir_.write("fw.lst", dir_.file("fw.elf") + "\n" + dir_.file("fw.map") +
                             "\n" + dir_.file("fw.nm") + "\n");
    definition("");
  }

  // `sections`: entry and flag lines without the index.
  void table(const std::string& section) {
    dir_.write("fw.map", "Idx\n0 " + section + "\n");
  }
  void definition(const std::string& more) {
    dir_.write("fw.def", "binary_ver 1.8\n" + more +
                             "module BASE\ngroup text\nsection ep .text\n");
  }
  std::unique_ptr<FwOutMap> build() {
    return build_out_map(true, dir_.file("fw.lst"), "", dir_.path(),
                         dir_.file("fw.def"), std::nullopt);
  }

  TempDir dir_;
};

TEST_F(BuildCore, MapOutlivesWhatItWasMadeOf) {
  const CapturedLog log;
  const auto map = build();
  EXPECT_EQ(
      "Loaded 1 symbols from file: " + dir_.file("fw.nm") + "\n" + kAllowing,
      log.text());
  EXPECT_EQ(0x1000u, map->modules.at(0)->entry_point);
  std::ostringstream out;
  write_module_contents(*map, out, "");
  EXPECT_EQ("2345" + std::string(4092, '\0'), out.str());
  const std::string source = dir_.file("fw.def");
  EXPECT_EQ("binary_parts: " + source + "\n" + source + ": \n\n",
            read_file(dir_.file("fw.d")));
}

TEST_F(BuildCore, SizesAreLimited) {
  const struct {
    const char* max_data;
    const char* section;
    const char* message;
  } kCases[] = {
      {"", ".data 99", "no exception"},
      {"max_data 10\n", ".data 10", "no exception"},
      {"max_data 10\n", ".data 11", ".data size 11 > max_allowed_size 10"},
      {"max_data 0\n", ".data 1", ".data size 1 > max_allowed_size 0"},
      {"", ".guard 1", ".guard size 1 > max_allowed_size 0"},
      {"max_data f\n", "a.guard 10", "a.guard size 10 > max_allowed_size f"},
      {"max_data f\n", "a.guard2 10", "no exception"},
  };
  for (const auto& item : kCases) {
    definition(item.max_data);
    table(".text 4 1000 1000 2 2**2\nCODE\n1 " + std::string(item.section) +
          " 0 0 0 2**0\nDATA");
    const CapturedLog log;
    EXPECT_EQ(item.message, message_of([&] { build(); })) << item.section;
    EXPECT_EQ(std::string(item.max_data) != "max_data 0\n",
              log.text().find("Warning: allowing ") != std::string::npos);
  }
}

TEST_F(BuildCore, WarnsOfWhatNoReferenceBinds) {
  table(
      ".text 4 1000 1000 2 2**2\nLOAD\n"
      "1 left 1 0 0 0 2**2\nLOAD\n2 dyn 1 0 0 0 2**2\nLOAD");
  definition(
      "ignore left\ndyn_mem dyn\nmodule o GONE\ngroup text\n"
      "section lost\nsection left\n");
  const CapturedLog log;
  EXPECT_EQ(1u, build()->modules.size());
  EXPECT_NE(std::string::npos,
            log.text().find("Warning: Erasing unreferenced module GONE\n"
                            "Section marked to ignore left\n" +
                            std::string(kAllowing) +
                            "Warning: Unreferenced loadable section left\n"));
}

TEST_F(BuildCore, KeyStoreReplacesAPlaceholder) {
  dir_.write("keys", "");
  table("room 8 1000 1000 2 2**2\nCONTENTS, ALLOC, LOAD, CODE");
  dir_.write("consts.h", "#define ONE 1\n");
  dir_.write("fw.def",
             "binary_ver 1.8\nmodule BASE\ninstance_count ONE\n"
             "group text\nsection ep room < public_keys_storage\n");
  const CapturedLog log;
  const auto map =
      build_out_map(false, dir_.file("fw.lst"), dir_.file("keys"), dir_.path(),
                    dir_.file("fw.def"), dir_.file("consts.h"));
  std::ostringstream out;
  write_module_contents(*map, out, "");
  EXPECT_EQ(std::string(4096, '\0'), out.str());  // a count of no keys
}

TEST(DependencyFile, NameAndRules) {
  const TempDir dir;
  for (const char* name : {"fw.lst", "fw"}) {
    write_dependency_file(dir.file(name), {"a\\b", "c"});
    EXPECT_EQ(
        "binary_parts: a/b\na/b: \n\n"
        "binary_parts: c\nc: \n\n",
        read_file(dir.file("fw.d")));
    std::filesystem::remove(dir.file("fw.d"));
  }
  write_dependency_file(dir.file(".lst"), {});
  EXPECT_TRUE(std::filesystem::exists(dir.file(".lst.d")));
  write_dependency_file("/nowhere/fw.lst", {"a"});
}

}  // namespace
}  // namespace tova_fw_builder
