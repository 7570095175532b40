// A whole `build`, from one input that is cut into its files.
#include "harness.h"
#include "image/commands.h"

void fuzz_one(const std::string& input) {
  const auto files = cut(input, 6);
  put("image.def", files[0]);
  put("part.def", files[1]);
  put("config.h", files[2]);
  put("sections", files[3]);
  put("symbols", files[4]);
  put("elf", files[5]);
  put("elf.list", "elf\nsections\nsymbols\n");
  put("key",
      "(10:public-key(16:rsa-pkcs1-sha256(1:e3:" + std::string("\1\0\1", 3) +
          ")(1:n256:" + std::string(256, 'n') + ")))");
  put("keys.list", "debug key\n");
  using namespace tova_fw_builder;
  try {
    buildrom_command(".", "image.def", "./", "elf.list", "rom");
  } catch (const std::exception&) {
  }
  BuildArguments arguments;
  arguments.version = {1, 2, 3, 4};
  arguments.css_header_size = 0x400;
  arguments.default_dir = ".";
  arguments.image_def_path = "image.def";
  arguments.module_config_path = "config.h";
  arguments.key_list_path = "keys.list";
  arguments.out_dir = "./";
  arguments.elf_list_name = "elf.list";
  arguments.manifest_name = "image.man";
  arguments.binary_name = "image";
  build_command(arguments);
}
