// companion/manifest_input.h
// Manifests that are to be signed outside.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "image/image.h"

namespace tova_fw_builder {

class CommandNode;

// The bytes of a manifest's file. Throws as read_head does, and
// std::runtime_error "is too long for a manifest".
std::vector<std::uint8_t> read_manifest_bytes(const std::string& path);

// The manifest of these bytes, with the debug mark if `debug`; without, the
// mark stays as it is.
//
// Takes only what a signature covers as `sign` makes it. Throws
// std::runtime_error for anything but a manifest of generation 1.5, for a
// header_len other than 161, which moves the bytes that are covered, and for a
// file that is shorter than its `size`, or longer by more than zeros.
std::unique_ptr<ImageManifest> manifest_to_sign(
    const std::vector<std::uint8_t>& bytes, bool debug);

// Says on the standard error that a release signature is about to cover a debug
// mark, which `sign` does, too. `bytes` are what manifest_to_sign has taken.
void note_debug_mark(const std::string& path,
                     const std::vector<std::uint8_t>& bytes, bool debug);

// Adds --debug and --release, of which one is to be given, and sets `debug`.
void add_kind_of_signature(CommandNode command, bool& debug);

}  // namespace tova_fw_builder
