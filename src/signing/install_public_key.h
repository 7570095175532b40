// signing/install_public_key.h
#pragma once

#include "image/image.h"
#include "signing/keys/key_file.h"

namespace tova_fw_builder {

// Puts the public part of a key into a manifest and logs the key's hash at
// level 2. A manifest without room for a key is left alone.
void install_public_key(ImageManifest& manifest, const KeyMaterial& key);

}  // namespace tova_fw_builder
