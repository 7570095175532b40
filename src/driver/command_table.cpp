// Every command of the tool, and the only place that knows them all: its word,
// how many parameters it needs, and how they are converted. Numbers that can't
// be read are 0 and are not reported.
#include <cstdint>

#include "driver/command_line.h"
#include "driver/ground/numbers.h"
#include "driver/ground/paths.h"
#include "driver/ground/version.h"
#include "image/commands.h"
#include "signing/commands.h"
#include "tools/commands.h"

namespace tova_fw_builder {

namespace {

using Parameters = std::span<const std::string>;

// The low 16 bits of a decimal number.
std::uint16_t version_part(const std::string& text) {
  return static_cast<std::uint16_t>(decimal_or_zero(text));
}

void run_build(Parameters p) {
  build_command({
      .img_flags = hex_or_zero(p[0]),
      .feat_mask = hex_or_zero(p[1]),
      .imr_type = hex_or_zero(p[2]),
      .version = {.major = version_part(p[3]),
                  .minor = version_part(p[4]),
                  .hotfix = version_part(p[5]),
                  .build = version_part(p[6])},
      .css_header_size = decimal_or_zero(p[7]),
      // As it stands now: reading the definition moves it.
      .default_dir = current_directory(),
      .image_def_path = p[8],
      .module_config_path = p[9],
      .key_list_path = p[10],
      .out_dir = p[11],
      .elf_list_name = p[12],
      .manifest_name = p[13],
      .binary_name = p[14],
  });
}

// The usage text names other parameters; these are the ones that it takes:
// image definition, output directory, ELF list, binary.
void run_buildrom(Parameters p) {
  buildrom_command(current_directory(), p[0], p[1], p[2], p[3]);
}

// The usage text leaves `split` and `make_hex` out, and two parameters of
// `build`, which has always wanted all 15.
constexpr Command kCommands[] = {
    {"build", 15, run_build},
    {"buildrom", 4, run_buildrom},
    {"asm", 2, [](Parameters p) { assemble_image(p[0], p[1]); }},
    {"sign", 4, [](Parameters p) { sign_command(p[0], p[1], p[2], p[3]); }},
    {"verify", 1, [](Parameters p) { verify_command(p[0]); }},
    {"write_c", 2, [](Parameters p) { write_c_command(p[0], p[1]); }},
    {"hash_key", 2, [](Parameters p) { hash_key_command(p[0], p[1]); }},
    {"split", 3, [](Parameters p) { split_binary(p[0], p[1], p[2]); }},
    {"build_img", 3, [](Parameters p) { build_image(p[0], p[1], p[2]); }},
    {"make_hex", 3, [](Parameters p) { make_hex_file(p[0], p[1], p[2]); }},
};

}  // namespace

std::span<const Command> command_table() { return kCommands; }

}  // namespace tova_fw_builder
