#include "companion/tables_command.h"

#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "companion/command_line/command_node.h"
#include "companion/ground/naming.h"
#include "companion/ground/output_file.h"
#include "companion/ground/trouble.h"
#include "elf_tables/elf_tables.h"
#include "elf_tables/table_files.h"

namespace tova_fw_builder {
namespace {

struct Options {
  std::vector<std::string> elfs;
  std::vector<std::string> names;
  std::string folder;
  std::string list;
};

void make_folder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) {
    throw std::runtime_error(folder + ": cannot be made: " + error.message());
  }
}

// The tables of all ELFs that can be read, and the list if that was all.
Status write_tables(const Options& options) {
  namespace fs = std::filesystem;
  const std::string list =
      options.list.empty()
          ? (fs::path(options.folder) / "firmware.elfs").string()
          : options.list;
  const auto files =
      name_table_files(options.elfs, options.names, options.folder, list);
  make_folder(options.folder);
  Status status = Status::kYes;
  for (std::size_t i = 0; i < files.size(); ++i) {
    try {
      write_table_files(files[i]);
    } catch (const std::exception& error) {
      report_trouble(options.elfs[i], error.what());
      status = Status::kTrouble;
    }
  }
  if (status == Status::kYes) {
    naming(list, [&] { write_output_file(list, elf_list_text(files)); });
  }
  return status;
}

}  // namespace

void add_tables_command(CommandNode program, Status& status) {
  if (!can_read_elfs()) {
    program.footer("This tova_fw was built without libelf: it lacks tables.");
    return;
  }
  const CommandNode command = program.add_command(
      "tables", "Write the section tables and symbol lists of ELFs");
  const auto options = std::make_shared<Options>();
  command.add_option("ELF", options->elfs, "Linked ELFs, in the list's order")
      .required()
      .called("");
  command
      .add_option("-o,--output", options->folder,
                  "Where the tables go: NAME.sections and NAME.symbols")
      .required()
      .called("FOLDER");
  command
      .add_option("--name", options->names,
                  "What the tables of the first ELF are called, then of the "
                  "second; else by the ELF's file")
      .called("NAME")
      .repeatable();
  command
      .add_option("--list", options->list,
                  "The list of the ELFs; else FOLDER/firmware.elfs")
      .called("FILE");
  command.footer(
      "Example: tova_fw tables build/base_fw.elf build/mixer.elf -o out\n"
      "tova_fw_builder makes the same image of them as of those that objdump "
      "-h and nm\nof GNU binutils print. Paths in the list are absolute.");
  command.run([options, &status] { status = write_tables(*options); });
}

}  // namespace tova_fw_builder
