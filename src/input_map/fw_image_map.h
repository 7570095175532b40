// input_map/fw_image_map.h
// What the linker produced: the sections and symbols of all ELF files of the
// firmware, each kind under one name space; and the readers of the two tables
// of an ELF, each in a source of its own. What holds across ELFs stands in
// fw_image_map.
#pragma once

#include <cstdint>
#include <functional>
#include <istream>
#include <map>
#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

namespace tova_fw_builder {

struct FwImageMap {
  // One section of a linked ELF. Shared by the map and every section reference
  // bound to it. The number of owners counts: a header of the map alone is
  // unreferenced.
  struct SectionHeader {
    std::string name;
    std::uint32_t index = 0;  // 0xFFFFFFFF for a stream section
    std::uint32_t size = 0;
    std::uint32_t vma = 0;  // address at run time
    std::uint32_t lma = 0;  // load address; the image is laid out by this one
    std::uint32_t file_offset = 0;   // of the section's bytes in `stream`
    std::uint32_t alignment = 4096;  // 0 for a stream section
    bool contents = false;
    bool alloc = false;
    bool load = false;
    bool readonly = false;
    bool code = false;
    bool data = false;
    bool on_demand = false;  // of no effect: no section table can set it

    // The ELF file, one stream for all of its sections, or the memory stream
    // of a stream section. It outlives the map.
    std::shared_ptr<std::istream> stream;
  };

  struct Symbol {
    bool valid = false;  // false only in the result of a failed look-up
    char type = 0;       // the type letter; carried, never evaluated
    std::uint32_t address = 0;
    std::string name;
  };

  // An ordered map as a flat array: an ELF has up to millions of symbols, of
  // which a build looks up a few.
  struct SymbolMap {
    struct Entry {
      std::string_view name;  // in `texts`
      std::uint32_t address;
      char type;
    };
    std::vector<Entry> entries;  // ordered by name, no name twice
    std::unique_ptr<std::pmr::monotonic_buffer_resource> texts =
        std::make_unique<std::pmr::monotonic_buffer_resource>();

    // Copies a text into `texts`.
    std::string_view keep(std::string_view text) const;
  };

  // Adds the sections and symbols of one ELF, and logs its table at level 3.
  // Throws std::runtime_error "Failed to open file: " and the path, and what
  // read_section_table throws.
  void read_image_map(const std::string& memmap_path,
                      const std::string& elf_path, const std::string& nm_path);

  // Adds a section of a table. Of several with one name the first one stays;
  // throws std::runtime_error "Duplicated section found: " and the name if a
  // later one is loadable, else logs it.
  void add_section(std::shared_ptr<SectionHeader> header);

  // Adds `stream` as a section of that name in place of any earlier one. With
  // no flag set and no address it serves as a replacement alone.
  void add_stream_section(const std::string& name,
                          std::shared_ptr<std::istream> stream);

  // The section of exactly that name, or null. The result is one more owner.
  std::shared_ptr<SectionHeader> find_section(const std::string& name) const;

  // A copy, with `valid` false and all else empty if there is none.
  Symbol find_symbol(const std::string& name) const;

  // Adds the symbols of one more ELF: the first ELF with a name wins.
  void merge_symbols(SymbolMap&& from);

  // Throw std::runtime_error, NAME " size " SIZE " > max_allowed_size " LIMIT,
  // in hex, for the section of that name (or, by name, the first that ends in
  // `suffix`) if it is larger.
  void check_section_size(const std::string& name, std::uint64_t limit) const;
  void check_suffix_size(const std::string& suffix, std::uint64_t limit) const;

  // Logs a warning for each loadable section that nothing but the map owns.
  void warn_unreferenced() const;

  // Earlier ELFs first. Each table has more than twice the symbols of the next
  // one, so there are few of them.
  std::vector<SymbolMap> symbols;
  std::map<std::string, std::shared_ptr<SectionHeader>> sections;
  std::uint32_t parse_state = 0;  // of the section table scanner: 0, 1 or 2
};

// Adds the sections of `table`, as objdump -h prints it (docs/file-formats.md,
// "Section table") to `map`, with `elf` as their stream, and logs the table at
// level 3.
//
// Throws what add_section throws, and the error of parse_alignment, too, for a
// column that is no number, but for the first one: without an index the line is
// passed over.
void read_section_table(FwImageMap& map, std::istream& table,
                        const std::shared_ptr<std::istream>& elf);

// The alignment of a text like 2**4: the first run of digits to the power of
// the second, in double precision; its low 32 bits, and 0 from 2^63 on. A run
// of more than 32 bits is FFFFFFFF. Throws std::runtime_error "Not recognizeg
// alignment specified" if there are not two.
std::uint32_t parse_alignment(std::string_view text);

using TakeSymbol = std::function<void(const FwImageMap::SymbolMap::Entry&)>;

// Hands each symbol of a list as nm prints it on (docs/file-formats.md, "Symbol
// list"), with a name that is valid during the call.
void for_each_symbol(std::istream& in, const TakeSymbol& take);

// The symbols of a list, of each name the last one.
FwImageMap::SymbolMap read_symbols(std::istream& in);
// The same for a file; logs their number at level 2. Throws std::runtime_error
// "Failed to open file: " and the path.
FwImageMap::SymbolMap read_symbols(const std::string& path);

}  // namespace tova_fw_builder
