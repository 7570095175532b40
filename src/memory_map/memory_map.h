// memory_map/memory_map.h
// Where the memory of an image goes, by run addresses. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include "memory_map/address_coverage.h"

namespace tova_fw_builder {

// What owns memory that belongs to no module.
inline constexpr char kDynMemOwner[] = "dyn_mem";
inline constexpr char kHardwareBuffer[] = "hw_buf";

struct MemoryMap {
  struct Image {
    std::string name;
    std::string generation;   // "1.8"; empty if the definition has none
    std::string version;      // of the base firmware; empty without one
    std::uint64_t pages = 0;  // of contents, in all files of the image
  };

  // A section that a group or a dyn_mem statement names. The owner is the
  // module; of a section that stands in a built-in module and in the one that
  // carries its bytes, the built-in one.
  struct Section {
    std::string name;
    std::string owner;
    std::uint32_t address = 0;
    std::uint32_t size = 0;
  };

  struct Class {
    std::string name;
    std::uint32_t base = 0;
    std::uint64_t size = 0;
    std::uint64_t used = 0;    // addresses that a section covers
    std::uint64_t hw_buf = 0;  // those of the hardware buffer that none covers
    std::vector<std::uint32_t> sections;  // that lie in it, in part at least

    std::uint64_t free() const { return size - used; }
  };

  struct Module {
    std::string name;
    std::string uuid;
    bool built_in = false;  // its sections stand in another module, too
    std::uint64_t text = 0;
    std::uint64_t rodata = 0;
    std::uint64_t bss = 0;
    std::uint64_t gaps = 0;     // between the sections of a group
    std::uint64_t padding = 0;  // behind them, to the end of the page
    std::uint64_t pages = 0;    // of all groups
    // If the sections of each group lay one behind another.
    std::uint64_t packed_pages = 0;

    std::uint64_t total() const { return text + rodata + bss + gaps + padding; }
  };

  // What a group takes in the image: whole pages, by load addresses.
  struct Group {
    std::string module;
    const char* kind = "";  // "text", "rodata", "bss"
    std::uint32_t address = 0;
    std::uint64_t pages = 0;
    std::vector<AddressSpan> unused;  // gaps and padding, in order
  };

  // A section that takes room in memory and belongs to nothing.
  struct LeftOut {
    std::string section;
    std::string elf;
    std::uint32_t address = 0;
    std::uint32_t size = 0;
  };

  struct Outside {
    std::uint32_t section = 0;
    std::uint64_t bytes = 0;  // of it that lie in no class
  };

  // Run addresses that two share, one of which may be the hardware buffer.
  struct Overlap {
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    std::uint64_t address = 0;
    std::uint64_t size = 0;
  };
  static constexpr std::uint32_t kIsHardwareBuffer = 0xFFFFFFFF;

  // It reaches to the next symbol in its section, or to the section's end. Of
  // those at one address the last by name has the bytes.
  struct Symbol {
    std::string_view name;    // in `texts`
    std::uint32_t place = 0;  // in `sections` or `left_out`
    bool is_left_out = false;
    std::uint32_t address = 0;
    std::uint32_t size = 0;
  };

  Image image;
  Section hw_buf;                        // size 0 without one
  std::vector<Class> classes;            // in the order of the definition
  std::vector<Module> modules;           // likewise
  std::vector<Group> groups;             // with contents, as they are written
  std::vector<Section> sections;         // by address
  std::vector<LeftOut> left_out;         // largest first
  std::vector<Outside> outside_classes;  // by address
  std::vector<Overlap> overlaps;         // by address of the later one
  bool has_more_overlaps = false;        // than were kept
  std::vector<Symbol> symbols;           // largest first
  std::unique_ptr<std::pmr::monotonic_buffer_resource> texts =
      std::make_unique<std::pmr::monotonic_buffer_resource>();
};

// The section of that number, or the hardware buffer.
const MemoryMap::Section& section_at(const MemoryMap& map,
                                     std::uint32_t number);

inline AddressSpan span_of(const MemoryMap::Section& section) {
  return span_of(section.address, section.size);
}

// The section of a symbol, and its owner: empty for one that is left out.
const std::string& section_of(const MemoryMap& map,
                              const MemoryMap::Symbol& symbol);
std::string_view owner_of(const MemoryMap& map,
                          const MemoryMap::Symbol& symbol);

}  // namespace tova_fw_builder
