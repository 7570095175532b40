// crypto/internal/sha_blocks.h
// The compression functions of SHA-256 and of the SHA-512 family. Each has a
// portable variant and variants for processors with more; all give the same
// result.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tova_fw_builder {

// Takes `count` whole blocks (64 or 128 bytes each, of any alignment) into the
// eight words of `state`.
using Sha256Blocks = void (*)(std::uint32_t* state, const std::uint8_t* blocks,
                              std::size_t count);
using Sha512Blocks = void (*)(std::uint64_t* state, const std::uint8_t* blocks,
                              std::size_t count);

// The fastest variant for this processor, chosen at the first call.
Sha256Blocks sha256_blocks();
Sha512Blocks sha512_blocks();

void sha256_blocks_portable(std::uint32_t* state, const std::uint8_t* blocks,
                            std::size_t count);
void sha512_blocks_portable(std::uint64_t* state, const std::uint8_t* blocks,
                            std::size_t count);

// Defined for their processors only.
void sha256_blocks_x86(std::uint32_t* state, const std::uint8_t* blocks,
                       std::size_t count);
void sha256_blocks_arm(std::uint32_t* state, const std::uint8_t* blocks,
                       std::size_t count);
void sha512_blocks_avx2(std::uint64_t* state, const std::uint8_t* blocks,
                        std::size_t count);

}  // namespace tova_fw_builder
