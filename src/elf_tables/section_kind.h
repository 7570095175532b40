// elf_tables/section_kind.h
// What a section is to the builder.
#pragma once

#include <gelf.h>

namespace tova_fw_builder {

// The words of the table's second line.
struct SectionKind {
  bool contents = false;
  bool alloc = false;
  bool load = false;
  bool readonly = false;
  bool code = false;
  bool data = false;
};

inline SectionKind kind_of(const GElf_Shdr& section) {
  SectionKind kind;
  kind.contents = section.sh_type != SHT_NOBITS;
  kind.alloc = (section.sh_flags & SHF_ALLOC) != 0;
  kind.load = kind.contents && kind.alloc;
  kind.readonly = (section.sh_flags & SHF_WRITE) == 0;
  kind.code = (section.sh_flags & SHF_EXECINSTR) != 0;
  kind.data = kind.load && !kind.code;
  return kind;
}

}  // namespace tova_fw_builder
