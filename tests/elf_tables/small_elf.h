// tests/elf_tables/small_elf.h
// ELFs made byte by byte, without libelf.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct SmallElf {
  struct Section {
    std::string name;
    std::uint32_t type = 1;
    std::uint64_t flags = 0;
    std::uint64_t address = 0;
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    std::uint64_t align = 1;
    std::uint32_t link = 0;
    std::uint32_t info = 0;
  };
  struct Segment {
    std::uint32_t type = 1;
    std::uint64_t offset = 0;
    std::uint64_t vaddr = 0;
    std::uint64_t paddr = 0;
    std::uint64_t filesz = 0;
    std::uint64_t memsz = 0;
  };
  struct Symbol {
    std::string name;
    std::uint64_t value = 0;
    std::uint64_t size = 0;
    std::uint8_t info = 0;  // binding and type
    std::uint16_t section = 1;
  };

  bool wide = false;  // 64 bits
  bool big = false;   // big-endian
  std::uint16_t type = 2;
  std::uint16_t machine = 94;
  std::vector<Section> sections;  // numbered from 1 on
  std::vector<Segment> segments;
  std::vector<Symbol> symbols;

  // The header, segments, 8 KiB of contents from 0x100 on, then .symtab with
  // its strings, .shstrtab and the table of sections. Symbols' section numbers
  // count as the sections here do.
  std::string bytes() const;
};
