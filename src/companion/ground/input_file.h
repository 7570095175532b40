// companion/ground/input_file.h
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tova_fw_builder {

// Reads the start of a file, a pipe or a device, and yields how many bytes it
// gave: fewer only where it ends. They go straight to their place, so that a
// caller who wipes it leaves no copy. Throws std::runtime_error "cannot be
// read: " and the system's reason, for a folder, too.
std::size_t read_head(const std::string& path, std::span<std::uint8_t> bytes);

}  // namespace tova_fw_builder
