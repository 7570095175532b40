// The binary of 1.8, 2.5 and 3.0. The header of 3.0 is written ahead of the
// contents, so it tells neither their length nor where a segment lies; that of
// 1.8 and 2.5 counts with what the signer puts in front of the file.
#include <algorithm>
#include <array>

#include "companion/ground/message_text.h"
#include "companion/ground/printable.h"
#include "image/records/binary_header.h"
#include "inspect/binary_tables.h"
#include "inspect/decoders.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

constexpr auto kBytes = Field::Shown::kBytes;

// What the modules' segments tell of the generation.
struct Places {
  bool all_at_contents = true;  // each file_off is kContentsOffset or none
  int count = 0;                // of file_offs that aren't 0
};

Places places_of(const Field& modules) {
  Places places;
  for (const Field& module : modules.members) {
    for (const Field& segment : find(module, "segments")->members) {
      const std::uint64_t place = number_at(segment, "file_off");
      if (place == 0) continue;
      ++places.count;
      if (place != kContentsOffset) places.all_at_contents = false;
    }
  }
  return places;
}

// A header at 0 may be one of 1.8 or 2.5 behind a signer's room of 8192 bytes,
// and one behind other bytes may be of 3.0.
bool is_generation_30(const Inspected& out, std::uint64_t header_offset,
                      std::uint64_t tables_end) {
  constexpr std::uint64_t kOwnPages = kContentsOffset / kPageSize;
  const Places places = places_of(*find(out.root, "modules"));
  const bool has_own_pages =
      number_at(out.root, "header.preload_page_count") == kOwnPages;
  if (header_offset != 0) {
    return has_own_pages && places.all_at_contents && places.count > 1;
  }
  if (!has_own_pages) return places.all_at_contents && places.count > 1;
  const bool only_room = out.length == kContentsOffset - kSignedHeaderOffset &&
                         tables_end < out.length;
  return places.all_at_contents && !only_room;
}

// The modules of 3.0 are listed ahead of what would be hashed.
void check_no_hashes(Inspected& out) {
  for (const Field& module : find(out.root, "modules")->members) {
    const Field* hash = find(module, "hash");
    if (hash == nullptr ||
        hash->text.find_first_not_of('0') == hash->text.npos) {
      continue;
    }
    add_problem(out, hash->offset,
                "the hash of " + printable(text_at(module, "name")) +
                    " is not zero, as all are in 3.0");
  }
}

// The contents of each segment, for the list of bytes.
Field decode_contents(std::uint64_t header_offset, Inspected& out) {
  Field contents = object_field("contents", kBytes);
  Field& list = contents.add(list_field("modules"));
  const std::uint64_t room = kSignedHeaderOffset - header_offset;
  for (const Field& module : find(out.root, "modules")->members) {
    Field& segments = list.add(object_field("")).add(list_field("segments"));
    for (const Field& segment : find(module, "segments")->members) {
      Field& place = segments.add(object_field(""));
      const std::uint64_t file_off = number_at(segment, "file_off");
      const std::uint64_t length = number_at(segment, "len") * kPageSize;
      if (file_off == 0 || length == 0) continue;
      place.kind = Field::Kind::kContents;
      place.offset = file_off - std::min(room, file_off);
      place.length = length;
      if (file_off < room || place.offset > out.length ||
          length > out.length - place.offset) {
        add_problem(out, find(segment, "file_off")->offset,
                    "contents of " + printable(text_at(module, "name")) +
                        " lie outside the file");
      }
    }
  }
  return contents;
}

// What a signer has put in front, up to its last byte that isn't zero. Yields
// what is to be said of the room ahead of the header.
std::string decode_signer_part(const ByteSource& source,
                               std::uint64_t header_offset, Inspected& out) {
  const std::string room = counted(kSignedHeaderOffset - header_offset, "byte");
  const WipedBytes bytes = source.bytes(0, header_offset);
  const std::string_view front = view_of(bytes);
  const std::size_t last = front.find_last_not_of('\0');
  if (last == front.npos) return "the signer puts " + room + " in front";
  if (header_offset != kSignedHeaderOffset) {
    add_problem(out, front.find_first_not_of('\0'),
                "the bytes in front of the header are not zero: damage, or a "
                "signer's part that is " +
                    room + " too short");
  }
  Field part = shown(text_field("signer_part", ""), kBytes);
  part.kind = Field::Kind::kContents;
  out.root.add(placed(std::move(part), 0, last + 1));
  return "a signer's bytes stand in front";
}

void check_length(std::uint64_t header_offset, Inspected& out) {
  const std::uint64_t told =
      number_at(out.root, "header.preload_page_count") * kPageSize;
  const std::uint64_t room = kSignedHeaderOffset - header_offset;
  if (told != out.length + room) {
    add_problem(out, out.length,
                "the file has " + counted(out.length, "byte") +
                    ", and its page count tells " +
                    std::to_string(told - std::min(told, room)));
  }
}

}  // namespace

bool has_signer_part(const ByteSource& source) {
  const auto header =
      record_at<TovaFwBinaryHeader>(source, kSignedHeaderOffset);
  return header.header_id == TovaFwBinaryHeader::kMark &&
         header.header_len == sizeof(header) &&
         header.preload_page_count * std::uint64_t{kPageSize} == source.size();
}

std::optional<std::uint64_t> find_binary_header(const ByteSource& source) {
  if (has_signer_part(source)) return kSignedHeaderOffset;
  const std::string_view mark(TovaFwBinaryHeader::kMark.data(), 4);
  const WipedBytes bytes =
      source.bytes(0, kSignedHeaderOffset + sizeof(TovaFwBinaryHeader));
  const std::string_view head = view_of(bytes);
  std::optional<std::uint64_t> found;
  // Chance may put the mark anywhere: the header has its own length behind it.
  for (std::size_t at = head.find(mark);
       at <= kSignedHeaderOffset;  // not found is beyond it
       at = head.find(mark, at + 1)) {
    const auto header = record_at<TovaFwBinaryHeader>(source, at);
    if (header.header_len == sizeof(TovaFwBinaryHeader)) return at;
    if (!found) found = at;
  }
  return found;
}

void decode_binary(const ByteSource& source, Inspected& out) {
  const std::uint64_t header_offset = find_binary_header(source).value_or(0);
  Field& generation = out.root.add(text_field("generation", ""));
  generation.shown = Field::Shown::kLong;
  out.root.add(
      number_field("header_offset", header_offset, Field::Radix::kHex));
  const std::uint64_t end = decode_binary_tables(source, header_offset, out);

  const bool is_30 = is_generation_30(out, header_offset, end);
  find(out.root, "generation")->text = is_30 ? "3.0" : "1.8 or 2.5";
  out.title = "firmware " + image_name(out.root) + ", generation " +
              (is_30 ? "3.0" : "1.8 or 2.5");
  std::uint64_t contents_offset = kContentsOffset;
  if (is_30) {
    Field contents = shown(text_field("contents", ""), kBytes);
    contents.kind = Field::Kind::kContents;
    contents_offset += header_offset;
    contents.offset = contents_offset;
    contents.length = out.length - std::min(out.length, contents.offset);
    out.root.add(std::move(contents));
    if (header_offset != 0) {
      add_problem(out, 0,
                  counted(header_offset, "byte") +
                      " in front of the header, which 3.0 has at 0: cut off "
                      "what stands in front");
    }
    check_no_hashes(out);
  } else {
    const std::uint64_t room = kSignedHeaderOffset - header_offset;
    find(out.root, "header_offset")->note =
        decode_signer_part(source, header_offset, out);
    contents_offset -= room;
    check_length(header_offset, out);
    out.root.add(decode_contents(header_offset, out));
  }
  if (end > contents_offset) {
    add_problem(out, contents_offset, "the tables reach into the contents");
  }
}

}  // namespace tova_fw_builder
