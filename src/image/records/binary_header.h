// image/records/binary_header.h
// What a loader reads: the binary header and the tables behind it, the same in
// all generations. Byte by byte, as for all records of this folder:
// docs/file-formats.md. The configurations, between entries and symbols, are
// ModuleConfig of layout/records/out_map.h, which has the page and the bits of
// a segment, too.
#pragma once

#include <array>
#include <cstdint>

#include "driver/ground/wire.h"

namespace tova_fw_builder {

// Where contents begin from 1.8 on, and the header in 1.8 and 2.5: counted from
// the start of what the signer puts in front, if there is something. In 1.5 the
// header stands behind the CSS part of the manifest, in 3.0 at 0.
inline constexpr std::uint32_t kContentsOffset = 32768;
inline constexpr std::uint32_t kSignedHeaderOffset = 8192;

// 52 bytes.
struct TovaFwBinaryHeader {
  static constexpr std::array<char, 4> kMark{'$', 'T', 'M', '1'};

  std::array<char, 4> header_id = kMark;
  Le32 header_len;             // bytes, of this record alone
  std::array<char, 8> name{};  // zero for a name of more than 8 bytes
  Le32 preload_page_count;     // pages from offset 0 to the contents' end
  Le32 fw_img_flags;
  Le32 feature_mask;
  Le16 major_ver;
  Le16 minor_ver;
  Le16 hotfix_ver;
  Le16 build_ver;
  Le32 num_mods;  // module entries
  Le32 hw_buf_ba;
  Le32 hw_buf_len;  // bytes
  Le32 load_offset;
};
static_assert(sizeof(TovaFwBinaryHeader) == 52 &&
              alignof(TovaFwBinaryHeader) == 1);

// One segment slot of a module entry, 12 bytes.
struct SegmentRecord {
  static constexpr std::uint32_t kUnused = 15;  // type of a slot with no group

  // The group's flags word. Byte 0: FwOutMap::SectionGroup::Flag. Byte 1: its
  // Type, or kUnused. Bytes 2 and 3: length in pages.
  Le32 flags = kUnused << 8;
  Le32 vma;       // of the group's first section
  Le32 file_off;  // 0 unless the group has both contents and load

  std::uint32_t type() const { return flags >> 8 & 0xF; }
  std::uint32_t pages() const { return flags >> 16; }
};
static_assert(sizeof(SegmentRecord) == 12 && alignof(SegmentRecord) == 1);

// One module, 116 bytes.
struct ModuleEntry {
  static constexpr std::array<char, 4> kMark{'$', 'T', 'M', 'E'};
  // Bits of `type`.
  static constexpr std::uint32_t kLoadTypeMask = 0xF;
  static constexpr std::uint32_t kAutoInit = 1u << 4;
  static constexpr std::uint32_t kDomainLl = 1u << 5;
  static constexpr std::uint32_t kDomainDp = 1u << 6;
  static constexpr std::uint32_t kLibrary = 1u << 7;
  static constexpr std::uint32_t kDomainRtos = 1u << 8;
  static constexpr int kCoreTypeShift = 9;

  std::array<char, 4> struct_id = kMark;
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

// One exported symbol.
struct SymbolRecord {
  std::uint8_t kind = 1;    // always
  std::uint8_t module = 0;  // index, low 8 bits
  Le16 segment;             // slot, 0 to 2
  Le32 name_offset;         // from the start of the symbol table
  Le32 address;
};
static_assert(sizeof(SymbolRecord) == 12 && alignof(SymbolRecord) == 1);

}  // namespace tova_fw_builder
