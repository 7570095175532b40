// Chooses the compression functions for the processor that the tool runs on.
#include "crypto/internal/sha_blocks.h"

#include "crypto/internal/processor.h"

namespace tova_fw_builder {

namespace {

Sha256Blocks fastest_sha256() {
#if defined(__x86_64__)
  if (has_sha256_instructions()) return sha256_blocks_x86;
#elif defined(__aarch64__)
  if (has_sha256_instructions()) return sha256_blocks_arm;
#endif
  return sha256_blocks_portable;
}

Sha512Blocks fastest_sha512() {
#if defined(__x86_64__)
  if (has_avx2_and_bmi2()) return sha512_blocks_avx2;
#endif
  return sha512_blocks_portable;
}

}  // namespace

Sha256Blocks sha256_blocks() {
  static const Sha256Blocks chosen = fastest_sha256();
  return chosen;
}

Sha512Blocks sha512_blocks() {
  static const Sha512Blocks chosen = fastest_sha512();
  return chosen;
}

}  // namespace tova_fw_builder
