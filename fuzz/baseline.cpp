// Any bytes as the baseline of a memory map: what is read differs from itself
// in nothing, and from an empty map by what it has; changes stand in order and
// turn their signs when the maps change places.
#include "memory_map/baseline.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "harness.h"
#include "memory_map/map_page.h"

namespace {

using tova_fw_builder::SizeChange;

void check(bool holds) {
  if (!holds) std::abort();
}

void check_turned(const std::vector<SizeChange>& there,
                  const std::vector<SizeChange>& back) {
  check(there.size() == back.size());
  std::int64_t sum = 0;
  for (const SizeChange& row : there) {
    check(row.change() != 0);
    sum += row.change();
  }
  for (const SizeChange& row : back) sum += row.change();
  check(sum == 0);
  check(std::ranges::is_partitioned(
      there, [](const SizeChange& row) { return row.change() > 0; }));
}

}  // namespace

void fuzz_one(const std::string& input) {
  const std::vector<std::string> files = cut(input, 2);
  std::istringstream old_file(files[0]);
  std::istringstream new_file(files[1].empty() ? files[0] : files[1]);
  const auto before = tova_fw_builder::read_sizes(old_file);
  const auto after = tova_fw_builder::read_sizes(new_file);
  const auto there = compare_sizes(before, after);
  const auto back = compare_sizes(after, before);
  check_turned(there.classes, back.classes);
  check_turned(there.modules, back.modules);
  check_turned(there.parts, back.parts);
  if (files[1].empty()) check(there.parts.empty() && there.classes.empty());
  std::ostringstream page;
  tova_fw_builder::print_map_page(
      page, {tova_fw_builder::MemoryMap(), {}, &there, files[0]});
  check(page.view().find('\0') == std::string::npos);
}
