// driver/ground/files.h
// Opening and reading files. No stream carries an exception mask: behind a
// successful open, reads and writes fail without a word. Outputs are never
// tested.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace tova_fw_builder {

// Open a file, for its bytes on every system: carriage returns stay in it, and
// the definition reader drops them. Throw std::runtime_error "Failed to open
// file: " and the path, for a directory too. A device stands at its end, so
// that its text is empty.
std::unique_ptr<std::ifstream> open_binary_input(const std::string& path);
std::unique_ptr<std::ifstream> open_input(const std::string& path);

// The same, but a file that can't be opened gives a stream that isn't open.
std::unique_ptr<std::ifstream> try_open_input(const std::string& path);

// Make a file, or empty it, to write the same bytes on every system: no line
// end gets a carriage return. Of a file that can't be made the stream isn't
// open, and takes nothing. The second can be read back, and leaves a file that
// may be written alone as it was.
std::ofstream open_output(const std::string& path);
std::fstream open_output_to_read(const std::string& path);

// Opens a file to read its bytes. Null, with the reason in errno, if it can't.
std::FILE* open_c_stream(const std::string& path);

// Reads the start of a file or a pipe, and returns how many bytes it gave:
// fewer only where the file ends. They go straight to their place, so that a
// caller who wipes it leaves no copy. Throws as open_binary_input does.
std::size_t read_start(const std::string& path, std::span<std::uint8_t> bytes);

// The length in bytes; the stream is left at its start. Throws
// std::runtime_error "Cannot tell the length of file: " and the path if `in`
// can't seek, as with a pipe.
std::uint64_t file_length(std::istream& in, const std::string& path);

using TakeBytes = std::function<void(std::span<const std::uint8_t>)>;

// Hands up to `length` bytes on in pieces of at most 256 KiB, each but the last
// a multiple of 4096 bytes. Ends early where the file does.
void read_in_pieces(std::istream& in, std::uint64_t length,
                    const TakeBytes& take);

void write_bytes(std::ostream& out, std::span<const std::uint8_t> bytes);

// Where the next byte goes; all ones for a stream that has failed.
std::uint64_t position_of(std::ostream& out);

// Copies up to `length` bytes.
void copy_bytes(std::istream& in, std::uint64_t length, std::ostream& out);

// Ends early when the stream has failed.
void write_zeros(std::ostream& out, std::uint64_t count);

}  // namespace tova_fw_builder
