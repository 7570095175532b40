// The command `map`: what it is to show, and where the answer goes.
#include "companion/map_command.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/builder_inputs.h"
#include "companion/colour_option.h"
#include "companion/command_line/command_node.h"
#include "companion/command_line/wrong_usage.h"
#include "companion/ground/input_file.h"
#include "companion/ground/output_file.h"
#include "companion/ground/standard_output.h"
#include "companion/ground/trouble.h"
#include "companion/printed_output.h"
#include "driver/ground/files.h"
#include "layout/build_core.h"
#include "lint/listed_files.h"
#include "memory_map/baseline.h"
#include "memory_map/budget.h"
#include "memory_map/map_json.h"
#include "memory_map/map_page.h"
#include "memory_map/map_text.h"
#include "memory_map/measure_memory.h"
#include "memory_map/memory_map.h"

namespace tova_fw_builder {
namespace {

struct Options {
  BuilderInputNames inputs;
  std::string json;
  std::string html;
  std::string baseline;
  std::vector<std::string> budgets;
  bool is_long = false;
  ColourWhen colour = ColourWhen::kAuto;
};

// Does a step with the file that it reads or writes, whose trouble it is unless
// the trouble has a file. Yields whether all went well.
template <typename Step>
bool with_file(const std::string& file, const Step& step) {
  try {
    step();
    return true;
  } catch (const FileError& error) {
    const Trouble trouble = trouble_of(error);
    report_trouble(trouble.file, trouble.text);
  } catch (const std::exception& error) {
    report_trouble(file, without_key_bytes(error.what()));
  }
  return false;
}

struct Answer {
  MemoryMap map;
  std::vector<BudgetResult> budgets;
  std::optional<MapChanges> changes;

  const MapChanges* changes_or_null() const {
    return changes ? &*changes : nullptr;
  }
};

// A file as it was named, and where it is wherever one goes.
struct Output {
  std::string name;
  std::string path = absolute_path(name);

  bool is_wanted() const { return !name.empty(); }
  bool is_printed() const { return names_standard_output(name); }

  // Yields whether all was written that print(stream) prints.
  template <typename Print>
  bool write(const Print& print) const {
    return with_file(name,
                     [&] { print_output(is_printed() ? name : path, print); });
  }
};

struct Outputs {
  Output json;
  Output html;
};

// Behind what the builder says: which input is missing for it, or who knows
// more.
std::string cure(std::string_view refusal, const BuilderInputNames& names) {
  const auto tells = [refusal](std::string_view text) {
    return refusal.find(text) != refusal.npos;
  };
  if (names.header.empty() && tells("Undefined const")) {
    return "; no --header was given, whose constants it uses";
  }
  if (names.key_list.empty() && tells("Partially mapped module")) {
    return "; no --key-list was given, whose keys a section may ask for";
  }
  return "; tova_fw lint, which takes the same inputs, tells where and why";
}

BoundMap bind(const BuilderInputNames& names, const BuildInputs& inputs) {
  try {
    return bind_out_map(inputs);
  } catch (const std::exception& error) {
    const std::string refusal = without_key_bytes(error.what());
    if (auto trouble = trouble_of_input(refusal, names, inputs)) {
      throw FileError(std::move(*trouble));
    }
    throw std::runtime_error(refusal + cure(refusal, names));
  }
}

// What the map was made of, wherever that is named.
void add_files(const BuildInputs& inputs, const BoundMap& bound,
               std::vector<std::string>& files) {
  const auto& definitions = bound.out_map->files_read;
  files.insert(files.end(), definitions.begin(), definitions.end());
  files.insert(files.end(), {inputs.key_list_path, inputs.elf_list_path,
                             inputs.module_config_path.value_or("")});
  // Of an ELF list that is a pipe, the binding alone knows.
  for (const ElfListEntry& entry : bound.elfs) {
    files.insert(files.end(), {entry.elf, entry.memmap, entry.nm});
  }
  const std::vector<std::string> listed = listed_files(inputs);
  files.insert(files.end(), listed.begin(), listed.end());
}

// Yields whether all was written.
bool write_answer(const Answer& answer, const Options& options,
                  const Outputs& outputs, const Colours& colour) {
  if (!outputs.json.is_wanted() && !outputs.html.is_wanted()) {
    print_map(std::cout, answer.map, answer.budgets, answer.changes_or_null(),
              options.is_long, colour);
    return true;
  }
  const MapAnswer told = {answer.map, answer.budgets, answer.changes_or_null(),
                          options.baseline};
  return (!outputs.json.is_wanted() ||
          outputs.json.write(
              [&](std::ostream& out) { print_map_json(out, told); })) &&
         (!outputs.html.is_wanted() ||
          outputs.html.write(
              [&](std::ostream& out) { print_map_page(out, told); }));
}

// What is printed for a program stands alone.
Status judge_budgets(const Answer& answer, const Outputs& outputs,
                     const Colours& colour) {
  Status status = Status::kYes;
  for (const BudgetResult& result : answer.budgets) {
    if (result.over() == 0) continue;
    status = Status::kNo;
    if (outputs.json.is_printed() || outputs.html.is_printed()) continue;
    std::cout << colour.bad << over_budget_line(result) << colour.plain << '\n';
  }
  return status;
}

std::unique_ptr<std::ifstream> open_baseline(const std::string& path) {
  auto in = try_open_input(path);
  if (!in->is_open()) throw std::runtime_error(why_unreadable(path));
  return in;
}

Status show_map(const Options& options) {
  std::vector<Budget> budgets;
  for (const std::string& text : options.budgets) {
    budgets.push_back(parse_budget(text));
  }
  const Outputs outputs = {{options.json}, {options.html}};
  if (outputs.json.is_printed() && outputs.html.is_printed()) {
    throw WrongUsage("--json and --html can't both be printed");
  }
  if (are_one_file(outputs.json.path, outputs.html.path)) {
    throw WrongUsage("--json and --html can't be one file");
  }
  const BuildInputs inputs = builder_inputs(options.inputs);
  const std::string baseline = absolute_path(options.baseline);
  std::optional<MapSizes> before;
  if (!options.baseline.empty() && !with_file(options.baseline, [&] {
        before = read_sizes(*open_baseline(options.baseline));
      })) {
    return Status::kTrouble;
  }
  Answer answer;
  std::vector<std::string> files = {baseline};
  if (!with_file(options.inputs.definition, [&] {
        const BoundMap bound = bind(options.inputs, inputs);
        add_files(inputs, bound, files);
        answer.map = measure_memory(*bound.out_map, bound.elfs);
        answer.budgets = check_budgets(answer.map, budgets);
      })) {
    return Status::kTrouble;
  }
  require_no_input(outputs.json.path, files);
  require_no_input(outputs.html.path, files);
  if (before) answer.changes = compare_sizes(*before, sizes_of(answer.map));
  const Colours colour = colours(wants_colour(options.colour));
  return write_answer(answer, options, outputs, colour)
             ? judge_budgets(answer, outputs, colour)
             : Status::kTrouble;
}

void add_inputs(CommandNode command, BuilderInputNames& names) {
  command.add_option("--definition", names.definition, "The image definition")
      .required()
      .called("FILE");
  command
      .add_option("--header", names.header,
                  "The header of constants, if the definition uses one")
      .called("FILE");
  command.add_option("--elf-list", names.elf_list, "The list of ELFs")
      .required()
      .called("FILE");
  command
      .add_option("--key-list", names.key_list,
                  "The list of trusted keys, if the image has a store of them")
      .called("FILE");
  command
      .add_option("--default-dir", names.default_dir,
                  "Where definitions are searched second; else here")
      .called("DIR");
}

}  // namespace

void add_map_command(CommandNode program, Status& status) {
  const CommandNode command =
      program.add_command("map", "Show where the memory of an image goes");
  const auto options = std::make_shared<Options>();
  add_inputs(command, options->inputs);
  command
      .add_option("--json", options->json,
                  "Write one JSON document instead of the tables; - prints it")
      .called("FILE");
  command
      .add_option("--html", options->html,
                  "Write one page for the browser instead of the tables")
      .called("FILE");
  command
      .add_option("--baseline", options->baseline,
                  "Show what grew since the build that --json wrote this of")
      .called("OLD.json");
  command
      .add_option("--budget", options->budgets,
                  "End with status 1 if more of a memory class is used: bytes, "
                  "K, M or %")
      .called("CLASS=LIMIT")
      .repeatable();
  command.add_flag("--long", options->is_long, "Show every row");
  add_colour_option(command, options->colour);
  command.footer(
      "Example: tova_fw map --definition firmware.def --header config.h \\\n"
      "           --elf-list firmware.elfs --budget sram=90%\n"
      "The other inputs are those of tova_fw_builder build; paths in the ELF "
      "list and\nthe key list count from the definition's folder.");
  command.run([options, &status] { status = show_map(*options); });
}

}  // namespace tova_fw_builder
