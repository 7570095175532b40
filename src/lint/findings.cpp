#include "lint/findings.h"

namespace tova_fw_builder {

std::string quoted(std::string_view word) {
  constexpr std::size_t kLongest = 60;
  std::string text = "'";
  text.append(word.substr(0, kLongest));
  return text.append(word.size() > kLongest ? "...'" : "'");
}

}  // namespace tova_fw_builder
