// Printed in the order of the rows: no list stands in memory a second time.
#include "memory_map/map_json.h"

#include <algorithm>
#include <limits>
#include <span>

#include "memory_map/json_for_page.h"

namespace tova_fw_builder {
namespace {

constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

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

Json symbol_json(const MemoryMap& map, const MemoryMap::Symbol& symbol) {
  return {{"name", symbol.name},
          {"module", text_or_null(owner_of(map, symbol))},
          {"section", section_of(map, symbol)},
          {"address", symbol.address},
          {"size", symbol.size}};
}

Json left_out_json(const MemoryMap::LeftOut& section) {
  return {{"section", section.section},
          {"elf", section.elf},
          {"address", section.address},
          {"size", section.size}};
}

Json budget_json(const BudgetResult& result) {
  return {{"class", result.memory_class},
          {"limit", result.bytes},
          {"used", result.used},
          {"over", result.over()}};
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

class MapWriter {
 public:
  MapWriter(JsonWriter& json, const MapAnswer& answer, std::size_t list_bytes)
      : json_(json),
        map_(answer.map),
        answer_(answer),
        list_bytes_(list_bytes) {}

  void write() {
    json_.open('{');
    json_.value("schema", 1);
    json_.value("image", {{"name", map_.image.name},
                          {"generation", text_or_null(map_.image.generation)},
                          {"version", text_or_null(map_.image.version)},
                          {"pages", map_.image.pages}});
    json_.value("hw_buf",
                {{"address", map_.hw_buf.address}, {"size", map_.hw_buf.size}});
    write_classes();
    list("modules", map_.modules, module_json);
    list("groups", map_.groups, group_json);
    write_long_lists();
    list("budgets", answer_.budgets, budget_json);
    if (answer_.changes != nullptr) write_changes(*answer_.changes);
    if (is_cut()) json_.value("rows", rows_);
    json_.close();
  }

 private:
  bool is_cut() const { return list_bytes_ != kAll; }

  void write_classes() {
    json_.open("classes", '[');
    for (const MemoryMap::Class& area : map_.classes) {
      json_.open('{');
      json_.members({{"name", area.name},
                     {"base", area.base},
                     {"size", area.size},
                     {"used", area.used},
                     {"free", area.free()},
                     {"hw_buf", area.hw_buf}});
      list("sections", area.sections, [this](std::uint32_t number) {
        return section_json(map_.sections[number]);
      });
      json_.close();
    }
    json_.close();
  }

  void write_long_lists() {
    cut_list("left_out", map_.left_out, left_out_json);
    cut_list("outside_classes", map_.outside_classes,
             [this](const auto& row) { return outside_json(map_, row); });
    cut_list("overlaps", map_.overlaps,
             [this](const auto& row) { return overlap_json(map_, row); });
    json_.value("overlaps_cut", map_.has_more_overlaps);
    const std::span all(map_.symbols);
    cut_list("symbols", all.first(std::min(all.size(), kMaxListedSymbols)),
             [this](const auto& row) { return symbol_json(map_, row); });
    json_.value("symbols_total", map_.symbols.size());
    rows_["symbols"] = map_.symbols.size();
  }

  void write_changes(const MapChanges& changes) {
    json_.open("baseline", '{');
    json_.value("path", answer_.baseline);
    list("classes", changes.classes, total_json);
    list("modules", changes.modules, total_json);
    cut_list("changes", changes.parts, part_json);
    json_.close();
  }

  template <typename List, typename ToRow>
  void list(const char* key, const List& elements, const ToRow& to_row) {
    json_.open(key, '[');
    for (const auto& element : elements) {
      if (json_.has_failed()) break;
      json_.value(to_row(element));
    }
    json_.close();
  }

  // Rows begin with what matters most.
  template <typename List, typename ToRow>
  void cut_list(const char* key, const List& elements, const ToRow& to_row) {
    if (!is_cut()) return list(key, elements, to_row);
    rows_[key] = elements.size();
    std::size_t bytes = 0;
    json_.open(key, '[');
    for (const auto& element : elements) {
      const Json row = to_row(element);
      bytes += json_for_page(row).size() + 1;
      if (bytes > list_bytes_) break;
      json_.value(row);
    }
    json_.close();
  }

  JsonWriter& json_;
  const MemoryMap& map_;
  const MapAnswer& answer_;
  std::size_t list_bytes_;
  Json rows_ = Json::object();
};

}  // namespace

void print_map_json(std::ostream& out, const MapAnswer& answer) {
  JsonWriter json(out);
  MapWriter(json, answer, kAll).write();
}

void write_cut_map(JsonWriter& json, const MapAnswer& answer,
                   std::size_t list_bytes) {
  MapWriter(json, answer, list_bytes).write();
}

}  // namespace tova_fw_builder
