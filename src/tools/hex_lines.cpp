// Memory words as lines of hexadecimal digits. These lines are made from files
// of hundreds of megabytes, so the digits of eight bytes are computed at once
// where the processor can, which takes a third of the time; else those of a
// byte come from a table.
#include "tools/hex_lines.h"

#include <array>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

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

char* put_number(const std::uint8_t* bytes, std::size_t count, char* end) {
  while (count-- > 0) {
    std::memcpy(end, kDigitPairs[bytes[count]].data(), 2);
    end += 2;
  }
  return end;
}

#ifdef __SSE2__
// In this form compilers know the one instruction for it.
std::uint64_t swap_bytes(std::uint64_t v) {
  v = (v >> 8 & 0x00FF00FF00FF00FF) | (v & 0x00FF00FF00FF00FF) << 8;
  v = (v >> 16 & 0x0000FFFF0000FFFF) | (v & 0x0000FFFF0000FFFF) << 16;
  return v >> 32 | v << 32;
}

char* put_eight(const std::uint8_t* bytes, char* end) {
  std::uint64_t number;
  std::memcpy(&number, bytes, 8);
  const std::uint64_t reversed = swap_bytes(number);
  const __m128i low_half = _mm_set1_epi8(15);
  const __m128i value =
      _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&reversed));
  // No instruction shifts single bytes: the mask drops what came over from each
  // byte's neighbour.
  const __m128i high = _mm_and_si128(_mm_srli_epi16(value, 4), low_half);
  const __m128i low = _mm_and_si128(value, low_half);
  const __m128i digits = _mm_unpacklo_epi8(high, low);
  const __m128i letters = _mm_cmpgt_epi8(digits, _mm_set1_epi8(9));
  // The letters don't follow the digits in ASCII.
  const __m128i gap = _mm_and_si128(letters, _mm_set1_epi8('A' - '9' - 1));
  const __m128i text = _mm_add_epi8(digits, _mm_set1_epi8('0'));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(end), _mm_add_epi8(text, gap));
  return end + 16;
}
#else
char* put_eight(const std::uint8_t* bytes, char* end) {
  return put_number(bytes, 8, end);
}
#endif

}  // namespace

void make_hex_lines(std::span<const std::uint8_t> bytes, std::size_t width,
                    std::string& text) {
  text.resize(bytes.size() / width * (2 * width + 1));
  char* end = text.data();
  for (; !bytes.empty(); bytes = bytes.subspan(width)) {
    std::size_t left = width;
    // From the end: the last byte is the most significant.
    for (; left >= 8; left -= 8) end = put_eight(&bytes[left - 8], end);
    end = put_number(bytes.data(), left, end);
    *end++ = '\n';
  }
}

}  // namespace tova_fw_builder
