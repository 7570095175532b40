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

// Whether it is a plain file, which can be read again.
bool is_file(const std::string& path);

// Whether it is a pipe: what has been read of one is gone, and opening it again
// waits for another writer.
bool is_pipe(const std::string& path);

// To be called ahead of reading again. Throws FileError "this is a pipe, and is
// read more than once: name a file".
void require_no_pipe(const std::string& path);

// The text that read_head throws for a file that could not be opened.
std::string why_unreadable(const std::string& path);

}  // namespace tova_fw_builder
