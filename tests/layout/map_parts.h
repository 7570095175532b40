// tests/layout/map_parts.h
// Makes the parts of small maps.
#pragma once

#include <memory>
#include <sstream>
#include <string>

#include "input_map/fw_image_map.h"
#include "layout/out_map.h"

namespace tova_fw_builder {

using Header = FwImageMap::SectionHeader;
using Group = FwOutMap::SectionGroup;

// Flags by letter: c contents, a alloc, l load, r readonly, x code, d data.
inline Header& add_header(FwImageMap& map, const std::string& name,
                          std::uint32_t lma, std::uint32_t size,
                          const std::string& flags,
                          const std::string& bytes = "") {
  auto header = std::make_shared<Header>();
  const auto has = [&](char letter) {
    return flags.find(letter) != std::string::npos;
  };
  header->name = name;
  header->lma = lma;
  header->vma = lma + 0x10000000;
  header->size = size;
  header->contents = has('c');
  header->alloc = has('a');
  header->load = has('l');
  header->readonly = has('r');
  header->code = has('x');
  header->data = has('d');
  header->stream = std::make_shared<std::istringstream>(bytes);
  map.sections[name] = header;
  return *header;
}

inline FwOutMap::Module& add_module(FwOutMap& map, const std::string& name) {
  map.modules.push_back(std::make_unique<FwOutMap::Module>());
  map.modules.back()->name = name;
  return *map.modules.back();
}

// `sections`: words as in a definition, each "name", "o:name", "ep:name",
// and optionally "name<replacement".
inline Group& add_group(FwOutMap::Module& module, std::uint32_t type,
                        const std::string& sections) {
  module.groups.push_back(std::make_unique<Group>());
  Group& group = *module.groups.back();
  group.type = type;
  std::istringstream words(sections);
  for (std::string word; words >> word;) {
    const bool optional = word.starts_with("o:");
    const bool entry = word.starts_with("ep:");
    word.erase(0, optional ? 2 : entry ? 3 : 0);
    const auto less = std::min(word.find('<'), word.size());
    group.add_section(word.substr(0, less), entry, optional,
                      word.substr(std::min(less + 1, word.size())));
  }
  return group;
}

}  // namespace tova_fw_builder
