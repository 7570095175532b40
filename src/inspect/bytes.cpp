#include "inspect/bytes.h"

#include <algorithm>
#include <iomanip>

#include "inspect/coverage.h"
#include "inspect/json.h"
#include "inspect/text.h"

namespace tova_fw_builder {
namespace {

// Takes the bytes of the leaves, of contents alone or of all others.
class RangeCollector {
 public:
  RangeCollector(std::uint64_t length, std::vector<ByteRange>& ranges)
      : coverage_(length), ranges_(ranges) {}

  void collect(const Field& field, const std::string& path, bool contents) {
    const bool is_contents = field.kind == Field::Kind::kContents;
    if (!field.has_members() && is_contents == contents) {
      for (const Span span : coverage_.take({field.offset, field.length})) {
        ranges_.push_back({span.offset, span.length, path, &field});
      }
    }
    for (std::size_t i = 0; i < field.members.size(); ++i) {
      const Field& member = field.members[i];
      collect(member, member_path(path, member, i), contents);
    }
  }

 private:
  Coverage coverage_;
  std::vector<ByteRange>& ranges_;
};

std::string kind_text(const Field& field) {
  if (field.kind == Field::Kind::kContents) return "(contents)";
  if (field.kind == Field::Kind::kPadding) return "(padding)";
  if (field.kind == Field::Kind::kReserved && field.text.empty()) {
    return "(reserved)";
  }
  return value_text(field) + (field.note.empty() ? "" : "  " + field.note);
}

}  // namespace

std::vector<ByteRange> byte_ranges(const Inspected& inspected) {
  std::vector<ByteRange> ranges;
  RangeCollector collector(inspected.length, ranges);
  collector.collect(inspected.root, "", false);
  collector.collect(inspected.root, "", true);
  std::sort(ranges.begin(), ranges.end(),
            [](const ByteRange& a, const ByteRange& b) {
              return a.offset < b.offset;
            });
  return ranges;
}

void print_byte_ranges(std::ostream& out, const Inspected& inspected) {
  const std::vector<ByteRange> ranges = byte_ranges(inspected);
  std::size_t path_width = 0;
  for (const ByteRange& range : ranges) {
    path_width = std::max(path_width, range.path.size());
  }
  for (const ByteRange& range : ranges) {
    out << "  " << std::right << std::setw(10)
        << number_text(range.offset, Field::Radix::kHex) << std::setw(10)
        << range.length << "  " << std::left
        << std::setw(static_cast<int>(path_width)) << range.path << "  "
        << kind_text(*range.field) << '\n';
  }
}

void print_ranges_member(std::ostream& out, const Inspected& inspected,
                         std::size_t indent) {
  const std::string blanks(indent, ' ');
  const std::vector<ByteRange> ranges = byte_ranges(inspected);
  out << blanks << "\"ranges\": [";
  const char* separator = "\n";
  for (const ByteRange& range : ranges) {
    out << separator << blanks << "  {\"offset\": " << range.offset
        << ", \"length\": " << range.length << ", \"path\": \"" << range.path
        << "\", \"value\": " << json_line(field_json(*range.field)) << '}';
    separator = ",\n";
  }
  if (!ranges.empty()) out << '\n' << blanks;
  out << ']';
}

}  // namespace tova_fw_builder
