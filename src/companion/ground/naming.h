// companion/ground/naming.h
#pragma once

#include <stdexcept>
#include <string>

namespace tova_fw_builder {

// Runs `action` and yields what it yields. A std::runtime_error that it throws
// is thrown on with "FILE: " ahead of its text, as report_trouble prints it.
template <typename Action>
auto naming(const std::string& file, const Action& action) {
  try {
    return action();
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(file + ": " + error.what());
  }
}

}  // namespace tova_fw_builder
