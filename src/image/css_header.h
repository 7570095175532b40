// image/css_header.h
// The CSS header: the signature frame at the start of a Kelp15 manifest. Key
// and signature areas follow it, 644 bytes in all. Byte by byte:
// docs/file-formats.md, as for all records of this folder.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <ostream>

#include "driver/ground/wire.h"

namespace tova_fw_builder {

// 128 bytes, as they stand at offset 0 of the manifest file. Lengths count
// 32-bit words.
struct CssHeader {
  Le32 module_type;  // 6
  Le32 header_len;   // this header with key and signature
  Le32 header_ver;
  Le32 module_id;  // bit 31 marks a debug signature
  Le32 mod_vendor;
  Le32 date;  // 0xYYYYMMDD, in BCD
  Le32 size;  // the whole manifest, headers and padding included
  Le32 key_size;
  Le32 mod_size;
  Le32 exp_size;
  std::array<std::uint8_t, 88> reserved_40{};
};
static_assert(sizeof(CssHeader) == 128 && alignof(CssHeader) == 1);

inline constexpr std::uint32_t kCssModuleType = 6;
inline constexpr std::uint32_t kCssDebugSignature = 0x80000000;
// The CSS header, the modulus, the exponent and the signature, in bytes.
inline constexpr std::uint32_t kCssPartLength = 128 + 256 + 4 + 256;

// The day of `now` in Coordinated Universal Time, as 0xYYYYMMDD in BCD.
// Throws std::runtime_error if the system can't convert the time: the text
// "Internal error: cannot get system time, errno : " without its first errno
// characters, so without any for a large errno.
std::uint32_t bcd_date(std::time_t now);

// The header of a new manifest of `manifest_length` bytes, a multiple of 4.
CssHeader fill_css_header(std::uint32_t manifest_length, bool debug,
                          std::uint32_t date);

// The log form: a title and one line a field, each with its newline.
// Numbers are hexadecimal; the stream is left so.
void print_css_header(std::ostream& out, const CssHeader& css);

}  // namespace tova_fw_builder
