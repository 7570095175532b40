#include "inspect/inspect.h"

#include <algorithm>

#include "inspect/decoders.h"
#include "inspect/recognise.h"
#include "inspect/reserved_bytes.h"

namespace tova_fw_builder {
namespace {

using Decoder = void (*)(const ByteSource& source, Inspected& out);

// In the order of Format.
constexpr Decoder kDecoders[] = {
    decode_binary,
    decode_manifest_15,
    decode_metadata,
    decode_extended_manifest,
    decode_package_descriptor,
    decode_key_pair,
    decode_public_key,
    decode_embedded,
};

constexpr std::uint64_t kPaddingTested = 1024 * 1024;  // for Depth::kTables

}  // namespace

Inspected inspect(const ByteSource& source, std::optional<Format> as,
                  Depth depth) {
  Inspected out;
  out.length = source.size();
  out.root.kind = Field::Kind::kObject;
  out.format = safe_format(source, as);
  kDecoders[static_cast<std::size_t>(out.format)](source, out);
  check_reserved_bytes(
      source, depth == Depth::kWhole ? out.length : kPaddingTested, out);
  std::stable_sort(
      out.problems.begin(), out.problems.end(),
      [](const Problem& a, const Problem& b) { return a.offset < b.offset; });
  return out;
}

}  // namespace tova_fw_builder
