#include "layout/records/addon_file.h"

#include <algorithm>

namespace tova_fw_builder {

namespace {

constexpr std::string_view kExtension = ".bin";
constexpr std::size_t kUuidLength = 36;

}  // namespace

std::string addon_file_suffix(std::string_view uuid) {
  return std::string("_").append(uuid).append(kExtension);
}

std::string uuid_of_addon_file(std::string_view path) {
  constexpr std::size_t kTail = 1 + kUuidLength + kExtension.size();
  if (path.size() < kTail) return "";
  std::string tail(path.substr(path.size() - kTail));
  std::ranges::transform(tail, tail.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  std::string uuid = tail.substr(1, kUuidLength);
  return tail == addon_file_suffix(uuid) ? uuid : "";
}

}  // namespace tova_fw_builder
