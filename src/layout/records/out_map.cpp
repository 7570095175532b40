// The output map's only operation of its own.
#include "layout/records/out_map.h"

#include <utility>

namespace tova_fw_builder {

void FwOutMap::SectionGroup::add_section(const std::string& name,
                                         bool entrypoint, bool optional,
                                         const std::string& replacement_name) {
  auto section = std::make_shared<Section>();
  section->name = name;
  section->entrypoint = entrypoint;
  section->optional = optional;
  if (!replacement_name.empty()) {
    section->replacement = std::make_unique<Section>();
    section->replacement->name = replacement_name;
  }
  sections.push_back(std::move(section));
}

}  // namespace tova_fw_builder
