// The modules of the extended manifest against those of the header, in their
// order. Their versions stand in no header; package_check compares them.
#include <cstddef>
#include <string>
#include <vector>

#include "companion/ground/message_text.h"
#include "inspect/check/check_functions.h"

namespace tova_fw_builder {
namespace {

void check_order(const CheckedFile& extended, const CheckedFile& header,
                 Report& report) {
  const std::vector<Field>& here =
      find(extended.inspected.root, "modules")->members;
  const std::vector<Field>& there =
      find(header.inspected.root, "modules")->members;
  if (here.size() != there.size()) {
    report.failed(extended, counted(here.size(), "module") + ", and " +
                                header.path + " has " +
                                std::to_string(there.size()));
    return;
  }
  for (std::size_t i = 0; i < here.size(); ++i) {
    if (text_at(here[i], "uuid") == text_at(there[i], "uuid")) continue;
    report.failed(extended, "module " + std::to_string(i) + " is " +
                                std::string(text_at(here[i], "uuid")) +
                                ", and in " + header.path + ' ' +
                                std::string(text_at(there[i], "uuid")));
    return;
  }
  report.ok(extended,
            "the " + counted(here.size(), "module") + " of " + header.path);
}

}  // namespace

void check_extended_manifest(const ImageFiles& image, Report& report) {
  for (const CheckedFile* extended : image.extended) {
    for (const CheckedFile* header : image.headers) {
      check_order(*extended, *header, report);
    }
  }
}

}  // namespace tova_fw_builder
