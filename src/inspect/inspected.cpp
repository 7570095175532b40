#include "inspect/inspected.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "layout/records/out_map.h"

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

constexpr std::size_t kMostProblems = 1000;

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

bool is_known(const Inspected& inspected) {
  if (inspected.format != Format::kEmbedded || inspected.length == 0) {
    return true;
  }
  // What modules are made of has whole pages.
  return inspected.length % kPageSize == 0 ||
         find(inspected.root, "embedded[0]") != nullptr;
}

void add_problem(Inspected& inspected, std::uint64_t offset, std::string text) {
  if (inspected.problems.size() < kMostProblems) {
    inspected.problems.push_back({offset, std::move(text)});
  }
}

}  // namespace tova_fw_builder
