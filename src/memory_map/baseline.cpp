#include "memory_map/baseline.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <tuple>

#include "companion/ground/json.h"

namespace tova_fw_builder {
namespace {

[[noreturn]] void refuse() {
  throw std::runtime_error("is no memory map (tova_fw map --json makes one)");
}

std::string text_of(const Json& object, const char* key) {
  const auto place = object.find(key);
  if (place == object.end()) refuse();
  if (place->is_null()) return "";
  if (!place->is_string()) refuse();
  return place->get<std::string>();
}

// Sizes are added up, so they stay far from the end of the numbers.
std::uint64_t bytes_of(const Json& object, const char* key) {
  constexpr std::uint64_t kMost = std::uint64_t{1} << 36;
  const auto place = object.find(key);
  if (place == object.end() || !place->is_number_unsigned()) refuse();
  const auto bytes = place->get<std::uint64_t>();
  if (bytes > kMost) refuse();
  return bytes;
}

// Takes the rows out of the document while it is read, so that it never
// stands in memory whole.
class SizesReader {
 public:
  // Yields whether the document is to keep the value.
  bool take(int depth, Json::parse_event_t event, Json& value) {
    using Event = Json::parse_event_t;
    // Deeper than any map: what the library copies, it copies by recursion.
    constexpr int kDeepest = 16;
    if (depth > kDeepest) refuse();
    if (event == Event::key) return takes_key(depth, value);
    if (event == Event::object_start || event == Event::array_start ||
        event == Event::value) {
      return has_place(depth, event);
    }
    if (event != Event::object_end) return true;
    if (list_ == "classes" && depth == 4) return take_section(value, "name");
    if (depth != 2) return true;
    if (list_ == "classes") {
      sizes_.classes[text_of(value, "name")] += bytes_of(value, "used");
    } else if (list_ == "modules") {
      auto& bytes = sizes_.modules[text_of(value, "name")];
      for (const char* key : {"text", "rodata", "bss", "gaps", "padding"}) {
        bytes += bytes_of(value, key);
      }
    } else if (list_ == "outside_classes") {
      return take_section(value, "name");
    } else if (list_ == "left_out") {
      return take_left_out(value);
    } else if (list_ == "symbols") {
      return take_symbol(value);
    } else {
      return true;
    }
    return false;
  }

  MapSizes finish(const Json& document) {
    if (!document.is_object() || !document.contains("image")) refuse();
    if (document.value("schema", Json()) != Json(1)) refuse();
    if (bytes_of(document, "symbols_total") > symbols_) {
      sizes_.unlisted_below = smallest_;
    }
    return std::move(sizes_);
  }

 private:
  // Whether a map has such a value there: a list of rows, in those of classes a
  // list of sections, and in rows and at the top plain values. What is kept
  // beyond that would be searched at each row that is dropped.
  bool has_place(int depth, Json::parse_event_t event) const {
    if (event == Json::parse_event_t::value) return depth != 2 && depth != 4;
    const bool is_list = event == Json::parse_event_t::array_start;
    if (depth < 2) return true;
    const bool is_class = list_ == "classes";
    if (is_list) return depth == 3 && is_class;
    return (depth == 2 && is_rows(list_)) || (depth == 4 && is_class);
  }

  static bool is_rows(std::string_view list) {
    return list == "classes" || list == "modules" ||
           list == "outside_classes" || list == "left_out" || list == "symbols";
  }

  // All that is read: further names would be searched at each one that comes.
  bool takes_key(int depth, const Json& key) {
    static constexpr std::string_view kKeys[] = {
        "schema", "image",           "symbols_total", "classes", "modules",
        "name",   "outside_classes", "left_out",      "symbols", "used",
        "text",   "rodata",          "bss",           "gaps",    "padding",
        "size",   "section",         "sections",      "module"};
    const auto name = key.get<std::string>();
    if (depth == 1) list_ = name;
    return std::ranges::find(kKeys, name) != std::end(kKeys);
  }

  // A section can stand in several lists.
  bool take_section(const Json& row, const char* key) {
    sizes_.parts[{text_of(row, key), ""}] = {text_of(row, "module"),
                                             bytes_of(row, "size")};
    return false;
  }

  bool take_left_out(const Json& row) {
    sizes_.parts[{text_of(row, "section"), ""}].bytes += bytes_of(row, "size");
    return false;
  }

  bool take_symbol(const Json& row) {
    auto& size = sizes_.parts[{text_of(row, "section"), text_of(row, "name")}];
    size.owner = text_of(row, "module");
    smallest_ = bytes_of(row, "size");
    size.bytes += smallest_;
    ++symbols_;
    return false;
  }

  MapSizes sizes_;
  std::string list_;
  std::uint64_t symbols_ = 0;
  std::uint64_t smallest_ = 0;  // of the symbols, which stand in order
};

std::vector<SizeChange> ordered(std::vector<SizeChange> changes) {
  std::ranges::sort(changes, [](const SizeChange& a, const SizeChange& b) {
    const auto key = [](const SizeChange& c) {
      return std::make_tuple(c.change() < 0,
                             -std::max(c.change(), -c.change()));
    };
    return std::tuple_cat(key(a), std::tie(a.section, a.name)) <
           std::tuple_cat(key(b), std::tie(b.section, b.name));
  });
  return changes;
}

using Totals = std::map<std::string, std::uint64_t>;

std::vector<SizeChange> compare_totals(const Totals& before,
                                       const Totals& after) {
  std::map<std::string, SizeChange> rows;
  for (const auto& [name, bytes] : before) rows[name].before = bytes;
  for (const auto& [name, bytes] : after) rows[name].after = bytes;
  std::vector<SizeChange> changes;
  for (auto& [name, row] : rows) {
    row.name = name;
    if (row.change() != 0) changes.push_back(std::move(row));
  }
  return ordered(std::move(changes));
}

// The parts with what no symbol has in place of each section's whole size. A
// section stands ahead of its symbols.
MapSizes without_symbols(MapSizes sizes) {
  MapSizes::Size* section = nullptr;
  const std::string* name = nullptr;
  for (auto& [part, size] : sizes.parts) {
    if (part.symbol.empty()) {
      section = &size;
      name = &part.section;
    } else if (section != nullptr && *name == part.section) {
      section->bytes -= std::min(section->bytes, size.bytes);
    }
  }
  return sizes;
}

}  // namespace

MapSizes sizes_of(const MemoryMap& map) {
  MapSizes sizes;
  for (const auto& area : map.classes) sizes.classes[area.name] += area.used;
  for (const auto& module : map.modules) {
    sizes.modules[module.name] += module.total();
  }
  for (const auto& section : map.sections) {
    sizes.parts[{section.name, ""}] = {section.owner, section.size};
  }
  for (const auto& section : map.left_out) {
    sizes.parts[{section.section, ""}].bytes += section.size;
  }
  const auto listed = std::min(map.symbols.size(), kMaxListedSymbols);
  for (std::size_t i = 0; i < listed; ++i) {
    const MemoryMap::Symbol& symbol = map.symbols[i];
    auto& size =
        sizes.parts[{section_of(map, symbol), std::string(symbol.name)}];
    size.owner = owner_of(map, symbol);
    size.bytes += symbol.size;
  }
  if (listed < map.symbols.size()) {
    sizes.unlisted_below = map.symbols[listed - 1].size;
  }
  return sizes;
}

MapSizes read_sizes(std::istream& json) {
  SizesReader reader;
  const Json document = Json::parse(
      json,
      [&reader](int depth, Json::parse_event_t event, Json& value) {
        return reader.take(depth, event, value);
      },
      false);
  return reader.finish(document);
}

MapChanges compare_sizes(const MapSizes& before, const MapSizes& after) {
  const MapSizes old_parts = without_symbols(before);
  const MapSizes new_parts = without_symbols(after);
  const std::uint64_t unknown =
      std::max(before.unlisted_below, after.unlisted_below);
  std::map<MapSizes::Part, SizeChange> rows;
  for (const auto& [part, size] : old_parts.parts) {
    rows[part] = {"", "", size.owner, size.bytes, 0};
  }
  for (const auto& [part, size] : new_parts.parts) {
    rows[part].owner = size.owner;
    rows[part].after = size.bytes;
  }
  std::vector<SizeChange> parts;
  for (auto& [part, row] : rows) {
    const bool is_symbol = !part.symbol.empty();
    if (is_symbol && std::max(row.before, row.after) <= unknown) continue;
    if (row.change() == 0) continue;
    row.name = is_symbol ? part.symbol : part.section;
    row.section = is_symbol ? part.section : "";
    parts.push_back(std::move(row));
  }
  return {compare_totals(before.classes, after.classes),
          compare_totals(before.modules, after.modules),
          ordered(std::move(parts))};
}

}  // namespace tova_fw_builder
