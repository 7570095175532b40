// inspect/check/sample_key.h
#pragma once

#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {

// Whether this is the hash of the key in examples/, which everyone has.
bool is_sample_key(const PublicKeyHash& hash);

}  // namespace tova_fw_builder
