// Chooses the compression functions for the processor that the tool runs on.
#include "crypto/sha_blocks.h"

namespace tova_fw_builder {

std::vector<Sha256Blocks> sha256_builds() { return {sha256_blocks_portable}; }

std::vector<Sha512Blocks> sha512_builds() { return {sha512_blocks_portable}; }

Sha256Blocks sha256_blocks() {
  static const Sha256Blocks chosen = sha256_builds().back();
  return chosen;
}

Sha512Blocks sha512_blocks() {
  static const Sha512Blocks chosen = sha512_builds().back();
  return chosen;
}

}  // namespace tova_fw_builder
