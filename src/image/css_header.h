// image/css_header.h
// Filling and logging the CSS header of a manifest of generation 1.5. What of
// the manifest is signed, and its hash: Kelp15FwManifest.
#pragma once

#include <cstdint>
#include <ctime>
#include <ostream>

#include "image/records/css_part.h"

namespace tova_fw_builder {

// The day of `now` in Coordinated Universal Time, as 0xYYYYMMDD in BCD. Throws
// std::runtime_error "Internal error: cannot get system time, errno : ", less
// its first errno characters.
std::uint32_t bcd_date(std::time_t now);

// The header of a new manifest of `manifest_length` bytes, a multiple of 4.
CssHeader fill_css_header(std::uint32_t manifest_length, bool debug,
                          std::uint32_t date);

// The log form, a line for each field, each with its newline. Leaves the stream
// in hexadecimal.
void print_css_header(std::ostream& out, const CssHeader& css);

}  // namespace tova_fw_builder
