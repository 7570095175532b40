// Where the segments stand in the file: on the page grid, and apart. In 3.0 the
// header doesn't tell the second.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "companion/ground/message_text.h"
#include "companion/ground/printable.h"
#include "image/records/binary_header.h"
#include "inspect/check/check_functions.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

// Whether all of a module stands on the page grid.
void check_module_pages(const CheckedFile& header, const Field& module,
                        Report& report) {
  if (number_at(module, "type.loadable") == 0) return;
  for (const Field& segment : find(module, "segments")->members) {
    if (text_at(segment, "type") == "unused") continue;
    for (const char* place : {"vma", "file_off"}) {
      const std::uint64_t value = number_at(segment, place);
      if (value % kPageSize == 0) continue;
      report.failed(header, std::string(text_at(segment, "type")) + " of " +
                                printable(text_at(module, "name")) +
                                " isn't on the page grid: " + place + " is " +
                                number_text(value, Field::Radix::kHex));
    }
  }
}

// The end of the header and its tables.
std::uint64_t tables_end(const Field& field) {
  std::uint64_t end = 0;
  if (!field.has_members()) return field.offset + field.length;
  for (const Field& member : field.members) {
    end = std::max(end, tables_end(member));
  }
  return end;
}

std::uint64_t header_end(const Field& root) {
  std::uint64_t end = 0;
  for (const char* name : {"header", "modules", "symbols", "symbol_table"}) {
    const Field* field = find(root, name);
    if (field != nullptr) end = std::max(end, tables_end(*field));
  }
  const Field* names = find(root, "symbol_table.names_length");
  return names == nullptr ? end : std::max(end, names_end(*names));
}

// A segment at its place in the file, or, in 1.5, in the module.
struct Placed {
  std::uint64_t offset;
  std::uint64_t end;
  std::string name;
};

void check_apart(const CheckedFile& header, std::vector<Placed> segments,
                 std::uint64_t tables, Report& report) {
  std::ranges::stable_sort(segments, {}, &Placed::offset);
  Placed last{0, tables, "the header and its tables"};
  for (Placed& segment : segments) {
    if (segment.offset < last.end) {
      report.failed(
          header, segment.name + " and " + last.name + " share " +
                      counted(std::min(last.end, segment.end) - segment.offset,
                              "byte") +
                      " of the file");
    }
    if (segment.end > last.end) last = std::move(segment);
  }
}

void add_segments(const Field& module, std::uint64_t room,
                  std::vector<Placed>& to) {
  for (const Field* segment : stored_segments(module)) {
    const std::uint64_t offset = number_at(*segment, "file_off");
    const std::uint64_t at = offset - std::min(room, offset);
    to.push_back({at, at + bytes_of(*segment),
                  std::string(text_at(*segment, "type")) + " of " +
                      printable(text_at(module, "name"))});
  }
}

// Of a manifest, file_off counts from the contents of a signed package on, but
// not alike for all modules: only the segments of one can be compared.
void check_header_apart(const CheckedFile& header, Report& report) {
  const Field& root = header.inspected.root;
  const std::vector<Field>& modules = find(root, "modules")->members;
  if (header.inspected.format == Format::kManifest15) {
    for (const Field& module : modules) {
      std::vector<Placed> segments;
      add_segments(module, 0, segments);
      check_apart(header, std::move(segments), number_at(root, "css.size") * 4,
                  report);
    }
    return;
  }
  const std::uint64_t room =
      kSignedHeaderOffset - number_at(root, "header_offset");
  std::vector<Placed> segments;
  if (is_30(header)) {
    segments.push_back(
        {kContentsOffset, header.inspected.length, "the contents"});
  } else {
    for (const Field& module : modules) add_segments(module, room, segments);
  }
  check_apart(header, std::move(segments), header_end(root), report);
}

}  // namespace

void check_pages(const ImageFiles& image, Report& report) {
  for (const CheckedFile* header : image.headers) {
    const std::size_t before = report.failures();
    const Field& root = header->inspected.root;
    const std::uint64_t pages = number_at(root, "header.preload_page_count");
    if (pages == 0) report.failed(*header, "preload_page_count is 0");
    for (const Field& module : find(root, "modules")->members) {
      check_module_pages(*header, module, report);
    }
    const bool has_30 =
        header->inspected.format == Format::kBinary && is_30(*header);
    constexpr std::uint64_t kPages30 = kContentsOffset / kPageSize;
    if (has_30 && pages != 0 && pages != kPages30) {
      report.failed(*header, "preload_page_count is " + std::to_string(pages) +
                                 "; in 3.0 it is always " +
                                 std::to_string(kPages30));
    }
    if (has_30 && header->inspected.length > kContentsOffset &&
        (header->inspected.length - number_at(root, "header_offset")) %
                kPageSize !=
            0) {
      report.failed(*header,
                    "the contents don't end on the page grid: an addon stands "
                    "off it, or the file was cut or has grown");
    }
    if (report.failures() == before) {
      report.ok(*header, "all segments stand on the page grid");
    }
  }
}

void check_segments_apart(const ImageFiles& image, Report& report) {
  for (const CheckedFile* header : image.headers) {
    const std::size_t before = report.failures();
    check_header_apart(*header, report);
    if (report.failures() != before) continue;
    if (header->inspected.format == Format::kBinary && is_30(*header)) {
      report.ok(*header,
                "the tables end ahead of the contents; in 3.0 the header "
                "doesn't tell where segments stand");
    } else {
      report.ok(*header, "no byte belongs to two segments or to the tables");
    }
  }
}

}  // namespace tova_fw_builder
