// What no field names is padding; the fields must be complete by then.
#include "inspect/reserved_bytes.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "inspect/coverage.h"

namespace tova_fw_builder {
namespace {

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
void name_padding(const ByteSource& source, std::uint64_t budget,
                  Inspected& out) {
  Coverage coverage(out.length);
  take_leaves(out.root, coverage);
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

void check_reserved_bytes(const ByteSource& source, std::uint64_t tested,
                          Inspected& out) {
  check_reserved(out.root, out);
  name_padding(source, tested, out);
}

}  // namespace tova_fw_builder
