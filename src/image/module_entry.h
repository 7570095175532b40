// image/module_entry.h
// One module as the loader's table in the binary header lists it.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>

#include "driver/ground/wire.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// One segment slot of a module entry, 12 bytes.
struct SegmentRecord {
  static constexpr std::uint32_t kUnused = 15;  // type of a slot with no group

  // The group's flags word. Byte 0: bit 0 contents, 1 alloc, 2 load,
  // 3 readonly, 4 code, 5 data, 6 on_demand. Byte 1: 0 text, 1 rodata, 2 bss,
  // 15 unused. Bytes 2 and 3: length in pages.
  Le32 flags = kUnused << 8;
  Le32 vma;       // of the group's first section
  Le32 file_off;  // 0 unless the group has both contents and load

  std::uint32_t type() const { return flags >> 8 & 0xF; }
  std::uint32_t pages() const { return flags >> 16; }
};
static_assert(sizeof(SegmentRecord) == 12 && alignof(SegmentRecord) == 1);

// 116 bytes.
struct ModuleEntry {
  // Bits of `type`.
  static constexpr std::uint32_t kAutoInit = 1u << 4;
  static constexpr std::uint32_t kDomainLl = 1u << 5;
  static constexpr std::uint32_t kDomainDp = 1u << 6;
  static constexpr std::uint32_t kKind2 = 1u << 7;
  static constexpr std::uint32_t kDomainRtos = 1u << 8;
  static constexpr int kCoreTypeShift = 9;

  std::array<char, 4> struct_id{'$', 'T', 'M', 'E'};
  std::array<char, 8> name{};  // the first 8 bytes of a longer one
  std::array<std::uint8_t, 16> uuid{};
  Le32 type;  // bits 0 to 3 load_type, 4 to 8 as above, 9 to 16 core_type
  std::array<std::uint8_t, 32> hash{};  // SHA-256, of loadable modules alone
  Le32 ep;                              // entry point
  Le16 cfg_off;                         // index of its first configuration in
                                        // the image's table; 0 without any
  Le16 cfg_cnt;
  Le32 aff_mask;
  Le16 inst_max_cnt;
  Le16 inst_stack_size;                   // pages for type 0
  std::array<SegmentRecord, 3> segments;  // text, rodata, bss
};
static_assert(sizeof(ModuleEntry) == 116 && alignof(ModuleEntry) == 1);

// The entry of a bound module: each of its groups has a section, and every
// section a header. `file_base` is the distance between offsets in the file
// that the module was written to and those that the loader sees; the sum wraps
// at 32 bits. Of two groups of one type the later one takes the slot.
//
// Throws std::runtime_error "Non-aligned base address of section" for an
// address off the page grid in a module that isn't built in, "Non-aligned
// address of section" for such a file offset.
ModuleEntry make_module_entry(const FwOutMap::Module& module,
                              std::uint32_t file_base);

// The log form, several lines, the last one without a newline. Leaves the
// stream in decimal.
void print_module_entry(std::ostream& out, const ModuleEntry& entry);

}  // namespace tova_fw_builder
