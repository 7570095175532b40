// The replacement keeps to the room that the linker gave the section: whether
// it fits is asked only when the bytes are copied.
#include "layout/section_replacement.h"

#include <stdexcept>

#include "driver/ground/log.h"

namespace tova_fw_builder {

// It may be of any kind: the store of keys has none.
void attach_replacement(FwOutMap::Section& section,
                        const FwImageMap& image_map) {
  if (section.replacement == nullptr) return;
  FwOutMap::Section& replacement = *section.replacement;
  if (replacement.header == nullptr) {
    replacement.header = image_map.find_section(replacement.name);
  }
  if (replacement.header == nullptr) {
    log_warning("Section replacement header ", replacement.name, " not found");
  }
}

const FwImageMap::SectionHeader& choose_source(
    const FwOutMap::Section& section) {
  if (section.replacement == nullptr) return *section.header;
  const auto& replacement = section.replacement->header;
  // An optional reference passes as complete without its replacement.
  if (replacement == nullptr) {
    throw std::runtime_error("Section replacement header " +
                             section.replacement->name + " not found");
  }
  if (replacement->size > section.header->size) {
    throw std::runtime_error(
        "Replacement section too large to fit into the placeholder");
  }
  // Whether it has contents isn't asked: the store of keys has no flags at all.
  return *replacement;
}

}  // namespace tova_fw_builder
