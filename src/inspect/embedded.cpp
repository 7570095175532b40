// A file of no format of its own, such as a joined package or a flash image: a
// search for what begins in it. A header inside a manifest isn't told again.
#include <algorithm>

#include "companion/ground/message_text.h"
#include "inspect/decoders.h"
#include "inspect/recognise.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

constexpr std::size_t kMostFound = 4096;

constexpr Column kFoundColumns[] = {
    {"offset", "offset"}, {"length", "length"}, {"format", "format"}};

// Calls `visit` with the places where a structure may begin, in order, and the
// bytes from there on; it yields how many bytes are to be passed over.
template <typename Visit>
void search(const ByteSource& source, const Visit& visit) {
  WipedBytes window;
  std::uint64_t window_offset = 0;
  std::uint64_t next = 0;  // nothing below it is looked at
  const auto scan = [&](std::size_t limit) {
    // The first byte of each mark: $TM1, $TE1, a key's bracket, and the type
    // words 6 and 17 with their zeros.
    constexpr std::string_view kFirst("$(\x06\x11", 4);
    const std::string_view bytes = view_of(window);
    for (std::size_t at = bytes.find_first_of(kFirst); at < limit;
         at = bytes.find_first_of(kFirst, at + 1)) {
      const std::uint64_t offset = window_offset + at;
      if (offset < next) continue;
      next = offset + visit(offset, bytes.substr(at, kProbe));
    }
  };
  source.pieces(0, source.size(), [&](std::string_view piece) {
    window.insert(window.end(), piece.begin(), piece.end());
    const std::size_t limit = window.size() - std::min(window.size(), kProbe);
    scan(limit);
    window.erase(window.begin(),
                 window.begin() + static_cast<std::ptrdiff_t>(limit));
    window_offset += limit;
    return true;
  });
  scan(window.size());
}

}  // namespace

void decode_embedded(const ByteSource& source, Inspected& out) {
  Field& list = out.root.add(list_field("embedded"));
  list.columns = kFoundColumns;
  bool are_more = false;
  search(source, [&](std::uint64_t offset, std::string_view bytes) {
    const Found found = structure_at(bytes);
    const std::uint64_t length = std::min(found.length, out.length - offset);
    if (length == 0) return std::uint64_t{0};
    if (list.members.size() == kMostFound) {
      are_more = true;
      return std::uint64_t{0};
    }
    Field entry = object_field("");
    entry.add(number_field("offset", offset, Field::Radix::kHex));
    entry.add(number_field("length", length));
    entry.add(text_field("format", std::string(format_name(found.format))));
    Field structure = shown(text_field("bytes", ""), Field::Shown::kBytes);
    structure.kind = Field::Kind::kContents;
    entry.add(placed(std::move(structure), offset, length));
    list.add(std::move(entry));
    return length;
  });
  Field contents = shown(text_field("contents", ""), Field::Shown::kBytes);
  contents.kind = Field::Kind::kContents;
  contents.length = out.length;

  const std::size_t count = list.members.size();
  if (out.length == 0) {
    out.title = "an empty file, as the manifests of generation 3.0 are";
  } else if (count == 0) {
    out.title = "contents without a header";
    if (out.length % kPageSize == 0) {
      out.title += ", " + counted(out.length / kPageSize, "page");
    }
  } else {
    out.title = "contents with " + counted(count, "structure") + " inside" +
                (are_more ? ", and more, which are not listed" : "");
  }
  out.root.add(std::move(contents));
}

}  // namespace tova_fw_builder
