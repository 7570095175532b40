#include "driver/ground/byte_dump.h"

namespace tova_fw_builder {

std::ostream& operator<<(std::ostream& out, const ByteDump& dump) {
  constexpr char kDigits[] = "0123456789abcdef";
  const std::size_t length = dump.data == nullptr ? 0 : dump.length;
  out << dump.label << '\n' << dump.indent;
  for (std::size_t i = 0; i < length; ++i) {
    const std::uint8_t byte = dump.data[i];
    out << kDigits[byte >> 4] << kDigits[byte & 15] << ' ';
    if ((i + 1) % 16 == 0) out << '\n' << dump.indent;
  }
  return out;
}

}  // namespace tova_fw_builder
