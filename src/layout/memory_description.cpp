// The memory description. Virtual and load addresses go through the same
// steps, so an address kind is a member of the section header here.
#include "layout/memory_description.h"

#include <algorithm>
#include <fstream>
#include <iomanip>
#include <stdexcept>
#include <vector>

#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "driver/ground/paths.h"

namespace tova_fw_builder {

namespace {

using Section = FwOutMap::Section;
using MemoryClass = FwOutMap::MemoryClass;
using Address = std::uint32_t FwImageMap::SectionHeader::*;

constexpr Address kVma = &FwImageMap::SectionHeader::vma;
constexpr Address kLma = &FwImageMap::SectionHeader::lma;

enum class Direction { kHighest, kLowest };

const Section* find(const FwOutMap& map, const MemoryClass& area,
                    Address address, Direction direction) {
  const auto key_of = [address](const auto& section) {
    return (*section->header).*address;
  };
  const auto lies_inside = [&](const auto& section) {
    return key_of(section) >= area.base && key_of(section) < area.end;
  };
  const auto best_of = [&](const auto& sections) {  // the first one of equals
    return direction == Direction::kHighest
               ? std::ranges::max_element(sections, {}, key_of)
               : std::ranges::min_element(sections, {}, key_of);
  };
  std::vector<const Section*> found;
  for (const auto& module : map.modules) {
    for (const auto& group : module->groups) {
      const auto best = best_of(group->sections);
      if (best != group->sections.end() && lies_inside(*best)) {
        found.push_back(best->get());
      }
    }
  }
  for (const auto& section : map.dyn_mem) {
    if (!found.empty() || lies_inside(section)) found.push_back(section.get());
  }
  const auto best = best_of(found);
  return best == found.end() ? nullptr : *best;
}

// What a class holds, by one kind of address.
struct Usage {
  std::uint32_t top = 0;  // end of the highest section, in whole pages
  std::uint32_t size = 0;
  std::uint32_t offset = 0;
};

std::uint32_t rounded_top(const Section* highest, Address address) {
  if (highest == nullptr) return 0;
  const FwImageMap::SectionHeader& header = *highest->header;
  // Wraps to 0, "empty", for a section that ends with the 4 GiB.
  return (header.*address + header.size + (kPageSize - 1)) & ~(kPageSize - 1);
}

// Logs the top with `label`, unless it is 0.
Usage measure(const FwOutMap& map, const MemoryClass& area, Address address,
              const char* label) {
  Usage usage;
  usage.top =
      rounded_top(find(map, area, address, Direction::kHighest), address);
  if (usage.top == 0) return usage;
  log_info(label, "0x", std::hex, std::setw(8), std::setfill('0'), usage.top);
  const Section* lowest = find(map, area, address, Direction::kLowest);
  const std::uint32_t low = lowest == nullptr ? 0 : (*lowest->header).*address;
  const std::string fault =
      "Highest address " + std::to_string(usage.top) + " is lower than ";
  // Also of groups that straddle the class: each may count at one end alone.
  if (usage.top < low) {
    throw std::runtime_error(fault + "lowest " + std::to_string(low) +
                             " address found");
  }
  if (usage.top < area.base) {
    throw std::runtime_error(fault + "memory class " + area.name +
                             " base address");
  }
  usage.size = usage.top - low;
  usage.offset = usage.top - area.base;
  return usage;
}

void write_class(std::ostream& out, const MemoryClass& area,
                 const Usage& usage) {
  constexpr std::uint32_t kLow24Bits = 0xFFFFFF;
  out << std::hex << std::showbase << "<memory_class name=\"" << area.name
      << "\">\n<size>" << (usage.size & kLow24Bits) << "</size>\n<offset>"
      << (usage.offset & kLow24Bits) << "</offset>\n</memory_class>\n";
}

}  // namespace

const Section* highest_by_vma(const FwOutMap& map, const MemoryClass& area) {
  return find(map, area, kVma, Direction::kHighest);
}

const Section* highest_by_lma(const FwOutMap& map, const MemoryClass& area) {
  return find(map, area, kLma, Direction::kHighest);
}

const Section* lowest_by_vma(const FwOutMap& map, const MemoryClass& area) {
  return find(map, area, kVma, Direction::kLowest);
}

const Section* lowest_by_lma(const FwOutMap& map, const MemoryClass& area) {
  return find(map, area, kLma, Direction::kLowest);
}

void write_memory_description(const FwOutMap& map, const std::string& out_dir,
                              const std::string& binary_name) {
  std::fstream out =
      open_output_to_read(join_path(out_dir, binary_name + ".xml"));
  log_info("Create memory description file:");
  out << "<memory_footprint elf_name=\"" << binary_name << "\">\n";
  for (const MemoryClass& area : map.memory_classes) {
    log_info(" memory_class name : ", area.name);
    const Usage by_vma = measure(map, area, kVma, "  VMA_highest_address: ");
    const Usage by_lma = measure(map, area, kLma, "  LMA_highest_address: ");
    if (by_vma.top == 0 && by_lma.top == 0) log_info("  empty");
    // Load addresses speak only for a class in which no run address counts.
    if (by_vma.offset != 0) {
      write_class(out, area, by_vma);
    } else if (by_lma.offset != 0) {
      write_class(out, area, by_lma);
    }
  }
  out << "</memory_footprint>\n";
}

}  // namespace tova_fw_builder
