#include "companion/ground/trouble.h"

#include <iostream>
#include <string>

namespace tova_fw_builder {

void report_trouble(std::string_view file, std::string_view text) {
  std::string line = "tova_fw: ";
  if (!file.empty()) line.append(file).append(": ");
  line.append(text);
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  std::cout.flush();
  std::cerr << line << std::endl;
}

}  // namespace tova_fw_builder
