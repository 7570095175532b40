// One module as the loader's table lists it. A module's name is cut to the
// room that it has here, whereas the image's name in the binary header is
// dropped when it is too long.
#include <algorithm>
#include <iomanip>
#include <stdexcept>
#include <string_view>

#include "definitions/uuid/uuid.h"
#include "driver/ground/byte_dump.h"
#include "image/binary_header.h"

namespace tova_fw_builder {

namespace {

using Group = FwOutMap::SectionGroup;

constexpr std::uint32_t kStored = Group::kContents | Group::kLoad;

std::uint32_t type_word(const FwOutMap::Module& module) {
  std::uint32_t word = module.load_type & ModuleEntry::kLoadTypeMask;
  if (module.auto_init) word |= ModuleEntry::kAutoInit;
  if (module.domain_ll) word |= ModuleEntry::kDomainLl;
  if (module.domain_dp) word |= ModuleEntry::kDomainDp;
  if (module.module_kind == FwOutMap::Module::kLibrary)
    word |= ModuleEntry::kLibrary;
  if (module.domain_rtos) word |= ModuleEntry::kDomainRtos;
  // The definition doesn't bound the number; the bits above must stay zero.
  return word | (module.core_type & 0xFF) << ModuleEntry::kCoreTypeShift;
}

SegmentRecord make_segment(const Group& group, bool built_in,
                           std::uint32_t file_base) {
  SegmentRecord segment;
  segment.flags = group.flags;
  // The first section is that of the lowest load address.
  segment.vma = group.sections.front()->header->vma;
  // A built-in module lies in pages of another one, so it may start anywhere.
  if (!built_in && segment.vma % kPageSize != 0) {
    throw std::runtime_error("Non-aligned base address of section");
  }
  if ((group.flags & kStored) == kStored) {
    segment.file_off =
        static_cast<std::uint32_t>(group.file_offset) + file_base;
    if (segment.file_off % kPageSize != 0) {
      throw std::runtime_error("Non-aligned address of section");
    }
  }
  return segment;
}

void print_segment(std::ostream& out, const SegmentRecord& segment) {
  out << "    seg " << std::setw(4) << segment.type();
  if (segment.type() != SegmentRecord::kUnused) {
    out << "   flags " << std::setw(4) << (segment.flags & 0xFF);
    out << "   vma " << std::setw(8) << segment.vma;
    out << "   file_off " << std::setw(8) << segment.file_off;
    out << "   len " << std::setw(8) << segment.pages();
  }
  out << '\n';
}

}  // namespace

ModuleEntry make_module_entry(const FwOutMap::Module& module,
                              std::uint32_t file_base) {
  ModuleEntry entry;
  module.name.copy(entry.name.data(), entry.name.size());
  entry.uuid = module.uuid.bytes();
  entry.aff_mask = module.affinity_mask;
  entry.type = type_word(module);
  // Nobody writes the contents of a built-in module, so there is no hash.
  if (module.load_type == FwOutMap::Module::kLoadable) entry.hash = module.hash;
  entry.ep = module.entry_point;
  entry.cfg_cnt = static_cast<std::uint16_t>(module.mod_cfg.size());
  // Without one there is no place to tell, whatever others have.
  if (!module.mod_cfg.empty()) {
    entry.cfg_off = static_cast<std::uint16_t>(module.cfg_offset);
  }
  entry.inst_max_cnt = static_cast<std::uint16_t>(module.instance_count);
  // Of the base firmware module_connection has put pages in its place.
  entry.inst_stack_size = static_cast<std::uint16_t>(module.stack_size);
  // Of two groups of one type the later one takes the slot.
  for (const auto& group : module.groups) {
    entry.segments[group->type] = make_segment(
        *group, module.load_type == FwOutMap::Module::kBuiltIn, file_base);
  }
  return entry;
}

void print_module_entry(std::ostream& out, const ModuleEntry& entry) {
  const auto bit = [&entry](std::uint32_t mask) {
    return (entry.type & mask) != 0 ? 1 : 0;
  };
  const auto name_end = std::find(entry.name.begin(), entry.name.end(), '\0');
  out << "  " << std::string_view(entry.struct_id.data(), 4) << ' '
      << std::string_view(entry.name.begin(), name_end) << " uuid "
      << Uuid(entry.uuid).text() << std::hex;
  out << " type " << entry.type << " aff_mask " << entry.aff_mask;
  out << " ep " << entry.ep;
  out << " cfg_off " << entry.cfg_off << " cfg_cnt " << entry.cfg_cnt;
  out << " inst_max_cnt " << entry.inst_max_cnt;
  out << " domain_ll " << bit(ModuleEntry::kDomainLl);
  out << " domain_dp " << bit(ModuleEntry::kDomainDp);
  out << " domain_rtos " << bit(ModuleEntry::kDomainRtos);
  out << " core_type " << (entry.type >> ModuleEntry::kCoreTypeShift);
  out << " inst_stack_size " << entry.inst_stack_size << '\n';
  for (const SegmentRecord& segment : entry.segments) {
    print_segment(out, segment);
  }
  out << ByteDump{.data = entry.hash.data(),
                  .length = entry.hash.size(),
                  .label = "      hash",
                  .indent = "        "};
}

}  // namespace tova_fw_builder
