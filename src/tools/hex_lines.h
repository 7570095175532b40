// tools/hex_lines.h
// Memory words as lines of hexadecimal digits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tova_fw_builder {

// Replaces `text` by a line for each `width` bytes: the little-endian number in
// 2 * width upper-case digits. `bytes` holds a multiple of `width` bytes.
void make_hex_lines(std::span<const std::uint8_t> bytes, std::size_t width,
                    std::string& text);

}  // namespace tova_fw_builder
