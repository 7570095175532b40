#include "image/css_header.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// Seconds as `date -u +%s` gives them.
TEST(CssHeader, DateInBcd) {
  EXPECT_EQ(0x20270109u, bcd_date(1799452800));
  EXPECT_EQ(0x20261115u, bcd_date(1794787199));
  EXPECT_EQ(0x19991231u, bcd_date(946684799));
}

// The number of the error, EOVERFLOW, is larger than the text is long.
TEST(CssHeader, TextOfAFailedConversionIsEatenUp) {
  EXPECT_EQ("", message_of(
                    [] { bcd_date(std::numeric_limits<std::time_t>::max()); }));
}

TEST(CssHeader, Log) {
  std::ostringstream out;
  print_css_header(out, fill_css_header(8192, true, 0x20261115));
  EXPECT_EQ(
      "  CSS Header\n"
      "    module_type 6\n"
      "    mod_vendor  7a5c\n"
      "    header_len  a1   (dwords)\n"
      "    header_ver  00010000\n"
      "    module_id   80000000\n"
      "    date        20261115\n"
      "    size        800   (dwords)\n"
      "    key_size    40   (dwords)\n"
      "    mod_size    40   (dwords)\n"
      "    exp_size    1   (dwords)\n",
      out.str());
}

}  // namespace
}  // namespace tova_fw_builder
