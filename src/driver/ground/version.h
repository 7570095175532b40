// driver/ground/version.h
#pragma once

#include <cstdint>

namespace tova_fw_builder {

// A version number of four parts, as in 1.2.3.4.
struct Version {
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint16_t hotfix = 0;
  std::uint16_t build = 0;
};

}  // namespace tova_fw_builder
