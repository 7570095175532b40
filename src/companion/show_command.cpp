#include "companion/show_command.h"

#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "companion/colour_option.h"
#include "companion/command_line/command_node.h"
#include "companion/ground/byte_text.h"
#include "companion/ground/message_text.h"
#include "companion/ground/naming.h"
#include "companion/ground/printable.h"
#include "companion/ground/trouble.h"
#include "driver/ground/paths.h"
#include "inspect/bytes.h"
#include "inspect/flash_script.h"
#include "inspect/format.h"
#include "inspect/inspect.h"
#include "inspect/json.h"
#include "inspect/recognise.h"
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

void print_json(const std::string& path, const ByteSource& source,
                const Inspected& inspected, bool bytes) {
  const auto digest = sha256_of(source);
  const std::string digest_text = hexadecimal(digest);
  constexpr std::size_t kIndent = 6;
  std::cout << "    {\n";
  for (const Field& head :
       {text_field("path", path), number_field("length", inspected.length),
        text_field("sha256", digest_text),
        text_field("format", std::string(format_name(inspected.format)))}) {
    print_member(std::cout, head, kIndent);
    std::cout << ",\n";
  }
  if (bytes) {
    print_ranges_member(std::cout, inspected, kIndent);
    std::cout << ",\n";
  } else {
    for (const Field& member : inspected.root.members) {
      if (member.shown == Field::Shown::kBytes) continue;
      print_member(std::cout, member, kIndent);
      std::cout << ",\n";
    }
  }
  print_problems_member(std::cout, inspected, kIndent);
  std::cout << "\n    }";
}

void print_text(const std::string& path, const Inspected& inspected,
                const Options& options) {
  const Colours colour = colours(wants_colour(options.colour));
  std::cout << colour.bold << printable(path) << colour.plain << ": "
            << inspected.title << ", " << counted(inspected.length, "byte")
            << '\n';
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

std::string script_text(const std::string& path) {
  constexpr std::uint64_t kLongest = 16 * 1024 * 1024;
  const ByteSource source = ByteSource::open(path);
  if (source.size() > kLongest) {
    throw std::runtime_error("is too long for an image script");
  }
  const WipedBytes bytes = source.bytes(0, source.size());
  return {bytes.begin(), bytes.end()};
}

// The files that a script names lie beside the image unless told otherwise.
Inspected inspect_scripted(const ByteSource& source, const std::string& path,
                           const Options& options) {
  const std::string prefix =
      options.deploy.empty() ? directory_of(path) : options.deploy;
  return naming(options.script, [&] {
    std::istringstream script(script_text(options.script));
    return inspect_flash_image(source, script, prefix);
  });
}

std::string unknown_text(const ByteSource& source) {
  constexpr std::uint64_t kHead = 4096;
  const WipedBytes head = source.bytes(0, kHead);
  const bool is_pem =
      view_of(head).find("-----BEGIN ") != std::string_view::npos;
  return std::string("nothing known is in it (") +
         (is_pem ? "'tova_fw key show' shows keys in PEM)"
                 : "--as FORMAT takes it as what it should be)");
}

// Shows one file, and yields what is to be told if nothing in it is known.
std::string show_file(const std::string& path, const Options& options,
                      bool is_first) {
  const ByteSource source = ByteSource::open(path);
  const Inspected inspected = options.script.empty()
                                  ? inspect_as(source, options)
                                  : inspect_scripted(source, path, options);
  if (options.json) {
    std::cout << (is_first ? "\n" : ",\n");
    print_json(path, source, inspected, options.bytes);
  } else {
    if (!is_first) std::cout << '\n';
    print_text(path, inspected, options);
  }
  const bool known =
      !options.as.empty() || !options.script.empty() || is_known(inspected);
  return known ? "" : unknown_text(source);
}

Status show_files(const Options& options) {
  Troubles troubles;
  bool is_first = true;
  if (options.json) std::cout << "{\n  \"schema\": 1,\n  \"files\": [";
  for (const std::string& path : options.files) {
    try {
      const std::string unknown = show_file(path, options, is_first);
      is_first = false;
      if (!unknown.empty()) troubles.add(path, unknown);
    } catch (const FileError& error) {
      troubles.add(trouble_of(error));
    } catch (const std::exception& error) {
      troubles.add(path, error.what());
    }
  }
  if (options.json) {
    std::cout << (is_first ? "],\n" : "\n  ],\n")
              << "  \"troubles\": " << json_line(troubles_json(troubles))
              << "\n}\n";
  }
  return troubles.any() ? Status::kTrouble : Status::kYes;
}

}  // namespace

void add_show_command(CommandNode program, Status& status) {
  const CommandNode command =
      program.add_command("show", "Show what is in each file");
  const auto options = std::make_shared<Options>();
  command.add_option("FILE", options->files, "The files to show")
      .required()
      .called("");
  std::vector<std::string> formats;
  for (const std::string_view name : format_names()) formats.emplace_back(name);
  const Option as =
      command
          .add_option("--as", options->as,
                      "Take the files as this format, whatever they look like")
          .one_of(formats);
  const Option script =
      command
          .add_option(
              "--script", options->script,
              "List a flash image by the statements of the script that made it")
          .called("SCRIPT")
          .excludes(as);
  command
      .add_option("--deploy-dir", options->deploy,
                  "What stands in front of the script's file names, as for "
                  "build_img; else the image's folder")
      .called("PREFIX")
      .needs(script);
  command.add_flag("--long", options->is_long, "Show every field");
  command.add_flag("--bytes", options->bytes,
                   "List every byte range instead: offset, length, field and "
                   "value");
  command.add_flag("--json", options->json, "Print one JSON document");
  add_colour_option(command, options->colour);
  command.footer(
      "Ends with 0 if every file was shown, a damaged one, too, with its "
      "problems; with 2\n"
      "if a file can't be read or nothing in it is known.\n"
      "Example: tova_fw show --long firmware.bin firmware.man\n"
      "Example: tova_fw show --json firmware.bin | jq '.files[0].modules'");
  command.run([options, &status] { status = show_files(*options); });
}

}  // namespace tova_fw_builder
