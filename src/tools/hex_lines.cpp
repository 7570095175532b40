// Memory words as lines of hexadecimal digits. The digits of a byte come from a
// table, two at a time, since these lines are made from files of hundreds of
// megabytes.
#include "tools/hex_lines.h"

#include <array>
#include <cstring>

namespace tova_fw_builder {

namespace {

using DigitPairs = std::array<std::array<char, 2>, 256>;

constexpr DigitPairs make_digit_pairs() {
  constexpr char kDigits[] = "0123456789ABCDEF";
  DigitPairs pairs{};
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    pairs[i] = {kDigits[i >> 4], kDigits[i & 15]};
  }
  return pairs;
}

constexpr DigitPairs kDigitPairs = make_digit_pairs();

}  // namespace

void append_hex_lines(std::span<const std::uint8_t> bytes, std::size_t width,
                      std::string& text) {
  const std::size_t start = text.size();
  text.resize(start + bytes.size() / width * (2 * width + 1));
  char* end = text.data() + start;
  for (; !bytes.empty(); bytes = bytes.subspan(width)) {
    for (std::size_t i = width; i-- > 0; end += 2) {
      std::memcpy(end, kDigitPairs[bytes[i]].data(), 2);
    }
    *end++ = '\n';
  }
}

}  // namespace tova_fw_builder
