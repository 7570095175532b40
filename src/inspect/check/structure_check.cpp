// Whether each file is whole in itself, as its decoder has found, and what is
// to be told of files in which nothing is known. That all are of one image is a
// part of the check, too, in one_image_check.
#include <string>
#include <vector>

#include "inspect/check/check_functions.h"

namespace tova_fw_builder {
namespace {

using Files = std::vector<const CheckedFile*>;

void check_files(const Files& files, Report& report) {
  for (const CheckedFile* file : files) {
    const std::vector<Problem>& problems = file->inspected.problems;
    if (problems.empty()) {
      report.ok(*file, file->inspected.title);
      continue;
    }
    std::string text = "at " +
                       number_text(problems[0].offset, Field::Radix::kHex) +
                       ": " + problems[0].text;
    if (problems.size() > 1) {
      text += ", and " + std::to_string(problems.size() - 1) + " more";
    }
    report.failed(*file, text + " (tova_fw show tells all)");
  }
}

}  // namespace

void check_structure(const ImageFiles& image, Report& report) {
  for (const Files* files : {&image.headers, &image.metadata, &image.extended,
                             &image.packages, &image.others}) {
    check_files(*files, report);
  }
  if (image.options.release && image.headers.empty()) {
    report.failed(
        "--release asks for an image: neither a manifest of 1.5 nor a binary "
        "is among the files");
  }
  check_one_image(image, report);
  for (const UnknownFile& unknown : image.unknown) {
    if (unknown.kind != UnknownFile::Kind::kBeside) continue;
    if (unknown.is_gap) {
      report.not_checked(*unknown.file, unknown.text);
    } else {
      report.not_due(*unknown.file, unknown.text);
    }
  }
}

}  // namespace tova_fw_builder
