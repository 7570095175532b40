// The builder counts a module's places from the end of what stands ahead of it,
// but behind each module it goes on by the whole main binary if that is base
// firmware by its `type`, else by the module's own length, and it counts the
// place in the main binary on top. Neither the type nor the role stands in the
// manifest: all ways are followed as long as the places agree with them.
#include "inspect/check/addon_roles.h"

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

namespace tova_fw_builder {
namespace {

constexpr std::size_t kMostModules = 64;  // a manifest has room for no more
constexpr std::size_t kMostWays = 256;

struct Way {
  std::uint64_t base = 0;      // that places count from
  std::uint64_t position = 0;  // in the main binary
  std::vector<bool> is_addon;

  bool operator<(const Way& other) const {
    return std::tie(base, position, is_addon) <
           std::tie(other.base, other.position, other.is_addon);
  }
};

// The ways behind one more module.
std::set<Way> follow(const std::set<Way>& ways, const RoleQuestion& module,
                     std::uint64_t total) {
  std::set<Way> next;
  for (const Way& way : ways) {
    for (const bool is_addon : {false, true}) {
      if (module.is_addon.value_or(is_addon) != is_addon) continue;
      if (!module.is_loadable && is_addon) continue;
      const std::uint64_t position = is_addon ? 0 : way.position;
      if (module.place && *module.place != way.base + position) continue;
      Way longer = way;
      longer.is_addon.push_back(is_addon);
      if (!is_addon) longer.position += module.length;
      for (const std::uint64_t step : {module.length, total}) {
        Way one = longer;
        one.base += step;
        next.insert(std::move(one));
      }
    }
  }
  return next;
}

Roles fill_up(const std::vector<RoleQuestion>& modules, std::uint64_t total) {
  Roles roles;
  std::uint64_t left = total;
  for (const RoleQuestion& module : modules) {
    const bool is_addon = module.is_addon.value_or(module.length > left);
    if (!is_addon) left -= std::min(left, module.length);
    roles.is_addon.push_back(is_addon);
  }
  // Where all roles are known, nothing depends on the places.
  roles.is_sure = std::ranges::all_of(modules, [](const RoleQuestion& module) {
    return !module.is_loadable || module.is_addon;
  });
  return roles;
}

}  // namespace

Roles roles_of(const std::vector<RoleQuestion>& modules, std::uint64_t total) {
  Roles filled = fill_up(modules, total);
  if (filled.is_sure || modules.size() > kMostModules) return filled;
  std::set<Way> ways = {{}};
  for (const RoleQuestion& module : modules) {
    ways = follow(ways, module, total);
    if (ways.size() > kMostWays) return filled;
  }
  std::set<std::vector<bool>> answers;
  for (const Way& way : ways) {
    if (way.position == total) answers.insert(way.is_addon);
  }
  if (answers.empty()) return filled;
  return {*answers.begin(), answers.size() == 1};
}

}  // namespace tova_fw_builder
