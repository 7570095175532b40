#include "companion/show_command.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "companion/colour_option.h"
#include "companion/ground/json.h"
#include "companion/ground/trouble.h"
#include "driver/ground/files.h"
#include "inspect/bytes.h"
#include "inspect/flash_script.h"
#include "inspect/inspect.h"
#include "inspect/json.h"
#include "inspect/text.h"

namespace tova_fw_builder {
namespace {

struct Options {
  std::vector<std::string> files;
  std::string as;
  std::string script;
  std::string deploy;
  bool is_long = false;
  bool bytes = false;
  bool json = false;
  ColourWhen colour = ColourWhen::kAuto;
};

Json file_json(const std::string& path, const ByteSource& source,
               const Inspected& inspected, bool bytes) {
  const auto digest = sha256_of(source);
  Json json = {
      {"path", path},
      {"length", inspected.length},
      {"sha256",
       hex_text({reinterpret_cast<const char*>(digest.data()), digest.size()})},
      {"format", format_name(inspected.format)}};
  if (bytes) {
    json["ranges"] = byte_ranges_json(inspected);
  } else {
    json.update(field_json(inspected.root));
  }
  json["problems"] = problems_json(inspected);
  return json;
}

void print_text(const std::string& path, const Inspected& inspected,
                const Options& options) {
  const Colours colour = colours(wants_colour(options.colour));
  std::cout << colour.bold << printable(path) << colour.plain << ": "
            << inspected.title << ", " << inspected.length << " bytes\n";
  if (options.bytes) {
    print_byte_ranges(std::cout, inspected);
  } else {
    print_fields(std::cout, inspected.root, options.is_long, colour);
  }
  print_problems(std::cout, inspected, colour);
}

Inspected inspect_as(const ByteSource& source, const Options& options) {
  const bool whole = options.json || options.bytes;
  return inspect(source,
                 options.as.empty() ? std::nullopt : format_named(options.as),
                 whole ? Depth::kWhole : Depth::kTables);
}

// The files that a script names lie beside the image unless told otherwise.
Inspected inspect_scripted(const ByteSource& source, const std::string& path,
                           const Options& options) {
  const auto script = open_input(options.script);
  const std::string prefix =
      options.deploy.empty() ? directory_of(path) : options.deploy;
  return inspect_flash_image(source, *script, prefix);
}

// Shows one file; false if nothing in it is known.
bool show_file(const std::string& path, const Options& options, Json& files) {
  const ByteSource source = ByteSource::open(path);
  const Inspected inspected = options.script.empty()
                                  ? inspect_as(source, options)
                                  : inspect_scripted(source, path, options);
  if (options.json) {
    files.push_back(file_json(path, source, inspected, options.bytes));
  } else {
    print_text(path, inspected, options);
  }
  return !options.as.empty() || !options.script.empty() || is_known(inspected);
}

Status show_files(const Options& options) {
  Status status = Status::kYes;
  Json files = Json::array();
  bool first = true;
  for (const std::string& path : options.files) {
    if (!options.json && !first) std::cout << '\n';
    first = false;
    try {
      if (show_file(path, options, files)) continue;
      report_trouble(path,
                     "nothing known is in it (--as FORMAT takes it as what it "
                     "should be)");
    } catch (const std::exception& error) {
      report_trouble(path, error.what());
    }
    status = Status::kTrouble;
  }
  if (options.json) {
    std::cout << json_text(Json({{"schema", 1}, {"files", std::move(files)}}));
  }
  return status;
}

}  // namespace

void add_show_command(CLI::App& program, Status& status) {
  CLI::App* command =
      program.add_subcommand("show", "Show what is in each file");
  const auto options = std::make_shared<Options>();
  command->add_option("FILE", options->files, "The files to show")
      ->required()
      ->type_name("");
  std::vector<std::string> formats;
  for (const std::string_view name : format_names()) formats.emplace_back(name);
  command
      ->add_option("--as", options->as,
                   "Take the files as this format, whatever they look like")
      ->check(CLI::IsMember(formats).description(""))
      ->type_name(CLI::detail::join(formats, "|"));
  CLI::Option* script = command->add_option(
      "--script", options->script,
      "List a flash image by the statements of the script that made it");
  script->type_name("SCRIPT")->excludes("--as");
  command
      ->add_option("--deploy-dir", options->deploy,
                   "What stands in front of the script's file names, as for "
                   "build_img; else the image's folder")
      ->type_name("PREFIX")
      ->needs(script);
  command->add_flag("--long", options->is_long, "Show every field");
  command->add_flag("--bytes", options->bytes,
                    "List every byte range instead: offset, length, field and "
                    "value");
  command->add_flag("--json", options->json, "Print one JSON document");
  add_colour_option(*command, options->colour);
  command->footer(
      "Example: tova_fw show --long firmware.bin firmware.man\n"
      "Example: tova_fw show --json firmware.bin | jq '.files[0].modules'");
  command->callback([options, &status] { status = show_files(*options); });
}

}  // namespace tova_fw_builder
