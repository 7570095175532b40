// The extended manifest. Its modules carry the number of the `type` statement,
// not the type word of the loader's table.
#include "image/records/extended_manifest.h"

#include "driver/ground/log.h"
#include "driver/ground/wire.h"
#include "image/image.h"

namespace tova_fw_builder {

namespace {

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
  log_info("Create extended manifest");
  // The heading tells the length of all, so it is summed up ahead.
  std::uint32_t length = sizeof(ExtendedManifestHeader);
  for (const auto& module : map.modules) length += entry_length(*module);
  ExtendedManifestHeader header;
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
