// image/binary_header.h
// The firmware binary header: what the loader reads. The same in all
// generations; only its place in the output differs. Byte by byte:
// docs/file-formats.md.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>

#include "driver/ground/wire.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// 52 bytes. Behind it stand the module entries, the module configurations and
// the symbol table.
struct TovaFwBinaryHeader {
  std::array<char, 4> header_id{'$', 'T', 'M', '1'};
  Le32 header_len;
  std::array<char, 8> name{};  // zero for a name of more than 8 bytes
  Le32 preload_page_count;     // pages from offset 0 to the contents' end
  Le32 fw_img_flags;
  Le32 feature_mask;
  Le16 major_ver;
  Le16 minor_ver;
  Le16 hotfix_ver;
  Le16 build_ver;
  Le32 num_mods;
  Le32 hw_buf_ba;
  Le32 hw_buf_len;  // bytes
  Le32 load_offset;
};
static_assert(sizeof(TovaFwBinaryHeader) == 52 &&
              alignof(TovaFwBinaryHeader) == 1);

// Bytes of the header, its module entries and its module configurations. The
// symbol table, which is written behind them, takes no part in any size.
std::uint64_t manifest_size(const FwOutMap& map);

// Writes the header with its tables at the stream's position and logs them.
// `base_offset` is the distance between offsets in the binary and those at
// which the loader will find its contents. The map's `image_end`, file offsets
// and hashes are taken as they stand: zero before the contents are written.
//
// Throws std::runtime_error
//   "preload page count cannot be computed - no modules",
//   "preload size not aligned to page size" if image_end + base_offset (taken
//     in 64 bits) is 0 or no whole number of pages, both before anything is
//     written,
//   and what make_module_entry throws, which leaves the table cut short.
void write_binary_header(const FwOutMap& map, std::ostream& stream,
                         std::uint32_t base_offset);

}  // namespace tova_fw_builder
