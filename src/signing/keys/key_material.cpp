#include "signing/keys/key_material.h"

#include "crypto/secret_buffer.h"

namespace tova_fw_builder {

KeyMaterial::~KeyMaterial() { secure_wipe(this, sizeof(*this)); }

}  // namespace tova_fw_builder
