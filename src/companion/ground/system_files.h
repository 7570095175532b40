// companion/ground/system_files.h
// What the standard library can't ask of the system. A source for each kind of
// system holds the functions.
#pragma once

#include <string>

namespace tova_fw_builder {

// Makes an empty file beside `path` that nobody else may read, and yields its
// name; empty, with the reason in errno, if it can't.
std::string create_beside(const std::string& path);

// Gives `file` the rights of `path`, or those that a new file gets. False, with
// the reason in errno, if it can't.
bool give_usual_rights(const std::string& file, const std::string& path);

bool standard_output_is_terminal();

}  // namespace tova_fw_builder
