// companion/ground/standard_output.h
#pragma once

namespace tova_fw_builder {

// To be called first in main. Behind it a reader that went away is a write
// error and no signal, and a standard stream that the caller closed fails:
// no file that is opened later can take its place.
void prepare_standard_streams();

// Flushes the standard output. Reports the trouble and yields false if
// anything written to it was lost.
bool finish_standard_output();

bool standard_output_is_terminal();

}  // namespace tova_fw_builder
