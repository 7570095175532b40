#include "elf_tables/special_symbols.h"

namespace tova_fw_builder {
namespace {

// "$d", "$d.1": one letter, and whatever stands behind a dot.
bool is_mark(std::string_view name, std::string_view letters) {
  return name.size() >= 2 && name[0] == '$' &&
         letters.find(name[1]) != std::string_view::npos &&
         (name.size() == 2 || name[2] == '.');
}

// Labels inside of functions and tables, which compilers number.
bool is_local_label(std::string_view name) {
  return name.starts_with(".L") || name.starts_with("..") ||
         name.starts_with("_.L_");
}

}  // namespace

bool is_special(std::uint16_t machine, std::string_view name) {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz";
  switch (machine) {
    case EM_ARM:
      return is_mark(name, kLetters);
    case EM_AARCH64:
      return is_mark(name, "dfmpx");
    case EM_RISCV:  // "$xrv32i" names the instruction set, too
      return name.starts_with("$x") || name.starts_with("$d") ||
             is_local_label(name);
    case EM_MIPS:
      return is_local_label(name);
    default:
      return false;
  }
}

std::uint64_t shown_address(const GElf_Ehdr& elf, int type,
                            std::uint64_t address) {
  const bool is_mips = elf.e_machine == EM_MIPS;
  const bool is_arm = elf.e_machine == EM_ARM;
  if ((type == STT_FUNC && (is_arm || is_mips)) ||
      (type == STT_GNU_IFUNC && is_arm)) {
    address &= ~std::uint64_t{1};
  }
  // The builder passes over what has more than 32 bits.
  if (is_mips && elf.e_ident[EI_CLASS] == ELFCLASS32) {
    address = static_cast<std::uint64_t>(
        static_cast<std::int32_t>(static_cast<std::uint32_t>(address)));
  }
  return address;
}

}  // namespace tova_fw_builder
