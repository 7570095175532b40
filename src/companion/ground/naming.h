// companion/ground/naming.h
#pragma once

#include <string>

#include "companion/ground/trouble.h"

namespace tova_fw_builder {

// Runs `action` and yields what it yields. A std::runtime_error that it throws
// is thrown on as a FileError of `file`; one that has a file keeps it.
template <typename Action>
auto naming(const std::string& file, const Action& action) {
  try {
    return action();
  } catch (const FileError&) {
    throw;
  } catch (const std::runtime_error& error) {
    throw FileError({file, error.what()});
  }
}

}  // namespace tova_fw_builder
