// image/records/css_part.h
// The CSS part: the signature frame at the start of a manifest of generation
// 1.5. The binary header with its tables follows it, then zeros.
#pragma once

#include <array>
#include <cstdint>

#include "driver/ground/wire.h"

namespace tova_fw_builder {

// The longest manifest that can be built, signed or verified, in bytes, by its
// `size`; a symbol table in its binary header isn't counted there.
inline constexpr std::uint32_t kMaxManifestLength = 8192;

// 128 bytes, at offset 0. Lengths count 32-bit words; that of the header is of
// the whole CSS part. The css_header_size of builds is neither: it is the room
// that the signer of 1.8 and 2.5 takes ahead of the binary.
struct CssHeader {
  static constexpr std::uint32_t kModuleType = 6;
  static constexpr std::uint32_t kPartLength = 161;
  static constexpr std::uint32_t kHeaderVersion = 0x00010000;
  static constexpr std::uint32_t kDebugSignature = 0x80000000;
  static constexpr std::uint32_t kVendor = 0x00007A5C;
  static constexpr std::uint32_t kKeyLength = 64;
  static constexpr std::uint32_t kExponentLength = 1;

  Le32 module_type;  // kModuleType
  Le32 header_len;   // kPartLength
  Le32 header_ver;
  Le32 module_id;  // 0, or kDebugSignature
  Le32 mod_vendor;
  Le32 date;  // 0xYYYYMMDD, in BCD
  Le32 size;  // the whole manifest, headers and padding included
  Le32 key_size;
  Le32 mod_size;
  Le32 exp_size;
  std::array<std::uint8_t, 88> reserved_40{};
};
static_assert(sizeof(CssHeader) == 128 && alignof(CssHeader) == 1);

// All numbers are least significant byte first, and zero until signed.
struct CssPart {
  CssHeader css;
  std::array<std::uint8_t, 256> modulus{};
  std::array<std::uint8_t, 4> exponent{};
  std::array<std::uint8_t, 256> signature{};
};
static_assert(sizeof(CssPart) == 4 * CssHeader::kPartLength &&
              alignof(CssPart) == 1);

}  // namespace tova_fw_builder
