#include "companion/ground/list_cures.h"

#include <filesystem>
#include <system_error>

#include "driver/ground/files.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/paths.h"

namespace tova_fw_builder {

ListedPath find_listed_path(const std::string& list, std::string_view path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(native_path(list), error)) return {};
  const auto in = try_open_input(list);
  for (std::string line; std::getline(*in, line);) {
    LineFields words(line);
    if (words.word() == path) return {true, !words.word().empty()};
  }
  return {};
}

}  // namespace tova_fw_builder
