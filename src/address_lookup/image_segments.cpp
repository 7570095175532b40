// The header of 1.8 and 2.5 tells where each segment stands. In 1.5 it tells
// that within a module, whose file has to be found; that of 3.0 is written
// ahead of the contents and tells nothing, but the length of the file does.
#include "address_lookup/image_segments.h"

#include <algorithm>
#include <map>

#include "image/records/binary_header.h"
#include "inspect/check/image_files.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

struct Place {
  std::string file;
  std::uint64_t offset = 0;
};
using Places = std::map<const Field*, Place>;  // of the segments

// By file_off the segments of a module stand to one another as in the file.
void add_planned(const ContentsPlan& plan, Places& places) {
  for (const ModulePlace& module : plan.modules) {
    if (!module.unknown.empty() || !module.doubt.empty()) continue;
    const auto segments = stored_segments(*module.module);
    if (module.spans.empty() || segments.empty()) continue;
    const auto file_off = [](const Field* segment) {
      return number_at(*segment, "file_off");
    };
    const std::uint64_t first =
        file_off(*std::ranges::min_element(segments, {}, file_off));
    for (const Field* segment : segments) {
      places.try_emplace(
          segment, Place{module.file->path, module.spans.front().offset +
                                                file_off(segment) - first});
    }
  }
}

// The segments of a 3.0 one behind another; `spaced`: with the zeros that stand
// ahead of addons, as many as lie between the addresses. Yields where they end.
std::uint64_t place_in_order(const CheckedFile& binary, bool spaced,
                             Places& places) {
  std::uint64_t end = kContentsOffset;
  std::optional<std::uint64_t> last;
  for (const Field& module : find(binary.inspected.root, "modules")->members) {
    const bool has_gaps = spaced && number_at(module, "type.library") == 0;
    for (const Field* segment : stored_segments(module)) {
      const std::uint64_t address = number_at(*segment, "vma");
      if (has_gaps && last && address > *last) end += address - *last;
      places.try_emplace(segment, Place{binary.path, end});
      end += bytes_of(*segment);
      last = address + bytes_of(*segment);
    }
  }
  return end;
}

void add_30(const CheckedFile& binary, Places& places) {
  for (const bool spaced : {false, true}) {
    Places found;
    if (place_in_order(binary, spaced, found) != binary.inspected.length) {
      continue;
    }
    places.merge(found);
    return;
  }
}

void add_segments(const CheckedFile& header, const Places& places,
                  std::vector<ImageSegment>& segments) {
  for (const Field& module : find(header.inspected.root, "modules")->members) {
    for (const Field& from : find(module, "segments")->members) {
      const std::uint64_t begin = number_at(from, "vma");
      ImageSegment segment = {std::string(text_at(module, "name")),
                              std::string(text_at(from, "type")),
                              {begin, begin + bytes_of(from)},
                              !is_loadable(module),
                              {}};
      if (segment.type == "unused" || bytes_of(from) == 0) continue;
      if (const auto place = places.find(&from); place != places.end()) {
        segment.file = place->second.file;
        segment.file_offset = place->second.offset;
      }
      segments.push_back(std::move(segment));
    }
  }
}

bool are_alike(const ImageSegment& a, const ImageSegment& b) {
  return a.module == b.module && a.type == b.type &&
         a.range.begin == b.range.begin && a.range.end == b.range.end &&
         a.built_in == b.built_in && a.file == b.file &&
         a.file_offset == b.file_offset;
}

}  // namespace

std::vector<ImageSegment> image_segments(
    const std::vector<CheckedFile>& files) {
  const CheckOptions options;
  const ImageFiles image = sort_files(files, options);
  Places places;
  // Files of their own count ahead of a package that they were joined to.
  for (auto plan = image.plans.rbegin(); plan != image.plans.rend(); ++plan) {
    add_planned(*plan, places);
  }
  for (const CheckedFile* binary : image.binaries) {
    if (is_30(*binary)) add_30(*binary, places);
  }
  std::vector<ImageSegment> segments;
  for (const CheckedFile* header : image.headers) {
    std::vector<ImageSegment> own;
    add_segments(*header, places, own);
    const bool is_known =
        std::search(segments.begin(), segments.end(), own.begin(), own.end(),
                    are_alike) != segments.end();
    if (!is_known) segments.insert(segments.end(), own.begin(), own.end());
  }
  return segments;
}

}  // namespace tova_fw_builder
