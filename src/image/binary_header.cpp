// The firmware binary header. File offsets are the delicate point: a base of
// the generation stands under them, and in 1.5 it moves on with each module.
#include "image/binary_header.h"

#include <stdexcept>
#include <string_view>
#include <vector>

#include "driver/ground/log.h"
#include "driver/ground/wire.h"
#include "layout/section_group.h"

namespace tova_fw_builder {

namespace {

constexpr std::uint32_t kTestBuildFlag = 0x80000000;

std::uint32_t preload_pages(const FwOutMap& map, std::uint32_t base_offset) {
  if (map.modules.empty()) {
    throw std::runtime_error(
        "preload page count cannot be computed - no modules");
  }
  // The base stands for what lies, or a signer will put, ahead of these bytes.
  const std::uint64_t length = map.image_end + base_offset;
  if (length == 0 || length % kPageSize != 0) {
    throw std::runtime_error("preload size not aligned to page size");
  }
  return static_cast<std::uint32_t>(length / kPageSize);
}

TovaFwBinaryHeader make_header(const FwOutMap& map, std::uint32_t base_offset) {
  TovaFwBinaryHeader header;
  header.header_len = sizeof(TovaFwBinaryHeader);
  header.load_offset = map.load_offset;
  // A longer name leaves the field empty, on purpose, whereas a module's name
  // keeps its first bytes.
  if (map.binary_name.size() <= header.name.size()) {
    map.binary_name.copy(header.name.data(), header.name.size());
  }
  header.preload_page_count = preload_pages(map, base_offset);
  header.fw_img_flags = map.fw_img_flags;
  // The build goes on: whoever ships the image is to see the line.
  if ((map.fw_img_flags & kTestBuildFlag) != 0) {
    log_warning("=TP= FLAG TURNED ON FOR PP BUILDS !!!");
  }
  header.feature_mask = map.feature_mask;
  header.major_ver = map.version.major;
  header.minor_ver = map.version.minor;
  header.hotfix_ver = map.version.hotfix;
  header.build_ver = map.version.build;
  header.num_mods = static_cast<std::uint32_t>(map.modules.size());
  header.hw_buf_ba = map.hw_buf_ba;
  header.hw_buf_len = map.hw_buf_size;
  return header;
}

void log_header(const TovaFwBinaryHeader& header) {
  // No line for the feature mask: the log never had one.
  log_info("  TovaFwBinaryHeader\n    header_id           ",
           std::string_view(header.header_id.data(), header.header_id.size()),
           "\n    name                ",
           std::string_view(header.name.data(), header.name.size()), std::hex,
           "\n    fw_img_flags        ", header.fw_img_flags,
           "\n    major_ver           ", header.major_ver,
           "\n    minor_ver           ", header.minor_ver,
           "\n    hotfix_ver          ", header.hotfix_ver,
           "\n    build_ver           ", header.build_ver,
           "\n    hw_buf_ba           ", header.hw_buf_ba,
           "\n    hw_buf_len          ", header.hw_buf_len,
           " (bytes)\n    load_offset         ", header.load_offset,
           "\n    preload_page_count  ", header.preload_page_count,
           "\n    num_mods      ", std::dec, header.num_mods);
}

void log_config(const ModuleConfig& config) {
  log_info("  ModuleConfig par_0 ", config.par_0, " par_1 ", config.par_1,
           " par_2 ", config.par_2, " par_3 ", config.par_3, " is_bytes ",
           config.is_bytes, " cps ", config.cps, " ibs ", config.ibs, " obs ",
           config.obs, " mod_flags ", std::hex, config.mod_flags, std::dec,
           " cpc ", config.cpc, " obls ", config.obls);
}

// How far the base of file offsets moves on behind the module. In 1.5 the
// loader's table counts through all files, those of the addons too, as if they
// stood one behind the other.
std::uint32_t file_base_step(const FwOutMap& map,
                             const FwOutMap::Module& module) {
  if (map.binary_ver != kKelp15) return 0;
  if (module.type == FwOutMap::Module::kBaseFirmwareType) {
    return static_cast<std::uint32_t>(map.image_end);
  }
  // .bss and built-in groups have no bytes in the file.
  std::uint32_t pages = 0;
  for (const auto& group : module.groups) {
    if ((group->flags & FwOutMap::SectionGroup::kLoad) != 0) {
      pages += group_pages(*group);
    }
  }
  return pages * kPageSize;
}

std::vector<ModuleEntry> write_module_entries(const FwOutMap& map,
                                              std::ostream& stream,
                                              std::uint32_t base_offset) {
  std::vector<ModuleEntry> entries;
  entries.reserve(map.modules.size());
  std::uint32_t file_base = base_offset;
  for (const auto& module : map.modules) {
    entries.push_back(make_module_entry(*module, file_base));
    write_record(stream, entries.back());
    if (log_level() >= kLogInfo) {
      print_module_entry(LogLine(kLogInfo).stream(), entries.back());
    }
    file_base += file_base_step(map, *module);
  }
  return entries;
}

// Behind all entries: their `cfg_off` counts through all of these.
void write_configurations(const FwOutMap& map, std::ostream& stream) {
  for (const auto& module : map.modules) {
    for (const ModuleConfig& config : module->mod_cfg) {
      write_record(stream, config);
      log_config(config);
    }
  }
}

}  // namespace

// Without the symbol table, which no length of the format counts.
std::uint64_t manifest_size(const FwOutMap& map) {
  return sizeof(TovaFwBinaryHeader) + sizeof(ModuleEntry) * map.modules.size() +
         sizeof(ModuleConfig) * map.mod_cfg_total;
}

void write_binary_header(const FwOutMap& map, std::ostream& stream,
                         std::uint32_t base_offset) {
  const TovaFwBinaryHeader header = make_header(map, base_offset);
  log_header(header);
  write_record(stream, header);
  log_info("Module Entries");
  const auto entries = write_module_entries(map, stream, base_offset);
  write_configurations(map, stream);
  write_symbol_table(stream, map.exported_symbols, entries);
}

}  // namespace tova_fw_builder
