// Big numbers from byte arrays of any alignment.
#include "crypto/make_big_num.h"

#include <cstring>

#include "crypto/zel_error.h"
#include "crypto/zels_bignum.h"

namespace tova_fw_builder {

SecretBuffer MakeBigNum(std::int32_t size_in_bytes, const std::uint8_t* data) {
  const std::int32_t words = size_in_bytes / 4;
  std::int32_t size = 0;
  throw_unless_ok(zelsBigNumGetSize(words, &size), "zelsBigNumGetSize");
  SecretBuffer number(static_cast<std::size_t>(size));
  throw_unless_ok(zelsBigNumInit(words, number.data()), "zelsBigNumInit");
  if (data != nullptr) {
    const auto bytes = static_cast<std::size_t>(words) * 4;
    // The library reads whole words; callers have bytes inside of records.
    // Wiped, as it may be a private number.
    const SecretBuffer aligned(bytes);
    std::memcpy(aligned.data(), data, bytes);
    throw_unless_ok(
        zelsSet_BN(kPositive, words,
                   reinterpret_cast<const std::uint32_t*>(aligned.data()),
                   number.data()),
        "zelsSet_BN");
  }
  return number;
}

}  // namespace tova_fw_builder
