// companion/ground/standard_output.h
#pragma once

namespace tova_fw_builder {

// Flushes the standard output. Reports the trouble and yields false if
// anything written to it was lost.
bool finish_standard_output();

}  // namespace tova_fw_builder
