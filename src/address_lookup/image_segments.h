// address_lookup/image_segments.h
// The segments of an image's modules, and where their bytes stand.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "address_lookup/range_index.h"
#include "inspect/check/checked_file.h"

namespace tova_fw_builder {

struct ImageSegment {
  std::string module;
  std::string type;    // "text", "rodata", "bss"
  AddressRange range;  // whole pages
  // The bytes of a built-in module stand in another one.
  bool built_in = false;
  // Empty for zeroed data, and where the file with the bytes isn't at hand or
  // no header tells the place.
  std::string file;
  std::uint64_t file_offset = 0;
};

// Those of all headers among the files: binaries of 1.8 and later, manifests of
// 1.5. Headers that say the same, as a manifest and its signed form, count
// once.
std::vector<ImageSegment> image_segments(const std::vector<CheckedFile>& files);

}  // namespace tova_fw_builder
