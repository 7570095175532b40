// The header of 3.0 is written ahead of the contents and counts none of them,
// and ahead of an addon stand as many zeros as its load address asks for, which
// the header doesn't tell either. Where segments run where they are loaded, the
// run addresses tell the zeros: what they tell counts if the file bears it out.
#include <algorithm>
#include <optional>
#include <string>

#include "image/records/binary_header.h"
#include "inspect/check/checks.h"

namespace tova_fw_builder {
namespace {

bool is_zero(const std::string& bytes) {
  return bytes.find_first_not_of('\0') == bytes.npos;
}

// Whether there are that many zeros, and something else behind them.
bool is_gap(const ByteSource& source, Span gap) {
  constexpr std::uint64_t kLooked = 4096;
  bool all_zero = true;
  source.pieces(gap.offset, gap.length, [&all_zero](std::string_view piece) {
    all_zero = piece.find_first_not_of('\0') == piece.npos;
    return all_zero;
  });
  return all_zero && !is_zero(source.bytes(gap.offset + gap.length, kLooked));
}

struct Told {
  std::uint64_t least = kContentsOffset;  // without any zeros between
  std::uint64_t end = kContentsOffset;
  std::vector<Span> gaps;
};

Told told_by(const Field& root) {
  Told told;
  std::optional<std::uint64_t> last;
  for (const Field& module : find(root, "modules")->members) {
    for (const Field* segment : stored_segments(module)) {
      const std::uint64_t address = number_at(*segment, "vma");
      if (last && address > *last) {
        told.gaps.push_back({told.end, address - *last});
        told.end += address - *last;
      }
      told.end += bytes_of(*segment);
      told.least += bytes_of(*segment);
      last = address + bytes_of(*segment);
    }
  }
  return told;
}

bool is_borne_out(const Told& told, const CheckedFile& binary) {
  const std::uint64_t length = binary.inspected.length;
  bool any = false;
  for (const Span& gap : told.gaps) {
    if (gap.offset + gap.length >= length) break;
    if (!is_gap(binary.source, gap)) return false;
    any = true;
  }
  return any;
}

}  // namespace

void check_length_30(const CheckedFile& binary, Report& report) {
  const Told told = told_by(binary.inspected.root);
  const std::uint64_t length = binary.inspected.length;
  const std::string has = counted(length, "byte");
  if (length == told.end || length == told.least) {
    report.ok(binary, has);
  } else if (length < told.least) {
    report.failed(binary, has + ", " + std::to_string(told.least - length) +
                              " fewer than its segments have");
  } else if (is_borne_out(told, binary)) {
    report.failed(binary, has +
                              ", and its segments with the zeros between "
                              "them have " +
                              std::to_string(told.end));
  } else {
    report.not_checked(
        binary, std::to_string(length - told.least) +
                    " bytes belong to no segment: zeros ahead of addons, or "
                    "the file has grown; the header of 3.0 doesn't tell");
  }
}

}  // namespace tova_fw_builder
