// The extended manifest. Each module's record tells its own length.
#include "image/records/extended_manifest.h"

#include <algorithm>

#include "companion/ground/message_text.h"
#include "definitions/uuid/uuid.h"
#include "inspect/decoders.h"
#include "inspect/record_fields.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

constexpr auto kHex = Field::Radix::kHex;
constexpr auto kBytes = Field::Shown::kBytes;

constexpr Column kModuleColumns[] = {
    {"uuid", "uuid"},        {"version", "version"},
    {"type", "type"},        {"capabilities", "counts.sched_caps"},
    {"pins", "counts.pins"},
};

std::string version_text(const ExtendedModule& module) {
  return std::to_string(module.version_major) + '.' +
         std::to_string(module.version_minor) + '.' +
         std::to_string(module.version_hotfix) + '.' +
         std::to_string(module.version_build);
}

Field decode_capability(const RecordFields<FwOutMap::SchedCaps>& caps) {
  Field field = object_field("");
  field.add(caps.number("sched_first", caps->sched_first));
  field.add(caps.number("sched_flags", caps->sched_flags, kHex));
  return field;
}

Field decode_pin(const RecordFields<FwOutMap::Pin>& pin) {
  Field field = object_field("");
  field.add(pin.number("pin_flag", pin->pin_flag));
  field.add(pin.reserved("reserved_2", pin->reserved_2));
  field.add(pin.number("stream_type", pin->stream_type));
  field.add(pin.number("sample_rates", pin->sample_rates, kHex));
  field.add(pin.number("sample_sizes", pin->sample_sizes, kHex));
  field.add(pin.reserved("reserved_14", pin->reserved_14));
  field.add(pin.number("sample_containers", pin->sample_containers, kHex));
  field.add(pin.number("channel_cfg", pin->channel_cfg, kHex));
  return field;
}

// The four numbers of the version are one field of 8 bytes.
Field decode_heading(const RecordFields<ExtendedModule>& module) {
  const ExtendedModule& record = *module;
  Field field = object_field("");
  field.add(shown(module.number("length", record.length), kBytes));
  field.add(module.at(text_field("uuid", Uuid(record.uuid).text()),
                      module.place(record.uuid), record.uuid.size()));
  field.add(module.at(text_field("version", version_text(record)),
                      module.place(record.version_major), 8));
  field.add(module.number("type", record.type));
  field.add(module.reserved("reserved_32", record.reserved_32));
  Field counts = object_field("counts", kBytes);
  counts.add(module.number("sched_caps", record.sched_caps));
  counts.add(module.number("pins", record.pins));
  field.add(std::move(counts));
  return field;
}

// Adds a module; yields the end of its records.
std::uint64_t decode_module(const ByteSource& source, std::uint64_t offset,
                            std::uint64_t limit, Field& modules,
                            Inspected& out) {
  const RecordFields<ExtendedModule> module(source, offset);
  Field field = decode_heading(module);
  std::uint64_t at = module.end();
  Field capabilities = list_field("capabilities");
  Field pins = list_field("pins");
  if (module.is_whole()) {
    for (unsigned i = 0; i < module->sched_caps && at < limit; ++i) {
      const RecordFields<FwOutMap::SchedCaps> caps(source, at);
      capabilities.add(decode_capability(caps));
      at = caps.end();
    }
    for (unsigned i = 0; i < module->pins && at < limit; ++i) {
      const RecordFields<FwOutMap::Pin> pin(source, at);
      pins.add(decode_pin(pin));
      at = pin.end();
    }
    const std::uint64_t records =
        sizeof(ExtendedModule) +
        module->sched_caps * sizeof(FwOutMap::SchedCaps) +
        module->pins * sizeof(FwOutMap::Pin);
    if (module->length != records) {
      add_problem(out, offset,
                  "a module's length is " + std::to_string(module->length) +
                      ", and its records have " + counted(records, "byte"));
    }
  }
  field.add(std::move(capabilities));
  field.add(std::move(pins));
  modules.add(std::move(field));
  return at;
}

void check_heading(const RecordFields<ExtendedManifestHeader>& header,
                   Inspected& out) {
  if (header->id != ExtendedManifestHeader::kMark) {
    add_problem(out, 0, "the mark $TE1 is missing");
  }
  if (header->length != out.length) {
    add_problem(out, header.place(header->length),
                "the file has " + counted(out.length, "byte") +
                    ", and its heading tells " +
                    std::to_string(header->length));
  }
  if (header->version != ExtendedManifestHeader().version) {
    add_problem(out, header.place(header->version),
                "the format's version is " + std::to_string(header->version) +
                    ", not 1");
  }
}

// What stands behind the modules that were decoded, which end at `at`; of
// `count`, the heading's, those within `limit` were.
void check_end(std::uint64_t at, std::uint64_t count, std::uint64_t limit,
               Inspected& out) {
  const std::size_t decoded = find(out.root, "modules")->members.size();
  if (decoded < count && limit < out.length) {
    add_problem(out, std::min(at, out.length),
                "only " + std::to_string(decoded) + " of " +
                    std::to_string(count) +
                    " modules can be shown: tova_fw reads no more than " +
                    std::to_string(limit) + " bytes of records");
    Field rest = shown(text_field("contents", ""), kBytes);
    rest.kind = Field::Kind::kContents;
    at = std::min(at, out.length);
    out.root.add(placed(std::move(rest), at, out.length - at));
  } else if (at > out.length || decoded < count) {
    add_problem(out, std::min(at, out.length),
                "the file ends ahead of its last record");
  } else if (at < out.length) {
    add_problem(out, at,
                counted(out.length - at, "byte") + " behind the last module");
  }
}

}  // namespace

void decode_extended_manifest(const ByteSource& source, Inspected& out) {
  const RecordFields<ExtendedManifestHeader> header(source, 0);
  Field heading = object_field("heading", kBytes);
  heading.add(header.text("id", header->id));
  heading.add(header.number("length", header->length));
  heading.add(header.number("version", header->version));
  heading.add(header.number("modules", header->modules));
  out.root.add(std::move(heading));
  if (header.is_whole()) check_heading(header, out);

  const std::uint64_t limit = std::min(out.length, kTablesLimit);
  const std::uint32_t count = header.is_whole() ? header->modules : Le32(0);
  Field& modules = out.root.add(list_field("modules"));
  modules.columns = kModuleColumns;
  std::uint64_t at = header.end();
  while (modules.members.size() < count && at < limit) {
    at = decode_module(source, at, limit, modules, out);
  }
  out.title = "extended manifest of " + counted(count, "module");
  check_end(at, count, limit, out);
}

}  // namespace tova_fw_builder
