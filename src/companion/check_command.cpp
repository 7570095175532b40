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
#include "companion/ground/printable.h"
#include "companion/ground/trouble.h"
#include "companion/key_list_input.h"
#include "driver/ground/paths.h"
#include "inspect/check/check.h"
#include "inspect/field.h"
#include "inspect/recognise.h"
#include "outside_keys/trusted_key.h"

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
  // What became of the others, each in a few words for the summary.
  std::uint64_t unread = 0;
  std::uint64_t unknown = 0;
  std::uint64_t keys = 0;
  std::uint64_t empty_folders = 0;

  void open(const std::string& path, bool in_folder) {
    try {
      CheckedFile file = checked_file(path, ByteSource::open(path));
      file.in_folder = in_folder;
      if (!is_key(file)) {
        add_file(std::move(file), files);
      } else if (!in_folder) {
        ++keys;
        troubles.add(path, "a key is no part of an image: --trust " + path +
                               " demands a signature that was made with it");
      }
    } catch (const std::exception& error) {
      ++unread;
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
    if (error) {
      ++unread;
      troubles.add(folder, "cannot be read: " + error.message());
    }
    std::ranges::sort(paths);
    for (const std::string& path : paths) open(path, true);
    if (!paths.empty() || error) return;
    ++empty_folders;
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

// The ids of the checks that weren't made for want of something. That of
// structure is left unchecked for single files, which may be contents or not.
std::string gaps_text(const Checked& checked) {
  std::vector<std::string> files;
  for (const CheckLine& line : checked.lines) {
    if (line.is_gap && line.id == "structure" && !line.file.empty()) {
      files.push_back(line.file);
    }
  }
  std::string text;
  for (const std::string_view id : ids_of(checked, is_gap)) {
    text.append(text.empty() ? "" : ", ").append(id);
    if (id != "structure" || files.empty()) continue;
    text += " of " + (files.size() == 1 ? printable(files[0])
                                        : counted(files.size(), "file"));
  }
  return text;
}

// Of those files that weren't checked as a part of the image: "; 2 files cannot
// be read".
std::string left_out(const Given& given) {
  std::string text;
  const auto add = [&text](std::uint64_t count, std::string_view noun,
                           const std::string& verb) {
    if (count != 0) text += "; " + counted(count, noun) + verb;
  };
  add(given.unread, "file", " can't be read");
  add(given.unknown, "file", " unknown");
  add(given.keys, "key", " among the files");
  add(given.empty_folders, "folder", " without files");
  return text;
}

std::string verdict(const Checked& checked, const Given& given) {
  const auto failed = ids_of(checked, is_failed);
  const std::string gaps = gaps_text(checked);
  std::string text;
  if (!failed.empty()) {
    text = "FAILED: " + joined(failed);
  } else if (checked.lines.empty() || !checked.has_known) {
    text = "nothing was checked";
  } else if (checked.summary.empty()) {
    text = given.files.size() > 1 ? "no header is among the files"
                                  : "nothing is wrong in itself";
  } else if (gaps.empty() && !given.troubles.any()) {
    text = "all checks hold";
  } else {
    text = "no check fails";
    if (!gaps.empty()) text += "; not checked: " + gaps;
  }
  return text + left_out(given);
}

void print_summary(const Checked& checked, const Given& given) {
  std::cout << (checked.summary.empty() ? "no image" : checked.summary) << "  "
            << verdict(checked, given) << '\n';
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
  given.unknown = checked.unknown.size();
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
    print_summary(checked, given);
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
      "read or nothing known is in it.\n"
      "Example: tova_fw check firmware.bin firmware.man.signed firmware.pkg\n"
      "Example: tova_fw check --release --trust release-key-public.key out/\n"
      "Example: tova_fw check --json out/ | jq '.checks[] | "
      "select(.result == \"FAILED\")'");
  command.run([options, &status] { status = check_files(*options); });
}

}  // namespace tova_fw_builder
