#include "companion/ground/standard_output.h"

#include <iostream>

#include "companion/ground/system_files.h"
#include "companion/ground/trouble.h"

namespace tova_fw_builder {

bool finish_standard_output() {
  if (std::cout.flush()) return true;
  report_trouble("standard output", "cannot be written");
  return false;
}

}  // namespace tova_fw_builder
