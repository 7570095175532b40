// Header, module entries and configurations. The header doesn't tell how many
// configurations there are: their table is as long as the modules' counts sum
// up to, and each module's are found by its index.
#include "inspect/binary_tables.h"

#include <algorithm>
#include <sstream>

#include "companion/ground/printable.h"
#include "definitions/uuid/uuid.h"
#include "image/records/binary_header.h"
#include "inspect/decoders.h"
#include "inspect/record_fields.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

constexpr auto kHex = Field::Radix::kHex;
constexpr auto kLong = Field::Shown::kLong;
constexpr auto kBytes = Field::Shown::kBytes;

constexpr Column kModuleColumns[] = {
    {"name", "name"},
    {"uuid", "uuid"},
    {"kind", "type.value", true},
    {"text", "segments[0].len"},
    {"rodata", "segments[1].len"},
    {"bss", "segments[2].len"},
    {"entry", "ep"},
    {"configurations", "cfg_cnt"},
};

// Names are filled up with zeros; what stands behind the first one is unseen.
template <std::size_t N>
void check_filling(const std::array<char, N>& name, std::uint64_t offset,
                   Inspected& out) {
  const auto end = std::find(name.begin(), name.end(), '\0');
  if (std::any_of(end, name.end(), [](char c) { return c != '\0'; })) {
    add_problem(out, offset, "the name has bytes behind its end");
  }
}

void decode_header(const RecordFields<TovaFwBinaryHeader>& header,
                   Inspected& out) {
  const TovaFwBinaryHeader& record = *header;
  Field& to = out.root.add(object_field("header"));
  to.add(shown(header.text("header_id", record.header_id), kLong));
  to.add(shown(header.number("header_len", record.header_len), kLong));
  to.add(header.text("name", record.name));
  const std::uint64_t pages = record.preload_page_count;
  to.add(noted(header.number("preload_page_count", record.preload_page_count),
               std::to_string(pages * kPageSize) + " bytes"));
  to.add(header.number("fw_img_flags", record.fw_img_flags, kHex));
  to.add(header.number("feature_mask", record.feature_mask, kHex));
  to.add(shown(header.number("major_ver", record.major_ver), kLong));
  to.add(shown(header.number("minor_ver", record.minor_ver), kLong));
  to.add(shown(header.number("hotfix_ver", record.hotfix_ver), kLong));
  to.add(shown(header.number("build_ver", record.build_ver), kLong));
  to.add(shown(header.number("num_mods", record.num_mods), kLong));
  to.add(header.number("hw_buf_ba", record.hw_buf_ba, kHex));
  to.add(header.number("hw_buf_len", record.hw_buf_len));
  to.add(header.number("load_offset", record.load_offset, kHex));
  if (!header.is_whole()) {
    add_problem(out, out.length, "the file ends inside the binary header");
    return;
  }
  if (record.header_id != TovaFwBinaryHeader::kMark) {
    add_problem(out, header.offset(), "the mark $TM1 is missing");
  }
  if (record.header_len != sizeof(TovaFwBinaryHeader)) {
    add_problem(out, header.place(record.header_len),
                "header_len is " + std::to_string(record.header_len) +
                    ", not " + std::to_string(sizeof(TovaFwBinaryHeader)));
  }
  check_filling(record.name, header.place(record.name), out);
}

std::string segment_type_name(std::uint32_t type) {
  constexpr const char* kNames[] = {"text", "rodata", "bss"};
  if (type < std::size(kNames)) return kNames[type];
  return type == SegmentRecord::kUnused ? "unused" : "unknown";
}

std::string flag_names(std::uint32_t flags) {
  constexpr const char* kNames[] = {"contents", "alloc", "load",     "readonly",
                                    "code",     "data",  "on_demand"};
  std::string names;
  for (std::size_t bit = 0; bit < std::size(kNames); ++bit) {
    if ((flags >> bit & 1) == 0) continue;
    add_name(names, kNames[bit]);
  }
  return names;
}

void check_segment(const SegmentRecord& record, std::size_t slot,
                   std::uint64_t offset, Inspected& out) {
  if ((record.flags & 0xF080) != 0) {
    add_problem(out, offset, "reserved bits of a segment are set");
  }
  if (record.type() == SegmentRecord::kUnused) {
    if (record.flags != SegmentRecord().flags || record.vma != 0 ||
        record.file_off != 0) {
      add_problem(out, offset, "a segment that isn't in use has values");
    }
  } else if (record.type() != slot) {
    add_problem(out, offset + 1,
                "a segment of type " + std::to_string(record.type()) +
                    " stands in slot " + std::to_string(slot));
  }
}

Field decode_segment(const RecordFields<ModuleEntry>& entry, std::size_t slot,
                     Inspected& out) {
  const SegmentRecord& record = entry->segments[slot];
  const std::uint64_t offset = entry.place(record);
  const std::uint32_t flags = record.flags & 0xFF;
  const std::uint32_t pages = record.pages();
  Field segment = object_field("");
  segment.add(entry.at(text_field("type", segment_type_name(record.type())),
                       offset + 1, 1));
  segment.add(
      entry.derived(names_field("flags", flag_names(flags)), record.flags));
  segment.add(entry.at(number_field("flags_value", flags, kHex), offset, 1));
  segment.add(
      noted(entry.at(number_field("len", pages), offset + 2, 2),
            pages == 0
                ? ""
                : std::to_string(std::uint64_t{pages} * kPageSize) + " bytes"));
  segment.add(entry.number("vma", record.vma, kHex));
  segment.add(entry.number("file_off", record.file_off, kHex));
  if (entry.is_whole()) check_segment(record, slot, offset, out);
  return segment;
}

std::string kind_text(std::uint32_t type) {
  const std::uint32_t load = type & ModuleEntry::kLoadTypeMask;
  std::string text = load == FwOutMap::Module::kLoadable  ? "loadable"
                     : load == FwOutMap::Module::kBuiltIn ? "built in"
                                                          : "unknown";
  if ((type & ModuleEntry::kLibrary) != 0) text += ", library";
  if ((type & ModuleEntry::kAutoInit) != 0) text += ", started";
  return text;
}

Field decode_type(const RecordFields<ModuleEntry>& entry) {
  const std::uint32_t type = entry->type;
  Field field = object_field("type");
  field.add(noted(entry.number("value", entry->type, kHex), kind_text(type)));
  const auto add_bool = [&](std::string_view name, bool value) {
    field.add(entry.derived(bool_field(name, value), entry->type));
  };
  add_bool("loadable",
           (type & ModuleEntry::kLoadTypeMask) == FwOutMap::Module::kLoadable);
  add_bool("auto_init", (type & ModuleEntry::kAutoInit) != 0);
  add_bool("domain_ll", (type & ModuleEntry::kDomainLl) != 0);
  add_bool("domain_dp", (type & ModuleEntry::kDomainDp) != 0);
  add_bool("library", (type & ModuleEntry::kLibrary) != 0);
  add_bool("domain_rtos", (type & ModuleEntry::kDomainRtos) != 0);
  field.add(entry.derived(
      number_field("core_type", type >> ModuleEntry::kCoreTypeShift & 0xFF),
      entry->type));
  return field;
}

void check_entry(const RecordFields<ModuleEntry>& entry, Inspected& out) {
  if (entry->struct_id != ModuleEntry::kMark) {
    add_problem(out, entry.offset(),
                "the mark $TME of a module entry is missing");
  }
  check_filling(entry->name, entry.place(entry->name), out);
  const std::uint32_t type = entry->type;
  if (type >> (ModuleEntry::kCoreTypeShift + 8) != 0) {
    add_problem(out, entry.place(entry->type),
                "reserved bits of a module's type are set");
  }
  if ((type & ModuleEntry::kLoadTypeMask) > FwOutMap::Module::kLoadable) {
    add_problem(out, entry.place(entry->type),
                "a module is neither loadable nor built in");
  }
}

Field decode_module(const RecordFields<ModuleEntry>& entry, Inspected& out) {
  const ModuleEntry& record = *entry;
  Field module = object_field("");
  module.add(shown(entry.text("struct_id", record.struct_id), kBytes));
  module.add(entry.text("name", record.name));
  module.add(entry.at(text_field("uuid", Uuid(record.uuid).text()),
                      entry.place(record.uuid), record.uuid.size()));
  module.add(decode_type(entry));
  module.add(entry.hex("hash", record.hash));
  module.add(entry.number("ep", record.ep, kHex));
  module.add(entry.number("cfg_off", record.cfg_off));
  module.add(entry.number("cfg_cnt", record.cfg_cnt));
  module.add(entry.number("aff_mask", record.aff_mask, kHex));
  module.add(entry.number("inst_max_cnt", record.inst_max_cnt));
  module.add(entry.number("inst_stack_size", record.inst_stack_size));
  Field& segments = module.add(list_field("segments"));
  for (std::size_t slot = 0; slot < record.segments.size(); ++slot) {
    segments.add(decode_segment(entry, slot, out));
  }
  if (entry.is_whole()) check_entry(entry, out);
  return module;
}

Field decode_configuration(const RecordFields<ModuleConfig>& config) {
  Field field = object_field("");
  field.add(config.number("par_0", config->par_0));
  field.add(config.number("par_1", config->par_1));
  field.add(config.number("par_2", config->par_2));
  field.add(config.number("par_3", config->par_3));
  field.add(config.number("is_bytes", config->is_bytes));
  field.add(config.number("cps", config->cps));
  field.add(config.number("ibs", config->ibs));
  field.add(config.number("obs", config->obs));
  field.add(config.number("mod_flags", config->mod_flags, kHex));
  field.add(config.number("cpc", config->cpc));
  field.add(config.number("obls", config->obls));
  return field;
}

// What of the file the tables are looked for in.
std::uint64_t tables_end(std::uint64_t offset, const Inspected& out) {
  return std::min(out.length, offset + kTablesLimit);
}

// Whether an entry stands there. One whose mark is damaged has another one or
// the end of the table behind it; a count that is damaged leads elsewhere.
bool is_entry(const ByteSource& source, std::uint64_t offset, bool is_last) {
  const auto has_mark = [&source](std::uint64_t at) {
    return record_at<ModuleEntry>(source, at).struct_id == ModuleEntry::kMark;
  };
  return has_mark(offset) || is_last || has_mark(offset + sizeof(ModuleEntry));
}

std::uint64_t decode_modules(const ByteSource& source, std::uint64_t offset,
                             std::uint64_t count, std::uint64_t limit,
                             Inspected& out) {
  Field& modules = out.root.add(list_field("modules"));
  modules.columns = kModuleColumns;
  for (std::uint64_t i = 0; i < count; ++i) {
    const RecordFields<ModuleEntry> entry(source, offset);
    const bool fits = entry.end() <= limit;
    if (!fits || !is_entry(source, offset, i + 1 == count)) {
      add_problem(out, std::min(offset, out.length),
                  "only " + std::to_string(i) + " of " + std::to_string(count) +
                      " module entries can be shown");
      if (fits) return offset;
      // Of an entry that the file's end cuts, what is there.
      if (offset < limit && limit == out.length) {
        modules.add(decode_module(entry, out));
      }
      return limit;
    }
    modules.add(decode_module(entry, out));
    offset = entry.end();
  }
  return offset;
}

// Gives each module those that it points at; yields the end of the table.
std::uint64_t decode_configurations(const ByteSource& source,
                                    std::uint64_t offset, std::uint64_t limit,
                                    Inspected& out) {
  const std::uint64_t room =
      (limit - std::min(offset, limit)) / sizeof(ModuleConfig);
  std::uint64_t total = 0;
  for (Field& module : find(out.root, "modules")->members) {
    const std::uint64_t first = number_at(module, "cfg_off");
    const std::uint64_t count = number_at(module, "cfg_cnt");
    Field& list = module.add(list_field("configurations"));
    const bool in_order = count == 0 || first == (total & 0xFFFF);
    if (!in_order) {
      add_problem(out, find(module, "cfg_off")->offset,
                  "cfg_off is " + std::to_string(first) +
                      ", and the module's configurations stand at " +
                      std::to_string(total));
    }
    for (std::uint64_t i = total; i < std::min(total + count, room); ++i) {
      list.add(decode_configuration(RecordFields<ModuleConfig>(
          source, offset + i * sizeof(ModuleConfig))));
    }
    total += count;
  }
  if (total > room) {
    add_problem(out, std::min(offset, out.length),
                "only " + std::to_string(room) + " of " +
                    std::to_string(total) + " configurations can be shown");
    return limit;
  }
  return offset + total * sizeof(ModuleConfig);
}

}  // namespace

std::uint64_t decode_binary_tables(const ByteSource& source,
                                   std::uint64_t offset, Inspected& out) {
  const RecordFields<TovaFwBinaryHeader> header(source, offset);
  decode_header(header, out);
  const std::uint64_t limit = tables_end(offset, out);
  const std::uint64_t count = header.is_whole() ? header->num_mods : Le32(0);
  std::uint64_t end =
      decode_modules(source, std::min(header.end(), limit), count, limit, out);
  end = decode_configurations(source, end, limit, out);
  return decode_symbol_table(source, end, limit, out);
}

std::string image_name(const Field& root) {
  std::ostringstream text;
  const std::string_view name = text_at(root, "header.name");
  text << (name.empty() ? "without a name" : printable(name));
  char separator = ' ';
  for (const char* part : {"major", "minor", "hotfix", "build"}) {
    text << separator
         << number_at(root, "header." + std::string(part) + "_ver");
    separator = '.';
  }
  return text.str();
}

}  // namespace tova_fw_builder
