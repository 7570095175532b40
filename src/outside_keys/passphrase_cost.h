// outside_keys/passphrase_cost.h
#pragma once

#include <cstdint>
#include <span>

namespace tova_fw_builder {

// Looks at how the keys in PEM or DER were encrypted, without a passphrase.
// Throws std::runtime_error for one that names more steps from the passphrase
// to the key than anyone would wait for: ten million rounds of a hash, or of
// scrypt the product of its three numbers above 2 to the 24th.
void require_short_derivation(std::span<const std::uint8_t> bytes);

}  // namespace tova_fw_builder
