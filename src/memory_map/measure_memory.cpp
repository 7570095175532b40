// The measuring in its order: sections first, on which all others look.
#include "memory_map/measure_memory.h"

#include "memory_map/measures.h"

namespace tova_fw_builder {
namespace {

std::string generation_name(std::uint32_t binary_ver) {
  switch (binary_ver) {
    case kKelp15:
      return "1.5";
    case kKelp18:
      return "1.8";
    case kKelp25:
      return "2.5";
    case kKelp30:
      return "3.0";
    default:
      return "";
  }
}

std::string version_text(const Version& version) {
  return std::to_string(version.major) + '.' + std::to_string(version.minor) +
         '.' + std::to_string(version.hotfix) + '.' +
         std::to_string(version.build);
}

MemoryMap::Image measure_image(const FwOutMap& bound) {
  MemoryMap::Image image;
  image.name = bound.binary_name;
  image.generation = generation_name(bound.binary_ver);
  for (const auto& module : bound.modules) {
    if (module->type == FwOutMap::Module::kBaseFirmwareType) {
      image.version = version_text(module->version);
    }
  }
  return image;
}

}  // namespace

MemoryMap measure_memory(const FwOutMap& bound, const ElfList& elfs) {
  MemoryMap map;
  map.image = measure_image(bound);
  map.hw_buf = {kHardwareBuffer, kHardwareBuffer, bound.hw_buf_ba,
                bound.hw_buf_size};
  measure_sections(bound, map);
  measure_classes(bound, map);
  find_overlaps(map);
  measure_modules(bound, map);
  read_left_out_and_symbols(bound, elfs, map);
  return map;
}

}  // namespace tova_fw_builder
