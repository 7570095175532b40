// companion/printed_output.h
#pragma once

#include <iostream>
#include <string>

#include "companion/ground/output_file.h"
#include "companion/ground/standard_output.h"

namespace tova_fw_builder {

// As write_output, of what print(stream) prints: in a memory that doesn't grow
// with it.
template <typename Print>
void print_output(const std::string& name, const Print& print) {
  if (names_standard_output(name)) {
    print(std::cout);
    return;
  }
  OutputFile file(name);
  print(file.stream());
  file.commit();
}

}  // namespace tova_fw_builder
