// lint, on a tree of definitions that include one another, with a header and a
// section table; and whether it agrees with the builder about what is refused.
#include "lint/lint.h"

#include <cstdlib>
#include <iostream>
#include <sstream>

#include "definitions/constants_header.h"
#include "definitions/image_block.h"
#include "definitions/includes_and_defines.h"
#include "driver/ground/log.h"
#include "harness.h"
#include "lint/report_json.h"
#include "lint/report_sarif.h"
#include "lint/report_text.h"
#include "lint/rules.h"

namespace {

using namespace tova_fw_builder;

bool builder_refuses(const BuildInputs& inputs) {
  FwOutMap map;
  map.default_dir = inputs.default_dir;
  try {
    read_modules_config(map, *inputs.module_config_path);
    auto text = read_image_defs(map, inputs.image_def_path);
    // An include has lost all of it: no generation is known.
    const bool is_lost = !text->good();
    read_image_layout(map, std::move(text));
    return is_lost;
  } catch (const std::exception&) {
    return true;
  }
}

}  // namespace

void fuzz_one(const std::string& input) {
  const auto files = cut(input, 5);
  put("a", files[1]);
  put("h", files[2]);
  put("elf", files[3]);
  put("elfs", "elf\nsections\nsymbols\n");
  put("sections", files[3]);
  put("symbols", files[4]);
  LintOptions options;
  options.inputs.default_dir = ".";
  options.inputs.image_def_path = put("t", files[0]);
  options.inputs.module_config_path = "h";
  const bool refuses = builder_refuses(options.inputs);
  bool finds = false;
  try {
    const LintReport report = lint(options);
    for (const Finding& finding : report.findings) {
      finds = finds || finding.rule == kRefused;
      if (finding.rule != kRefused && finding.rule != "duplicate-uuid" &&
          finding.level == Level::kError) {
        std::abort();
      }
    }
    std::ostringstream text;
    print_findings(text, report, "/", true, {});
    print_findings_json(text, report, "/");
    print_findings_sarif(text, report, "/", "0");
  } catch (const std::exception&) {
    finds = true;  // the top file itself
  }
  if (finds != refuses) std::abort();
  options.inputs.elf_list_path = "elfs";
  options.inputs.module_config_path.reset();
  lint(options);
}
