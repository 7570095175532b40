// From the command line to one command and an exit status. The one handler
// for everything that goes wrong in a command stands here.
#include "driver/command_line.h"

#include <algorithm>
#include <exception>
#include <iostream>

#include "driver/ground/log.h"

namespace tova_fw_builder {

namespace {

constexpr int kDone = 0;
constexpr int kTooFewParameters = -1;
constexpr int kNoArguments = -2;
constexpr int kNoCommand = -3;
constexpr int kCommandFailed = -5;

// The text keeps its wording, in which two commands differ from what they
// take and two are missing: build systems compare it.
constexpr char kUsage[] =
    R"(usage: tova_fw_builder [-v] command <params>

  build img_flags feat_mask ver_maj ver_min ver_hotfix ver_build css_header_size out_image_def modconf_file out_dir elf_list_file manifest_out_file out_bin_file

  sign debug|release key_file manifest_file manifest_signed_file
  verify bin_file
  write_c bin_file out_c_file
  hash_key pub|pair key_file
  buildrom elf_file map_file out_image_def out_file
  asm pkg_file out_file
  build_img img_dscr_file deploy_dir out_file
)";

int end_with_usage(int status) {
  std::cout << kUsage << std::flush;
  return status;
}

int dispatch(std::span<const std::string> arguments,
             std::span<const Command> commands) {
  // Only here: behind the command word it is a parameter like any.
  if (arguments.front() == "-v") {
    set_log_level(kLogDetail);
    arguments = arguments.subspan(1);
    if (arguments.empty()) return end_with_usage(kNoCommand);
  }
  const std::string& word = arguments.front();
  const auto parameters = arguments.subspan(1);
  const auto command = std::ranges::find(commands, word, &Command::word);
  if (command == commands.end()) {
    log_error("Invalid command ", word);
    return end_with_usage(kNoCommand);
  }
  if (parameters.size() < command->min_parameters) {
    log_error("Insufficient number of args");
    return end_with_usage(kTooFewParameters);
  }
  command->run(parameters);
  return kDone;
}

}  // namespace

int run_command_line(std::span<const std::string> arguments,
                     std::span<const Command> commands) {
  if (arguments.empty()) return end_with_usage(kNoArguments);
  try {
    return dispatch(arguments, commands);
  } catch (const std::exception& error) {
    log_error(error.what());
    return kCommandFailed;
  }
}

}  // namespace tova_fw_builder
