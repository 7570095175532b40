// The measuring in its order: sections first, on which all others look.
#include "memory_map/measure_memory.h"

#include "memory_map/measures.h"

namespace tova_fw_builder {
namespace {

std::string generation_word(std::uint32_t binary_ver) {
  for (const auto& [word, value] : kGenerations) {
    if (value == binary_ver) return std::string(word);
  }
  return "";
}

std::string version_text(const Version& version) {
  return std::to_string(version.major) + '.' + std::to_string(version.minor) +
         '.' + std::to_string(version.hotfix) + '.' +
         std::to_string(version.build);
}

MemoryMap::Image measure_image(const FwOutMap& bound) {
  MemoryMap::Image image;
  image.name = bound.binary_name;
  image.generation = generation_word(bound.binary_ver);
  for (const auto& module : bound.modules) {
    if (module->type == FwOutMap::Module::kBaseFirmwareType) {
      image.version = version_text(module->version);
    }
  }
  return image;
}

}  // namespace

void measure_addresses(const FwOutMap& bound, MemoryMap& map) {
  map.hw_buf = {kHardwareBuffer, kHardwareBuffer, bound.hw_buf_ba,
                bound.hw_buf_size};
  measure_sections(bound, map);
  measure_classes(bound, map);
  find_overlaps(map);
}

MemoryMap measure_memory(const FwOutMap& bound, const ElfList& elfs) {
  MemoryMap map;
  map.image = measure_image(bound);
  measure_addresses(bound, map);
  measure_modules(bound, map);
  read_left_out_and_symbols(bound, elfs, map);
  return map;
}

}  // namespace tova_fw_builder
