// Opening. Easily missed: libelf takes memory for the whole table of sections
// as soon as it opens a file, and takes a table that the file has no room for
// as none. So the file's own numbers are looked at first.
#include "elf_tables/elf_file.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace tova_fw_builder {
namespace {

// A linked firmware has some dozens; libelf takes 250 bytes for each.
constexpr std::uint64_t kMaxSections = 200'000;

// A file that is no folder, device or pipe: libelf needs places.
std::FILE* open_file(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (std::filesystem::exists(status) &&
      !std::filesystem::is_regular_file(status)) {
    throw std::runtime_error(std::filesystem::is_directory(status)
                                 ? "cannot be read: it is a folder: name its "
                                   "ELFs"
                                 : "cannot be read: it is no regular file");
  }
  errno = 0;
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) {
    throw std::runtime_error(std::string("cannot be read: ") +
                             std::strerror(errno));
  }
  return file;
}

// How many sections the header promises; the number of those beyond 65279
// stands in the first section.
std::uint64_t promised_sections(std::FILE* file) {
  std::array<char, sizeof(Elf64_Ehdr)> start{};
  if (std::fread(start.data(), 1, start.size(), file) == 0) return 0;
  // libelf reads no section of so short a file.
  const std::unique_ptr<Elf, int (*)(Elf*)> elf(
      elf_memory(start.data(), start.size()), elf_end);
  GElf_Ehdr header;
  if (elf == nullptr || gelf_getehdr(elf.get(), &header) == nullptr) return 0;
  if (header.e_shnum != 0 || header.e_shoff == 0) return header.e_shnum;
  const bool wide = gelf_getclass(elf.get()) == ELFCLASS64;
  std::array<char, sizeof(Elf64_Shdr)> raw{};
  Elf64_Shdr section{};
  Elf_Data from{}, to{};
  from.d_buf = raw.data();
  to.d_buf = &section;
  from.d_type = to.d_type = ELF_T_SHDR;
  from.d_version = to.d_version = EV_CURRENT;
  from.d_size = to.d_size = wide ? sizeof(Elf64_Shdr) : sizeof(Elf32_Shdr);
  if (std::fseek(file, static_cast<long>(header.e_shoff), SEEK_SET) != 0 ||
      std::fread(raw.data(), 1, from.d_size, file) != from.d_size ||
      gelf_xlatetom(elf.get(), &to, &from, header.e_ident[EI_DATA]) ==
          nullptr) {
    return 0;
  }
  if (wide) return section.sh_size;
  Elf32_Shdr narrow;
  std::memcpy(&narrow, &section, sizeof narrow);
  return narrow.sh_size;
}

}  // namespace

std::runtime_error elf_error(const std::string& what) {
  const char* const reason = elf_errmsg(-1);
  return std::runtime_error(what + ": " + (reason ? reason : "it is damaged"));
}

ElfFile::ElfFile(const std::string& path)
    : file_(open_file(path), std::fclose), elf_(nullptr, elf_end) {
  elf_version(EV_CURRENT);
  length_ = std::filesystem::file_size(path);
  const std::uint64_t promised = promised_sections(file_.get());
  if (promised > kMaxSections) {
    throw std::runtime_error("it has " + std::to_string(promised) +
                             " sections, more than any linker makes");
  }
  elf_.reset(elf_begin(fileno(file_.get()), ELF_C_READ, nullptr));
  if (elf_ == nullptr) throw elf_error("it is no ELF");
  if (elf_kind(get()) != ELF_K_ELF) {
    throw std::runtime_error(elf_kind(get()) == ELF_K_AR
                                 ? "it is an archive and no linked ELF"
                                 : "it is no ELF");
  }
  if (gelf_getehdr(get(), &header_) == nullptr) {
    throw elf_error("its header can't be read");
  }
  if (header_.e_type == ET_CORE) {
    throw std::runtime_error("it is a core dump, which has no sections");
  }
  read_sections();
  if (sections_.size() < promised) {
    throw std::runtime_error(
        "it is cut off or damaged: its table of sections lies beyond its end");
  }
}

void ElfFile::read_sections() {
  std::size_t count = 0;
  if (elf_getshdrnum(get(), &count) != 0) {
    throw elf_error("its sections can't be counted");
  }
  sections_.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    if (gelf_getshdr(elf_getscn(get(), i), &sections_[i]) == nullptr) {
      throw elf_error("its table of sections can't be read");
    }
    const GElf_Shdr& section = sections_[i];
    // The builder would take zeros for what isn't there.
    if (section.sh_type != SHT_NOBITS && section.sh_type != SHT_NULL &&
        (section.sh_size > length_ ||
         section.sh_offset > length_ - section.sh_size)) {
      throw std::runtime_error("it is cut off or damaged: section " +
                               std::to_string(i) + " reaches beyond its end");
    }
  }
}

std::string_view ElfFile::name(std::size_t strings, std::size_t offset) const {
  const char* const text = elf_strptr(get(), strings, offset);
  if (text == nullptr) throw elf_error("a name can't be read");
  return text;
}

}  // namespace tova_fw_builder
