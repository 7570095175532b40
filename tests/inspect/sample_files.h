// tests/inspect/sample_files.h
// Small files of each format, put together by hand: number by number, after the
// tables of docs/file-formats.md.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Bytes of a file, little-endian.
class Bytes {
 public:
  Bytes& text(const std::string& bytes);
  Bytes& u8(unsigned value);
  Bytes& u16(unsigned value);
  Bytes& u32(std::uint32_t value);
  Bytes& fill(std::size_t count, char byte = '\0');
  Bytes& fill_to(std::size_t length) { return fill(length - bytes_.size()); }
  operator std::string() const { return bytes_; }

 private:
  std::string bytes_;
};

// Header, two modules, one configuration of the second one and a table of three
// symbols, of which the second has no record. 52 + 2 * 116 + 44 + 36 bytes.
// Module "eins" has text at `contents` and rodata a page behind it; module
// "zwei" is built in.
std::string header_tables(unsigned pages, std::uint32_t contents);
inline constexpr std::size_t kTablesLength = 364;

// A signer's room of 8192 - 64 bytes: the header stands at 64, the contents at
// 24640, and the file has 24640 + 2 * 4096 bytes.
std::string binary_18();
std::string binary_30();
std::string manifest_15(bool is_signed);
std::string metadata_18();
std::string extended_manifest();
std::string package_descriptor();
// Modulus of bytes 11 behind a 12, private numbers of bytes "SECRET-...".
std::string key_pair();
std::string public_key();

// All of them, each with the name of its format.
struct SampleFile {
  const char* format;
  std::string bytes;
};
std::vector<SampleFile> sample_files();
