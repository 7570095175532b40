// What stands in the ELFs besides what was bound: sections that belong to
// nothing, and the symbols, each in a section of its own ELF.
#include <algorithm>
#include <cstring>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "companion/ground/input_file.h"
#include "driver/ground/files.h"
#include "input_map/fw_image_map.h"
#include "memory_map/measures.h"

namespace tova_fw_builder {
namespace {

using Header = FwImageMap::SectionHeader;

// A section of one ELF that symbols can lie in.
struct Place {
  std::uint64_t begin;
  std::uint64_t end;
  std::uint32_t number;
  bool is_left_out;
  std::size_t furthest = 0;  // of this and all before it
};

// Absolute, common, debugging and undefined symbols, and those of sections that
// take no memory, have no place in it, whatever their number is.
bool is_placed(char type) { return std::strchr("aACcNnUwv", type) == nullptr; }

class ElfReader {
 public:
  ElfReader(const FwOutMap& bound, MemoryMap& map);

  void read(const ElfListEntry& elf);

 private:
  std::vector<Place> read_places(const ElfListEntry& elf);
  void read_symbols(const ElfListEntry& elf, const std::vector<Place>& places);

  MemoryMap& map_;
  std::unordered_map<std::string, std::uint32_t> bound_;
  std::unordered_set<std::string> replacements_;
  std::unordered_set<std::string> seen_;
};

ElfReader::ElfReader(const FwOutMap& bound, MemoryMap& map) : map_(map) {
  for (std::uint32_t i = 0; i < map.sections.size(); ++i) {
    bound_.emplace(map.sections[i].name, i);
  }
  for (const auto& module : bound.modules) {
    for (const auto& group : module->groups) {
      for (const auto& section : group->sections) {
        if (section->replacement == nullptr) continue;
        replacements_.insert(section->replacement->name);
      }
    }
  }
}

void ElfReader::read(const ElfListEntry& elf) {
  read_symbols(elf, read_places(elf));
}

// The binding takes the first section of a name; later ones are in no image.
std::vector<Place> ElfReader::read_places(const ElfListEntry& elf) {
  FwImageMap one;
  read_section_table(one, *open_input(elf.memmap), nullptr);
  std::vector<Place> places;
  for (const auto& [name, header] : one.sections) {
    const bool is_first = seen_.insert(name).second;
    const auto found = is_first ? bound_.find(name) : bound_.end();
    const std::uint64_t end = std::uint64_t{header->vma} + header->size;
    if (found != bound_.end()) {
      places.push_back({header->vma, end, found->second, false});
    } else if (header->alloc && header->size != 0 &&
               !(is_first && replacements_.contains(name))) {
      const auto number = static_cast<std::uint32_t>(map_.left_out.size());
      places.push_back({header->vma, end, number, true});
      map_.left_out.push_back({name, elf.elf, header->vma, header->size});
    }
  }
  std::ranges::sort(places, {}, &Place::begin);
  for (std::size_t i = 0; i < places.size(); ++i) {
    const std::size_t before = i == 0 ? 0 : places[i - 1].furthest;
    places[i].furthest = places[i].end > places[before].end ? i : before;
  }
  return places;
}

const Place* find_place(const std::vector<Place>& places,
                        std::uint32_t address) {
  const auto behind =
      std::ranges::upper_bound(places, address, {}, &Place::begin);
  if (behind == places.begin()) return nullptr;
  const Place& last = *(behind - 1);
  if (address < last.end) return &last;
  const Place& furthest = places[last.furthest];
  return address < furthest.end ? &furthest : nullptr;
}

void ElfReader::read_symbols(const ElfListEntry& elf,
                             const std::vector<Place>& places) {
  auto& symbols = map_.symbols;
  const auto first = static_cast<std::ptrdiff_t>(symbols.size());
  // Until they are sorted, `size` holds what is left of the section.
  for_each_symbol(
      *open_input(elf.nm), [&](const FwImageMap::SymbolMap::Entry& entry) {
        const Place* place = find_place(places, entry.address);
        if (place == nullptr || !is_placed(entry.type)) return;
        const auto length = entry.name.size();
        char* const copy = static_cast<char*>(map_.texts->allocate(length, 1));
        symbols.push_back(
            {{copy, entry.name.copy(copy, length)},
             place->number,
             place->is_left_out,
             entry.address,
             static_cast<std::uint32_t>(place->end - entry.address)});
      });
  const auto begin = symbols.begin() + first;
  std::sort(begin, symbols.end(), [](const auto& a, const auto& b) {
    return std::tie(a.is_left_out, a.place, a.address, a.name) <
           std::tie(b.is_left_out, b.place, b.address, b.name);
  });
  for (auto at = begin; at != symbols.end() && at + 1 != symbols.end(); ++at) {
    const auto next = at + 1;
    if (next->place == at->place && next->is_left_out == at->is_left_out) {
      at->size = next->address - at->address;
    }
  }
}

// Largest first, and what the symbols say about the order of sections.
void order_left_out(MemoryMap& map) {
  std::vector<std::uint32_t> order(map.left_out.size());
  for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
  std::ranges::stable_sort(order, [&map](std::uint32_t a, std::uint32_t b) {
    return map.left_out[a].size > map.left_out[b].size;
  });
  std::vector<MemoryMap::LeftOut> ordered;
  std::vector<std::uint32_t> places(order.size());
  for (const std::uint32_t from : order) {
    places[from] = static_cast<std::uint32_t>(ordered.size());
    ordered.push_back(std::move(map.left_out[from]));
  }
  map.left_out = std::move(ordered);
  for (MemoryMap::Symbol& symbol : map.symbols) {
    if (symbol.is_left_out) symbol.place = places[symbol.place];
  }
}

}  // namespace

void read_left_out_and_symbols(const FwOutMap& bound, const ElfList& elfs,
                               MemoryMap& map) {
  ElfReader reader(bound, map);
  for (const ElfListEntry& elf : elfs) {
    // The binding has read both.
    require_no_pipe(elf.memmap);
    require_no_pipe(elf.nm);
    reader.read(elf);
  }
  order_left_out(map);
  std::ranges::sort(map.symbols, [](const auto& a, const auto& b) {
    return a.size != b.size
               ? a.size > b.size
               : std::tie(a.address, a.name) < std::tie(b.address, b.name);
  });
}

}  // namespace tova_fw_builder
