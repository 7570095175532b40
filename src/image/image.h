// image/image.h
// The frame that the hardware generations share: one class family writes the
// binary of a generation, the other produces, holds and signs its manifest.
#pragma once

#include <array>
#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <utility>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Logs and writes the extended manifest. Counts keep their low 16 bits.
void write_extended_manifest(const FwOutMap& map, std::ostream& stream);

// A manifest, made from a finished image or read back from a file. What a
// generation doesn't have, its operations leave alone.
class ImageManifest {
 public:
  virtual ~ImageManifest() = default;

  // The areas of modulus, exponent and signature inside the manifest, one
  // behind the other, least significant byte first: 256, 4 and 256 bytes, which
  // the setters copy. Null in generations without.
  virtual std::uint8_t* modulus() { return nullptr; }
  virtual void set_modulus(const std::uint8_t*) {}
  // A constant of the generation: 1 for Kelp15, 3 for the others. Unused.
  virtual int generation_code() const = 0;
  virtual std::uint8_t* exponent() { return nullptr; }
  virtual void set_exponent(const std::uint8_t*) {}
  virtual std::uint8_t* signature() { return nullptr; }
  virtual void set_signature(const std::uint8_t* bytes) = 0;

  // The bytes that a signature covers, in two pieces; empty in generations
  // without. What it throws, see Kelp15FwManifest.
  virtual std::array<std::span<const std::uint8_t>, 2> signed_parts() {
    return {};
  }
  // Writes the SHA-256 of the signed parts, last byte first. Leaves `out` alone
  // in generations without.
  virtual void compute_hash(std::uint8_t* out) = 0;

  // Marks the signature as a debug one.
  virtual void set_debug() {}

  // The date of writing as 0xYYYYMMDD in BCD; 0 in generations without one.
  virtual std::uint32_t date() const { return 0; }

  // Write and log the manifest and the extended manifest of the image that was
  // written from the map. Throw what write_binary_header throws, and the texts
  // of Kelp15FwManifest.
  virtual void write(std::ostream& stream, const FwOutMap& map) = 0;
  virtual void write_extended(std::ostream& stream, const FwOutMap& map) {
    write_extended_manifest(map, stream);
  }
  // Writes a manifest that was read back, with what was changed since.
  virtual void write_raw(std::ostream& stream) = 0;

  bool debug = false;
  std::uint32_t module_type = 0;  // stays 0 in a manifest read back
};

// What the manifests of 1.8, 2.5 and 3.0 have in common: they are signed
// outside this tool, if at all.
class UnsignedManifest : public ImageManifest {
 public:
  static constexpr std::uint32_t kModuleType = 4;

  int generation_code() const override { return 3; }
  void set_signature(const std::uint8_t*) override {}
  void compute_hash(std::uint8_t*) override {}
  void write_raw(std::ostream&) override {}
};

// Writes the binary of one generation. Owns the output map.
class Image {
 public:
  explicit Image(std::unique_ptr<FwOutMap> map) : map_(std::move(map)) {}
  virtual ~Image() = default;

  // Writes the whole binary to `stream`, which is empty and open for reading
  // and writing. Addon files of 1.5 are named after `path`, the binary's path
  // without extension; 1.8 and 2.5 leave `css_header_size` bytes of room to the
  // signer. Throws what write_module_contents and write_binary_header throw; a
  // stream that fails is no failure of its own, but leaves a length that is no
  // number of pages.
  virtual void write(std::iostream& stream, const std::string& path,
                     std::uint32_t css_header_size) = 0;

  // To be called behind write(), whose results it takes. `imr_type` stands in
  // the metadata of 1.8 and 2.5 as it is.
  virtual std::unique_ptr<ImageManifest> create_manifest(
      bool debug, std::uint32_t imr_type) = 0;

  FwOutMap& map() { return *map_; }

 private:
  std::unique_ptr<FwOutMap> map_;
};

// Makes the image of the map's generation and logs it. Throws
// std::runtime_error "Unrecognized binary version".
std::unique_ptr<Image> make_image(std::unique_ptr<FwOutMap> map);

// Reads a manifest back from a file, by its first little-endian word. Throws
// std::runtime_error "Failed to open file: " and the path, "Unrecognized
// module type", or what the generation's reader throws.
std::unique_ptr<ImageManifest> read_manifest(const std::string& path);

}  // namespace tova_fw_builder
