// input_map/section_table.h
// The section table of one ELF, as objdump -h prints it.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <string_view>

#include "input_map/fw_image_map.h"

namespace tova_fw_builder {

// Adds the sections of `table` (docs/file-formats.md, "Section table") to
// `map`, with `elf` as their stream, and logs the table at level 3.
//
// Of a name that stands twice, in one table or several, the first section is
// kept and a note logged; but if the later one is loadable, throws
// std::runtime_error "Duplicated section found: " and the name. Throws the
// error of parse_alignment, too, for any column that is no number.
void read_section_table(FwImageMap& map, std::istream& table,
                        const std::shared_ptr<std::istream>& elf);

// The alignment of a text like 2**4: the first run of digits to the power of
// the second, in double precision; its low 32 bits, and 0 from 2^63 on. A run
// of more than 32 bits is FFFFFFFF. Throws std::runtime_error "Not recognizeg
// alignment specified" if there are not two.
std::uint32_t parse_alignment(std::string_view text);

}  // namespace tova_fw_builder
