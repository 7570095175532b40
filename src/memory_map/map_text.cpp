// The tables in the order in which they are wanted: changes, what is full, who
// has it, then what may be a mistake, then the details.
#include "memory_map/map_text.h"

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <string>

#include "companion/ground/message_text.h"
#include "companion/ground/printable.h"
#include "layout/records/out_map.h"
#include "memory_map/text_table.h"

namespace tova_fw_builder {
namespace {

constexpr std::size_t kShortList = 20;
constexpr std::size_t kShortSymbols = 10;

std::string hex(std::uint64_t address) { return "0x" + eight_digits(address); }

std::string decimal(std::uint64_t number) { return std::to_string(number); }

std::string percent(std::uint64_t part, std::uint64_t whole) {
  if (whole == 0) return "-";
  std::ostringstream text;
  text << std::fixed << std::setprecision(1)
       << 100.0 * static_cast<double>(part) / static_cast<double>(whole)
       << " %";
  return text.str();
}

// One mark for each twentieth, begun ones too: "####......" is what one sees
// first.
std::string bar(std::uint64_t used, std::uint64_t hw_buf, std::uint64_t size) {
  constexpr std::uint64_t kMarks = 20;
  if (size == 0) return "";
  const auto marks = [size](std::uint64_t bytes) {
    return (bytes * kMarks + size - 1) / size;
  };
  std::string text(marks(used), '#');
  text.append(marks(used + hw_buf) - text.size(), '~');
  return '[' + text + std::string(kMarks - text.size(), '.') + ']';
}

std::string signed_text(std::int64_t change) {
  std::ostringstream text;
  text << std::showpos << change;
  return text.str();
}

class MapPrinter {
 public:
  MapPrinter(std::ostream& out, const MemoryMap& map, bool is_long,
             const Colours& colours)
      : out_(out), map_(map), is_long_(is_long), colours_(colours) {}

  void print_head() {
    out_ << colours_.bold
         << (map_.image.name.empty() ? "no binary_name"
                                     : printable(map_.image.name))
         << colours_.plain;
    if (!map_.image.generation.empty()) {
      out_ << ", generation " << map_.image.generation;
    }
    if (!map_.image.version.empty()) {
      out_ << ", base firmware " << map_.image.version;
    }
    out_ << ", " << map_.image.pages << " pages of contents ("
         << map_.image.pages * kPageSize << " bytes)\n";
  }

  void print_changes(const MapChanges& changes) {
    if (changes.parts.empty()) out_ << "\nNo size differs from the baseline.\n";
    print_parts(changes.parts);
    for (const auto& [list, title] :
         {std::pair(&changes.classes, "Memory classes since the baseline"),
          std::pair(&changes.modules,
                    "Modules since the baseline, with gaps and padding")}) {
      TextTable table({">change", ">old", ">new", "name"});
      for (const SizeChange& row : *list) {
        table.add({signed_text(row.change()), decimal(row.before),
                   decimal(row.after), row.name});
      }
      table.print(out_, title, colours_);
    }
  }

  void print_classes() {
    TextTable table({"class", "base", ">size", ">used", ">free", ">full", ""});
    std::uint64_t hw_buf = 0;
    for (const MemoryMap::Class& area : map_.classes) {
      table.add({area.name, hex(area.base), decimal(area.size),
                 decimal(area.used), decimal(area.free()),
                 percent(area.used, area.size),
                 bar(area.used, area.hw_buf, area.size)});
      hw_buf += area.hw_buf;
    }
    table.print(out_, "Memory classes", colours_);
    if (hw_buf != 0) {
      out_ << "  ~ the hardware buffer takes " << hw_buf
           << " bytes of what is free of sections\n";
    }
  }

  void print_modules() {
    TextTable table({"module", ">text", ">rodata", ">bss", ">gaps", ">padding",
                     ">pages", ">share"});
    MemoryMap::Module all;
    std::uint64_t total = 0;
    bool has_built_in = false;
    for (const MemoryMap::Module& module : map_.modules) {
      has_built_in |= module.built_in;
      if (!module.built_in) total += module.total();
    }
    for (const MemoryMap::Module& module : map_.modules) {
      table.add(module_row(module, module.name + (module.built_in ? " *" : ""),
                           total));
      if (!module.built_in) add_to(all, module);
    }
    if (map_.modules.size() > 1) table.add(module_row(all, "all", total));
    table.print(out_, "Modules", colours_);
    if (has_built_in) {
      out_ << "  * built in: counted again in the module that carries it\n";
    }
    if (table.rows() == 0) return;
    out_ << "  Page boundaries and gaps cost " << all.gaps + all.padding
         << " bytes; without gaps the groups would take "
         << all.pages - all.packed_pages << " of " << all.pages
         << " pages less (" << (all.pages - all.packed_pages) * kPageSize
         << " bytes)\n";
  }

  void print_oddities() {
    TextTable left_out({"section", "address", ">size", "ELF"});
    list(map_.left_out, kShortList, left_out, [](const auto& section) {
      return Row{section.section, hex(section.address), decimal(section.size),
                 section.elf};
    });
    left_out.print(out_, "In memory, but in no group", colours_);
    end_list(map_.left_out.size(), left_out);

    TextTable outside({"section", "module", "address", ">size", ">outside"});
    if (!map_.classes.empty()) {
      list(map_.outside_classes, kShortList, outside, [this](const auto& row) {
        const MemoryMap::Section& section = map_.sections[row.section];
        return Row{section.name, section.owner, hex(section.address),
                   decimal(section.size), decimal(row.bytes)};
      });
      outside.print(out_, "Outside the memory classes", colours_);
      end_list(map_.outside_classes.size(), outside);
    }

    TextTable overlaps(
        {"address", ">size", "section", "module", "and section", "of module"});
    list(map_.overlaps, kShortList, overlaps, [this](const auto& overlap) {
      const MemoryMap::Section& first = section_at(map_, overlap.first);
      const MemoryMap::Section& second = section_at(map_, overlap.second);
      return Row{hex(overlap.address), decimal(overlap.size), first.name,
                 first.owner,          second.name,           second.owner};
    });
    overlaps.print(out_, "Overlaps", colours_);
    end_list(map_.overlaps.size(), overlaps);
    if (map_.has_more_overlaps) out_ << "  and others behind these\n";
  }

  // What lies where in a class, with what is free between.
  void print_class(const MemoryMap::Class& area) {
    std::vector<MemoryMap::Section> inside;
    for (const std::uint32_t i : area.sections) {
      inside.push_back(map_.sections[i]);
    }
    if (area.hw_buf != 0) {
      const auto behind = std::ranges::upper_bound(
          inside, map_.hw_buf.address, {}, &MemoryMap::Section::address);
      inside.insert(behind, map_.hw_buf);
    }
    TextTable table({"address", ">size", "section", "module"});
    std::uint64_t top = area.base;
    const auto add_free = [&](std::uint64_t end) {
      if (end > top) table.add({hex(top), decimal(end - top), "", "(free)"});
    };
    const std::size_t shown =
        is_long_ ? inside.size() : std::min(inside.size(), kShortList);
    for (std::size_t i = 0; i < shown; ++i) {
      const MemoryMap::Section& section = inside[i];
      add_free(section.address);
      table.add({hex(section.address), decimal(section.size), section.name,
                 section.owner});
      top = std::max(top, std::uint64_t{section.address} + section.size);
    }
    if (shown == inside.size()) add_free(area.base + area.size);
    table.print(out_, "In " + printable(area.name), colours_);
    hint(inside.size(), shown);
  }

  void print_symbols() {
    TextTable table({">size", "address", "symbol", "section", "module"});
    list(map_.symbols, kShortSymbols, table, [this](const auto& symbol) {
      return Row{decimal(symbol.size), hex(symbol.address),
                 std::string(symbol.name), section_of(map_, symbol),
                 std::string(owner_of(map_, symbol))};
    });
    table.print(out_, "The largest symbols", colours_);
    end_list(map_.symbols.size(), table);
  }

  void print_budgets(const std::vector<BudgetResult>& budgets) {
    TextTable table({"class", "budget", ">bytes", ">used", ">left"});
    for (const BudgetResult& result : budgets) {
      table.add({result.memory_class, result.limit, decimal(result.bytes),
                 decimal(result.used),
                 signed_text(static_cast<std::int64_t>(result.bytes) -
                             static_cast<std::int64_t>(result.used))});
    }
    table.print(out_, "Budgets", colours_);
  }

 private:
  using Row = std::vector<std::string>;

  void print_parts(const std::vector<SizeChange>& parts) {
    TextTable table({">change", ">old", ">new", "name", "section", "module"});
    list(parts, kShortList, table, [](const SizeChange& row) {
      const bool is_symbol = !row.section.empty();
      return Row{signed_text(row.change()),
                 decimal(row.before),
                 decimal(row.after),
                 is_symbol ? row.name : "(no symbol)",
                 is_symbol ? row.section : row.name,
                 row.owner};
    });
    table.print(out_, "What grew since the baseline, and what shrank",
                colours_);
    end_list(parts.size(), table);
  }

  static void add_to(MemoryMap::Module& all, const MemoryMap::Module& module) {
    all.text += module.text;
    all.rodata += module.rodata;
    all.bss += module.bss;
    all.gaps += module.gaps;
    all.padding += module.padding;
    all.pages += module.pages;
    all.packed_pages += module.packed_pages;
  }

  static Row module_row(const MemoryMap::Module& module,
                        const std::string& name, std::uint64_t total) {
    return {name,
            decimal(module.text),
            decimal(module.rodata),
            decimal(module.bss),
            decimal(module.gaps),
            decimal(module.padding),
            decimal(module.pages),
            percent(module.total(), total)};
  }

  template <typename List, typename ToRow>
  void list(const List& elements, std::size_t most, TextTable& table,
            const ToRow& to_row) {
    const auto shown =
        is_long_ ? elements.size() : std::min(elements.size(), most);
    for (std::size_t i = 0; i < shown; ++i) table.add(to_row(elements[i]));
  }

  void end_list(std::size_t size, const TextTable& table) {
    hint(size, table.rows());
  }

  void hint(std::size_t size, std::size_t shown) {
    if (shown < size) {
      out_ << "  and " << size - shown << " more (--long shows them)\n";
    }
  }

  std::ostream& out_;
  const MemoryMap& map_;
  bool is_long_;
  const Colours& colours_;
};

}  // namespace

void print_map(std::ostream& out, const MemoryMap& map,
               const std::vector<BudgetResult>& budgets,
               const MapChanges* changes, bool is_long,
               const Colours& colours) {
  MapPrinter printer(out, map, is_long, colours);
  printer.print_head();
  if (changes != nullptr) printer.print_changes(*changes);
  printer.print_classes();
  printer.print_modules();
  printer.print_oddities();
  for (const MemoryMap::Class& area : map.classes) printer.print_class(area);
  printer.print_symbols();
  printer.print_budgets(budgets);
}

}  // namespace tova_fw_builder
