// image/commands.h
// The commands that build images, each in a source of its own.
#pragma once

#include <cstdint>
#include <string>

#include "driver/ground/version.h"

namespace tova_fw_builder {

struct BuildArguments {
  std::uint32_t img_flags = 0;        // of the binary header
  std::uint32_t feat_mask = 0;        // of the binary header
  std::uint32_t imr_type = 0;         // of the metadata extension
  Version version;                    // of the image
  std::uint32_t css_header_size = 0;  // bytes that signing puts ahead of the
                                      // binary
  std::string default_dir;            // where definitions are searched second
  std::string image_def_path;
  std::string module_config_path;
  std::string key_list_path;  // empty for none
  std::string out_dir;        // with its separator: names are glued to it
  std::string elf_list_name;  // these three stand under out_dir
  std::string manifest_name;
  std::string binary_name;  // without ".bin"
};

// Builds an image with all of its output files. The binary, the manifest and
// the extended manifest are created, empty, before any input is read; what was
// written when something fails stays as it is.
//
// Throws what its steps throw. An output file that can't be opened or written
// is no failure, unless write_binary_header sees it by the length of the
// binary.
void build_command(const BuildArguments& arguments);

// Builds a plain ROM image: the contents of all modules with their padding, and
// nothing around them. Names are glued to `out_dir`, ".bin" to the binary's.
// That the image can't be written goes unnoticed. Throws what build_out_map and
// write_module_contents throw.
void buildrom_command(const std::string& default_dir,
                      const std::string& image_def_path,
                      const std::string& out_dir,
                      const std::string& elf_list_name,
                      const std::string& binary_name);

}  // namespace tova_fw_builder
