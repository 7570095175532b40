// The package descriptor. Only its "bin" lines are ever read back, and a path
// with a blank in it can't be: the reader takes one word.
#include "tools/package_descriptor/package_descriptor.h"

#include <fstream>

#include "driver/ground/files.h"
#include "driver/ground/version.h"
#include "layout/records/addon_file.h"
#include "tools/package_descriptor/build_stamp.h"

namespace tova_fw_builder {

namespace {

void write_facts(std::ostream& out, const FwOutMap& map, std::uint32_t date,
                 std::uint32_t module_type) {
  // The manifest kind is hexadecimal too, without a prefix, like the date.
  out << "# TOVA FW Image Builder ver " << kBuildDate << ' ' << kBuildTime
      << "\n\n"
      << "ver " << map.version << '\n'
      << std::hex << "bld " << date << '\n'
      << "mft " << module_type << '\n'
      << "flg 0x" << map.fw_img_flags << '\n'
      << "sku 0x" << map.feature_mask << '\n'
      << std::dec << '\n';
}

// The base modules that lead the list: those behind an addon aren't shown.
void write_names(std::ostream& out, const FwOutMap& map) {
  out << "cfg { ";
  for (const auto& module : map.modules) {
    if (module->module_kind != FwOutMap::Module::kBase) break;
    out << module->name << ' ';
  }
  out << "}\n\n";
}

void write_files(std::ostream& out, const FwOutMap& map,
                 const std::string& path) {
  out << "bin " << path << ".bin '";
  if (!map.modules.empty()) out << map.modules.front()->display_name;
  out << "'\n";
  for (const auto& module : map.modules) {
    // In every generation, though 1.5 alone writes addons to files of their
    // own.
    if (module->module_kind != FwOutMap::Module::kAddon) continue;
    out << "bin " << path << addon_file_suffix(module->uuid.text()) << " '"
        << module->display_name << "' ver. " << module->version << '\n';
  }
}

}  // namespace

void write_package_descriptor(const FwOutMap& map, const std::string& path,
                              std::uint32_t date, std::uint32_t module_type) {
  // Nothing is read back, but a file that may be written alone stays as it was.
  std::fstream out = open_output_to_read(path + ".pkg");
  write_facts(out, map, date, module_type);
  write_names(out, map);
  write_files(out, map, path);
}

}  // namespace tova_fw_builder
