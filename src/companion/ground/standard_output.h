// companion/ground/standard_output.h
#pragma once

#include <string>
#include <string_view>

namespace tova_fw_builder {

// Whether an output of that name is the standard output: "-", "/dev/stdout".
bool names_standard_output(const std::string& name);

// Writes bytes to the standard output that leave no copy in memory, behind all
// that was written before. What was lost is for finish_standard_output to tell.
void print_private(std::string_view bytes);

// Flushes the standard output. Reports the trouble and yields false if
// anything written to it was lost; without a word where it is a pipe that
// nobody reads any more, as behind `| head`.
bool finish_standard_output();

}  // namespace tova_fw_builder
