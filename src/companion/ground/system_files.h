// companion/ground/system_files.h
// What the standard library can't ask of the system. A source for each kind of
// system holds the functions.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>
#include <string>

namespace tova_fw_builder {

// Makes an empty file beside `path` that nobody else may read, and yields its
// name; empty, with the reason in errno, if it can't.
std::string create_beside(const std::string& path);

// Gives `file` the rights of `path`, or those that a new file gets. False, with
// the reason in errno, if it can't.
bool give_usual_rights(const std::string& file, const std::string& path);

// Holds the signals back by which users and systems end a program. Yields those
// that weren't held back, or ignored, before.
unsigned hold_interrupts();

// Lets such signals come; those that came meanwhile come now.
void release_interrupts(unsigned held);

// Whether one of them waits.
bool is_interrupted(unsigned held);

// Reads a file from `offset` on, as it is now, past the stream's own buffer,
// and yields how many bytes it gave: fewer only where it ends. Nothing, with
// the reason in errno, if it can't be read.
std::optional<std::size_t> read_at(std::FILE& file, std::uint64_t offset,
                                   std::span<char> to);

bool standard_output_is_terminal();

// Whether a device is a terminal. False if it can't be opened.
bool is_terminal(const std::string& device);

// Whether the standard output is a pipe that nobody reads any more.
bool standard_output_is_unread();

// From here on a file that would grow beyond the limit of its size is an error
// of the write and no signal, which would leave a part of it behind.
void take_size_limit_as_error();

}  // namespace tova_fw_builder
