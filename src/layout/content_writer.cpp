// The content writer. Nothing is planned ahead: each section goes where the
// stream stands, behind the zeros that its load address asks for. All sizes and
// gaps are 32-bit numbers that wrap: load addresses that overlap make a gap of
// nearly 4 GiB, which costs time and disk but no memory.
#include "layout/content_writer.h"

#include <array>
#include <fstream>
#include <iomanip>
#include <span>
#include <stdexcept>

#include "crypto/sha_hash.h"
#include "driver/files.h"
#include "driver/log.h"
#include "layout/group_binding.h"

namespace tova_fw_builder {

namespace {

using Group = FwOutMap::SectionGroup;
using Header = FwImageMap::SectionHeader;

// The section copied last, across groups, modules and files.
struct PreviousSection {
  std::uint32_t lma = 0;
  std::uint32_t size = 0;
  bool valid = false;
};

// The bytes of one group: written, hashed and counted.
struct GroupOutput {
  std::ostream& stream;
  Sha256Hash& hash;
  std::uint32_t written = 0;
};

void put_bytes(GroupOutput& out, std::span<const std::uint8_t> bytes) {
  out.hash.update(bytes.data(), bytes.size());
  out.stream.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
  out.written += static_cast<std::uint32_t>(bytes.size());
}

// Goes on when the stream has failed: an addon file that can't be written
// still has its hash in the image.
void put_zeros(GroupOutput& out, std::uint32_t count) {
  static constexpr std::array<std::uint8_t, 16 * 1024> kZeros{};
  const std::span<const std::uint8_t> zeros(kZeros);
  std::size_t left = count;
  for (; left > zeros.size(); left -= zeros.size()) put_bytes(out, zeros);
  put_bytes(out, zeros.first(left));
}

std::uint64_t position_of(std::ostream& stream) {
  return static_cast<std::uint64_t>(std::streamoff{stream.tellp()});
}

void log_group(const FwOutMap::Module& module, const Group& group) {
  if (log_level() < kLogInfo) return;
  LogLine(kLogInfo).stream()
      << '\n'
      << module.name << ' ' << group_type_name(group.type)
      << ((group.flags & Group::kOnDemand) != 0 ? " (on_demand)" : "")
      << "    LMA: " << std::hex << load_address(group)
      << "    Pages: " << group_pages(group);
}

void log_table_head() {
  if (log_level() < kLogInfo) return;
  LogLine(kLogInfo).stream()
      << "  " << std::left << std::setw(50) << "NAME"
      << "      SIZE   PRE-GAP       LMA       VMA  FILE OFF";
  LogLine(kLogInfo).stream()
      << "  " << std::string(50, '-')
      << "  --------  --------  --------  --------  --------";
}

void log_row(const FwOutMap::Section& section, std::uint32_t pre_gap,
             std::ostream& stream) {
  if (log_level() < kLogInfo) return;
  const Header& header = *section.header;
  std::string name = section.name;
  if (section.replacement != nullptr) name += " < " + section.replacement->name;
  LogLine(kLogInfo).stream()
      << "  " << std::left << std::setw(50) << name << std::right << std::hex
      << "  " << std::setw(8) << header.size << "  " << std::setw(8) << pre_gap
      << "  " << std::setw(8) << header.lma << "  " << std::setw(8)
      << header.vma << "  " << std::setw(8)
      << position_of(stream) - header.size;
}

void log_total(std::uint32_t written, std::uint32_t pad) {
  if (log_level() < kLogInfo) return;
  LogLine(kLogInfo).stream() << "  " << std::string(60, '-')
                             << "  --------  --------  --------  --------";
  LogLine(kLogInfo).stream()
      << "  " << std::left << std::setw(60) << "Total" << std::right << "  "
      << std::hex << std::setw(8) << written << " (segment aligned by " << pad
      << ")\n";
}

// The zeros ahead of an addon module's group.
void align_group(const Group& group, std::uint32_t binary_ver,
                 std::uint32_t module_kind, const PreviousSection& previous,
                 std::ostream& stream) {
  if (!keeps_addons_in_binary(binary_ver)) return;
  if (module_kind != 1 || !previous.valid) return;
  if (group.sections.empty()) return;
  const auto& first = group.sections.front()->header;
  if (first == nullptr || !first->contents) return;
  const std::uint32_t distance = first->lma - previous.size - previous.lma;
  const std::uint32_t pad = distance & (0 - first->alignment);
  if (pad == 0) return;
  if (log_level() >= kLogDetail) {
    LogLine(kLogDetail).stream() << "Section not aligned in file correctly";
  }
  if (log_level() >= kLogInfo) {
    LogLine(kLogInfo).stream()
        << "section group aligned by " << std::hex << pad;
  }
  write_zeros(stream, pad);
}

// The header whose bytes take the section's room.
const Header& choose_source(const FwOutMap::Section& section) {
  if (section.replacement == nullptr) return *section.header;
  const auto& replacement = section.replacement->header;
  if (replacement == nullptr) {
    throw std::runtime_error("Section replacement header " +
                             section.replacement->name + " not found");
  }
  if (replacement->size > section.header->size) {
    throw std::runtime_error(
        "Replacement section too large to fit into the placeholder");
  }
  return *replacement;
}

// Fills `room` bytes: what the source has, then zeros.
void copy_section(const Header& source, std::uint32_t room, GroupOutput& out) {
  std::istream& in = *source.stream;
  in.clear();  // the section before may have met the end of the file
  in.seekg(source.file_offset);
  read_in_pieces(in, source.size, [&](std::span<const std::uint8_t> bytes) {
    put_bytes(out, bytes);
    room -= static_cast<std::uint32_t>(bytes.size());
  });
  put_zeros(out, room);
}

// A section without contents is passed over, and the gap ahead of it is then
// made ahead of the next one: its own room is never made up for.
void write_sections(const Group& group, GroupOutput& out,
                    PreviousSection& previous) {
  std::uint32_t pre_gap = 0;
  for (std::size_t i = 0; i < group.sections.size(); ++i) {
    const FwOutMap::Section& section = *group.sections[i];
    if (section.header == nullptr || !section.header->contents) continue;
    const Header& header = *section.header;
    put_zeros(out, pre_gap);
    copy_section(choose_source(section), header.size, out);
    log_row(section, pre_gap, out.stream);
    if (i + 1 < group.sections.size()) {
      pre_gap = load_address(*group.sections[i + 1]) - header.lma - header.size;
    }
    previous = {header.lma, header.size, true};
  }
}

void write_group(Group& group, std::uint32_t binary_ver,
                 std::uint32_t module_kind, std::ostream& stream,
                 Sha256Hash& hash, PreviousSection& previous) {
  log_table_head();
  align_group(group, binary_ver, module_kind, previous, stream);
  group.file_offset = position_of(stream);
  GroupOutput out{stream, hash};
  write_sections(group, out, previous);
  const std::uint32_t pad =
      out.written != 0 ? group_pages(group) * kPageSize - out.written : 0;
  put_zeros(out, pad);
  log_total(out.written, pad);
}

void write_module(FwOutMap::Module& module, std::uint32_t binary_ver,
                  std::ostream& stream, PreviousSection& previous) {
  if (module.load_type == 0) {
    if (log_level() >= kLogInfo) {
      LogLine(kLogInfo).stream()
          << "INFO: Skipping built-in module (sects inc in base_fw) "
          << module.name;
    }
    return;
  }
  Sha256Hash hash;
  for (const auto& group : module.groups) {
    log_group(module, *group);
    write_group(*group, binary_ver, module.module_kind, stream, hash, previous);
  }
  hash.final(module.hash.data());
}

bool has_own_file(const FwOutMap::Module& module, std::uint32_t binary_ver) {
  constexpr std::uint32_t kKindBit = 2;
  return binary_ver == kKelp15 && (module.module_kind & ~kKindBit) != 0;
}

}  // namespace

void write_module_contents(FwOutMap& map, std::ostream& stream,
                           const std::string& path) {
  PreviousSection previous;
  for (const auto& module : map.modules) {
    if (map.binary_ver != kKelp15 && !keeps_addons_in_binary(map.binary_ver)) {
      throw std::runtime_error("Not recignized manifest type");
    }
    if (!has_own_file(*module, map.binary_ver)) {
      write_module(*module, map.binary_ver, stream, previous);
      continue;
    }
    const std::string addon_path = path + addon_file_suffix(*module);
    if (log_level() >= kLogInfo) {
      LogLine(kLogInfo).stream()
          << "kELP1.5: Creating pkg addon module " << addon_path;
    }
    std::ofstream addon(addon_path, std::ios_base::binary);
    write_module(*module, map.binary_ver, addon, previous);
  }
  map.image_end = position_of(stream);
}

std::string addon_file_suffix(const FwOutMap::Module& module) {
  return "_" + module.uuid.text() + ".bin";
}

}  // namespace tova_fw_builder
