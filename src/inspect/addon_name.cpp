#include "inspect/addon_name.h"

#include <algorithm>

#include "definitions/uuid/uuid.h"
#include "layout/records/addon_file.h"

namespace tova_fw_builder {

namespace {

// Of "_", a UUID and ".bin".
constexpr std::size_t kTail = 1 + Uuid::kTextLength + 4;

}  // namespace

std::string uuid_of_addon_file(std::string_view path) {
  if (path.size() < kTail) return "";
  std::string tail(path.substr(path.size() - kTail));
  std::ranges::transform(tail, tail.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  std::string uuid = tail.substr(1, Uuid::kTextLength);
  return tail == addon_file_suffix(uuid) ? uuid : "";
}

}  // namespace tova_fw_builder
