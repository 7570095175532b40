// The checks of layout/content_writer and of the records that are made of it,
// in the builder's order, since the first failure is the one that it tells.
#include "lint/refusal_by_writing.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <stdexcept>

#include "companion/ground/message_text.h"
#include "crypto/zel_error.h"
#include "image/binary_header.h"
#include "image/records/binary_header.h"
#include "image/records/css_part.h"
#include "layout/memory_description.h"
#include "layout/section_replacement.h"
#include "lint/findings.h"
#include "lint/writing.h"

namespace tova_fw_builder {

namespace {

using Group = FwOutMap::SectionGroup;
using Module = FwOutMap::Module;
using Section = FwOutMap::Section;
using Header = FwImageMap::SectionHeader;
using Refusal = std::optional<WritingRefusal>;

Refusal refusal_of_source(const Section& section) {
  try {
    choose_source(section);
    return std::nullopt;
  } catch (const std::runtime_error& error) {
    const auto& source = section.replacement->header;
    const std::string sizes =
        !source ? ""
                : "it has " + counted(source->size, "byte") +
                      " for a room of " + std::to_string(section.header->size);
    return WritingRefusal{error.what(), sizes, &section};
  }
}

Refusal refusal_of_contents(const FwOutMap& map) {
  for (const auto& module : map.modules) {
    if (module->load_type == Module::kBuiltIn) continue;
    for (const auto& group : module->groups) {
      for (const auto& section : group->sections) {
        if (!section->header || !section->header->contents) continue;
        if (auto refusal = refusal_of_source(*section)) return *refusal;
      }
    }
  }
  return std::nullopt;
}

WritingRefusal off_grid(const char* text, const WrittenGroup& group) {
  const Section& first = *group.group->sections.front();
  return {
      text,
      in_quotes(first.name) + " comes first in its group and is aligned to " +
          counted(first.header->alignment, "byte") + ", so that " +
          counted(group.pad, "byte") + " stand ahead of it: align it to 4096",
      &first};
}

Refusal refusal_of_entries(const Writing& writing) {
  constexpr std::uint32_t kStored = Group::kContents | Group::kLoad;
  const WrittenGroup* moved = nullptr;
  for (const WrittenGroup& written : writing.groups) {
    const Section& first = *written.group->sections.front();
    if (first.header->vma % kPageSize != 0) {
      return WritingRefusal{
          "Non-aligned base address of section",
          in_quotes(first.name) + " comes first in its group and lies at " +
              hex_number(first.header->vma) + ", not at a multiple of 4096",
          &first};
    }
    if (written.pad % kPageSize != 0) moved = &written;
    if ((written.group->flags & kStored) == kStored &&
        written.offset % kPageSize != 0) {
      return off_grid("Non-aligned address of section",
                      moved ? *moved : written);
    }
  }
  return std::nullopt;
}

Refusal refusal_of_header(const FwOutMap& map, const Writing& writing) {
  if (map.modules.empty()) {
    return WritingRefusal{"preload page count cannot be computed - no modules",
                          "", nullptr};
  }
  if (writing.end % kPageSize != 0) {
    for (const WrittenGroup& group : writing.groups) {
      if (group.pad % kPageSize == 0) continue;
      return off_grid("preload size not aligned to page size", group);
    }
  }
  return refusal_of_entries(writing);
}

Refusal refusal_of_manifest(const FwOutMap& map) {
  const std::uint64_t length = sizeof(CssPart) + manifest_size(map);
  if (map.binary_ver != kKelp15 || length < 2 * kPageSize) return std::nullopt;
  return WritingRefusal{
      "Manifest is bigger than MAX of 8kB",
      "modules and configurations take " + std::to_string(length), nullptr};
}

bool is_taken_by_hash(std::uint64_t length) {
  return (length & 0x80000000) == 0;
}

// The digest over the image of 1.8 and 2.5 takes no message of 2 to 4 GiB. The
// signer's room isn't a part of it, and ends at the header: what only some
// rooms make too long is taken.
Refusal refusal_of_digest(const FwOutMap& map, const Writing& writing) {
  const bool is_18 = map.binary_ver == kKelp18;
  if (!is_18 && map.binary_ver != kKelp25) return std::nullopt;
  if (is_taken_by_hash(writing.end) ||
      is_taken_by_hash(writing.end - kSignedHeaderOffset)) {
    return std::nullopt;
  }
  const auto widest =
      std::ranges::max_element(writing.gaps, {}, &WrittenGap::zeros);
  const ZelError error(zelStsLengthErr,
                       is_18 ? "zelsSHA256Update" : "zelsSHA384Update");
  return WritingRefusal{
      error.what(), "the image would have " + counted(writing.end, "byte"),
      widest == writing.gaps.end() ? nullptr : widest->section};
}

Refusal refusal_of_class(const FwOutMap::MemoryClass& area,
                         const Section* highest, const Section* lowest,
                         std::uint32_t Header::*address) {
  if (highest == nullptr) return std::nullopt;
  const Header& last = *highest->header;
  const std::uint32_t top =
      (last.*address + last.size + (kPageSize - 1)) & ~(kPageSize - 1);
  if (top == 0) return std::nullopt;
  const std::uint32_t low = lowest ? (*lowest->header).*address : 0;
  const std::string fault =
      "Highest address " + std::to_string(top) + " is lower than ";
  if (top < low) {
    return WritingRefusal{
        fault + "lowest " + std::to_string(low) + " address found",
        "those of memory class " + in_quotes(area.name), &area};
  }
  if (top >= area.base) return std::nullopt;
  return WritingRefusal{fault + "memory class " + area.name + " base address",
                        "", &area};
}

Refusal refusal_of_description(const FwOutMap& map) {
  for (const FwOutMap::MemoryClass& area : map.memory_classes) {
    if (auto refusal =
            refusal_of_class(area, highest_by_vma(map, area),
                             lowest_by_vma(map, area), &Header::vma)) {
      return refusal;
    }
    if (auto refusal =
            refusal_of_class(area, highest_by_lma(map, area),
                             lowest_by_lma(map, area), &Header::lma)) {
      return refusal;
    }
  }
  return std::nullopt;
}

}  // namespace

WritingRefusal refusal_of_writing(const FwOutMap& bound) {
  if (bound.binary_ver == 0) {
    return {"Unrecognized binary version", "the definition has no binary_ver",
            nullptr};
  }
  Writing writing = plan_writing(bound);
  // In 3.0 the header comes first, with all offsets 0.
  if (bound.binary_ver == kKelp30) {
    for (WrittenGroup& group : writing.groups) group.offset = 0;
    writing.end = 0;
    if (auto refusal = refusal_of_header(bound, writing)) return *refusal;
    if (auto refusal = refusal_of_contents(bound)) return *refusal;
  } else {
    if (auto refusal = refusal_of_contents(bound)) return *refusal;
    if (auto refusal = refusal_of_manifest(bound)) return *refusal;
    if (auto refusal = refusal_of_header(bound, writing)) return *refusal;
    if (auto refusal = refusal_of_digest(bound, writing)) return *refusal;
  }
  if (auto refusal = refusal_of_description(bound)) return *refusal;
  return {};
}

}  // namespace tova_fw_builder
