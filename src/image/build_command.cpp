// The `build` command, the main line of the tool: a list of steps in the order
// of the run. The output files are opened first, on purpose: they exist, empty,
// when a definition fails, and relative names mean the folder that the tool was
// started in, whereas reading definitions changes the working directory.
#include <fstream>
#include <utility>

#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "image/commands.h"
#include "image/image.h"
#include "layout/build_core.h"
#include "layout/memory_description.h"
#include "tools/package_descriptor/package_descriptor.h"

namespace tova_fw_builder {

namespace {

// Names are glued to the output directory, which brings its own separator.
struct OutputPaths {
  explicit OutputPaths(const BuildArguments& arguments)
      : elf_list(arguments.out_dir + arguments.elf_list_name),
        manifest(arguments.out_dir + arguments.manifest_name),
        extended(manifest + ".ext"),
        binary(arguments.out_dir + arguments.binary_name) {}

  std::string elf_list;
  std::string manifest;
  std::string extended;
  std::string binary;  // without ".bin"
};

void log_head(const BuildArguments& arguments) {
  log_info("Building FW Image image_flags ", std::hex, arguments.img_flags,
           " feature_mask ", arguments.feat_mask, std::dec, " version ",
           arguments.version);
}

void log_paths(const BuildArguments& arguments, const OutputPaths& paths) {
  log_detail("CSS headers size                : 0x", std::hex,
             arguments.css_header_size);
  log_detail("IMAGE DEF default dir           : ", arguments.default_dir);
  log_detail("IMAGE DEF path                  : ", arguments.image_def_path);
  log_detail("MODCFG file path                : ",
             arguments.module_config_path);
  log_detail("OUT directory                   : ", arguments.out_dir);
  log_detail("ELF_LIST file path              : ", paths.elf_list);
  log_detail("KEY_LIST file path              : ", arguments.key_list_path);
  log_detail("MANIFEST file path              : ", paths.manifest);
  log_detail("MANIFEST ext file path          : ", paths.extended);
  log_detail("BIN file path                   : ", paths.binary, '\n');
}

std::unique_ptr<Image> build_image_object(const BuildArguments& arguments,
                                          const OutputPaths& paths) {
  auto map = build_out_map({
      .elf_list_path = paths.elf_list,
      .key_list_path = arguments.key_list_path,
      .default_dir = arguments.default_dir,
      .image_def_path = arguments.image_def_path,
      .module_config_path = arguments.module_config_path,
  });
  // From the command line alone, so `buildrom` leaves them zero.
  map->fw_img_flags = arguments.img_flags;
  map->feature_mask = arguments.feat_mask;
  map->version = arguments.version;
  return make_image(std::move(map));
}

}  // namespace

void build_command(const BuildArguments& arguments) {
  log_head(arguments);
  const OutputPaths paths(arguments);
  log_paths(arguments, paths);

  // Read back for the digest of the image, hence open for both.
  std::fstream binary = open_output_to_read(paths.binary + ".bin");
  std::ofstream manifest_file = open_output(paths.manifest);
  std::ofstream extended_file = open_output(paths.extended);

  const auto image = build_image_object(arguments, paths);
  log_info("\nWriting sections to ", paths.binary);
  image->write(binary, paths.binary, arguments.css_header_size);

  // Behind write(), whose length and digest the manifest takes.
  // Never a debug manifest: that mark is for `sign` to set.
  const auto manifest = image->create_manifest(false, arguments.imr_type);
  log_info("\nWriting manifest to ", paths.manifest);
  manifest->write(manifest_file, image->map());
  manifest->write_extended(extended_file, image->map());

  write_package_descriptor(image->map(), paths.binary, manifest->date(),
                           manifest->module_type);
  // Last: addresses that it refuses leave all other files complete.
  write_memory_description(image->map(), arguments.out_dir,
                           arguments.binary_name);

  // In this order: on a disk that is nearly full the last bytes of the binary
  // go ahead of the manifests'; of two outputs of one name the manifest counts.
  binary.close();
  manifest_file.close();
  extended_file.close();
}

}  // namespace tova_fw_builder
