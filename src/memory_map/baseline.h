// memory_map/baseline.h
// What grew since an earlier build.
#pragma once

#include <compare>
#include <cstdint>
#include <istream>
#include <map>
#include <string>
#include <vector>

#include "memory_map/memory_map.h"

namespace tova_fw_builder {

// The largest symbols are listed and compared, and no more than these: a map
// has to stay readable in a memory that doesn't grow with the firmware.
inline constexpr std::size_t kMaxListedSymbols = 100'000;

// The sizes in one map, from wherever it comes. Sizes of one name add up.
struct MapSizes {
  struct Part {
    std::string section;
    std::string symbol;  // empty for the section
    auto operator<=>(const Part&) const = default;
  };
  struct Size {
    std::string owner;
    std::uint64_t bytes = 0;
  };
  std::map<std::string, std::uint64_t> classes;
  std::map<std::string, std::uint64_t> modules;
  std::map<Part, Size> parts;
  std::uint64_t unlisted_below = 0;  // symbols up to this size may be missing
};

MapSizes sizes_of(const MemoryMap& map);

// Reads what map --json has written. Throws std::runtime_error "is no memory
// map (tova_fw map --json makes one)".
MapSizes read_sizes(std::istream& json);

struct SizeChange {
  std::string name;
  std::string section;  // of a symbol, else empty
  std::string owner;
  std::uint64_t before = 0;
  std::uint64_t after = 0;

  std::int64_t change() const {
    return static_cast<std::int64_t>(after - before);
  }
};

// Each what grew most first, then what shrank most; nothing that stayed.
struct MapChanges {
  std::vector<SizeChange> classes;
  std::vector<SizeChange> modules;
  // Symbols, and sections by those of their bytes that no symbol has.
  std::vector<SizeChange> parts;
};

MapChanges compare_sizes(const MapSizes& before, const MapSizes& after);

}  // namespace tova_fw_builder
