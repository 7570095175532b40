// Both texts of an ELF. Each line of a symbol list has an address and a name,
// each section two lines.
#include "elf_tables/elf_tables.h"

#include <cstdlib>
#include <sstream>

#include "harness.h"

using namespace tova_fw_builder;

void fuzz_one(const std::string& input) {
  const ElfTables tables(put("fuzzed.elf", input));
  std::ostringstream sections, symbols;
  tables.write_sections(sections);
  std::size_t lines = 0;
  for (const char c : sections.view()) lines += c == '\n';
  if (lines % 2 != 0) std::abort();
  tables.write_symbols(symbols);
}
