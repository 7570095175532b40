#include "companion/check_command.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "companion/colour_option.h"
#include "companion/command_line/command_node.h"
#include "companion/ground/json.h"
#include "companion/ground/message_text.h"
#include "companion/ground/naming.h"
#include "companion/ground/trouble.h"
#include "companion/key_store.h"
#include "driver/ground/native_path.h"
#include "inspect/check/check.h"
#include "inspect/field.h"
#include "inspect/recognise.h"
#include "outside_keys/any_key.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

struct Options {
  std::vector<std::string> files;
  std::vector<std::string> trust;
  bool release = false;
  std::string key_list;
  bool summary = false;
  bool json = false;
  ColourWhen colour = ColourWhen::kAuto;
};

// A key file, not a file of the image that a key has got into.
bool is_key(const CheckedFile& file) {
  const Format format = recognise(file.source);
  return format == Format::kKeyPair || format == Format::kPublicKey;
}

// The files of the command line, folders replaced by what they hold.
struct Given {
  std::vector<CheckedFile> files;
  Troubles troubles;

  void open(const std::string& path, bool in_folder) {
    try {
      CheckedFile file = checked_file(path, ByteSource::open(path));
      file.in_folder = in_folder;
      if (!is_key(file)) {
        files.push_back(std::move(file));
      } else if (!in_folder) {
        troubles.add(path, "a key is no part of an image: --trust " + path +
                               " demands a signature that was made with it");
      }
    } catch (const std::exception& error) {
      troubles.add(trouble_of(error));
    }
  }

  // A link that leads nowhere is opened, too, so that its trouble is told.
  void open_folder(const std::string& folder) {
    std::vector<std::string> paths;
    std::vector<std::string> folders;
    std::error_code error;
    for (fs::directory_iterator at(native_path(folder), error), end;
         !error && at != end; at.increment(error)) {
      std::error_code ignored;
      const fs::file_type type = at->status(ignored).type();
      if (type == fs::file_type::directory) {
        folders.push_back(path_text(at->path()));
      } else if (type == fs::file_type::regular ||
                 type == fs::file_type::not_found ||
                 type == fs::file_type::none) {
        paths.push_back(path_text(at->path()));
      }
    }
    if (error) troubles.add(folder, "cannot be read: " + error.message());
    std::ranges::sort(paths);
    for (const std::string& path : paths) open(path, true);
    if (!paths.empty() || error) return;
    troubles.add(folder,
                 folders.empty()
                     ? "no file is in it"
                     : "no file is in it, but folders: give the folder of one "
                       "image, such as " +
                           *std::ranges::min_element(folders));
  }
};

void open_files(const std::vector<std::string>& paths, Given& given) {
  for (const std::string& path : paths) {
    std::error_code error;
    if (fs::is_directory(native_path(path), error)) {
      given.open_folder(path);
    } else {
      given.open(path, false);
    }
  }
}

CheckOptions check_options(const Options& options) {
  CheckOptions wanted;
  wanted.release = options.release;
  for (const std::string& text : options.trust) {
    wanted.trusted.push_back(
        naming(text, [&] { return trusted_key_hash(text); }));
  }
  if (!options.key_list.empty()) {
    wanted.key_store = key_store_of(options.key_list);
  }
  return wanted;
}

bool is_failed(const CheckLine& line) {
  return line.result == CheckResult::kFailed;
}
bool is_gap(const CheckLine& line) { return line.is_gap; }

Json checks_json(const Checked& checked, const Troubles& troubles) {
  Json lines = Json::array();
  for (const CheckLine& line : checked.lines) {
    lines.push_back({{"id", line.id},
                     {"result", result_name(line.result)},
                     {"file", line.file},
                     {"text", line.text}});
  }
  return {{"schema", 1},
          {"holds", holds(checked) && !troubles.any()},
          {"not_checked", ids_of(checked, is_gap)},
          {"checks", std::move(lines)},
          {"troubles", troubles_json(troubles)}};
}

std::string joined(const std::vector<std::string_view>& ids) {
  std::string text;
  for (const std::string_view id : ids) {
    text.append(text.empty() ? "" : ", ").append(id);
  }
  return text;
}

std::string verdict(const Checked& checked, bool all_hold) {
  const auto failed = ids_of(checked, is_failed);
  const auto gaps = ids_of(checked, is_gap);
  if (!failed.empty()) return "FAILED: " + joined(failed);
  if (checked.lines.empty()) return "nothing was checked";
  if (!all_hold) return "files are missing";
  if (checked.summary.empty()) return "nothing is wrong in itself";
  if (gaps.empty()) return "all checks hold";
  return "no check fails; not checked: " + joined(gaps);
}

void print_summary(const Checked& checked, bool all_hold) {
  std::cout << (checked.summary.empty() ? "no image" : checked.summary) << "  "
            << verdict(checked, all_hold) << '\n';
}

void print_lines(const Checked& checked, const Colours& colour) {
  constexpr std::size_t kResultWidth = 13;
  constexpr std::size_t kIdWidth = 19;
  for (const CheckLine& line : checked.lines) {
    const char* tone = line.result == CheckResult::kOk       ? colour.good
                       : line.result == CheckResult::kFailed ? colour.bad
                                                             : colour.faint;
    const std::string_view result = result_name(line.result);
    std::cout << tone << result << colour.plain
              << std::string(kResultWidth - result.size(), ' ') << line.id
              << std::string(kIdWidth - line.id.size(), ' ');
    if (!line.file.empty()) std::cout << printable(line.file) << ": ";
    std::cout << printable(line.text) << '\n';
  }
}

// Files in which nothing is known must not pass for checked ones.
void report_unknown(const Checked& checked, const Options& options,
                    Given& given) {
  for (const UnknownFile& unknown : checked.unknown) {
    given.troubles.add(unknown.file->path, unknown.text);
  }
  if (given.troubles.any()) return;
  if (!checked.has_known) {
    given.troubles.add(options.files[0], "no file of an image is in it");
  } else if (checked.summary.empty() && given.files.size() > 1) {
    given.troubles.add(
        options.files[0],
        "no header of an image is among the files: give the binary, or the "
        "manifest of 1.5");
  }
}

Status check_files(const Options& options) {
  Given given;
  Checked checked;
  try {
    const CheckOptions wanted = check_options(options);
    open_files(options.files, given);
    checked = check_image(given.files, wanted);
    report_unknown(checked, options, given);
  } catch (const std::runtime_error& error) {
    given.troubles.add(trouble_of(error));
  }
  if (options.json) {
    std::cout << json_text(checks_json(checked, given.troubles));
  } else if (options.summary) {
    print_summary(checked, holds(checked) && !given.troubles.any());
  } else {
    print_lines(checked, colours(wants_colour(options.colour)));
  }
  return given.troubles.any() ? Status::kTrouble
         : holds(checked)     ? Status::kYes
                              : Status::kNo;
}

}  // namespace

void add_check_command(CommandNode program, Status& status) {
  const CommandNode command = program.add_command(
      "check", "Check that the files of an image belong together");
  const auto options = std::make_shared<Options>();
  command
      .add_option("FILE", options->files,
                  "Files of one image, in any order; a folder stands for the "
                  "files in it")
      .required()
      .called("");
  command
      .add_option("--trust", options->trust,
                  "Demand a signature with this key: its hash, a key file, PEM "
                  "or DER; "
                  "one of several if given more than once")
      .called("KEY")
      .repeatable();
  command.add_flag("--release", options->release,
                   "Refuse debug signatures, unsigned manifests, the key of "
                   "the sample, and contents that aren't given");
  command
      .add_option("--key-list", options->key_list,
                  "Compare the store of trusted keys in the contents with "
                  "this key list")
      .called("FILE");
  const Option summary =
      command.add_flag("--summary", options->summary, "Print one line");
  command.add_flag("--json", options->json, "Print one JSON document")
      .excludes(summary);
  add_colour_option(command, options->colour);
  command.footer(
      "Ends with 0 if no check failed, with 1 if one did, and with 2 if a file "
      "can't be\n"
      "read or belongs to no image.\n"
      "Example: tova_fw check firmware.bin firmware.man.signed firmware.pkg\n"
      "Example: tova_fw check --release --trust release-key-public.key out/\n"
      "Example: tova_fw check --json out/ | jq '.checks[] | "
      "select(.result == \"FAILED\")'");
  command.run([options, &status] { status = check_files(*options); });
}

}  // namespace tova_fw_builder
