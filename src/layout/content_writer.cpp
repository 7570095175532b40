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
#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "layout/records/addon_file.h"
#include "layout/section_group.h"
#include "layout/section_replacement.h"

namespace tova_fw_builder {

namespace {

using Group = FwOutMap::SectionGroup;
using Header = FwImageMap::SectionHeader;

// The bytes of one group: written, hashed and counted.
struct GroupOutput {
  std::ostream& stream;
  Sha256Hash& hash;
  std::uint32_t written = 0;
};

void put_bytes(GroupOutput& out, std::span<const std::uint8_t> bytes) {
  out.hash.update(bytes.data(), bytes.size());
  write_bytes(out.stream, bytes);
  out.written += static_cast<std::uint32_t>(bytes.size());
}

// Piece by piece, as a gap may be longer than what the hash takes at once. Goes
// on when the stream has failed: an addon file that can't be written still has
// its hash in the image.
void put_zeros(GroupOutput& out, std::uint32_t count) {
  static constexpr std::array<std::uint8_t, 16 * 1024> kZeros{};
  const std::span<const std::uint8_t> zeros(kZeros);
  std::size_t left = count;
  for (; left > zeros.size(); left -= zeros.size()) put_bytes(out, zeros);
  put_bytes(out, zeros.first(left));
}

void log_group(const FwOutMap::Module& module, const Group& group) {
  log_info('\n', module.name, ' ', group_type_name(group.type),
           (group.flags & Group::kOnDemand) != 0 ? " (on_demand)" : "",
           "    LMA: ", std::hex, load_address(group),
           "    Pages: ", group_pages(group));
}

void log_table_head() {
  log_info("  ", std::left, std::setw(50), "NAME",
           "      SIZE   PRE-GAP       LMA       VMA  FILE OFF");
  log_info("  ", std::string(50, '-'),
           "  --------  --------  --------  --------  --------");
}

void log_row(const FwOutMap::Section& section, std::uint32_t pre_gap,
             std::ostream& stream) {
  const Header& header = *section.header;
  std::string name = section.name;
  if (section.replacement != nullptr) name += " < " + section.replacement->name;
  // The bytes are written by now: the section began its size ahead of here.
  log_info("  ", std::left, std::setw(50), name, std::right, std::hex, "  ",
           std::setw(8), header.size, "  ", std::setw(8), pre_gap, "  ",
           std::setw(8), header.lma, "  ", std::setw(8), header.vma, "  ",
           std::setw(8), position_of(stream) - header.size);
}

void log_total(std::uint32_t written, std::uint32_t pad) {
  log_info("  ", std::string(60, '-'),
           "  --------  --------  --------  --------");
  log_info("  ", std::left, std::setw(60), "Total", std::right, "  ", std::hex,
           std::setw(8), written, " (segment aligned by ", pad, ")\n");
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

// One run over the modules.
class ContentWriter {
 public:
  explicit ContentWriter(const FwOutMap& map) : binary_ver_(map.binary_ver) {}

  void write_module(FwOutMap::Module& module, std::ostream& stream) {
    if (module.load_type == FwOutMap::Module::kBuiltIn) {
      log_info("INFO: Skipping built-in module (sects inc in base_fw) ",
               module.name);
      return;
    }
    Sha256Hash hash;
    for (const auto& group : module.groups) {
      log_group(module, *group);
      write_group(module, *group, stream, hash);
    }
    hash.final(module.hash.data());
  }

 private:
  void write_group(const FwOutMap::Module& module, Group& group,
                   std::ostream& stream, Sha256Hash& hash) {
    log_table_head();
    if (module.module_kind == FwOutMap::Module::kAddon) {
      align_addon(group, stream);
    }
    // Behind the zeros for the distance, which are no part of the group.
    group.file_offset = position_of(stream);
    GroupOutput out{stream, hash};
    write_sections(group, out);
    // A group without contents takes no room, though it has pages in memory.
    const std::uint32_t pad =
        out.written != 0 ? group_pages(group) * kPageSize - out.written : 0;
    put_zeros(out, pad);
    log_total(out.written, pad);
  }

  // The zeros ahead of an addon module's group.
  void align_addon(const Group& group, std::ostream& stream) const {
    if (!keeps_addons_in_binary(binary_ver_) || previous_ == nullptr) return;
    const std::uint32_t pad = addon_pad(*previous_, group);
    if (pad == 0) return;
    log_detail("Section not aligned in file correctly");
    log_info("section group aligned by ", std::hex, pad);
    // Straight to the stream: neither hashed nor counted.
    write_zeros(stream, pad);
  }

  // A section without contents is passed over, and the gap ahead of it is then
  // made ahead of the next one: its own room is never made up for.
  void write_sections(const Group& group, GroupOutput& out) {
    std::uint32_t pre_gap = 0;
    for (std::size_t i = 0; i < group.sections.size(); ++i) {
      const FwOutMap::Section& section = *group.sections[i];
      if (section.header == nullptr || !section.header->contents) continue;
      const Header& header = *section.header;
      put_zeros(out, pre_gap);
      copy_section(choose_source(section), header.size, out);
      log_row(section, pre_gap, out.stream);
      if (i + 1 < group.sections.size()) {
        pre_gap =
            load_address(*group.sections[i + 1]) - header.lma - header.size;
      }
      // The placeholder, whoever took its room.
      previous_ = &header;
    }
  }

  std::uint32_t binary_ver_;
  // The section copied last, across groups, modules and files; null at first.
  const Header* previous_ = nullptr;
};

}  // namespace

std::uint32_t addon_pad(const FwImageMap::SectionHeader& previous,
                        const Group& group) {
  if (group.sections.empty()) return 0;
  const auto& first = group.sections.front()->header;
  if (first == nullptr || !first->contents) return 0;
  // Rounded down to the alignment as if that were a power of 2, as every
  // linker's is.
  const std::uint32_t distance = first->lma - previous.size - previous.lma;
  return distance & (0 - first->alignment);
}

void write_module_contents(FwOutMap& map, std::ostream& stream,
                           const std::string& path) {
  ContentWriter writer(map);
  for (const auto& module : map.modules) {
    // Asked at each module: a map without any has nothing to be refused.
    if (map.binary_ver != kKelp15 && !keeps_addons_in_binary(map.binary_ver)) {
      throw std::runtime_error("Not recignized manifest type");
    }
    if (!has_own_file(map, *module)) {
      writer.write_module(*module, stream);
      continue;
    }
    const std::string addon_path =
        path + addon_file_suffix(module->uuid.text());
    log_info("kELP1.5: Creating pkg addon module ", addon_path);
    std::ofstream addon = open_output(addon_path);
    writer.write_module(*module, addon);
  }
  map.image_end = position_of(stream);
}

}  // namespace tova_fw_builder
