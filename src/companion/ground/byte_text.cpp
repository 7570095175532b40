#include "companion/ground/byte_text.h"

#include "driver/ground/numbers.h"

namespace tova_fw_builder {
namespace {

constexpr std::string_view kBase64 =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string without_white_space(std::string_view text) {
  std::string rest(text);
  std::erase_if(rest, is_white_space);
  return rest;
}

// The characters of the alphabet for URLs and file names stand for others.
char usual_character(char c) { return c == '-' ? '+' : c == '_' ? '/' : c; }

}  // namespace

std::string hexadecimal(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += "0123456789abcdef"[byte >> 4];
    text += "0123456789abcdef"[byte & 15];
  }
  return text;
}

std::string hexadecimal(std::string_view bytes) {
  return hexadecimal(
      {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

std::string base64(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const auto byte = [&](std::size_t at) -> std::uint32_t {
      return at < bytes.size() ? bytes[at] : 0;
    };
    const std::uint32_t group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
    for (int shift = 18; shift >= 0; shift -= 6) {
      text += kBase64[group >> shift & 63];
    }
  }
  const std::size_t padding = (3 - bytes.size() % 3) % 3;
  return text.replace(text.size() - padding, padding, padding, '=');
}

std::optional<std::vector<std::uint8_t>> from_hexadecimal(
    std::string_view text) {
  std::string digits = without_white_space(text);
  std::erase(digits, ':');
  if (digits.size() % 2 != 0) return std::nullopt;
  std::vector<std::uint8_t> bytes(digits.size() / 2);
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const int digit = hex_digit_value(digits[i]);
    if (digit < 0) return std::nullopt;
    bytes[i / 2] = static_cast<std::uint8_t>(bytes[i / 2] << 4 | digit);
  }
  return bytes;
}

std::optional<std::vector<std::uint8_t>> from_base64(std::string_view text) {
  std::string digits = without_white_space(text);
  if (digits.ends_with('=') && digits.size() % 4 != 0) return std::nullopt;
  for (int padding = 0; padding < 2 && digits.ends_with('='); ++padding) {
    digits.pop_back();
  }
  if (digits.size() % 4 == 1) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  std::uint32_t group = 0;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const std::size_t value = kBase64.find(usual_character(digits[i]));
    if (value == kBase64.npos) return std::nullopt;
    group = group << 6 | static_cast<std::uint32_t>(value);
    // The first character of four completes no byte.
    if (i % 4 != 0) {
      bytes.push_back(static_cast<std::uint8_t>(group >> (6 - 2 * (i % 4))));
    }
  }
  return bytes;
}

}  // namespace tova_fw_builder
