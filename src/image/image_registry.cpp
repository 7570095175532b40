// The registry of the kinds of image, by the generation of a definition.
#include <algorithm>
#include <iomanip>
#include <stdexcept>

#include "driver/ground/log.h"
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

}  // namespace tova_fw_builder
