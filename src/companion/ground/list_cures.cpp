#include "companion/ground/list_cures.h"

#include "companion/ground/input_file.h"
#include "driver/ground/files.h"
#include "driver/ground/line_fields.h"

namespace tova_fw_builder {

std::string its_file(std::string_view path) {
  return std::string("its file ").append(path.empty() ? "''" : path);
}

ListedPath find_listed_path(const std::string& list, std::string_view path) {
  if (!is_file(list)) return {};
  const auto in = try_open_input(list);
  for (std::string line; std::getline(*in, line);) {
    LineFields words(line);
    if (words.word() == path) return {true, !words.word().empty()};
  }
  return {};
}

}  // namespace tova_fw_builder
