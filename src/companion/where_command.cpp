// Files and addresses stand in one list. A word is a file if there is one of
// that name, unless it begins with 0x.
#include "companion/where_command.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "address_lookup/address_lookup.h"
#include "address_lookup/address_words.h"
#include "address_lookup/owner_forms.h"
#include "companion/command_line/command_node.h"
#include "companion/ground/naming.h"
#include "companion/ground/trouble.h"
#include "driver/ground/paths.h"
#include "inspect/check/check.h"

namespace tova_fw_builder {
namespace {

struct Options {
  std::vector<std::string> words;
  std::string elf_list;
  bool json = false;
};

// What is asked for; nothing stands for the standard input.
using Question = std::optional<std::uint32_t>;

struct Words {
  std::vector<std::string> files;
  std::vector<Question> questions;
};

Words sort_words(const std::vector<std::string>& all) {
  Words words;
  for (const std::string& word : all) {
    std::error_code error;
    const auto address = parse_address(word);
    const bool is_surely_address =
        address && (word.starts_with("0x") || word.starts_with("0X"));
    if (word == "-") {
      words.questions.emplace_back();
    } else if (!is_surely_address &&
               std::filesystem::exists(native_path(word), error)) {
      words.files.push_back(word);
    } else if (address) {
      words.questions.emplace_back(address);
    } else {
      throw std::runtime_error(
          word +
          ": there is no such file, and it is no hexadecimal address of 32 "
          "bits");
    }
  }
  if (words.questions.empty()) {
    throw std::runtime_error(
        "no address was given; - reads them from the standard input");
  }
  return words;
}

// The files that can be read; a folder stands for those in it.
std::vector<CheckedFile> open_files(const std::vector<std::string>& paths,
                                    Status& status) {
  namespace fs = std::filesystem;
  std::vector<std::string> all;
  for (const std::string& path : paths) {
    std::error_code error;
    if (!fs::is_directory(native_path(path), error)) {
      all.push_back(path);
      continue;
    }
    const auto first = static_cast<std::ptrdiff_t>(all.size());
    for (const auto& entry : fs::directory_iterator(native_path(path), error)) {
      if (entry.is_regular_file(error)) all.push_back(path_text(entry.path()));
    }
    std::sort(all.begin() + first, all.end());
  }
  std::vector<CheckedFile> files;
  for (const std::string& path : all) {
    try {
      add_file(checked_file(path, ByteSource::open(path)), files);
    } catch (const std::exception& error) {
      report_trouble(path, error.what());
      status = Status::kTrouble;
    }
  }
  return files;
}

AddressLookup make_lookup(const Words& words, const Options& options,
                          Status& status) {
  const auto files = open_files(words.files, status);
  ElfPlaces elfs;
  if (!options.elf_list.empty()) {
    elfs =
        naming(options.elf_list, [&] { return ElfPlaces(options.elf_list); });
  }
  AddressLookup lookup(image_segments(files), std::move(elfs));
  if (!lookup.knows_files() && !lookup.knows_elfs()) {
    throw std::runtime_error(
        words.files.empty()
            ? "name a manifest of 1.5 or a binary, or an --elf-list"
            : "no file has a table of modules, as manifests of 1.5 and "
              "binaries of 1.8 and later have; ELFs are named by --elf-list");
  }
  return lookup;
}

void ask(const std::vector<Question>& questions,
         const std::function<void(std::uint32_t)>& answer) {
  for (const Question& question : questions) {
    if (question) {
      answer(*question);
      continue;
    }
    bool has_any = false;
    find_addresses(std::cin, [&](std::uint32_t address) {
      has_any = true;
      answer(address);
    });
    if (!has_any) {
      throw std::runtime_error("the standard input holds no address");
    }
  }
}

Status look_up(const Options& options) {
  Status status = Status::kYes;
  const Words words = sort_words(options.words);
  const AddressLookup lookup = make_lookup(words, options, status);
  const char* between = "\n    ";
  if (options.json) std::cout << "{\n  \"schema\": 1,\n  \"addresses\": [";
  const auto answer = [&](std::uint32_t address) {
    const auto owners = lookup.owners_of(address);
    if (owners.empty()) status = worse_of(status, Status::kNo);
    if (options.json) {
      std::cout << between << owners_json(address, owners);
      between = ",\n    ";
    } else {
      print_owners(std::cout, lookup, address, owners);
    }
  };
  const char* const end = options.json ? "\n  ]\n}\n" : "";
  try {
    ask(words.questions, answer);
  } catch (...) {
    std::cout << end;
    throw;
  }
  std::cout << end;
  return status;
}

}  // namespace

void add_where_command(CommandNode program, Status& status) {
  const CommandNode command = program.add_command(
      "where", "Tell what run addresses belong to, as for a crash log");
  const auto options = std::make_shared<Options>();
  command
      .add_option("FILE|ADDRESS", options->words,
                  "Manifests of 1.5, binaries, files of contents, folders of "
                  "them; and addresses, - for those in the standard input")
      .required()
      .called("");
  command
      .add_option("--elf-list", options->elf_list,
                  "The list of the ELFs: tells section and symbol, too")
      .called("FILE");
  command.add_flag("--json", options->json, "Print one JSON document");
  command.footer(
      "Addresses are hexadecimal, with or without 0x. A word that names a file "
      "is a\nfile, unless it begins with 0x. Of the standard input, words with "
      "0x, words of\neight digits, and the only word of a line are taken.\n"
      "Example: tova_fw where firmware.bin --elf-list firmware.elfs "
      "0x9001004c\n"
      "Example: tova_fw where out/ - <crash.log");
  command.run([options, &status] { status = look_up(*options); });
}

}  // namespace tova_fw_builder
