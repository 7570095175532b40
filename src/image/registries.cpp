// The registries: the kinds of image by the generation of a definition, those
// of manifest by the first word of a file.
#include <algorithm>
#include <cstring>
#include <iomanip>
#include <stdexcept>

#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "driver/ground/wire.h"
#include "image/image.h"
#include "image/kelp15.h"
#include "image/kelp18_25.h"
#include "image/kelp30.h"

namespace tova_fw_builder {

namespace {

struct ImageEntry {
  std::uint32_t key;  // generation
  std::unique_ptr<Image> (*create)(std::unique_ptr<FwOutMap>);
};

template <typename Kind>
std::unique_ptr<Image> create_image(std::unique_ptr<FwOutMap> map) {
  return std::make_unique<Kind>(std::move(map));
}

constexpr ImageEntry kImages[] = {
    {kKelp15, create_image<Kelp15Image>},
    {kKelp18, create_image<Kelp18Image>},
    {kKelp25, create_image<Kelp25Image>},
    {kKelp30, create_image<Kelp30Image>},
};

struct ManifestEntry {
  std::uint32_t key;  // first word of the file
  std::unique_ptr<ImageManifest> (*create)(std::span<const std::uint8_t> file);
};

// First word 4 is the kind that 1.8, 2.5 and 3.0 give themselves, though no
// file of theirs begins with it: any UnsignedManifest serves, as signing does
// nothing to it.
constexpr ManifestEntry kManifests[] = {
    {CssHeader::kModuleType, read_kelp15_manifest},
    {UnsignedManifest::kModuleType,
     [](std::span<const std::uint8_t>) -> std::unique_ptr<ImageManifest> {
       return std::make_unique<Kelp30FwManifest>();
     }},
};

}  // namespace

std::unique_ptr<Image> make_image(std::unique_ptr<FwOutMap> map) {
  const auto* entry =
      std::ranges::find(kImages, map->binary_ver, &ImageEntry::key);
  if (entry == std::end(kImages)) {
    throw std::runtime_error("Unrecognized binary version");
  }
  log_info("\nCreating image ver ", std::hex, std::setfill('0'), std::setw(8),
           map->binary_ver);
  return entry->create(std::move(map));
}

std::unique_ptr<ImageManifest> read_manifest(const std::string& path) {
  log_info("Reading manifest from: ", path);
  // Read once, as a pipe can't be read again. One byte more than is taken shows
  // a file that is too long.
  std::array<std::uint8_t, kMaxManifestLength + 1> bytes{};
  std::span<const std::uint8_t> file(bytes.data(), read_start(path, bytes));
  Le32 word;  // what a short file lacks is zero
  std::memcpy(&word, bytes.data(), sizeof(word));
  const auto* entry =
      std::ranges::find(kManifests, std::uint32_t{word}, &ManifestEntry::key);
  if (entry == std::end(kManifests)) {
    throw std::runtime_error("Unrecognized module type");
  }
  // Without a whole word the file counts as empty.
  if (file.size() < sizeof(word)) file = {};
  return entry->create(file);
}

}  // namespace tova_fw_builder
