#include "memory_map/memory_map.h"

namespace tova_fw_builder {

const MemoryMap::Section& section_at(const MemoryMap& map,
                                     std::uint32_t number) {
  return number == MemoryMap::kIsHardwareBuffer ? map.hw_buf
                                                : map.sections[number];
}

const std::string& section_of(const MemoryMap& map,
                              const MemoryMap::Symbol& symbol) {
  return symbol.is_left_out ? map.left_out[symbol.place].section
                            : map.sections[symbol.place].name;
}

std::string_view owner_of(const MemoryMap& map,
                          const MemoryMap::Symbol& symbol) {
  return symbol.is_left_out ? std::string_view()
                            : map.sections[symbol.place].owner;
}

}  // namespace tova_fw_builder
