# Writes the header OUTPUT with the moment of the build in UTC, in the forms
# "Mar  3 2021" and "11:00:43". The environment's SOURCE_DATE_EPOCH stands in
# for the clock, so that two builds of one commit can be equal byte for byte.
string(TIMESTAMP date "%b %d %Y" UTC)
string(TIMESTAMP time "%H:%M:%S" UTC)
string(REPLACE " 0" "  " date "${date}")
file(WRITE "${OUTPUT}"
"#pragma once

namespace tova_fw_builder {

inline constexpr char kBuildDate[] = \"${date}\";
inline constexpr char kBuildTime[] = \"${time}\";

}  // namespace tova_fw_builder
")
