// The command `build_img`.
#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "tools/commands.h"
#include "tools/image_script.h"

namespace tova_fw_builder {

void build_image(const std::string& img_dscr_file,
                 const std::string& deploy_dir, const std::string& out_file) {
  log_info("Building Image");
  log_detail("IMG DSCR file: ", img_dscr_file);
  log_detail("DEPLOY directory: ", deploy_dir);
  log_detail("IMG file: ", out_file);
  // Ahead of the output: without a script an older image stays whole.
  run_image_script(*open_input(img_dscr_file), deploy_dir, out_file);
  log_info("Finished");
}

}  // namespace tova_fw_builder
