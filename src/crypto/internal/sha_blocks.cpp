// Chooses the compression functions for the processor that the tool runs on.
#include "crypto/internal/sha_blocks.h"

#include "crypto/internal/processor.h"

namespace tova_fw_builder {

std::vector<Sha256Blocks> sha256_builds() {
  std::vector<Sha256Blocks> builds = {sha256_blocks_portable};
#if defined(__x86_64__)
  if (has_sha256_instructions()) builds.push_back(sha256_blocks_x86);
#elif defined(__aarch64__)
  if (has_sha256_instructions()) builds.push_back(sha256_blocks_arm);
#endif
  return builds;
}

std::vector<Sha512Blocks> sha512_builds() {
  std::vector<Sha512Blocks> builds = {sha512_blocks_portable};
#if defined(__x86_64__)
  if (has_avx2_and_bmi2()) builds.push_back(sha512_blocks_avx2);
#endif
  return builds;
}

Sha256Blocks sha256_blocks() {
  static const Sha256Blocks chosen = sha256_builds().back();
  return chosen;
}

Sha512Blocks sha512_blocks() {
  static const Sha512Blocks chosen = sha512_builds().back();
  return chosen;
}

}  // namespace tova_fw_builder
