// By file_off, which counts as if a signer had put its part in front. It tells
// the place in a file for 1.8 and 2.5 alone: for 1.5 see manifest_plan.
#include "inspect/check/contents_plan.h"

#include <algorithm>
#include <string_view>

#include "image/records/binary_header.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

constexpr std::uint64_t kContents = 1;
constexpr std::uint64_t kLoad = 4;
constexpr std::uint64_t kMostPages = 0x10000;  // `len` has 16 bits

bool is_stored(const Field& segment) {
  return (number_at(segment, "flags_value") & kContents) != 0 &&
         (number_at(segment, "flags_value") & kLoad) != 0 &&
         number_at(segment, "len") != 0;
}

// The flags are those of the first section of the group: behind one without
// contents, or one that isn't loaded, others may be stored at an unknown place.
const Field* hidden_segment(const Field& module) {
  for (const Field& segment : find(module, "segments")->members) {
    const std::string_view type = text_at(segment, "type");
    if ((type == "text" || type == "rodata") && !is_stored(segment) &&
        number_at(segment, "len") != 0) {
      return &segment;
    }
  }
  return nullptr;
}

// Where they stand by file_off, rising.
std::vector<Span> stored_spans(const Field& module) {
  std::vector<Span> spans;
  for (const Field* segment : stored_segments(module)) {
    spans.push_back({number_at(*segment, "file_off"), bytes_of(*segment)});
  }
  std::ranges::sort(spans, {}, &Span::offset);
  return spans;
}

bool overlap(const std::vector<Span>& rising) {
  for (std::size_t i = 1; i < rising.size(); ++i) {
    if (rising[i].offset < rising[i - 1].offset + rising[i - 1].length) {
      return true;
    }
  }
  return false;
}

// Modules that share bytes with others aren't hashed: a header could name the
// same contents thousands of times.
void refuse_shared(std::vector<ModulePlace>& places) {
  struct Owned {
    Span span;
    ModulePlace* place;
  };
  std::vector<Owned> all;
  for (ModulePlace& place : places) {
    for (const Span& span : place.spans) all.push_back({span, &place});
  }
  std::ranges::stable_sort(
      all, {}, [](const Owned& owned) { return owned.span.offset; });
  std::uint64_t end = 0;
  ModulePlace* last = nullptr;
  for (const Owned& owned : all) {
    if (last != nullptr && owned.span.offset < end) {
      last->unknown = owned.place->unknown =
          "its segments share bytes of the file with others";
    } else if (last != nullptr &&
               owned.span.offset - end >= kMostPages * kPageSize) {
      last->doubt = "a segment may be longer than its entry can tell";
    }
    if (owned.span.offset + owned.span.length >= end) {
      end = owned.span.offset + owned.span.length;
      last = owned.place;
    }
  }
}

}  // namespace

std::vector<const Field*> stored_segments(const Field& module) {
  std::vector<const Field*> stored;
  if (!is_loadable(module)) return stored;
  for (const Field& segment : find(module, "segments")->members) {
    if (is_stored(segment)) stored.push_back(&segment);
  }
  return stored;
}

ModulePlace place_of(const Field& module) {
  ModulePlace place;
  place.module = &module;
  place.spans = stored_spans(module);
  if (const Field* hidden = hidden_segment(module)) {
    place.unknown = "the header doesn't tell where its " +
                    std::string(text_at(*hidden, "type")) +
                    " stands, whose first section isn't loaded";
  } else if (overlap(place.spans)) {
    place.unknown = "its segments share bytes of the file";
  }
  return place;
}

bool is_loadable(const Field& module) {
  return number_at(module, "type.loadable") != 0;
}

std::uint64_t bytes_of(const Field& segment) {
  return number_at(segment, "len") * kPageSize;
}

ContentsPlan plan_binary(const CheckedFile& binary) {
  ContentsPlan plan{&binary, {}};
  const Field& root = binary.inspected.root;
  const std::uint64_t room =
      kSignedHeaderOffset - number_at(root, "header_offset");
  for (const Field& module : find(root, "modules")->members) {
    if (!is_loadable(module)) continue;
    ModulePlace place = place_of(module);
    place.file = &binary;
    for (Span& span : place.spans) {
      if (span.offset < room) {
        place.unknown = "its contents lie ahead of the file";
      }
      span.offset -= std::min(room, span.offset);
    }
    plan.modules.push_back(std::move(place));
  }
  refuse_shared(plan.modules);
  return plan;
}

}  // namespace tova_fw_builder
