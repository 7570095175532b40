// crypto/make_big_num.h
// Big numbers from byte arrays.
#pragma once

#include "crypto/secret_buffer.h"

namespace tova_fw_builder {

// A big number with room for `size_in_bytes` bytes (rounded down to whole
// 32-bit words), loaded with that many bytes at `data`, least significant
// first, as a positive value; zero if `data` is null, which is how the place
// for a result is made. Wiped when it ends.
//
// Throws ZelError under "zelsBigNumGetSize" for a size of less than one word
// or more than 512 words.
SecretBuffer MakeBigNum(std::int32_t size_in_bytes, const std::uint8_t* data);

}  // namespace tova_fw_builder
