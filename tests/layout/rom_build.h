// tests/layout/rom_build.h
// Runs definitions and a section table through the build core and the content
// writer, as the commands do.
#pragma once

#include <memory>
#include <string>

#include "layout/records/out_map.h"
#include "support/bytes.h"

namespace tova_fw_builder {

struct RomBuild {
  std::string fault = "no exception";
  std::string log;  // behind the reading of the inputs
  std::unique_ptr<FwOutMap> map;
  std::string bytes;
  std::string write_log;
};

// `sections`: of each section the words name, size, VMA, LMA, file offset,
// alignment, and the first letters of its flags (c a l r, x for code, d); ";"
// behind each. `elf` is the file that the offsets point into. The symbols are
// "first" and "second". `binary_path` is for addon files.
RomBuild build_rom(const std::string& definition, const std::string& sections,
                   const std::string& elf = "", bool rom_mode = true,
                   int level = 2, const std::string& binary_path = "");

}  // namespace tova_fw_builder
