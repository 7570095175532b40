// A section doesn't say where it is loaded to; the segment that it lies in
// does. Where segments touch, an empty section could lie in either.
#include "elf_tables/load_address.h"

#include <algorithm>

namespace tova_fw_builder {
namespace {

bool is_thread_local(const GElf_Shdr& section) {
  return (section.sh_flags & SHF_TLS) != 0;
}

// Whether `size` units from `start` on lie in `length` units from `begin` on.
bool lies_in(std::uint64_t start, std::uint64_t size, std::uint64_t begin,
             std::uint64_t length) {
  if (start < begin) return false;
  return size <= length && start - begin <= length - size;
}

bool lies_in(const GElf_Shdr& section, const GElf_Phdr& segment) {
  const std::uint64_t size = section.sh_size;
  const bool has_its_bytes =
      section.sh_type == SHT_NOBITS ||
      lies_in(section.sh_offset, size, segment.p_offset, segment.p_filesz);
  return has_its_bytes &&
         lies_in(section.sh_addr, size, segment.p_vaddr, segment.p_memsz);
}

// Data of threads is loaded where the template of a thread is.
bool may_hold(const GElf_Phdr& segment, const GElf_Shdr& section) {
  return segment.p_type == (is_thread_local(section) ? PT_TLS : PT_LOAD);
}

// Some linkers leave all load addresses zero. Of several segments that can't
// be meant: they would lie on one another.
bool are_unset(const std::vector<GElf_Phdr>& segments) {
  const auto has_address = [](const GElf_Phdr& segment) {
    return segment.p_paddr != 0;
  };
  const auto is_loaded = [](const GElf_Phdr& segment) {
    return segment.p_type == PT_LOAD && segment.p_memsz != 0;
  };
  return std::ranges::none_of(segments, has_address) &&
         std::ranges::count_if(segments, is_loaded) > 1;
}

}  // namespace

LoadAddresses::LoadAddresses(const ElfFile& elf) {
  std::size_t count = 0;
  if (elf_getphdrnum(elf.get(), &count) != 0) {
    throw elf_error("its segments can't be counted");
  }
  // Each section may be looked for in all of them.
  constexpr std::size_t kMaxSegments = 4096;
  if (count > kMaxSegments) {
    throw std::runtime_error("it has " + std::to_string(count) +
                             " segments; more than " +
                             std::to_string(kMaxSegments) + " aren't taken");
  }
  for (std::size_t i = 0; i < count; ++i) {
    GElf_Phdr segment;
    if (gelf_getphdr(elf.get(), static_cast<int>(i), &segment) == nullptr) {
      throw elf_error("its table of segments can't be read");
    }
    segments_.push_back(segment);
  }
  if (are_unset(segments_)) segments_.clear();
}

std::uint64_t LoadAddresses::of(const GElf_Shdr& section) const {
  if ((section.sh_flags & SHF_ALLOC) == 0) return section.sh_addr;
  for (const GElf_Phdr& segment : segments_) {
    if (!may_hold(segment, section) || !lies_in(section, segment)) continue;
    return section.sh_type == SHT_NOBITS
               ? segment.p_paddr + (section.sh_addr - segment.p_vaddr)
               : segment.p_paddr + (section.sh_offset - segment.p_offset);
  }
  return section.sh_addr;
}

}  // namespace tova_fw_builder
