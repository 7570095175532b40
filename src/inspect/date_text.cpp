// The digits of a date in BCD stand in the order of year, month, day.
#include "inspect/date_text.h"

#include <chrono>

namespace tova_fw_builder {

std::string date_text(std::uint32_t bcd) {
  constexpr const char* kMonths[] = {
      "January", "February", "March",     "April",   "May",      "June",
      "July",    "August",   "September", "October", "November", "December"};
  unsigned decimal = 0;
  for (int shift = 28; shift >= 0; shift -= 4) {
    const unsigned digit = bcd >> shift & 0xF;
    if (digit > 9) return {};
    decimal = decimal * 10 + digit;
  }
  const unsigned year = decimal / 10000;
  const unsigned month = decimal / 100 % 100;
  const unsigned day = decimal % 100;
  const std::chrono::year_month_day date{
      std::chrono::year(static_cast<int>(year)), std::chrono::month(month),
      std::chrono::day(day)};
  if (!date.ok()) return {};
  return std::to_string(day) + ' ' + kMonths[month - 1] + ' ' +
         std::to_string(year);
}

}  // namespace tova_fw_builder
