// Lines of the flattened definitions.
#include "definitions/statement_block.h"

namespace tova_fw_builder {

std::string StatementLines::take() {
  // Not counted again: it has its number.
  if (!held_.empty()) return std::exchange(held_, {});
  ++number_;
  std::string line;
  std::getline(stream_, line);
  return line;
}

}  // namespace tova_fw_builder
