#include "inspect/check/checked_sample.h"

#include "support/captured_log.h"

namespace tova_fw_builder {
namespace {

std::string texts(const std::vector<std::string_view>& ids) {
  std::string text;
  for (const std::string_view id : ids) text.append(id).append(" ");
  return text;
}

}  // namespace

Checked check(const ImageSample& image, const CheckOptions& options,
              bool in_folder) {
  const CapturedLog quiet;
  std::vector<CheckedFile> files;
  for (const auto& [name, bytes] : image) {
    files.push_back(checked_file(name, ByteSource::of(bytes)));
    files.back().in_folder = in_folder;
  }
  return check_image(files, options);
}

std::string failed(const Checked& checked) {
  return texts(ids_of(checked, [](const CheckLine& line) {
    return line.result == CheckResult::kFailed;
  }));
}

std::string gaps(const Checked& checked) {
  return texts(
      ids_of(checked, [](const CheckLine& line) { return line.is_gap; }));
}

std::string lines_of(const Checked& checked, std::string_view id) {
  std::string text;
  for (const CheckLine& line : checked.lines) {
    if (line.id != id) continue;
    text += std::string(result_name(line.result)) + ' ' + line.file + ": " +
            line.text + '\n';
  }
  return text;
}

}  // namespace tova_fw_builder
