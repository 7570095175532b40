// tests/inspect/inspected_sample.h
#pragma once

#include <optional>
#include <string>

#include "inspect/inspect.h"
#include "inspect/sample_files.h"

namespace tova_fw_builder {

// Bytes taken apart, all of them read.
inline Inspected inspect_bytes(const std::string& bytes,
                               std::optional<Format> as = {}) {
  return inspect(ByteSource::of(bytes), as, Depth::kWhole);
}

}  // namespace tova_fw_builder
