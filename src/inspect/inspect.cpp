#include "inspect/inspect.h"

#include <algorithm>

#include "inspect/coverage.h"
#include "inspect/decoders.h"
#include "inspect/recognise.h"

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

void take_leaves(const Field& field, Coverage& coverage) {
  if (!field.has_members()) coverage.take({field.offset, field.length});
  for (const Field& member : field.members) take_leaves(member, coverage);
}

// Reserved bytes that aren't zero are problems wherever they stand.
void check_reserved(const Field& field, Inspected& out) {
  if (field.kind == Field::Kind::kReserved && !field.text.empty()) {
    add_problem(out, field.offset, "reserved bytes are not zero");
  }
  for (const Field& member : field.members) check_reserved(member, out);
}

// The place of the first byte that isn't zero.
std::optional<std::uint64_t> first_set(const ByteSource& source, Span span) {
  std::optional<std::uint64_t> found;
  std::uint64_t offset = span.offset;
  source.pieces(span.offset, span.length, [&](std::string_view piece) {
    const std::size_t at = piece.find_first_not_of('\0');
    if (at != piece.npos) found = offset + at;
    offset += piece.size();
    return !found;
  });
  return found;
}

// Names what no field has as padding.
void name_padding(const ByteSource& source, Depth depth, Inspected& out) {
  Coverage coverage(out.length);
  take_leaves(out.root, coverage);
  std::uint64_t budget = depth == Depth::kWhole ? out.length : kPaddingTested;
  Field padding = list_field("padding", Field::Shown::kBytes);
  for (const Span gap : coverage.gaps()) {
    Field field = text_field("", "");
    field.kind = Field::Kind::kPadding;
    padding.add(placed(std::move(field), gap.offset, gap.length));
    const std::uint64_t tested = std::min(gap.length, budget);
    budget -= tested;
    if (const auto set = first_set(source, {gap.offset, tested})) {
      add_problem(out, *set, "padding is not zero");
    }
  }
  out.root.add(std::move(padding));
}

}  // namespace

Inspected inspect(const ByteSource& source, std::optional<Format> as,
                  Depth depth) {
  Inspected out;
  out.length = source.size();
  out.root.kind = Field::Kind::kObject;
  out.format = safe_format(source, as);
  kDecoders[static_cast<std::size_t>(out.format)](source, out);
  check_reserved(out.root, out);
  name_padding(source, depth, out);
  std::stable_sort(
      out.problems.begin(), out.problems.end(),
      [](const Problem& a, const Problem& b) { return a.offset < b.offset; });
  return out;
}

}  // namespace tova_fw_builder
