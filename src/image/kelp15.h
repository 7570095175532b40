// image/kelp15.h
// Generation 1.5: the binary holds module contents alone, addon modules stand
// in files of their own, and the loader's header is in the manifest, the only
// one that can be signed and read back.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <memory>
#include <ostream>
#include <span>

#include "image/image.h"
#include "image/records/css_part.h"

namespace tova_fw_builder {

class Kelp15Image : public Image {
 public:
  using Image::Image;

  void write(std::iostream& stream, const std::string& path,
             std::uint32_t css_header_size) override;
  std::unique_ptr<ImageManifest> create_manifest(
      bool debug, std::uint32_t imr_type) override;
};

// A fresh manifest keeps the CSS part alone in memory, since the binary header
// and its tables go straight to the stream. One that was read back holds the
// file up to the `size` of its CSS header, zero behind the end of a short file.
class Kelp15FwManifest : public ImageManifest {
 public:
  std::uint8_t* modulus() override;
  void set_modulus(const std::uint8_t* area) override;
  int generation_code() const override { return 1; }
  std::uint8_t* exponent() override;
  void set_exponent(const std::uint8_t* area) override;
  std::uint8_t* signature() override;
  void set_signature(const std::uint8_t* area) override;

  // Bytes 0 to 127 and those from header_len to size, all but the key and
  // signature areas. Throws ZelError of "zelsSHA256Update" for a length of 2^31
  // or more, which a header_len above size may wrap to, else std::runtime_error
  // "Manifest is bigger than MAX of 8kB" for a range that leaves the 8192
  // bytes.
  std::array<std::span<const std::uint8_t>, 2> signed_parts() override;
  void compute_hash(std::uint8_t* out) override;

  void set_debug() override;
  std::uint32_t date() const override { return buffer_.front.css.date; }

  // Throws std::runtime_error "Manifest is bigger than MAX of 8kB" before
  // anything is written, and what bcd_date and write_binary_header throw.
  void write(std::ostream& stream, const FwOutMap& map) override;
  // `size` words of a manifest that was read back.
  void write_raw(std::ostream& stream) override;

 private:
  friend std::unique_ptr<ImageManifest> read_kelp15_manifest(
      std::span<const std::uint8_t> file);

  // The manifest file from offset 0 on.
  struct Buffer {
    CssPart front;
    std::array<std::uint8_t, kMaxManifestLength - sizeof(CssPart)> rest{};
  };
  static_assert(sizeof(Buffer) == kMaxManifestLength && alignof(Buffer) == 1);

  // All 8192 bytes: areas that stand side by side are read as one.
  std::uint8_t* bytes() { return reinterpret_cast<std::uint8_t*>(&buffer_); }

  Buffer buffer_;
};

// Reads a manifest from the bytes of its file, of which 8193 are enough. What a
// short file lacks is zero. Throws std::runtime_error "Manifest is bigger than
// MAX of 8kB" for a `size` above 2048 words, so that the memory always holds
// it, and for a file of more than 8192 bytes if `size` is below 32.
std::unique_ptr<ImageManifest> read_kelp15_manifest(
    std::span<const std::uint8_t> file);

// Filling and logging the CSS header, in a source of its own.

// The day of `now` in Coordinated Universal Time, as 0xYYYYMMDD in BCD. Throws
// std::runtime_error "Internal error: cannot get system time, errno : ", less
// its first errno characters.
std::uint32_t bcd_date(std::time_t now);

// The header of a new manifest of `manifest_length` bytes, a multiple of 4.
CssHeader fill_css_header(std::uint32_t manifest_length, bool debug,
                          std::uint32_t date);

// The log form, a line for each field, each with its newline. Leaves the stream
// in hexadecimal.
void print_css_header(std::ostream& out, const CssHeader& css);

}  // namespace tova_fw_builder
