// inspect/check/addon_roles.h
// Which modules of 1.5 stand in the main binary and which are addons with a
// file of their own: the manifest doesn't say it.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace tova_fw_builder {

struct RoleQuestion {
  bool is_loadable = false;
  std::optional<bool> is_addon;        // where it is known
  std::optional<std::uint64_t> place;  // its first file_off, from the lowest on
  std::uint64_t length = 0;            // of its contents
};

struct Roles {
  std::vector<bool> is_addon;  // of each question
  bool is_sure = false;
};

// The roles with which the modules of the main binary are `total` bytes long
// and every place is that which the builder counts. Of several answers the
// first one, and it isn't sure; without any, modules stand in the main binary
// as long as there is room.
Roles roles_of(const std::vector<RoleQuestion>& modules, std::uint64_t total);

}  // namespace tova_fw_builder
