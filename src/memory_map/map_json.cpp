#include "memory_map/map_json.h"

#include <algorithm>

namespace tova_fw_builder {
namespace {

Json text_or_null(std::string_view text) {
  return text.empty() ? Json() : Json(text);
}

// Makes an array, a row for each element.
template <typename List, typename Row>
Json array_of(const List& list, const Row& row) {
  Json array = Json::array();
  for (const auto& element : list) array.push_back(row(element));
  return array;
}

Json section_json(const MemoryMap::Section& section) {
  return {{"name", section.name},
          {"module", section.owner},
          {"address", section.address},
          {"size", section.size}};
}

Json class_json(const MemoryMap& map, const MemoryMap::Class& area) {
  return {{"name", area.name},
          {"base", area.base},
          {"size", area.size},
          {"used", area.used},
          {"free", area.free()},
          {"hw_buf", area.hw_buf},
          {"sections", array_of(area.sections, [&map](std::uint32_t number) {
             return section_json(map.sections[number]);
           })}};
}

Json module_json(const MemoryMap::Module& module) {
  return {{"name", module.name},         {"uuid", module.uuid},
          {"built_in", module.built_in}, {"text", module.text},
          {"rodata", module.rodata},     {"bss", module.bss},
          {"gaps", module.gaps},         {"padding", module.padding},
          {"pages", module.pages},       {"packed_pages", module.packed_pages}};
}

Json group_json(const MemoryMap::Group& group) {
  return {{"module", group.module},
          {"kind", group.kind},
          {"address", group.address},
          {"pages", group.pages},
          {"unused", array_of(group.unused, [](const AddressSpan& span) {
             return Json(
                 {{"address", span.begin}, {"size", span.end - span.begin}});
           })}};
}

Json outside_json(const MemoryMap& map, const MemoryMap::Outside& outside) {
  Json row = section_json(map.sections[outside.section]);
  row["outside"] = outside.bytes;
  return row;
}

Json overlap_json(const MemoryMap& map, const MemoryMap::Overlap& overlap) {
  Json pair = Json::array();
  for (const std::uint32_t number : {overlap.first, overlap.second}) {
    pair.push_back(section_json(section_at(map, number)));
  }
  return {{"address", overlap.address},
          {"size", overlap.size},
          {"sections", std::move(pair)}};
}

Json symbols_json(const MemoryMap& map) {
  Json array = Json::array();
  const auto listed = std::min(map.symbols.size(), kMaxListedSymbols);
  for (std::size_t i = 0; i < listed; ++i) {
    const MemoryMap::Symbol& symbol = map.symbols[i];
    array.push_back({{"name", symbol.name},
                     {"module", text_or_null(owner_of(map, symbol))},
                     {"section", section_of(map, symbol)},
                     {"address", symbol.address},
                     {"size", symbol.size}});
  }
  return array;
}

Json total_json(const SizeChange& change) {
  return {{"name", change.name},
          {"old", change.before},
          {"new", change.after},
          {"change", change.change()}};
}

Json part_json(const SizeChange& change) {
  Json row = {{"name", change.name},
              {"section", text_or_null(change.section)},
              {"module", text_or_null(change.owner)}};
  row.update(total_json(change));
  return row;
}

}  // namespace

Json map_json(const MemoryMap& map, const std::vector<BudgetResult>& budgets,
              const MapChanges* changes, const std::string& baseline) {
  Json json = {{"schema", 1},
               {"image",
                {{"name", map.image.name},
                 {"generation", text_or_null(map.image.generation)},
                 {"version", text_or_null(map.image.version)},
                 {"pages", map.image.pages}}}};
  json["hw_buf"] = {{"address", map.hw_buf.address}, {"size", map.hw_buf.size}};
  json["classes"] = array_of(
      map.classes, [&map](const auto& area) { return class_json(map, area); });
  json["modules"] = array_of(map.modules, module_json);
  json["groups"] = array_of(map.groups, group_json);
  json["left_out"] = array_of(map.left_out, [](const auto& section) {
    return Json({{"section", section.section},
                 {"elf", section.elf},
                 {"address", section.address},
                 {"size", section.size}});
  });
  json["outside_classes"] = array_of(
      map.outside_classes,
      [&map](const auto& outside) { return outside_json(map, outside); });
  json["overlaps"] = array_of(map.overlaps, [&map](const auto& overlap) {
    return overlap_json(map, overlap);
  });
  json["overlaps_cut"] = map.has_more_overlaps;
  json["symbols"] = symbols_json(map);
  json["symbols_total"] = map.symbols.size();
  json["budgets"] = array_of(budgets, [](const BudgetResult& result) {
    return Json({{"class", result.memory_class},
                 {"limit", result.bytes},
                 {"used", result.used},
                 {"over", result.over()}});
  });
  if (changes != nullptr) {
    json["baseline"] = {{"path", baseline},
                        {"classes", array_of(changes->classes, total_json)},
                        {"modules", array_of(changes->modules, total_json)},
                        {"changes", array_of(changes->parts, part_json)}};
  }
  return json;
}

}  // namespace tova_fw_builder
