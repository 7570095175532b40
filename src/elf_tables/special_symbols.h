// elf_tables/special_symbols.h
// What processors put into symbol tables beside symbols.
#pragma once

#include <gelf.h>

#include <cstdint>
#include <string_view>

namespace tova_fw_builder {

// Whether the symbol stands for no thing of the program, such as the marks for
// code and data among the instructions: nm doesn't show those.
bool is_special(std::uint16_t machine, std::string_view name);

// The address of a symbol as nm prints it: without the lowest bit of a function
// in short instructions, which is no part of it, and of MIPS with 32 bits as
// the number with a sign that this processor takes it for.
std::uint64_t shown_address(const GElf_Ehdr& elf, int type,
                            std::uint64_t address);

}  // namespace tova_fw_builder
