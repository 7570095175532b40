// driver/ground/version.h
#pragma once

#include <cstdint>
#include <ostream>

namespace tova_fw_builder {

// A version number of four parts, as in 1.2.3.4.
struct Version {
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint16_t hotfix = 0;
  std::uint16_t build = 0;
};

// With dots, in the base of the stream.
inline std::ostream& operator<<(std::ostream& out, const Version& version) {
  return out << version.major << '.' << version.minor << '.' << version.hotfix
             << '.' << version.build;
}

}  // namespace tova_fw_builder
