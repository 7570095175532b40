// Module UUIDs. The search for a UUID has an end but no start: only the last
// 36 characters of a text decide, and what stands ahead of them is kept.
#include "definitions/uuid/uuid.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "driver/ground/numbers.h"

namespace tova_fw_builder {

namespace {

constexpr std::string_view kForm = "HHHHHHHH-HHHH-HHHH-HHHH-HHHHHHHHHHHH";
static_assert(kForm.size() == Uuid::kTextLength);

// Which byte of the binary form each pair of digits gives: the three leading
// numbers are little-endian, so their bytes run backwards.
constexpr std::array<std::size_t, 16> kByteOfPair = {
    3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};

bool fits_form(char c, char form) {
  return form == 'H' ? hex_digit_value(c) >= 0 : c == form;
}

char upper_case(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::array<std::uint8_t, 16> bytes_of_digits(std::string_view digits) {
  std::array<std::uint8_t, 16> bytes{};
  for (const std::size_t byte : kByteOfPair) {
    if (digits.front() == '-') digits.remove_prefix(1);
    bytes[byte] = static_cast<std::uint8_t>(hex_digit_value(digits[0]) * 16 +
                                            hex_digit_value(digits[1]));
    digits.remove_prefix(2);
  }
  return bytes;
}

std::string digits_of_bytes(std::span<const std::uint8_t, 16> bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string digits;
  for (const std::size_t byte : kByteOfPair) {
    if (kForm[digits.size()] == '-') digits += '-';
    digits += kDigits[bytes[byte] >> 4];
    digits += kDigits[bytes[byte] & 15];
  }
  return digits;
}

}  // namespace

Uuid::Uuid(std::span<const std::uint8_t, 16> bytes)
    // As an int, the highest byte would be shifted into the sign: it is cast
    // first.
    : node_{static_cast<std::uint32_t>(bytes[10] | bytes[11] << 8 |
                                       bytes[12] << 16) |
                static_cast<std::uint32_t>(bytes[13]) << 24,
            static_cast<std::uint16_t>(bytes[14] | bytes[15] << 8)},
      text_(digits_of_bytes(bytes)) {
  std::copy(bytes.begin(), bytes.end(), bytes_.begin());
}

Uuid parse_uuid(const std::string& text) {
  const std::size_t length = std::min(text.size(), kForm.size());
  const auto digits = std::string_view(text).substr(text.size() - length);
  if (!std::equal(digits.begin(), digits.end(), kForm.begin(), kForm.end(),
                  fits_form)) {
    throw std::runtime_error("Wrong UUID format");
  }
  Uuid uuid(bytes_of_digits(digits));
  uuid.text_ = text;
  std::transform(text.begin(), text.end(), uuid.text_.begin(), upper_case);
  return uuid;
}

}  // namespace tova_fw_builder
