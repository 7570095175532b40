// companion/ground/trouble.h
#pragma once

#include <string_view>

namespace tova_fw_builder {

// Prints "tova_fw: FILE: TEXT" and a newline on the standard error, behind all
// that was written to the standard output before; "tova_fw: TEXT" if `file` is
// empty. Control characters in either are printed as '?': a file's name or
// content can't steer the terminal.
void report_trouble(std::string_view file, std::string_view text);

}  // namespace tova_fw_builder
