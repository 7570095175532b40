// image/records/metadata_extension.h
// The manifest of generations 1.8 and 2.5, which differ in the digest alone.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "driver/ground/wire.h"
#include "image/records/binary_header.h"

namespace tova_fw_builder {

inline constexpr std::size_t kKelp18DigestLength = 32;  // SHA-256
inline constexpr std::size_t kKelp25DigestLength = 48;  // SHA-384

// The whole manifest file, 96 or 112 bytes.
template <std::size_t DigestLength>
struct MetadataExtension {
  static constexpr std::uint32_t kType = 17;

  Le32 extension_type = kType;
  Le32 extension_length = sizeof(MetadataExtension);
  Le32 tova_imr_type;
  std::array<std::uint8_t, 24> reserved_12{};
  Le32 version = 0;
  std::array<std::uint8_t, DigestLength> image_digest{};  // of the binary
  Le32 base_offset = kSignedHeaderOffset;
  Le32 limit_offset;  // base_offset + length of the binary
  std::array<std::uint8_t, 16> reserved_tail{};
};
static_assert(sizeof(MetadataExtension<kKelp18DigestLength>) == 96 &&
              alignof(MetadataExtension<kKelp18DigestLength>) == 1);
static_assert(sizeof(MetadataExtension<kKelp25DigestLength>) == 112);

}  // namespace tova_fw_builder
