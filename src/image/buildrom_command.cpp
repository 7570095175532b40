// The `buildrom` command. The generation of the definition matters here only
// for how the contents are written; no image class is asked.
#include <fstream>
#include <memory>

#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "image/commands.h"
#include "layout/build_core.h"
#include "layout/content_writer.h"

namespace tova_fw_builder {

void buildrom_command(const std::string& default_dir,
                      const std::string& image_def_path,
                      const std::string& out_dir,
                      const std::string& elf_list_name,
                      const std::string& binary_name) {
  log_info("Building ROM Image ");
  const std::string elf_list_path = out_dir + elf_list_name;
  const std::string binary_path = out_dir + binary_name;
  log_detail("IMAGE DEF default dir   : ", default_dir);
  log_detail("IMAGE DEF path          : ", image_def_path);
  log_detail("OUT directory           : ", out_dir);
  log_detail("ELF_LIST file path      : ", elf_list_path);
  log_detail("BIN file path           : ", binary_path, '\n');

  const std::unique_ptr<FwOutMap> map = build_out_map({
      .rom_mode = true,
      .elf_list_path = elf_list_path,
      .default_dir = default_dir,
      .image_def_path = image_def_path,
  });
  // Behind the inputs: a ROM of before stays when one of them is refused.
  std::ofstream binary = open_output(binary_path + ".bin");
  log_info("\nWriting sections to ", binary_path);
  write_module_contents(*map, binary, binary_path);
}

}  // namespace tova_fw_builder
