// tests/memory_map/measured.h
// Measures firmware that a test writes down in a few words.
#pragma once

#include <string>
#include <vector>

#include "memory_map/map_json.h"

namespace tova_fw_builder {

struct Elf {
  // Of each section the words name, size, VMA, LMA and kind: text, rodata, bss
  // or debug; ";" behind each. Numbers are hexadecimal.
  std::string sections;
  std::string symbols = {};  // lines as nm prints them
};

// The map of a definition, whose head is "binary_ver 1.8", and the ELFs 0.elf,
// 1.elf and so on.
MemoryMap measure(const std::string& definition, const std::vector<Elf>& elfs,
                  const std::string& head = "binary_ver 1.8\n");

// A module of one group "text" with these sections, the first one its entry.
std::string text_module(const std::string& name,
                        const std::vector<std::string>& sections);

// What map --json prints.
std::string json_of(const MemoryMap& map,
                    const std::vector<BudgetResult>& budgets = {},
                    const MapChanges* changes = nullptr,
                    const std::string& baseline = "");

}  // namespace tova_fw_builder
