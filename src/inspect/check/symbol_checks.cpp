// The exported symbols that a header lists. A signed manifest may lack the end
// of their table: signing keeps as much as the size tells.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "companion/ground/message_text.h"
#include "companion/ground/printable.h"
#include "inspect/check/check_functions.h"

namespace tova_fw_builder {
namespace {

// Whether the whole symbol table is there.
bool has_whole_table(const CheckedFile& header) {
  const Field& root = header.inspected.root;
  const Field* count = find(root, "symbol_table.count");
  const Field* names = find(root, "symbol_table.names_length");
  return count != nullptr && names != nullptr &&
         names_end(*names) <= header.inspected.length;
}

// The module's index has 8 bits: one of several it may be.
bool lies_in_segment(const Field& symbol, const std::vector<Field>& modules) {
  const std::uint64_t address = number_at(symbol, "address");
  const std::string slot =
      "segments[" + std::to_string(number_at(symbol, "segment")) + ']';
  for (std::size_t i = number_at(symbol, "module"); i < modules.size();
       i += 256) {
    const Field* segment = find(modules[i], slot);
    if (segment == nullptr) continue;
    const std::uint64_t start = number_at(*segment, "vma");
    if (start <= address && address < start + bytes_of(*segment)) return true;
  }
  return false;
}

void check_names(const CheckedFile& header, Report& report) {
  const Field& root = header.inspected.root;
  const std::vector<Field>& symbols = find(root, "symbols")->members;
  const std::uint64_t missing =
      number_at(root, "symbol_table.count") - symbols.size();
  if (missing != 0) {
    report.failed(header, counted(missing, "exported symbol") +
                              " without a segment and a record, so that "
                              "the names' offsets point too far");
  }
  std::set<std::string_view> names;
  for (const Field& symbol : symbols) {
    const std::string_view name = text_at(symbol, "name");
    if (name.empty()) {
      report.failed(header, "a symbol has no name");
    } else if (!names.insert(name).second) {
      report.failed(header, printable(name) + " is there twice");
    } else if (!lies_in_segment(symbol, find(root, "modules")->members)) {
      report.failed(header, printable(name) + " lies outside its segment");
    }
  }
}

}  // namespace

void check_symbol_names(const ImageFiles& image, Report& report) {
  for (const CheckedFile* header : image.headers) {
    if (!has_whole_table(*header)) {
      report.not_checked(*header,
                         "the symbol table is cut off: give the manifest as "
                         "build wrote it");
      continue;
    }
    const std::size_t before = report.failures();
    check_names(*header, report);
    if (report.failures() != before) continue;
    report.ok(*header,
              counted(find(header->inspected.root, "symbols")->members.size(),
                      "symbol"));
  }
}

void check_symbols_kept(const ImageFiles& image, Report& report) {
  for (const CheckedFile* manifest : image.manifests) {
    const Field& root = manifest->inspected.root;
    const bool is_signed = number_at(root, "signed") != 0;
    if (!has_whole_table(*manifest)) {
      report.failed(*manifest, is_signed
                                   ? "signing has cut off the symbol table"
                                   : "the symbol table is cut off");
      continue;
    }
    const Field* names = find(root, "symbol_table.names_length");
    if (is_signed) {
      report.ok(*manifest, "the symbol table is whole");
    } else if (names_end(*names) > number_at(root, "css.size") * 4) {
      report.not_due(*manifest,
                     "not signed yet; signing will cut off the symbol "
                     "table: export less, or expect no symbols");
    } else {
      report.not_due(*manifest, "not signed; signing will keep the table");
    }
  }
}

}  // namespace tova_fw_builder
