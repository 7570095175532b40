// The extended manifest. Its modules carry the number of the `type` statement,
// not the type word of the loader's table.
#include "image/extended_manifest.h"

#include <array>
#include <cstdint>

#include "driver/ground/wire.h"

namespace tova_fw_builder {

namespace {

struct ExtendedHeader {
  std::array<char, 4> id{'$', 'T', 'E', '1'};
  Le32 length;  // of the whole extended manifest, in bytes
  Le32 version = 1;
  Le32 modules;
};
static_assert(sizeof(ExtendedHeader) == 16 && alignof(ExtendedHeader) == 1);

struct ExtendedModule {
  Le32 length;  // with the records behind it, in bytes
  std::array<std::uint8_t, 16> uuid{};
  Le16 version_major;
  Le16 version_minor;
  Le16 version_hotfix;
  Le16 version_build;
  Le32 type;
  Le32 reserved_32;
  Le16 sched_caps;  // records of FwOutMap::SchedCaps that follow
  Le16 pins;        // records of FwOutMap::Pin behind those
};
static_assert(sizeof(ExtendedModule) == 40 && alignof(ExtendedModule) == 1);

std::uint32_t entry_length(const FwOutMap::Module& module) {
  return static_cast<std::uint32_t>(sizeof(ExtendedModule) +
                                    sizeof(FwOutMap::SchedCaps) *
                                        module.sched_caps.size() +
                                    sizeof(FwOutMap::Pin) * module.pins.size());
}

ExtendedModule make_extended_module(const FwOutMap::Module& module) {
  ExtendedModule record;
  record.length = entry_length(module);
  record.uuid = module.uuid.bytes();
  record.version_major = module.version.major;
  record.version_minor = module.version.minor;
  record.version_hotfix = module.version.hotfix;
  record.version_build = module.version.build;
  record.type = static_cast<std::uint32_t>(module.type);
  record.sched_caps = static_cast<std::uint16_t>(module.sched_caps.size());
  record.pins = static_cast<std::uint16_t>(module.pins.size());
  return record;
}

}  // namespace

void write_extended_manifest(const FwOutMap& map, std::ostream& stream) {
  std::uint32_t length = sizeof(ExtendedHeader);
  for (const auto& module : map.modules) length += entry_length(*module);
  ExtendedHeader header;
  header.length = length;
  header.modules = static_cast<std::uint32_t>(map.modules.size());
  write_record(stream, header);
  for (const auto& module : map.modules) {
    write_record(stream, make_extended_module(*module));
    for (const auto& caps : module->sched_caps) write_record(stream, caps);
    for (const auto& pin : module->pins) write_record(stream, pin);
  }
}

}  // namespace tova_fw_builder
