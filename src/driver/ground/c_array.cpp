// The digits come from a table and rows are gathered in a small buffer:
// formatted stream output costs some fifty times as much, which shows on files
// of many megabytes.
#include "driver/ground/c_array.h"

#include <algorithm>
#include <array>

namespace tova_fw_builder {

std::ostream& operator<<(std::ostream& out, const CArray& array) {
  write_c_array_head(out, array.name, array.bytes.size());
  write_c_array_bytes(out, array.bytes, 0, array.bytes.size());
  write_c_array_tail(out);
  return out;
}

void write_c_array_head(std::ostream& out, std::string_view name,
                        std::uint64_t length) {
  out << "unsigned char " << name << '[' << std::dec << length << "] = { \n";
}

void write_c_array_bytes(std::ostream& out, std::span<const std::uint8_t> bytes,
                         std::uint64_t first, std::uint64_t length) {
  constexpr char kDigits[] = "0123456789abcdef";
  constexpr std::size_t kLongestItem = 6;  // "0x00, "
  std::array<char, 4096 * kLongestItem> text;
  while (!bytes.empty()) {
    const auto piece = bytes.first(std::min<std::size_t>(bytes.size(), 4096));
    char* end = text.data();
    for (const std::uint8_t byte : piece) {
      ++first;
      *end++ = '0';
      *end++ = 'x';
      *end++ = kDigits[byte >> 4];
      *end++ = kDigits[byte & 15];
      if (first % 8 != 0) {
        *end++ = ',';
        *end++ = ' ';
      } else {
        // Only a full row drops its last comma; files of users are kept to the
        // letter.
        if (first != length) *end++ = ',';
        *end++ = '\n';
      }
    }
    out.write(text.data(), end - text.data());
    bytes = bytes.subspan(piece.size());
  }
}

void write_c_array_tail(std::ostream& out) { out << "};"; }

}  // namespace tova_fw_builder
