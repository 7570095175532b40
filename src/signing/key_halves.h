// signing/key_halves.h
#pragma once

#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// Whether the two parts of a key pair belong together: modulus and exponent
// are the same, and a signature made with the private part verifies with the
// public one. False for a key without a private part.
bool halves_belong_together(const KeyMaterial& key);

}  // namespace tova_fw_builder
