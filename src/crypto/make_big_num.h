// crypto/make_big_num.h
// Big numbers from byte arrays.
#pragma once

#include <cstdint>

#include "crypto/secret_buffer.h"

namespace tova_fw_builder {

// A big number with room for `size_in_bytes` bytes, rounded down to whole
// 32-bit words and loaded from `data`, least significant first; zero for null.
// Throws ZelError under "zelsBigNumGetSize" for no word or more than 512.
SecretBuffer MakeBigNum(std::int32_t size_in_bytes, const std::uint8_t* data);

}  // namespace tova_fw_builder
