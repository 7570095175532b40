#include "companion/ground/standard_output.h"

#include <cstdio>
#include <iostream>

#include "companion/ground/system_files.h"
#include "companion/ground/trouble.h"

namespace tova_fw_builder {

bool names_standard_output(const std::string& name) {
  return name == "-" || name == "/dev/stdout";
}

// By the C stream: of that one the buffer can be taken away.
void print_private(std::string_view bytes) {
  std::cout.flush();
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size()) {
    std::cout.setstate(std::ios_base::badbit);
  }
}

bool finish_standard_output() {
  if (std::cout.flush()) return true;
  if (!standard_output_is_unread()) {
    report_trouble("standard output", "cannot be written");
  }
  return false;
}

}  // namespace tova_fw_builder
