// Of several headers, that of a signed manifest; a debug signature is not to
// hide behind another one.
#include "inspect/check/image_summary.h"

#include <algorithm>
#include <cstddef>

#include "companion/ground/message_text.h"

namespace tova_fw_builder {
namespace {

std::string generation_of(const ImageFiles& image, const CheckedFile& header) {
  if (header.inspected.format == Format::kManifest15) return "1.5";
  if (is_30(header)) return "3.0";
  return image.metadata.empty()
             ? "1.8 or 2.5"
             : std::string(
                   text_at(image.metadata[0]->inspected.root, "generation"));
}

std::string signature_of(const CheckedFile& manifest) {
  constexpr std::size_t kDigits = 8;
  const Field& root = manifest.inspected.root;
  if (number_at(root, "signed") == 0) return "unsigned";
  return std::string("signed ") +
         (number_at(root, "css.debug") != 0 ? "debug " : "release ") +
         std::string(text_at(root, "public_key_hash").substr(0, kDigits)) +
         "\u2026";
}

}  // namespace

std::string image_summary(const ImageFiles& image) {
  if (image.headers.empty()) return "";
  const auto rank = [](const CheckedFile* file) {
    const Field& root = file->inspected.root;
    return number_at(root, "signed") +
           number_at(root, "signed") * number_at(root, "css.debug");
  };
  const CheckedFile& header =
      **std::ranges::max_element(image.headers, {}, rank);
  const bool is_15 = header.inspected.format == Format::kManifest15;
  const std::string version = image_version(header.inspected.root);
  std::string text =
      "firmware " + version + "  generation " + generation_of(image, header) +
      "  " +
      counted(is_15 ? main_length(header) : header.inspected.length, "byte");
  if (is_15) text += "  " + signature_of(header);
  if (is_30(header)) text += "  contents without hashes";
  return text;
}

}  // namespace tova_fw_builder
