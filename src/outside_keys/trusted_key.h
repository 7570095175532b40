// outside_keys/trusted_key.h
#pragma once

#include <string>

#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {

// The hash of the key that a user trusts: 64 hexadecimal digits are the hash
// itself, anything else is the path of a key in any form. Public and private
// keys are taken alike. Throws std::runtime_error with a reason that doesn't
// name the file, also for an encrypted key.
PublicKeyHash trusted_key_hash(const std::string& text);

}  // namespace tova_fw_builder
