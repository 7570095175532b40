// image/extended_manifest.h
// The extended manifest: the modules' scheduling capabilities and stream pins.
#pragma once

#include <ostream>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Logs and writes a 16-byte header and, for each module in order, a 40-byte
// record, its SchedCaps and its Pin records. Counts keep their low 16 bits.
void write_extended_manifest(const FwOutMap& map, std::ostream& stream);

}  // namespace tova_fw_builder
