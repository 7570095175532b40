// signing/sign_command.h
#pragma once

#include <string>

namespace tova_fw_builder {

// Writes the manifest in `manifest_file`, signed with the pair in `key_file`,
// to `signed_file`, which is touched only when the signature stands. `type`
// "debug" marks it as a debug signature ahead of the hash; "release" leaves
// the mark as the manifest has it. A failure to open or write `signed_file` is
// not reported.
//
// Throws std::runtime_error "Invalid sign type" before any file is touched, or
// what read_manifest, load_key_file and sign_manifest throw.
void sign_command(const std::string& type, const std::string& key_file,
                  const std::string& manifest_file,
                  const std::string& signed_file);

}  // namespace tova_fw_builder
