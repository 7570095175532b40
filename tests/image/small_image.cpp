#include "image/small_image.h"

#include <sstream>

using namespace tova_fw_builder;

namespace {

FwOutMap::Module& add_module(FwOutMap& map, const std::string& name,
                             std::string_view uuid) {
  auto module = std::make_unique<FwOutMap::Module>();
  module->name = name;
  std::array<std::uint8_t, 16> raw;
  bytes_of(uuid).copy(reinterpret_cast<char*>(raw.data()), raw.size());
  module->uuid = Uuid(raw);
  map.modules.push_back(std::move(module));
  return *map.modules.back();
}

// Load addresses equal virtual ones. The alignment of 0 lets no pad arise in
// front of an addon's group.
void add_group(FwOutMap::Module& module, std::uint32_t flags,
               std::uint32_t address, std::uint32_t size,
               const std::string& bytes) {
  auto group = std::make_unique<FwOutMap::SectionGroup>();
  group->flags = flags;
  group->type = flags >> 8 & 0xF;
  group->add_section("section", false, false, "");
  auto header = std::make_shared<FwImageMap::SectionHeader>();
  header->name = "section";
  header->size = size;
  header->vma = header->lma = address;
  header->alignment = 0;
  header->contents = !bytes.empty();
  header->stream = std::make_shared<std::istringstream>(bytes);
  group->sections.front()->header = header;
  module.groups.push_back(std::move(group));
}

}  // namespace

std::unique_ptr<FwOutMap> small_image(std::uint32_t binary_ver) {
  auto map = std::make_unique<FwOutMap>();
  map->binary_ver = binary_ver;
  map->binary_name = "TOVAFW";
  map->load_offset = 0x1000;
  map->fw_img_flags = 0x10;
  map->feature_mask = 0xff;
  map->version = {1, 2, 3, 4};
  map->hw_buf_ba = 0xB0000000;
  map->hw_buf_size = 0x2000;

  auto& base =
      add_module(*map, "BASEMODULE", "67452301AB89EFCD 0123456789ABCDEF");
  base.display_name = "Base module ";
  base.type = 3;
  base.auto_init = base.domain_ll = base.domain_rtos = true;
  base.core_type = 0x1A5;
  base.entry_point = 0xA0001004;
  base.affinity_mask = 3;
  base.instance_count = 2;
  base.stack_size = 0x10001;
  base.mod_cfg = {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}};
  base.cfg_offset = 0x10002;
  map->mod_cfg_total = 1;
  add_group(base, 0x0001001F, 0xA0001000, 16, "0123456789abcdef");
  add_group(base, 0x00020202, 0xA0004000, 0x1800, "");

  auto& addon = add_module(*map, "ADDON", "00010203040506070809 0a0b0c0d0e0f");
  addon.display_name = "Add on";
  addon.version = {10, 0, 0, 1};
  addon.module_kind = 1;
  addon.entry_point = 0xA0008000;
  addon.cfg_offset = 1;
  addon.sched_caps = {{1, 0x302}};
  addon.pins = {{1, 0, 2, 0x30, 4, 0, 5, 6}};
  add_group(addon, 0x0001001F, 0xA0008000, 8, "ADDONTXT");
  add_group(addon, 0x0001012F, 0xA0009000, 4, "RODA");

  auto& built_in = add_module(*map, "BUILTIN", std::string(32, 'f'));
  built_in.load_type = 0;
  built_in.module_kind = 2;
  built_in.domain_dp = true;
  built_in.hash.fill(0x55);
  add_group(built_in, 0x0001001B, 0xA000C010, 4, "GONE");

  map->exported_symbols = {{true, 'T', 0xA0001FFF, "alpha"},
                           {true, 'T', 0xA0002000, "beta"},
                           {true, 'B', 0xA0005FFF, "delta"},
                           {true, 'D', 0xA0009010, "gamma"}};
  return map;
}

std::string stored_pages() {
  return filled("0123456789abcdef", 4096) + filled("ADDONTXT", 4096) +
         filled("RODA", 4096);
}

std::string expected_tables(std::uint32_t pages,
                            const std::array<std::uint32_t, 3>& file_offsets,
                            const std::string& base_hash,
                            const std::string& addon_hash) {
  std::string bytes = bytes_of(R"(
      24544d31 34000000 544f564146570000  # $TM1, length, name
      00000000 10000000 ff000000          # pages, flags, feature mask
      0100 0200 0300 0400 03000000        # version, modules
      000000b0 00200000 00100000          # hw buffer, load offset
      24544d45 424153454d4f4455           # $TME, name cut to 8 bytes
      67452301ab89efcd0123456789abcdef    # uuid
      314b0100                            # type; the hash goes here
      041000a0 0200 0100                  # entry, cfg_off, cfg_cnt
      03000000 0200 0100                  # affinity, instances, stack
      1f000100 001000a0 00000000          # .text
      000f0000 00000000 00000000          # unused
      02020200 004000a0 00000000          # .bss has no file offset
      24544d45 4144444f4e000000
      000102030405060708090a0b0c0d0e0f
      01000000
      008000a0 0000 0000                  # no configuration: cfg_off 0
      01000000 0000 0000
      1f000100 008000a0 00000000
      2f010100 009000a0 00000000
      000f0000 00000000 00000000
      24544d45 4255494c54494e00
      ffffffffffffffffffffffffffffffff
      c0000000                            # built in: its hash stays out
      00000000000000000000000000000000 00000000000000000000000000000000
      00000000 0000 0000 01000000 0000 0000
      1b000100 10c000a0 00000000
      000f0000 00000000 00000000 000f0000 00000000 00000000
      01000000 02000000 03000000 04000000 05000000 06000000
      07000000 08000000 09000000 0a000000 0b000000
      04000000                            # with the skipped symbol
      01 00 0000 38000000 ff1f00a0        # names from 4 * 12 + 8 on
      01 00 0200 3e000000 ff5f00a0
      01 01 0100 44000000 109000a0
      12000000 616c70686100 64656c746100 67616d6d6100)");
  constexpr std::size_t kBase = 52, kAddon = kBase + 116;
  bytes.replace(16, 4, le32(pages));
  bytes.insert(kBase + 32, base_hash);
  bytes.replace(kBase + 80 + 8, 4, le32(file_offsets[0]));
  bytes.insert(kAddon + 32, addon_hash);
  bytes.replace(kAddon + 80 + 8, 4, le32(file_offsets[1]));
  bytes.replace(kAddon + 92 + 8, 4, le32(file_offsets[2]));
  return bytes;
}
