// outside_keys/key_halves.h
// The private half of a key, and whether it is that of the public one.
#pragma once

#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// Whether the key has more than its public part.
bool has_private_part(const KeyMaterial& key);

// Whether the two parts of a key pair belong together: modulus and exponent
// are the same, and what the private part makes of a number the public one
// turns back. False for a key without a private part.
bool halves_belong_together(const KeyMaterial& key);

}  // namespace tova_fw_builder
