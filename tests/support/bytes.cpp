#include "support/bytes.h"

#include "driver/ground/numbers.h"

std::string bytes_of(std::string_view hex) {
  std::string bytes;
  int high = -1;
  bool comment = false;
  for (const char c : hex) {
    comment = c == '#' || (comment && c != '\n');
    const int digit = tova_fw_builder::hex_digit_value(c);
    if (comment || digit < 0) continue;
    if (high >= 0) bytes += static_cast<char>(high * 16 + digit);
    high = high < 0 ? digit : -1;
  }
  return bytes;
}

std::string hex_of(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    text += "0123456789abcdef"[c >> 4 & 15];
    text += "0123456789abcdef"[c & 15];
  }
  return text;
}

std::string counting(std::size_t length, int first) {
  std::string bytes(length, '\0');
  for (char& byte : bytes) byte = static_cast<char>(first++);
  return bytes;
}

std::string le32(std::uint32_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> 8 * i & 0xFF);
  return bytes;
}

std::string filled(std::string text, std::size_t length) {
  text.resize(length);
  return text;
}
