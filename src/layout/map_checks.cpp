// Consistency checks. The one that a reader would take for an error is only a
// note: uninitialised sections in between others do no harm but cost pages.
#include <set>
#include <stdexcept>

#include "driver/ground/log.h"
#include "layout/passes.h"
#include "layout/records/addon_file.h"
#include "layout/section_group.h"

namespace tova_fw_builder {

namespace {

using Group = FwOutMap::SectionGroup;

bool is_alloc_only(const Group& group) {
  constexpr std::uint32_t kOthers = Group::kContents | Group::kLoad |
                                    Group::kReadonly | Group::kCode |
                                    Group::kData;
  return (group.flags & (Group::kAlloc | kOthers)) == Group::kAlloc;
}

// `last_other` is the last group in the order of the definitions, wherever it
// lies in memory; the note follows what engineers wrote.
void note_alloc_only(const FwOutMap& map) {
  const Group* last_other = nullptr;
  const Group* first_alloc = nullptr;
  for (const auto& module : map.modules) {
    for (const auto& group : module->groups) {
      if (!is_alloc_only(*group)) {
        last_other = group.get();
      } else if (first_alloc == nullptr ||
                 load_address(*group) < load_address(*first_alloc)) {
        first_alloc = group.get();
      }
    }
  }
  if (last_other == nullptr || first_alloc == nullptr) return;
  if (load_address(*last_other) <= load_address(*first_alloc)) return;
  log_info("Alloc-only section is placed in between other sections \n",
           std::hex, "firts alloc-only section base address     : ",
           load_address(*first_alloc), '\n',
           "last non-alloc-only section base address  : ",
           load_address(*last_other), '\n');
}

}  // namespace

void check_sizes(const FwOutMap& map, const FwImageMap& image_map) {
  // Without a `max_data` statement the warning shows all ones.
  if (map.max_data != 0) {
    log_warning("allowing ", map.max_data, "b data section!\n");
  }
  image_map.check_section_size(".data", map.max_data);
  // One of exactly this name marks memory that must stay free, whatever is
  // allowed for others.
  image_map.check_section_size(".guard", 0);
  image_map.check_suffix_size(".guard", map.max_data);
}

void check_alloc_only(const FwOutMap& map) {
  if (!keeps_addons_in_binary(map.binary_ver)) return;
  note_alloc_only(map);
  check_uuid_tails(map);
}

void check_uuid_tails(const FwOutMap& map) {
  std::set<UuidNode> seen;
  for (const auto& module : map.modules) {
    if (!seen.insert(module->uuid.node()).second) {
      throw std::runtime_error("UUID last 6 bytes is not unique for module " +
                               module->name);
    }
  }
}

}  // namespace tova_fw_builder
