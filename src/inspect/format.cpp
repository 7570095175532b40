// The names are public: --as takes them, and JSON tells them.
#include "inspect/format.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace tova_fw_builder {
namespace {

// In the order of Format.
constexpr std::string_view kNames[] = {"binary",
                                       "manifest-1.5",
                                       "metadata",
                                       "extended-manifest",
                                       "package-descriptor",
                                       "key-pair",
                                       "public-key",
                                       "embedded"};

}  // namespace

std::span<const std::string_view> format_names() { return kNames; }

std::string_view format_name(Format format) {
  return kNames[static_cast<std::size_t>(format)];
}

std::optional<Format> format_named(std::string_view name) {
  const auto found = std::find(std::begin(kNames), std::end(kNames), name);
  if (found == std::end(kNames)) return std::nullopt;
  return static_cast<Format>(found - std::begin(kNames));
}

}  // namespace tova_fw_builder
