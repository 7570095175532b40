#include "companion/manifest_input.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <stdexcept>

#include "companion/command_line/command_node.h"
#include "companion/ground/input_file.h"
#include "companion/ground/trouble.h"
#include "image/kelp15.h"
#include "image/records/css_part.h"

namespace tova_fw_builder {
namespace {

// A manifest of the greatest size and what its symbol table pushed behind it.
constexpr std::size_t kMostBytes = 1 << 20;

[[noreturn]] void refuse(const std::string& reason) {
  throw std::runtime_error(reason);
}

void require_covered(std::span<const std::uint8_t> bytes) {
  CssHeader css;
  if (bytes.size() < sizeof(CssPart)) {
    refuse("this is no manifest of generation 1.5: it is too short");
  }
  std::memcpy(&css, bytes.data(), sizeof(css));
  if (css.module_type != CssHeader::kModuleType) {
    refuse(
        "this is no manifest of generation 1.5, the only one that is signed "
        "by this tool");
  }
  if (css.header_len != CssHeader::kPartLength) {
    refuse("its header_len is " + std::to_string(css.header_len) +
           ", not 161: a signature would not cover all that matters");
  }
  const std::uint64_t size = std::uint64_t{css.size} * 4;
  if (size < sizeof(CssPart) || size > kMaxManifestLength) {
    refuse("its size of " + std::to_string(size) +
           " bytes is none of a "
           "manifest, which has 644 to 8192");
  }
  if (bytes.size() < size) {
    refuse("it is cut off: " + std::to_string(bytes.size()) + " of " +
           std::to_string(size) + " bytes are there");
  }
  // A symbol table pushes zeros of the padding behind the end.
  const auto behind = bytes.subspan(static_cast<std::size_t>(size));
  if (!std::ranges::all_of(behind, [](auto byte) { return byte == 0; })) {
    refuse("behind its " + std::to_string(size) +
           " bytes stands more than "
           "zeros, which signing would drop");
  }
}

}  // namespace

std::vector<std::uint8_t> read_manifest_bytes(const std::string& path) {
  std::vector<std::uint8_t> bytes(kMostBytes + 1);
  bytes.resize(read_head(path, bytes));
  if (bytes.size() > kMostBytes) refuse("is too long for a manifest");
  return bytes;
}

std::unique_ptr<ImageManifest> manifest_to_sign(
    const std::vector<std::uint8_t>& bytes, bool debug) {
  require_covered(bytes);
  auto manifest = read_kelp15_manifest(bytes);
  if (debug) manifest->set_debug();
  return manifest;
}

void note_debug_mark(const std::string& path,
                     const std::vector<std::uint8_t>& bytes, bool debug) {
  CssHeader css;
  std::memcpy(&css, bytes.data(), sizeof(css));
  if (!debug && (css.module_id & CssHeader::kDebugSignature) != 0) {
    report_trouble(path,
                   "it has the debug mark already, and a release "
                   "signature keeps it");
  }
}

void add_kind_of_signature(CommandNode command, bool& debug) {
  command.add_choices(
      "Kind of signature, one of them",
      {{"--debug", "A debug signature, which loaders tell by its mark",
        [&debug] { debug = true; }},
       {"--release", "A release signature", [&debug] { debug = false; }}});
}

}  // namespace tova_fw_builder
