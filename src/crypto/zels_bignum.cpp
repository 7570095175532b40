// Big numbers. The digits stand inside the caller's buffer, and the context
// points at them: a copy of the buffer's bytes is no copy of the number.
#include "crypto/zels_bignum.h"

#include <algorithm>

#include "crypto/internal/big_num_context.h"
#include "crypto/zel_error.h"

namespace tova_fw_builder {

namespace {

constexpr std::int32_t kMostWords = 512;

bool is_length(std::int32_t words) { return words >= 1 && words <= kMostWords; }

std::uint32_t digits_for_words(std::int32_t words) {
  return (static_cast<std::uint32_t>(words) + 1) / 2;
}

std::uint32_t word_at(const std::uint8_t* bytes) {
  return std::uint32_t{bytes[3]} << 24 | std::uint32_t{bytes[2]} << 16 |
         std::uint32_t{bytes[1]} << 8 | bytes[0];
}

}  // namespace

ZelStatus zelsBigNumGetSize(std::int32_t words, std::int32_t* size) {
  if (size == nullptr) return zelStsNullPtrErr;
  if (!is_length(words)) return zelStsLengthErr;
  // Two arrays of one digit more than the number, the fields, the alignment.
  static_assert(sizeof(BigNum) + kContextSpare + sizeof(Digit) == 47);
  // Callers know this formula; the assertion ties the layout to it.
  const auto words_even =
      static_cast<std::int32_t>(2 * digits_for_words(words));
  *size = (words_even + 1) * 8 + 47;
  return zelStsNoErr;
}

ZelStatus zelsBigNumInit(std::int32_t words, std::uint8_t* context) {
  // Length first, unlike in the query: the order shows in the status.
  if (!is_length(words)) return zelStsLengthErr;
  if (context == nullptr) return zelStsNullPtrErr;
  auto* number = context_in<BigNum>(context);
  const std::uint32_t room = digits_for_words(words);
  // Aligned like the fields, whose size is a multiple of 8.
  auto* arrays = reinterpret_cast<Digit*>(number + 1);
  std::fill_n(arrays, 2 * (room + 1), 0);
  *number = {.tag = kBigNumTag,
             .sign = kPositive,
             .size = 1,
             .room = room,
             .digits = arrays,
             .work = arrays + room + 1};
  return zelStsNoErr;
}

ZelStatus zelsSet_BN(std::uint32_t sign, std::int32_t words,
                     const std::uint32_t* data, std::uint8_t* context) {
  if (data == nullptr || context == nullptr) return zelStsNullPtrErr;
  auto* number = context_in<BigNum>(context);
  if (!has_tag(number, kBigNumTag)) return zelStsContextMatchErr;
  if (words < 1) return zelStsLengthErr;
  while (words > 1 && data[words - 1] == 0) --words;
  const std::uint32_t size = digits_for_words(words);
  if (size > number->room) return zelStsOutOfRangeErr;

  // Each digit is whole before it is stored: `data` may be these very digits.
  const auto count = static_cast<std::uint32_t>(words);
  for (std::uint32_t i = 0; i < size; ++i) {
    const Digit upper = 2 * i + 1 < count ? data[2 * i + 1] : 0;
    number->digits[i] = upper << 32 | data[2 * i];
  }
  // Readers take all the room as bytes, so nothing old may stay above.
  std::fill(number->digits + size, number->digits + number->room + 1, 0);
  number->size = size;
  number->sign = is_zero(*number) ? kPositive : sign;
  return zelStsNoErr;
}

ZelStatus zelsRef_BN(std::uint32_t* sign, std::int32_t* bits,
                     const std::uint64_t** digits, std::uint8_t* context) {
  if (context == nullptr) return zelStsNullPtrErr;
  const auto* number = context_in<BigNum>(context);
  if (!has_tag(number, kBigNumTag)) return zelStsContextMatchErr;
  if (sign != nullptr) *sign = number->sign;
  if (bits != nullptr) *bits = bit_size(*number);
  if (digits != nullptr) *digits = number->digits;
  return zelStsNoErr;
}

SecretBuffer MakeBigNum(std::int32_t size_in_bytes, const std::uint8_t* data) {
  const std::int32_t words = size_in_bytes / 4;
  std::int32_t size = 0;
  throw_unless_ok(zelsBigNumGetSize(words, &size), "zelsBigNumGetSize");
  SecretBuffer number(static_cast<std::size_t>(size));
  throw_unless_ok(zelsBigNumInit(words, number.data()), "zelsBigNumInit");
  if (data != nullptr) {
    const auto count = static_cast<std::size_t>(words);
    // The library reads whole words; callers have bytes inside of records.
    // Wiped, as it may be a private number.
    const SecretBuffer aligned(count * sizeof(std::uint32_t));
    auto* word = reinterpret_cast<std::uint32_t*>(aligned.data());
    for (std::size_t i = 0; i < count; ++i) word[i] = word_at(data + 4 * i);
    throw_unless_ok(zelsSet_BN(kPositive, words, word, number.data()),
                    "zelsSet_BN");
  }
  return number;
}

}  // namespace tova_fw_builder
