// image/records/extended_manifest.h
// The extended manifest: one header, then for each module its record, its
// SchedCaps and its Pin records of layout/records/out_map.h.
#pragma once

#include <array>
#include <cstdint>

#include "driver/ground/wire.h"

namespace tova_fw_builder {

// 16 bytes.
struct ExtendedManifestHeader {
  static constexpr std::array<char, 4> kMark{'$', 'T', 'E', '1'};

  std::array<char, 4> id = kMark;
  Le32 length;  // of the whole extended manifest, in bytes
  Le32 version = 1;
  Le32 modules;
};
static_assert(sizeof(ExtendedManifestHeader) == 16 &&
              alignof(ExtendedManifestHeader) == 1);

// 40 bytes.
struct ExtendedModule {
  Le32 length;  // with the records behind it, in bytes
  std::array<std::uint8_t, 16> uuid{};
  Le16 version_major;
  Le16 version_minor;
  Le16 version_hotfix;
  Le16 version_build;
  Le32 type;  // the number of the `type` statement
  Le32 reserved_32;
  Le16 sched_caps;  // records of SchedCaps that follow
  Le16 pins;        // records of Pin behind those
};
static_assert(sizeof(ExtendedModule) == 40 && alignof(ExtendedModule) == 1);

}  // namespace tova_fw_builder
