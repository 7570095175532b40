// companion/ground/byte_text.h
// Bytes as text, and back.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tova_fw_builder {

// Two lower-case digits a byte.
std::string hexadecimal(std::span<const std::uint8_t> bytes);
std::string hexadecimal(std::string_view bytes);

// In one line, padded, as of RFC 4648.
std::string base64(std::span<const std::uint8_t> bytes);

// Both pass over white space anywhere, and yield nothing for a text with any
// other character, or of no whole number of bytes. Hexadecimal digits may have
// either case, and colons between; base64 may be of either alphabet, and padded
// or not.
std::optional<std::vector<std::uint8_t>> from_hexadecimal(
    std::string_view text);
std::optional<std::vector<std::uint8_t>> from_base64(std::string_view text);

}  // namespace tova_fw_builder
