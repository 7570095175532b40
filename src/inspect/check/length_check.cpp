// The length of each file against the one that is told: by its own header, or
// by the manifest of its image. Only that of a binary of 3.0 isn't told.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/ground/message_text.h"
#include "image/records/binary_header.h"
#include "inspect/check/check_functions.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

void compare_length(const CheckedFile& file, std::uint64_t expected,
                    const std::string& teller, Report& report) {
  const std::uint64_t length = file.inspected.length;
  if (length == expected) {
    report.ok(file, counted(length, "byte"));
    return;
  }
  const bool is_cut = length < expected;
  report.failed(
      file, counted(length, "byte") + ", " +
                std::to_string(is_cut ? expected - length : length - expected) +
                (is_cut ? " fewer" : " more") + " than " + teller + " tells");
}

// Unsigned, the symbol table makes a manifest longer than its size.
void check_manifest_length(const CheckedFile& manifest, Report& report) {
  const Field& root = manifest.inspected.root;
  std::uint64_t expected = number_at(root, "css.size") * 4;
  const Field* count = find(root, "symbol_table.count");
  const Field* names = find(root, "symbol_table.names_length");
  if (number_at(root, "signed") == 0 && count != nullptr && names != nullptr) {
    expected += names_end(*names) - count->offset;
  }
  compare_length(manifest, expected, "its size", report);
}

bool is_zero(const ByteSource& source, Span span) {
  bool all_zero = true;
  source.pieces(span.offset, span.length, [&all_zero](std::string_view piece) {
    all_zero = piece.find_first_not_of('\0') == piece.npos;
    return all_zero;
  });
  return all_zero;
}

// The header of 3.0 is written ahead of the contents and counts none of them,
// and ahead of an addon stand as many zeros as its load address asks for, which
// the header doesn't tell either. Where segments run where they are loaded, the
// run addresses tell the zeros: what they tell counts if the file bears it out.
struct Told {
  std::uint64_t least = 0;  // without any zeros between
  std::uint64_t end = 0;
  std::vector<Span> gaps;
  std::vector<Span> heads;  // the first page of each segment
  bool is_clear = true;     // addresses rise, and no segment is empty
};

// Zeros may stand ahead of an empty group, too.
bool has_empty_segment(const Field& module) {
  return is_loadable(module) &&
         std::ranges::any_of(
             find(module, "segments")->members, [](const Field& segment) {
               const std::string_view type = text_at(segment, "type");
               return (type == "text" || type == "rodata") &&
                      number_at(segment, "len") == 0;
             });
}

Told told_by(const Field& root) {
  Told told;
  told.least = told.end = number_at(root, "header_offset") + kContentsOffset;
  std::optional<std::uint64_t> last;
  for (const Field& module : find(root, "modules")->members) {
    if (has_empty_segment(module)) told.is_clear = false;
    // Zeros stand ahead of addons alone; what is no addon is told of libraries.
    const bool may_have_gaps = number_at(module, "type.library") == 0;
    for (const Field* segment : stored_segments(module)) {
      const std::uint64_t address = number_at(*segment, "vma");
      if (last && address < *last) told.is_clear = false;
      if (last && address > *last && may_have_gaps) {
        told.gaps.push_back({told.end, address - *last});
        told.end += address - *last;
      }
      told.heads.push_back({told.end, kPageSize});
      told.end += bytes_of(*segment);
      told.least += bytes_of(*segment);
      last = address + bytes_of(*segment);
    }
  }
  return told;
}

// Whether all is clear, what the file has of the gaps is zeros, and all of one,
// and no segment begins with a page of them.
bool is_borne_out(const Told& told, const CheckedFile& binary) {
  const std::uint64_t length = binary.inspected.length;
  const bool gaps = std::ranges::all_of(told.gaps, [&](const Span& gap) {
    return gap.offset >= length || is_zero(binary.source, gap);
  });
  const bool has_one = std::ranges::any_of(told.gaps, [&](const Span& gap) {
    return gap.offset + gap.length < length;
  });
  return told.is_clear && gaps && has_one &&
         std::ranges::none_of(told.heads, [&](const Span& head) {
           return head.offset < length && is_zero(binary.source, head);
         });
}

void check_length_30(const CheckedFile& binary, Report& report) {
  const Told told = told_by(binary.inspected.root);
  const std::uint64_t length = binary.inspected.length;
  const std::string has = counted(length, "byte");
  if (told.heads.empty()) {
    report.ok(binary, has + ", no module has contents");
  } else if (length == told.end || length == told.least) {
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
        binary, counted(length - told.least, "byte") +
                    " more than its segments have: zeros ahead of "
                    "addons, which the header of 3.0 doesn't tell, so that "
                    "nobody knows whether the file was cut or has grown");
  }
}

}  // namespace

void check_length(const ImageFiles& image, Report& report) {
  for (const CheckedFile* binary : image.binaries) {
    if (is_30(*binary)) {
      check_length_30(*binary, report);
      continue;
    }
    const Field& root = binary->inspected.root;
    const std::uint64_t told =
        number_at(root, "header.preload_page_count") * kPageSize;
    const std::uint64_t room =
        kSignedHeaderOffset - number_at(root, "header_offset");
    compare_length(*binary, told - std::min(told, room), "its page count",
                   report);
  }
  for (const CheckedFile* manifest : image.manifests) {
    check_manifest_length(*manifest, report);
  }
  std::set<std::pair<const CheckedFile*, std::uint64_t>> done;
  for (const ContentsPlan& plan : image.plans) {
    for (const BareFile& bare : plan.bare) {
      if (done.emplace(bare.file, bare.expected).second) {
        compare_length(*bare.file, bare.expected, "the manifest", report);
      }
    }
  }
  for (const UnknownFile& unknown : image.unknown) {
    if (unknown.kind == UnknownFile::Kind::kLength) {
      report.failed(*unknown.file, unknown.text);
    }
  }
  for (const CheckedFile* metadata : image.metadata) {
    compare_length(*metadata,
                   number_at(metadata->inspected.root, "extension_length"),
                   "its extension_length", report);
  }
  for (const CheckedFile* extended : image.extended) {
    compare_length(*extended,
                   number_at(extended->inspected.root, "heading.length"),
                   "its heading", report);
  }
}

void check_image_length(const ImageFiles& image, Report& report) {
  for (const DigestPair& pair : image.digest_pairs) {
    const Field& root = pair.metadata->inspected.root;
    const std::uint64_t base = number_at(root, "base_offset");
    const std::uint64_t limit = number_at(root, "limit_offset");
    const std::uint64_t length =
        pair.binary->inspected.length - pair.signer_part;
    if (base + length == limit) {
      report.ok(*pair.metadata,
                counted(length, "byte") + behind_signer_part(pair));
    } else {
      report.failed(*pair.metadata,
                    "limit_offset is " +
                        number_text(limit, Field::Radix::kHex) + ", and " +
                        pair.binary->path + " ends at " +
                        number_text(base + length, Field::Radix::kHex));
    }
  }
}

}  // namespace tova_fw_builder
