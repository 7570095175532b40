// input_map/section_table.h
// The section table of one ELF, as objdump -h prints it.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <string_view>

#include "input_map/fw_image_map.h"

namespace tova_fw_builder {

// Adds the sections of `table` to `map`, each with `elf` as its stream.
//
// All up to the first line whose first word is "Idx" is skipped. Behind it a
// section takes two lines:
//   index (decimal), name, size, VMA, LMA, file offset (all hexadecimal),
//     alignment as in 2**4;
//   flag words, each with at most one comma behind it: CONTENTS, ALLOC, LOAD,
//     READONLY, CODE, DATA. Others are ignored.
// A first line that has no number or no name is skipped; the second line is
// taken whatever it holds. A line of more than 1023 characters is cut there
// and ends the reading.
//
// The flag line may be the empty end of the text behind the last line feed. An
// entry line without a line feed at the very end is lost.
//
// Of sections that stand twice, in one table or several, the first is kept and
// a note logged; but if the later one is loadable, throws std::runtime_error
// "Duplicated section found: " and the name. Throws the error of
// parse_alignment too, also for a line with a column that is no number.
// Logs the table at level 3.
void read_section_table(FwImageMap& map, std::istream& table,
                        const std::shared_ptr<std::istream>& elf);

// The alignment of a text like 2**4: the first run of digits to the power of
// the second, in double precision, of which the low 32 bits are kept, and 0
// from 2^63 on. A run of more than 32 bits counts as FFFFFFFF. Throws
// std::runtime_error "Not recognizeg alignment specified" if there are not two.
std::uint32_t parse_alignment(std::string_view text);

}  // namespace tova_fw_builder
