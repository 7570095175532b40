// inspect/date_text.h
#pragma once

#include <cstdint>
#include <string>

namespace tova_fw_builder {

// The day of a date in BCD: 0x20261121 is "21 November 2026". Empty for what is
// no day of the calendar.
std::string date_text(std::uint32_t bcd);

}  // namespace tova_fw_builder
