#include "elf_tables/elf_tables.h"

#include "elf_tables/elf_file.h"

namespace tova_fw_builder {

bool can_read_elfs() { return true; }

ElfTables::ElfTables(const std::string& path)
    : file_(std::make_unique<ElfFile>(path)) {}

ElfTables::~ElfTables() = default;

}  // namespace tova_fw_builder
